// The crash handler on Windows: the unhandled-exception filter writes the dump, then
// hands over to the context for the feedback program and the host's callback.
#include "crashhandler_p.h"
#include "crashfilter_win.h"

#include <ZVCore/private/zvcoreconfig_p.h>

namespace ZVUIFramework {
namespace Crash {

namespace {

void afterDump(EXCEPTION_POINTERS* info)
{
    ZVApplicationInfo::GetInstance()->StartFeedback(true);
    ZVApplicationInfo::GetInstance()->CallCrashCakkback(info);
}

} // namespace

void Install()
{
    WinCrash::InstallFilter(&afterDump);
}

void PrepareFeedback(const QString&, const QStringList&)
{
    // The filter runs outside any signal context and starts the program itself.
}

} // namespace Crash
} // namespace ZVUIFramework

// Every thread that starts while the library is loaded keeps stack for the filter: a
// stack overflow on any thread is then reported, whether or not InitCrashHandle has run
// yet. (The installing thread gets its guarantee from InstallFilter.)
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
#if ZVCORE_CRASH_THREAD_STACKS
    if (reason == DLL_THREAD_ATTACH)
        ZVUIFramework::WinCrash::GuaranteeStack();
#else
    (void)reason;
#endif
    return TRUE;
}
