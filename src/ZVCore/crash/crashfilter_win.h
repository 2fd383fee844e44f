#ifndef ZVCORE_CRASHFILTER_WIN_H
#define ZVCORE_CRASHFILTER_WIN_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

// The last word on an unhandled exception on Windows: a minidump beside the working
// directory, then the host side. Plain Win32 without Qt, because it runs in a process
// whose state can no longer be trusted.

#include <ZVCore/zvcore_export.h>

#include <windows.h>

#include <dbghelp.h>

namespace ZVUIFramework {
namespace WinCrash {

// The host side: feedback launch, then the host callback.
using AfterDump = void (*)(EXCEPTION_POINTERS* info);

// The exception that abort() becomes: STATUS_FATAL_APP_EXIT, the code Windows gives a
// program that ended itself on a fatal error.
constexpr DWORD kAbortExceptionCode = 0x40000015;

// The stack a thread keeps for the filter when its own overflows.
constexpr ULONG kGuaranteedStack = 64 * 1024;

// Makes Filter the process's unhandled exception filter, remembers \a after (may be
// null), seals the filter with Seal(), turns abort() into an exception the filter
// reports, and guarantees the calling thread's stack (GuaranteeStack).
ZVCORE_AUTOTEST_EXPORT void InstallFilter(AfterDump after);

// Keeps kGuaranteedStack of the calling thread's stack for the filter, should the rest
// overflow, when the thread's stack is at least eight times as large (512 KiB; the
// system's default is 1 MiB). The library calls it for the installing thread and for
// every thread that starts while it is loaded.
ZVCORE_AUTOTEST_EXPORT void GuaranteeStack();

// Turns SetUnhandledExceptionFilter of this process into a function that returns null
// and changes nothing, so that no module loaded later (a runtime library, a plug-in)
// can take the filter away.
ZVCORE_AUTOTEST_EXPORT void Seal();

// Writes "crashcore.dmp" in the working directory, calls the AfterDump given to
// InstallFilter, and returns EXCEPTION_EXECUTE_HANDLER so that the process ends with
// the exception code. The first thread to enter reports; other threads that fault
// meanwhile wait for the process to end, and a fault during the report ends the
// process at once. After a stack overflow the report runs on a thread of its own.
ZVCORE_AUTOTEST_EXPORT LONG WINAPI Filter(EXCEPTION_POINTERS* info);

// Keeps the dump small: module data segments only for ntdll, and only the thread and
// module records.
ZVCORE_AUTOTEST_EXPORT BOOL CALLBACK DumpCallback(PVOID param, const PMINIDUMP_CALLBACK_INPUT input,
                                                  PMINIDUMP_CALLBACK_OUTPUT output);

} // namespace WinCrash
} // namespace ZVUIFramework

#endif // ZVCORE_CRASHFILTER_WIN_H
