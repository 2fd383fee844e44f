#include "executabledirectory_p.h"

#include <windows.h>

namespace ZVUIFramework {
namespace Platform {

QString ExecutableDirectory()
{
    // The module file name is read into MAX_PATH wide characters; a longer path is cut
    // by the system and the directory is what remains before the last backslash.
    wchar_t buffer[MAX_PATH] = {};
    const DWORD length = ::GetModuleFileNameW(nullptr, buffer, MAX_PATH);
    QString path = QString::fromWCharArray(buffer, int(length));
    const int cut = path.lastIndexOf(QLatin1Char('\\'));
    return cut < 0 ? QString() : path.left(cut + 1);
}

} // namespace Platform
} // namespace ZVUIFramework
