// The crash handler on Windows: the unhandled-exception filter writes the dump, then
// hands over to the context for the feedback program and the host's callback.
#include "crashhandler_p.h"
#include "crashfilter_win.h"

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
