// Alternate signal stacks for every thread of the process.
//
// A stack overflow raises SIGSEGV on the thread whose stack is full; the kernel can run
// the handler only on an alternate stack of that very thread, and a thread can install
// one only for itself. So the frame gives each thread its own:
//
//  * threads created after the crash handler is installed get one in their first
//    instruction: the library defines pthread_create, which the dynamic linker binds
//    ahead of the C library's for the host, Qt, the C++ runtime and any library loaded
//    later, and starts the thread in a trampoline that installs the stack and then runs
//    the thread's own start routine;
//  * threads that already exist (Qt's own among them) are each sent a signal, borrowed
//    for the moment from the real-time signals that no thread handles or waits for with
//    sigwait, whose handler installs the stack on that thread.
//
// Each stack is a private mapping with a guard page below it, given back when its thread
// ends (a thread-specific key's destructor runs on the ending thread, which first turns
// the stack off); up to 16 are kept for the next threads, the others unmapped. A thread
// that has an alternate stack of its own already (one the host set) keeps it. Another library that wraps pthread_create the same way
// chains to this one, and this one to the C library, through RTLD_NEXT.
#include "threadstacks_p.h"

#if defined(__linux__)

#include <ZVCore/private/zvcoreconfig_p.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>

#include <dirent.h>
#include <dlfcn.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <time.h>
#include <ucontext.h>
#include <unistd.h>

