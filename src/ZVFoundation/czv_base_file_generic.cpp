#include "czv_base_file_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>

namespace ZVFoundationPrivate {

// Executables here carry no version of their own; the only version known is the one
// the running program declares about itself.
QString platformFileVersion(const QString& path)
{
    if (!QCoreApplication::instance())
        return QString();

    // Canonical paths resolve links, "." and ".." and relative paths, so every way of
    // naming the executable is recognised. A missing file has no canonical path.
    const QString file = QFileInfo(path).canonicalFilePath();
    if (file.isEmpty())
        return QString();
    const QString self = QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath();
    if (self.isEmpty() || file != self)
        return QString();
    return QCoreApplication::applicationVersion();
}

} // namespace ZVFoundationPrivate
