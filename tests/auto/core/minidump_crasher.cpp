// Crashes on purpose and writes a minidump of itself from the SIGSEGV handler, for
// tst_minidump_linux.
//
//   zv_minidump_crasher [--threads N] [--deny ptrace|clone] [--undumpable]
//
// A second thread calls crash_here(), which writes through a null pointer, while the
// main thread waits in main_waits() and N more threads idle. The handler runs on a 64 KiB
// alternate stack, writes crashcore.dmp into the current directory, restores the default
// action and returns, so the process then dies by SIGSEGV. Before crashing, the program
// writes crasher.info (its pid, the crashing thread, the address ranges of crash_here and
// main_waits); the handler writes handler.out (the writer's result and how many
// allocations happened while it ran, in this process or its helper).
//
// --deny takes a system call away from the crashing thread, and so from anything it
// starts, and --undumpable hides the process from other processes of its user, both to
// exercise the writer's fallbacks.

#include "minidump_linux.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <link.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <signal.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <new>

// The program is built with hidden visibility; what others must see is named here.
#define CRASHER_EXPORT __attribute__((visibility("default")))

namespace {

// The allocation count lives in a shared mapping so that the writer's helper process,
// which starts as a copy of this one, counts into the same place.
std::atomic<long>* g_allocations = nullptr;
volatile sig_atomic_t g_counting = 0;

void CountAllocation()
{
    if (g_counting && g_allocations)
        g_allocations->fetch_add(1, std::memory_order_relaxed);
}

pthread_barrier_t g_ready;
long g_denied = -1;

} // namespace

// The allocator entry points, wrapped to count; every other library's calls land here too.
extern "C" void* __libc_malloc(size_t);
extern "C" void* __libc_calloc(size_t, size_t);
extern "C" void* __libc_realloc(void*, size_t);
extern "C" void __libc_free(void*);

extern "C" CRASHER_EXPORT void* malloc(size_t n) noexcept
{
    CountAllocation();
    return __libc_malloc(n);
}

extern "C" CRASHER_EXPORT void* calloc(size_t n, size_t size) noexcept
{
    CountAllocation();
    return __libc_calloc(n, size);
}

extern "C" CRASHER_EXPORT void* realloc(void* p, size_t n) noexcept
{
    CountAllocation();
    return __libc_realloc(p, n);
}

extern "C" CRASHER_EXPORT void free(void* p) noexcept
{
    __libc_free(p);
}

extern "C" CRASHER_EXPORT __attribute__((noinline)) void crash_here()
{
    // A volatile pointer: the compiler must not see the null and turn the store into a trap.
    volatile int* volatile target = nullptr;
    *target = 42;
    __asm__ volatile("" ::: "memory");
}

extern "C" CRASHER_EXPORT __attribute__((noinline)) void main_waits(pthread_t crasher)
{
    pthread_join(crasher, nullptr);
    __asm__ volatile("" ::: "memory");
}

namespace {

char* AppendNumber(char* p, long v)
{
    char tmp[24];
    int n = 0;
    if (v < 0) {
        *p++ = '-';
        v = -v;
    }
    do {
        tmp[n++] = char('0' + v % 10);
        v /= 10;
    } while (v);
    while (n)
        *p++ = tmp[--n];
    return p;
}

void OnCrash(int signo, siginfo_t* info, void* context)
{
    g_counting = 1;
    const bool ok = ZVUIFramework::Minidump::WriteLinuxMinidump(
        "crashcore.dmp", signo, info, static_cast<const ucontext_t*>(context), pid_t(syscall(SYS_gettid)));
    g_counting = 0;

    char text[64];
    char* p = text;
    memcpy(p, "ok=", 3);
    p = AppendNumber(p + 3, ok ? 1 : 0);
    memcpy(p, " allocations=", 13);
    p = AppendNumber(p + 13, g_allocations->load());
    *p++ = '\n';
    const int fd = open("handler.out", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd >= 0) {
        ssize_t unused = write(fd, text, size_t(p - text));
        (void)unused;
        close(fd);
    }

    // Returning re-runs the store, which now ends the process by SIGSEGV.
    struct sigaction dfl = {};
    dfl.sa_handler = SIG_DFL;
    sigaction(SIGSEGV, &dfl, nullptr);
}

// The address range of one of our functions, through the dynamic symbol table (the
// program exports its symbols).
void SymbolRange(void* function, unsigned long* start, unsigned long* size)
{
    Dl_info info = {};
    void* extra = nullptr;
    *start = reinterpret_cast<unsigned long>(function);
    *size = 0;
    if (dladdr1(function, &info, &extra, RTLD_DL_SYMENT) && extra)
        *size = static_cast<const ElfW(Sym)*>(extra)->st_size;
}

void Deny(long nr)
{
    struct sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(nr), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | (EPERM & SECCOMP_RET_DATA)),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    struct sock_fprog program = {static_cast<unsigned short>(sizeof filter / sizeof filter[0]), filter};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        perror("seccomp");
        _exit(3);
    }
}

