#include "desktopresolution_p.h"

#include <windows.h>

namespace ZVUIFramework {
namespace Platform {

int DesktopHorizontalResolution()
{
    // DESKTOPHORZRES is the real resolution even for a process that is not DPI aware,
    // where HORZRES would report the virtualised one.
    HDC screen = ::GetDC(nullptr);
    if (!screen)
        return 0;
    const int width = ::GetDeviceCaps(screen, DESKTOPHORZRES);
    ::ReleaseDC(nullptr, screen);
    return width;
}

} // namespace Platform
} // namespace ZVUIFramework
