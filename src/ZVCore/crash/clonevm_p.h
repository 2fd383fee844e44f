#ifndef ZVCORE_CLONEVM_P_H
#define ZVCORE_CLONEVM_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

// Whether the crash handler starts its children with the C library's clone() sharing the
// process's memory. ThreadSanitizer's runtime intercepts clone() and treats every child
// as a fork, which it cannot follow from a signal handler: under it the children are
// bare copies of the process, as fork() makes them, which is slower with a large heap.
#if defined(__SANITIZE_THREAD__)
#define ZVCORE_CLONE_SHARES_MEMORY 0
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define ZVCORE_CLONE_SHARES_MEMORY 0
#endif
#endif
#ifndef ZVCORE_CLONE_SHARES_MEMORY
#define ZVCORE_CLONE_SHARES_MEMORY 1
#endif

#endif // ZVCORE_CLONEVM_P_H
