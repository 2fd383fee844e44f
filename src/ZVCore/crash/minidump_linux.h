#ifndef ZVCORE_MINIDUMP_LINUX_H
#define ZVCORE_MINIDUMP_LINUX_H

// A minidump writer for Linux that a fatal-signal handler can call. It touches no heap,
// takes no locks and uses no stdio, so it stays usable however broken the process is.

#include <ZVCore/zvcore_export.h>

#include <signal.h>
#include <sys/types.h>
#include <ucontext.h>

namespace ZVUIFramework {
namespace Minidump {

// Writes a minidump of the calling process to `path`, created with
// O_WRONLY|O_CREAT|O_TRUNC|O_CLOEXEC and mode 0600 (relative paths resolve against the
// current directory). Callable from a signal handler running on an alternate stack:
// no malloc/new, no locks, no stdio, no C++ exceptions, only async-signal-safe syscalls.
// Returns false when the file cannot be created (then nothing is written) or writing
// fails.
// `crashTid` is the faulting thread (gettid of the handler's thread); `context` is the
// signal's ucontext (its registers are the crashing thread's), `info` its siginfo.
// Either of `info` and `context` may be null; the dump then lacks what they would give.
//
// The dump holds every thread of the process with its registers and stack, the loaded
// ELF modules with their build ids, the exception, and the process's maps, auxv,
// status, command line, link map and the machine's cpuinfo. It never holds the
// environment, which can carry secrets.
//
// The other threads are stopped for the time the dump takes (a few milliseconds): a
// helper process traces them, so the writer briefly names that helper as the process's
// ptracer where Yama asks for it, and clears the setting again afterwards.
ZVCORE_AUTOTEST_EXPORT bool WriteLinuxMinidump(const char* path, int signo, const siginfo_t* info,
                                               const ucontext_t* context, pid_t crashTid);

} // namespace Minidump
} // namespace ZVUIFramework

#endif // ZVCORE_MINIDUMP_LINUX_H
