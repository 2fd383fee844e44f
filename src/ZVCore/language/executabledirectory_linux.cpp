#include "executabledirectory_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>

#include <climits>
#include <unistd.h>

namespace ZVUIFramework {
namespace Platform {

QString ExecutableDirectory()
{
    // /proc/self/exe names the image the kernel started, also for a program reached
    // through a symbolic link, and needs no application object.
    char buffer[PATH_MAX + 1] = {};
    const ssize_t length = ::readlink("/proc/self/exe", buffer, PATH_MAX);
    if (length > 0) {
        const QString path = QFile::decodeName(QByteArray(buffer, int(length)));
        const int cut = path.lastIndexOf(QLatin1Char('/'));
        if (cut >= 0)
            return path.left(cut + 1);
    }
    // No /proc (a restricted container): Qt's view, when an application object exists.
    if (QCoreApplication::instance())
        return QDir::toNativeSeparators(QCoreApplication::applicationDirPath()) + QDir::separator();
    return QString();
}

} // namespace Platform
} // namespace ZVUIFramework
