// The crash handler where crashes arrive as signals. Up to the start of the feedback
// program it is async-signal-safe: no allocation, no locks, no Qt; the command line was
// prepared before the crash. What needs Qt follows under a watchdog, and the signal's
// default action ends the process, so its exit status tells what killed it.
#include "crashhandler_p.h"

#if defined(__linux__)
#include "clonevm_p.h"
#include "minidump_linux.h"
#include "threadstacks_p.h"
#endif

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QVariant>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

#include <sched.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace ZVUIFramework {
namespace Crash {

namespace {

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP};
#if !defined(__linux__)
// Large enough for the handler and a stack overflow's aftermath.
constexpr size_t kAltStackSize = 256 * 1024;
#endif
// How long the steps that need Qt may take before the process ends anyway: they may
// wait for a lock the crashed thread held.
constexpr unsigned kWatchdogSeconds = 5;

// A prepared command line: one block holding the argv array and its strings.
struct Command
{
    const char* path = nullptr;
    std::vector<char*> argv;
    std::vector<char> storage;
};

// Published with release semantics; a crash reads whichever command was current. Old
// commands stay alive (and reachable) since a crash on another thread may be reading
// one while the GUI thread prepares the next.
std::atomic<Command*> g_command{nullptr};
std::vector<std::unique_ptr<Command>> g_commands;
std::mutex g_commandsLock; // taken only outside the handler

std::atomic<pid_t> g_handlingThread{0};
std::atomic<int> g_crashSignal{0};

pid_t currentThread()
{
    return pid_t(::syscall(SYS_gettid));
}

void restoreDefault(int sig)
{
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    ::sigaction(sig, &action, nullptr);
}

// Ends the process with \a sig's default action, from the calling thread.
void dieBy(int sig)
{
    restoreDefault(sig);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, sig);
    ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    ::syscall(SYS_tgkill, ::getpid(), currentThread(), sig);
}

// A raw fork: glibc's fork() runs atfork handlers and takes locks, which a crashed
// process may hold.
pid_t rawFork()
{
    return pid_t(::syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0));
}

#if defined(__linux__)
// The launch shares the process's memory instead of copying it, which would take time in
// proportion to the heap: its two children (the one that detaches and the program) run
// on stacks of their own, mapped before any crash.
constexpr size_t kLaunchStackSize = 64 * 1024;
char* g_launchStacks = nullptr; // two stacks, one after the other

struct Launch
{
    const Command* command;
    char* programStack;
};

int runProgram(void* raw)
{
    const Launch* launch = static_cast<const Launch*>(raw);
    ::setsid();
    ::execve(launch->command->path, launch->command->argv.data(), environ);
    ::_exit(127);
}

// Started detached: the program is adopted by init and outlives the host. Both clones
// suspend their parent until the program has replaced itself (CLONE_VFORK), so the
// shared stacks are free again when the launch returns.
int detach(void* raw)
{
    const Launch* launch = static_cast<const Launch*>(raw);
    const pid_t program = pid_t(::clone(runProgram, launch->programStack, CLONE_VM | CLONE_VFORK | SIGCHLD,
                                        const_cast<Launch*>(launch)));
    ::_exit(program > 0 ? 0 : 1);
}
#endif

void startFeedback()
{
    const Command* command = g_command.load(std::memory_order_acquire);
    if (!command || !command->path)
        return;
#if defined(__linux__)
    if (g_launchStacks) {
        Launch launch{command, g_launchStacks + 2 * kLaunchStackSize};
        const pid_t child = pid_t(::clone(detach, g_launchStacks + kLaunchStackSize, CLONE_VM | CLONE_VFORK, &launch));
        if (child > 0) {
            int status = 0;
            while (::waitpid(child, &status, __WALL) < 0 && errno == EINTR) {
            }
            return;
        }
    }
#endif
    const pid_t child = rawFork();
    if (child == 0) {
        const pid_t grandchild = rawFork();
        if (grandchild == 0) {
            ::setsid();
            ::execve(command->path, command->argv.data(), environ);
            ::_exit(127);
        }
        ::_exit(grandchild > 0 ? 0 : 1);
    }
    if (child > 0) {
        int status = 0;
        while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
        }
    }
}