void* IdleThread(void*)
{
    pthread_barrier_wait(&g_ready);
    for (;;)
        pause();
    return nullptr;
}

void* CrashThread(void*)
{
    stack_t altStack = {};
    altStack.ss_size = 64 * 1024;
    altStack.ss_sp = mmap(nullptr, altStack.ss_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (altStack.ss_sp == MAP_FAILED || sigaltstack(&altStack, nullptr) != 0) {
        perror("sigaltstack");
        _exit(3);
    }

    pthread_barrier_wait(&g_ready);

    unsigned long crashStart, crashSize, waitStart, waitSize;
    SymbolRange(reinterpret_cast<void*>(&crash_here), &crashStart, &crashSize);
    SymbolRange(reinterpret_cast<void*>(&main_waits), &waitStart, &waitSize);
    const char* secret = getenv("ZV_MINIDUMP_SECRET");
    FILE* f = fopen("crasher.info", "w");
    if (!f)
        _exit(3);
    fprintf(f, "pid %ld\ncrash_tid %ld\ncrash_here %lx %lx\nmain_waits %lx %lx\nsecret_at %lx\n",
            long(getpid()), long(syscall(SYS_gettid)), crashStart, crashSize, waitStart, waitSize,
            reinterpret_cast<unsigned long>(secret));
    fclose(f);

    // Give the main thread time to settle in pthread_join.
    usleep(100 * 1000);
    if (g_denied >= 0)
        Deny(g_denied);
    crash_here();
    return nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    int idle = 0;
    bool undumpable = false;
    for (int i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "--threads") == 0 && i + 1 < argc) {
            idle = atoi(argv[++i]);
        } else if (strcmp(argv[i], "--deny") == 0 && i + 1 < argc) {
            ++i;
            g_denied = strcmp(argv[i], "ptrace") == 0 ? SYS_ptrace : strcmp(argv[i], "clone") == 0 ? SYS_clone : -1;
        } else if (strcmp(argv[i], "--undumpable") == 0) {
            undumpable = true;
        } else {
            fprintf(stderr, "usage: %s [--threads N] [--deny ptrace|clone] [--undumpable]\n", argv[0]);
            return 2;
        }
    }

    // The test wants the signal, not a core file.
    struct rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    if (undumpable)
        prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);

    void* shared = mmap(nullptr, sizeof(std::atomic<long>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED)
        return 3;
    g_allocations = new (shared) std::atomic<long>(0);

    struct sigaction action = {};
    action.sa_sigaction = OnCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    sigaction(SIGSEGV, &action, nullptr);

    pthread_barrier_init(&g_ready, nullptr, unsigned(idle + 2));
    for (int i = 0; i < idle; ++i) {
        pthread_t t;
        pthread_create(&t, nullptr, IdleThread, nullptr);
    }
    pthread_t crasher;
    pthread_create(&crasher, nullptr, CrashThread, nullptr);
    pthread_barrier_wait(&g_ready);
    main_waits(crasher);
    return 1; // not reached: the crash ends the process
}
