// What a crashed zv_crash_child leaves behind, as the crash and seal tests expect it.
#ifndef ZVWIN_CRASHEXPECT_H
#define ZVWIN_CRASHEXPECT_H

#include <windows.h>

namespace zvwin {

// The exit code of a process whose unhandled exception filter answered
// EXCEPTION_EXECUTE_HANDLER: the exception code itself, here an access violation.
constexpr DWORD kAccessViolationExit = 0xC0000005;

// The exception code as the child's host side writes it to callback.txt.
constexpr char kAccessViolationText[] = "c0000005";

// The one line the feedback stand-in records for the child's crash arguments (see
// crashFields() in crash_child.cpp): the crash address, the path with spaces, the empty
// user address, the account with a quote and backslashes, the password beyond ASCII,
// then "0" for a crash report.
constexpr char kFeedbackLine[] =
    R"(["crash@example.com","C:\\Program Files\\ZV Demo\\demo.exe","","a\\\"b\\","päss wörd","0"])";

} // namespace zvwin

#endif // ZVWIN_CRASHEXPECT_H
