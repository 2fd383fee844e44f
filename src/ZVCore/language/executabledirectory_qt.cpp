#include "executabledirectory_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

namespace ZVUIFramework {
namespace Platform {

QString ExecutableDirectory()
{
    // Platforms without a native way to name the running image rely on Qt, which needs
    // the application object.
    if (!QCoreApplication::instance())
        return QString();
    return QDir::toNativeSeparators(QCoreApplication::applicationDirPath()) + QDir::separator();
}

} // namespace Platform
} // namespace ZVUIFramework