namespace ZVUIFramework {
namespace Crash {

namespace {

#if ZVCORE_CRASH_THREAD_STACKS
std::atomic<bool> g_enabled{false};
pthread_key_t g_stackKey;
#endif

size_t pageSize()
{
    static const size_t size = size_t(::sysconf(_SC_PAGESIZE));
    return size;
}

// Maps a stack with a guard page below it. Returns the mapping, or null. System calls
// only, so a signal handler may call it.
void* mapStack()
{
    const size_t guard = pageSize();
    void* mapping = ::mmap(nullptr, guard + kThreadAltStackSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE,
                           -1, 0);
    if (mapping == MAP_FAILED)
        return nullptr;
    if (::mprotect(static_cast<char*>(mapping) + guard, kThreadAltStackSize, PROT_READ | PROT_WRITE) != 0) {
        ::munmap(mapping, guard + kThreadAltStackSize);
        return nullptr;
    }
    return mapping;
}

bool useStack(void* mapping)
{
    stack_t alt;
    alt.ss_sp = static_cast<char*>(mapping) + pageSize();
    alt.ss_size = kThreadAltStackSize;
    alt.ss_flags = 0;
    return ::sigaltstack(&alt, nullptr) == 0;
}

// Maps a stack and installs it for the calling thread, unless the thread has one
// already. Returns the mapping, or null. A signal handler may call it.
void* installOwnStack()
{
    stack_t current;
    if (::sigaltstack(nullptr, &current) != 0 || !(current.ss_flags & SS_DISABLE))
        return nullptr;
    void* mapping = mapStack();
    if (mapping && !useStack(mapping)) {
        ::munmap(mapping, pageSize() + kThreadAltStackSize);
        return nullptr;
    }
    return mapping;
}

#if ZVCORE_CRASH_THREAD_STACKS
// The stacks of threads that ended, kept for the next threads: mapping and unmapping
// cost more than the rest of a thread's start and end together.
constexpr int kCachedStacks = 16;
std::mutex g_cacheLock;
void* g_cache[kCachedStacks];
int g_cached = 0;

void* takeStack()
{
    {
        std::lock_guard<std::mutex> lock(g_cacheLock);
        if (g_cached > 0)
            return g_cache[--g_cached];
    }
    return mapStack();
}

void returnStack(void* mapping)
{
    {
        std::lock_guard<std::mutex> lock(g_cacheLock);
        if (g_cached < kCachedStacks) {
            g_cache[g_cached++] = mapping;
            return;
        }
    }
    ::munmap(mapping, pageSize() + kThreadAltStackSize);
}

// The key's destructor, on the ending thread: the stack is turned off before it goes.
// Should the thread have been given another one since, that one stays.
void releaseOwnStack(void* mapping)
{
    stack_t off;
    std::memset(&off, 0, sizeof off);
    off.ss_flags = SS_DISABLE;
    stack_t before;
    if (::sigaltstack(&off, &before) != 0)
        return; // still in use: the thread is on it, so it cannot go
    if (!(before.ss_flags & SS_DISABLE) && before.ss_sp != static_cast<char*>(mapping) + pageSize())
        ::sigaltstack(&before, nullptr);
    returnStack(mapping);
}

void giveThisThreadAStack()
{
    if (void* mapping = installOwnStack())
        ::pthread_setspecific(g_stackKey, mapping);
}

// A thread starting in the trampoline has no alternate stack yet: the kernel gives none
// to a new thread, and a start routine that wraps this one has not run.
void giveNewThreadAStack()
{
    void* mapping = takeStack();
    if (!mapping)
        return;
    if (!useStack(mapping)) {
        returnStack(mapping);
        return;
    }
    ::pthread_setspecific(g_stackKey, mapping);
}

struct Start
{
    void* (*routine)(void*);
    void* argument;
};

// The start routines on their way to new threads. A slot rather than the heap: a block
// freed on the new thread would make that thread set up its allocator cache, which costs
// more than the rest of this together. Should every slot be taken, the heap it is.
struct StartSlot
{
    std::atomic<bool> taken{false};
    Start start;
};
constexpr unsigned kStartSlots = 64;
StartSlot g_startSlots[kStartSlots];
std::atomic<unsigned> g_nextStartSlot{0};

Start* claimStart(void* (*routine)(void*), void* argument)
{
    for (unsigned tries = 0; tries < kStartSlots; ++tries) {
        StartSlot& slot = g_startSlots[g_nextStartSlot.fetch_add(1, std::memory_order_relaxed) % kStartSlots];
        bool expected = false;
        if (slot.taken.compare_exchange_strong(expected, true, std::memory_order_acquire)) {
            slot.start = Start{routine, argument};
            return &slot.start;
        }
    }
    return new (std::nothrow) Start{routine, argument};
}

void releaseStart(Start* start)
{
    for (StartSlot& slot : g_startSlots) {
        if (&slot.start == start) {
            slot.taken.store(false, std::memory_order_release);
            return;
        }
    }
    delete start;
}

void* trampoline(void* raw)
{
    const Start start = *static_cast<Start*>(raw);
    releaseStart(static_cast<Start*>(raw));
    giveNewThreadAStack();
    return start.routine(start.argument);
}

using CreateFunction = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);

CreateFunction nextCreate()
{
    static const CreateFunction next = reinterpret_cast<CreateFunction>(::dlsym(RTLD_NEXT, "pthread_create"));
    return next;
}

// Existing threads: each answers the borrowed signal by installing its own stack.
std::atomic<int> g_answered{0};

void onStackRequest(int, siginfo_t*, void* context)
{
    const int saved = errno;
    giveThisThreadAStack();
    // The return from a handler restores the alternate stack the thread had when the
    // signal arrived, from the signal's context: the new one is written there.
    stack_t now;
    if (context && ::sigaltstack(nullptr, &now) == 0)
        static_cast<ucontext_t*>(context)->uc_stack = now;
    g_answered.fetch_add(1);
    errno = saved;
}

// The real-time signals that some thread of the process holds back for itself, from each
// thread's SigBlk line in /proc: a thread that waits for a signal with sigwait blocks it.
// A thread that blocks every real-time signal (a library's worker that wants none, or a
// thread in the middle of being created) waits for none of them and does not count; it
// cannot take the request either, so it goes without a stack.
unsigned long long realtimeMask()
{
    unsigned long long mask = 0;
    for (int sig = SIGRTMIN; sig <= SIGRTMAX; ++sig)
        mask |= 1ull << (sig - 1);
    return mask;
}

unsigned long long heldBackByAnyThread()
{
    const unsigned long long realtime = realtimeMask();
    unsigned long long held = 0;
    DIR* tasks = ::opendir("/proc/self/task");
    if (!tasks)
        return ~0ull;
    while (const dirent* entry = ::readdir(tasks)) {
        if (entry->d_name[0] < '0' || entry->d_name[0] > '9')
            continue;
        char path[sizeof "/proc/self/task//status" + sizeof entry->d_name];
        std::snprintf(path, sizeof path, "/proc/self/task/%s/status", entry->d_name);
        if (FILE* status = std::fopen(path, "re")) {
            char line[256];
            while (std::fgets(line, sizeof line, status)) {
                if (std::strncmp(line, "SigBlk:", 7) != 0)
                    continue;
                const unsigned long long blocked = std::strtoull(line + 7, nullptr, 16);
                if ((blocked & realtime) != realtime)
                    held |= blocked;
            }
            std::fclose(status);
        }
    }
    ::closedir(tasks);
    return held;
}

// A real-time signal that no thread handles or waits for at the moment, or 0.
int borrowSignal()
{
    const unsigned long long held = heldBackByAnyThread();
    for (int sig = SIGRTMAX; sig >= SIGRTMIN + 2; --sig) {
        struct sigaction current;
        if (!(held & (1ull << (sig - 1))) && ::sigaction(sig, nullptr, &current) == 0
            && !(current.sa_flags & SA_SIGINFO) && current.sa_handler == SIG_DFL)
            return sig;
    }
    return 0;
}

void equipExistingThreads()
{
    const int sig = borrowSignal();
    if (sig == 0)
        return;
    struct sigaction request;
    std::memset(&request, 0, sizeof request);
    request.sa_sigaction = onStackRequest;
    sigemptyset(&request.sa_mask);
    request.sa_flags = SA_RESTART | SA_SIGINFO;
    if (::sigaction(sig, &request, nullptr) != 0)
        return;

    const pid_t self = pid_t(::syscall(SYS_gettid));
    const pid_t process = ::getpid();
    int sent = 0;
    if (DIR* tasks = ::opendir("/proc/self/task")) {
        while (const dirent* entry = ::readdir(tasks)) {
            const pid_t tid = pid_t(std::strtol(entry->d_name, nullptr, 10));
            if (tid > 0 && tid != self && ::syscall(SYS_tgkill, process, tid, sig) == 0)
                ++sent;
        }
        ::closedir(tasks);
    }
    // A thread that blocked the signal since never answers; the others do within
    // microseconds.
    for (int waited = 0; g_answered.load() < sent && waited < 500; ++waited) {
        const timespec pause{0, 1000000};
        ::nanosleep(&pause, nullptr);
    }
    // Ignoring the signal drops what is still pending; then it goes back to nobody.
    struct sigaction back;
    std::memset(&back, 0, sizeof back);
    sigemptyset(&back.sa_mask);
    back.sa_handler = SIG_IGN;
    ::sigaction(sig, &back, nullptr);
    back.sa_handler = SIG_DFL;
    ::sigaction(sig, &back, nullptr);
}

#endif // ZVCORE_CRASH_THREAD_STACKS

} // namespace

bool InstallOwnStack()
{
    installOwnStack();
    stack_t current;
    return ::sigaltstack(nullptr, &current) == 0 && !(current.ss_flags & SS_DISABLE);
}

bool InstallThreadStacks()
{
#if ZVCORE_CRASH_THREAD_STACKS
    // A sanitizer's runtime gives each of its threads an alternate stack and unmaps
    // whatever stack a thread has when it ends: it keeps them.
    if (::dlsym(RTLD_DEFAULT, "__sanitizer_set_report_path"))
        return false;
    static const bool done = [] {
        if (::pthread_key_create(&g_stackKey, releaseOwnStack) != 0)
            return false;
        giveThisThreadAStack();
        g_enabled.store(true);
        equipExistingThreads();
        return true;
    }();
    return done;
#else
    return false;
#endif
}

} // namespace Crash
} // namespace ZVUIFramework

#if ZVCORE_CRASH_THREAD_STACKS
// Every thread of the process is created through here once the library is loaded.
extern "C" __attribute__((visibility("default"))) int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                                                     void* (*routine)(void*), void* argument)
{
    using namespace ZVUIFramework::Crash;
    const CreateFunction next = nextCreate();
    if (!next)
        return EAGAIN;
    if (!g_enabled.load(std::memory_order_relaxed))
        return next(thread, attributes, routine, argument);
    Start* start = claimStart(routine, argument);
    if (!start)
        return next(thread, attributes, routine, argument);
    const int result = next(thread, attributes, trampoline, start);
    if (result != 0)
        releaseStart(start);
    return result;
}
#endif

#endif // __linux__
