#include "screenmetrics_p.h"

#include <windows.h>

namespace ZVUIFramework {
namespace Platform {

namespace {

// The system DPI and scale factor are read once per process.
float g_systemDpi = 0.0f;
bool g_systemDpiRead = false;

float systemDpi()
{
    if (!g_systemDpiRead) {
        g_systemDpiRead = true;
        if (HDC screen = ::GetDC(nullptr)) {
            g_systemDpi = float(::GetDeviceCaps(screen, LOGPIXELSX));
            ::ReleaseDC(nullptr, screen);
        }
    }
    return g_systemDpi > 0.0f ? g_systemDpi : 96.0f;
}

} // namespace

void SetDpiAwareness()
{
    // Looked up at run time: older systems have only the second function.
    HMODULE user32 = ::GetModuleHandleW(L"user32.dll");
    if (!user32)
        return;
    using AwarenessInternal = HRESULT(WINAPI*)(int);
    using Aware = BOOL(WINAPI*)();
    auto internal = reinterpret_cast<AwarenessInternal>(
        reinterpret_cast<void*>(::GetProcAddress(user32, "SetProcessDpiAwarenessInternal")));
    if (internal && internal(1) >= 0) // 1: system-DPI aware
        return;
    auto aware = reinterpret_cast<Aware>(reinterpret_cast<void*>(::GetProcAddress(user32, "SetProcessDPIAware")));
    if (aware)
        aware();
}

bool ReadScreenMetrics(ScreenMetrics& metrics)
{
    HDC screen = ::GetDC(nullptr);
    if (!screen)
        return false;
    metrics.horzRes = ::GetDeviceCaps(screen, DESKTOPHORZRES);
    metrics.vertRes = ::GetDeviceCaps(screen, DESKTOPVERTRES);
    metrics.widthMM = ::GetDeviceCaps(screen, HORZSIZE);
    metrics.heightMM = ::GetDeviceCaps(screen, VERTSIZE);
    ::ReleaseDC(nullptr, screen);
    metrics.systemDpi = systemDpi();
    RECT work = {0, 0, metrics.horzRes, metrics.vertRes};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    metrics.workLeft = work.left;
    metrics.workTop = work.top;
    metrics.workRight = work.right;
    metrics.workBottom = work.bottom;
    return true;
}

} // namespace Platform
} // namespace ZVUIFramework
