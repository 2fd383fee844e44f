// The crashing host of the crash tests: installs the library's filter, then crashes in
// its working directory.
//
//   zv_crash_child <mode> [<crash>]
//     after    the filter with a host side: starts the feedback program beside this one
//              with the crash arguments, then writes "callback.txt" with the exception code
//     none     the filter without a host side
//     intrude  as after, then another filter tries to take over; the outcome of that
//              SetUnhandledExceptionFilter call goes to "intrude-result.txt"
//     faulty   as after, but the host side faults after starting the feedback program
//   <crash>, a null pointer write on the main thread unless one of:
//     thread       on a second thread
//     two-threads  on two threads at the same moment
//     overflow     a stack overflow on the main thread
//     overflow-thread  a stack overflow on a second thread
//     abort        abort()
//     assert       a failed assert, in a program that keeps its asserts
//     overflow-early  a stack overflow on a thread started before the filter
//     double-free  a heap block freed twice, then a null pointer write
//     heap-smash   the heap's records around a block overwritten and the block freed
// A host that keeps its asserts in its release build.
#undef NDEBUG
#include <cassert>

#include "commandline.h"
#include "crashfilter_win.h"
#include "lanesupport.h"
#include "launcharguments.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void writeText(const wchar_t* name, const std::string& text)
{
    HANDLE file = ::CreateFileW(name, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return;
    DWORD written = 0;
    ::WriteFile(file, text.data(), DWORD(text.size()), &written, nullptr);
    ::CloseHandle(file);
}

// The values the crash tests expect back from the feedback stand-in: an empty one, ones
// with spaces, quotes and backslashes, and one beyond ASCII.
ZVUIFramework::FeedbackFields crashFields()
{
    ZVUIFramework::FeedbackFields fields;
    fields.receiveEmailOnCrash = u"crash@example.com";
    fields.fbReceiveEmailAccount = u"feedback@example.com";
    fields.applicationFilePath = u"C:\\Program Files\\ZV Demo\\demo.exe";
    fields.userEmailInfo = u"";
    fields.sendEmailAccount = u"a\\\"b\\";
    fields.sendEmailPwd = u"p\u00e4ss w\u00f6rd";
    return fields;
}

// Starts the feedback stand-in in crash mode and waits for it: the test reads what the
// stand-in recorded as soon as this process is gone.
void startFeedbackAndWait()
{
    const std::wstring program =
        (zvwin::ProgramDirectory() / zvwin::Wide(ZVUIFramework::kFeedbackProgram)).wstring();
    std::wstring line =
        zvwin::BuildCommandLine(program, zvwin::Wide(ZVUIFramework::FeedbackArguments(crashFields(), true)));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (::CreateProcessW(program.c_str(), &line[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                         &process)) {
        ::WaitForSingleObject(process.hProcess, 30000);
        ::CloseHandle(process.hThread);
        ::CloseHandle(process.hProcess);
    }
}

void afterDump(EXCEPTION_POINTERS* info)
{
    startFeedbackAndWait();
    char code[16] = "none";
    if (info && info->ExceptionRecord)
        std::snprintf(code, sizeof code, "%08lx", static_cast<unsigned long>(info->ExceptionRecord->ExceptionCode));
    writeText(L"callback.txt", code);
}

void afterDumpFaulty(EXCEPTION_POINTERS* info)
{
    startFeedbackAndWait();
    (void)info;
    volatile int* volatile nowhere = nullptr;
    *nowhere = 7;
}

LONG WINAPI intruder(EXCEPTION_POINTERS*)
{
    writeText(L"intruder.txt", "intruder");
    return EXCEPTION_EXECUTE_HANDLER;
}

// Both volatile: a volatile pointer hides the null from the compiler (which would turn
// the store into a trap instruction), and a volatile target keeps it from dropping the
// store as dead. The point is a real access violation.
__attribute__((noinline)) void crashHere()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 42;
}

volatile LONG g_arrived = 0;

DWORD WINAPI crashingThread(void*)
{
    crashHere();
    return 0;
}

DWORD WINAPI crashingTogether(void*)
{
    ::InterlockedIncrement(&g_arrived);
    while (g_arrived < 2) {
    }
    crashHere();
    return 0;
}

__attribute__((noinline)) int overflow(int depth)
{
    // Never true; it keeps the compiler from flagging the recursion as endless.
    if (depth < 0)
        return 0;
    volatile char frame[4096];
    frame[0] = char(depth);
    return overflow(depth + 1) + frame[0];
}

DWORD WINAPI overflowingThread(void*)
{
    return DWORD(overflow(0));
}

void crash(const char* how)
{
    if (std::strcmp(how, "thread") == 0) {
        HANDLE thread = ::CreateThread(nullptr, 0, &crashingThread, nullptr, 0, nullptr);
        ::WaitForSingleObject(thread, INFINITE);
    } else if (std::strcmp(how, "two-threads") == 0) {
        HANDLE threads[2] = {::CreateThread(nullptr, 0, &crashingTogether, nullptr, 0, nullptr),
                             ::CreateThread(nullptr, 0, &crashingTogether, nullptr, 0, nullptr)};
        ::WaitForMultipleObjects(2, threads, TRUE, INFINITE);
    } else if (std::strcmp(how, "overflow") == 0) {
        overflow(0);
    } else if (std::strcmp(how, "overflow-thread") == 0) {
        HANDLE thread = ::CreateThread(nullptr, 0, &overflowingThread, nullptr, 0, nullptr);
        ::WaitForSingleObject(thread, INFINITE);
    } else if (std::strcmp(how, "abort") == 0) {
        std::abort();
    } else if (std::strcmp(how, "assert") == 0) {
        volatile bool holds = false;
        assert(holds);
    } else if (std::strcmp(how, "double-free") == 0) {
        void* volatile block = ::HeapAlloc(::GetProcessHeap(), 0, 64);
        ::HeapFree(::GetProcessHeap(), 0, block);
        ::HeapFree(::GetProcessHeap(), 0, block);
        // The heap may take the second free without a word; the crash comes anyway.
    } else if (std::strcmp(how, "heap-smash") == 0) {
        // The heap's own bookkeeping around a block overwritten, as a buffer overrun
        // does it, and the block freed.
        char* volatile block = static_cast<char*>(::HeapAlloc(::GetProcessHeap(), 0, 64));
        std::memset(block - 16, 0x5a, 16 + 64 + 32);
        ::HeapFree(::GetProcessHeap(), 0, block);
    }
    crashHere();
}

} // namespace

int main(int argc, char** argv)
{
    const char* mode = argc > 1 ? argv[1] : "after";
    if (std::strcmp(mode, "none") == 0) {
        ZVUIFramework::WinCrash::InstallFilter(nullptr);
    } else if (std::strcmp(mode, "after") == 0 || std::strcmp(mode, "intrude") == 0) {
        ZVUIFramework::WinCrash::InstallFilter(&afterDump);
    } else if (std::strcmp(mode, "faulty") == 0) {
        ZVUIFramework::WinCrash::InstallFilter(&afterDumpFaulty);
    } else {
        std::fprintf(stderr, "unknown mode %s\n", mode);
        return 2;
    }
    if (std::strcmp(mode, "intrude") == 0) {
        const LPTOP_LEVEL_EXCEPTION_FILTER previous = ::SetUnhandledExceptionFilter(&intruder);
        writeText(L"intrude-result.txt", previous ? "replaced" : "refused");
    }

    crash(argc > 2 ? argv[2] : "");
    return 0;
}
