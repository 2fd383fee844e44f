#ifndef ZVCORE_LAUNCHARGUMENTS_H
#define ZVCORE_LAUNCHARGUMENTS_H

// The command lines of the companion programs, as plain rules without Qt, so that the
// crash handler of every platform can build them too.

#include <ZVCore/zvcore_export.h>

#include <string>
#include <vector>

namespace ZVUIFramework {

// The context fields the feedback program is started with, UTF-16 as on Windows.
struct FeedbackFields
{
    std::u16string receiveEmailOnCrash;
    std::u16string fbReceiveEmailAccount;
    std::u16string applicationFilePath;
    std::u16string userEmailInfo;
    std::u16string sendEmailAccount;
    std::u16string sendEmailPwd;
};

// Six arguments: the receiving address (for crash reports when \a crashed, else for
// feedback), the host's file path, the user's address, the sending account and its
// password, then "0" for a crash report or "1" for feedback. Empty fields stay as empty
// arguments.
ZVCORE_AUTOTEST_EXPORT std::vector<std::u16string> FeedbackArguments(const FeedbackFields& fields, bool crashed);

// The host's updater arguments, then "--silent=true" for the silent launch, then
// "--updateURL=<server>" when the server is not empty.
ZVCORE_AUTOTEST_EXPORT std::vector<std::u16string> UpdaterArguments(const std::vector<std::u16string>& hostArguments,
                                                                    bool silent, const std::u16string& updateServer);

// The names of the companion programs beside the host executable.
#if defined(_WIN32)
inline constexpr char16_t kFeedbackProgram[] = u"Feedback.exe";
inline constexpr char16_t kUpdaterProgram[] = u"appAutoUpdate.exe";
#else
inline constexpr char16_t kFeedbackProgram[] = u"Feedback";
inline constexpr char16_t kUpdaterProgram[] = u"appAutoUpdate";
#endif

} // namespace ZVUIFramework

#endif // ZVCORE_LAUNCHARGUMENTS_H