void onWatchdog(int)
{
    dieBy(g_crashSignal.load());
}

void onCrash(int sig, siginfo_t* info, void* context)
{
    const pid_t self = currentThread();
    pid_t expected = 0;
    if (!g_handlingThread.compare_exchange_strong(expected, self)) {
        if (expected == self) {
            // A fault while handling one: straight to the default action.
            dieBy(sig);
            return;
        }
        // Another thread is reporting a crash already and will end the process.
        for (;;)
            ::pause();
    }
    g_crashSignal.store(sig);

#if defined(__linux__)
    Minidump::WriteLinuxMinidump("crashcore.dmp", sig, info, static_cast<const ucontext_t*>(context), self);
#endif
    startFeedback();

    struct sigaction watchdog;
    std::memset(&watchdog, 0, sizeof watchdog);
    watchdog.sa_handler = onWatchdog;
    sigemptyset(&watchdog.sa_mask);
    ::sigaction(SIGALRM, &watchdog, nullptr);
    ::alarm(kWatchdogSeconds);

    CrashContext crash{sig, info, static_cast<ucontext_t*>(context)};
    RunHostSteps(&crash);

    ::alarm(0);
    dieBy(sig);
}

} // namespace

void Install()
{
    static bool installed = false;
    if (installed)
        return;
    installed = true;

    // The handler must run on a stack of its own, or a stack overflow could not be
    // reported. On Linux every thread gets one, unless the host set the application
    // property "CrashHandleAllThreads" to false: then only the installing thread has one.
#if defined(__linux__)
    const QVariant allThreads = qApp ? qApp->property("CrashHandleAllThreads") : QVariant();
    const bool everyThread = !allThreads.isValid() || allThreads.toBool();
    if (!everyThread || !InstallThreadStacks())
        InstallOwnStack();
#else
    void* stack = ::mmap(nullptr, kAltStackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (stack != MAP_FAILED) {
        stack_t alt;
        alt.ss_sp = stack;
        alt.ss_size = kAltStackSize;
        alt.ss_flags = 0;
        ::sigaltstack(&alt, nullptr);
    }
#endif

#if defined(__linux__) && ZVCORE_CLONE_SHARES_MEMORY
    void* launchStacks = ::mmap(nullptr, 2 * kLaunchStackSize, PROT_READ | PROT_WRITE,
                                MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (launchStacks != MAP_FAILED)
        g_launchStacks = static_cast<char*>(launchStacks);
#endif

    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_sigaction = onCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (int sig : kSignals)
        sigaddset(&action.sa_mask, sig);
    for (int sig : kSignals)
        ::sigaction(sig, &action, nullptr);
}

void PrepareFeedback(const QString& program, const QStringList& arguments)
{
    auto command = std::make_unique<Command>();
    QList<QByteArray> parts{QFile::encodeName(program)};
    for (const QString& argument : arguments)
        parts.append(argument.toLocal8Bit());
    std::vector<size_t> offsets;
    for (const QByteArray& part : parts) {
        offsets.push_back(command->storage.size());
        command->storage.insert(command->storage.end(), part.cbegin(), part.cend());
        command->storage.push_back('\0');
    }
    for (size_t offset : offsets)
        command->argv.push_back(command->storage.data() + offset);
    command->argv.push_back(nullptr);
    command->path = command->argv.front();

    std::lock_guard<std::mutex> lock(g_commandsLock);
    g_command.store(command.get(), std::memory_order_release);
    g_commands.push_back(std::move(command));
}

} // namespace Crash
} // namespace ZVUIFramework
