#include <ZVFoundation/CZV_Base_File>

#include "czv_base_file_p.h"

QString CZV_Base_File::GetFileVersion(const QString& path)
{
    if (path.isEmpty())
        return QString();
    return ZVFoundationPrivate::platformFileVersion(path);
}
