#ifndef ZVCORE_THREADSTACKS_P_H
#define ZVCORE_THREADSTACKS_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <cstddef>

namespace ZVUIFramework {
namespace Crash {

// The alternate signal stack of each thread: large enough for the crash handler and the
// dump writer, which run on it, after the thread's own stack overflowed.
constexpr std::size_t kThreadAltStackSize = 256 * 1024;

// Gives the calling thread an alternate signal stack, unless it has one; the stack stays
// for the thread's life. Returns false when the thread has none afterwards.
bool InstallOwnStack();

// Gives every thread an alternate signal stack: the calling thread, the threads that
// exist now, and every thread created from now on; each stack goes with its thread.
// Does nothing under a sanitizer, which gives its threads stacks of its own, or when
// the library was built without ZVCORE_CRASH_THREAD_STACKS. Returns whether it did.
bool InstallThreadStacks();

} // namespace Crash
} // namespace ZVUIFramework

#endif // ZVCORE_THREADSTACKS_P_H
