#include <ZVCore/ZVCoreVersion>

namespace ZVUIFramework {

QString ZVCoreVersion()
{
    return QStringLiteral(ZVCORE_VERSION_STRING);
}

} // namespace ZVUIFramework
