#include "crashfilter_win.h"

#include <csignal>
#include <cstdlib>

namespace ZVUIFramework {
namespace WinCrash {

namespace {

AfterDump s_after = nullptr;

// The thread that reports the crash: the first to enter the filter. Any other thread
// that faults meanwhile waits for the process to end, so that a crash on several
// threads gives one dump and one report.
volatile LONG s_owner = 0;
// Set while the owner's report runs: a fault during it is a fault of the report itself.
volatile LONG s_busy = 0;
// The thread that reports on a fresh stack after a stack overflow.
volatile LONG s_helper = 0;

using MiniDumpWriteDumpFunction = BOOL(WINAPI*)(HANDLE process, DWORD processId, HANDLE file, MINIDUMP_TYPE type,
                                                PMINIDUMP_EXCEPTION_INFORMATION exception,
                                                PMINIDUMP_USER_STREAM_INFORMATION userStreams,
                                                PMINIDUMP_CALLBACK_INFORMATION callback);

// dbghelp is loaded only when a dump is due: the library then needs no import of it, and
// a system without it still gets the host side of the crash handling.
MiniDumpWriteDumpFunction miniDumpWriteDump()
{
    HMODULE dbghelp = ::LoadLibraryW(L"dbghelp.dll");
    if (!dbghelp)
        return nullptr;
    return reinterpret_cast<MiniDumpWriteDumpFunction>(
        reinterpret_cast<void*>(::GetProcAddress(dbghelp, "MiniDumpWriteDump")));
}

wchar_t asciiLower(wchar_t c)
{
    return (c >= L'A' && c <= L'Z') ? wchar_t(c - L'A' + L'a') : c;
}

// True when the file name of \a path, without directory and extension, is "ntdll" in
// any case. Written out by hand: this runs inside a crashed process, where the C
// runtime's locale machinery is better left alone.
bool isNtdll(const wchar_t* path)
{
    if (!path)
        return false;
    const wchar_t* name = path;
    const wchar_t* dot = nullptr;
    for (const wchar_t* p = path; *p; ++p) {
        if (*p == L'\\' || *p == L'/') {
            name = p + 1;
            dot = nullptr;
        } else if (*p == L'.') {
            dot = p;
        }
    }
    const wchar_t* end = dot ? dot : name;
    if (!dot)
        while (*end)
            ++end;
    static const wchar_t wanted[] = L"ntdll";
    const wchar_t* w = wanted;
    for (const wchar_t* p = name; p != end; ++p, ++w) {
        if (!*w || asciiLower(*p) != *w)
            return false;
    }
    return *w == L'\0';
}

[[noreturn]] void endNow(EXCEPTION_POINTERS* info)
{
    const UINT code = info && info->ExceptionRecord ? UINT(info->ExceptionRecord->ExceptionCode) : 1u;
    ::TerminateProcess(::GetCurrentProcess(), code);
    for (;;)
        ::Sleep(INFINITE);
}

[[noreturn]] void waitForTheEnd()
{
    for (;;)
        ::Sleep(INFINITE);
}

void report(EXCEPTION_POINTERS* info, DWORD threadId)
{
    HANDLE file = ::CreateFileW(L"crashcore.dmp", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_WRITE, nullptr,
                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file && file != INVALID_HANDLE_VALUE) {
        MINIDUMP_EXCEPTION_INFORMATION exceptionInformation{threadId, info, FALSE};
        MINIDUMP_CALLBACK_INFORMATION callbackInformation{&DumpCallback, nullptr};
        if (const MiniDumpWriteDumpFunction write = miniDumpWriteDump()) {
            write(::GetCurrentProcess(), ::GetCurrentProcessId(), file, MiniDumpNormal,
                  info ? &exceptionInformation : nullptr, nullptr, &callbackInformation);
        }
        ::CloseHandle(file);
    }
    if (s_after)
        s_after(info);
}

struct Report
{
    EXCEPTION_POINTERS* info;
    DWORD threadId;
};

DWORD WINAPI reportOnFreshStack(void* parameter)
{
    const Report* r = static_cast<const Report*>(parameter);
    report(r->info, r->threadId);
    return 0;
}

} // namespace

namespace {

// abort() (and so a failed assert, and Qt's qFatal) raises SIGABRT and then ends the
// process through the C runtime, past every exception filter. Its handler turns it into
// an exception that the filter reports like any other; the report ends the process.
void __cdecl onAbort(int)
{
    ::RaiseException(kAbortExceptionCode, EXCEPTION_NONCONTINUABLE, 0, nullptr);
}

} // namespace

void InstallFilter(AfterDump after)
{
    s_after = after;
    ::SetUnhandledExceptionFilter(&Filter);
    Seal();
#if defined(_MSC_VER)
    // Microsoft's C runtime would otherwise report an abort to the system itself, or end
    // the process with a fast fail that no filter sees.
    _set_abort_behavior(0, _WRITE_ABORT_MSG | _CALL_REPORTFAULT);
#endif
    std::signal(SIGABRT, &onAbort);
    GuaranteeStack();
}

void GuaranteeStack()
{
    // Only a thread with room to spare: on a thread created with a small stack the
    // guarantee would take what the thread itself needs.
    using LimitsFunction = VOID(WINAPI*)(PULONG_PTR low, PULONG_PTR high);
    static const auto limits = reinterpret_cast<LimitsFunction>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "GetCurrentThreadStackLimits")));
    if (!limits)
        return;
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    limits(&low, &high);
    if (high <= low || high - low < 8 * ULONG_PTR(kGuaranteedStack))
        return;
    ULONG size = kGuaranteedStack;
    ::SetThreadStackGuarantee(&size);
}

void Seal()
{
    HMODULE kernel = ::LoadLibraryA("kernel32.dll");
    if (!kernel)
        return;
    void* address = reinterpret_cast<void*>(::GetProcAddress(kernel, "SetUnhandledExceptionFilter"));
    if (!address)
        return;

    // xor eax,eax; ret: every caller gets null back at once, before the function could
    // touch the filter. Four nops fill the seven bytes that are written.
    static const unsigned char patch[7] = {0x33, 0xC0, 0xC3, 0x90, 0x90, 0x90, 0x90};

    // The two VirtualProtectEx calls pass a null process handle on purpose and are to stay
    // exactly so. With that handle they fail and change nothing (the "restore" hands back
    // whatever the first call left in oldProtect), so they are harmless. The patch does
    // not depend on them: WriteProcessMemory makes the code page writable for the copy
    // and restores its protection by itself.
    DWORD oldProtect = 0;
    ::VirtualProtectEx(nullptr, address, sizeof patch, PAGE_READWRITE, &oldProtect);
    SIZE_T written = 0;
    ::WriteProcessMemory(::GetCurrentProcess(), address, patch, sizeof patch, &written);
    DWORD ignored = 0;
    ::VirtualProtectEx(nullptr, address, sizeof patch, oldProtect, &ignored);
}

LONG WINAPI Filter(EXCEPTION_POINTERS* info)
{
    const DWORD self = ::GetCurrentThreadId();
    const LONG owner = ::InterlockedCompareExchange(&s_owner, LONG(self), 0);
    if (owner != 0 && owner != LONG(self)) {
        // The helper's fault is the report's own.
        if (s_helper == LONG(self))
            endNow(info);
        waitForTheEnd();
    }
    // A fault while this thread reports: the system would call the filter again and
    // again; the process ends at once instead, with the new fault's code.
    if (::InterlockedExchange(&s_busy, 1) == 1)
        endNow(info);

    // After a stack overflow, what is left of the stack is too little for a dump, let
    // alone for starting a program: the report runs on a thread of its own, and names
    // the overflowed thread as the one that crashed.
    const bool overflow = info && info->ExceptionRecord && info->ExceptionRecord->ExceptionCode == EXCEPTION_STACK_OVERFLOW;
    HANDLE helper = nullptr;
    if (overflow) {
        static Report r;
        r = Report{info, self};
        DWORD helperId = 0;
        helper = ::CreateThread(nullptr, 1024 * 1024, &reportOnFreshStack, &r, CREATE_SUSPENDED, &helperId);
        if (helper) {
            s_helper = LONG(helperId);
            ::ResumeThread(helper);
            ::WaitForSingleObject(helper, INFINITE);
            ::CloseHandle(helper);
        }
    }
    if (!helper)
        report(info, self);

    ::InterlockedExchange(&s_busy, 0);
    return EXCEPTION_EXECUTE_HANDLER;
}

BOOL CALLBACK DumpCallback(PVOID /*param*/, const PMINIDUMP_CALLBACK_INPUT input, PMINIDUMP_CALLBACK_OUTPUT output)
{
    if (!input || !output)
        return FALSE;
    switch (input->CallbackType) {
    case ModuleCallback:
        // Data segments make a dump large; ntdll's hold the loader and heap state that
        // a crash analysis needs, so only it keeps them (when the dump type asks for
        // them at all).
        if (!isNtdll(input->Module.FullPath))
            output->ModuleWriteFlags &= ~ULONG(ModuleWriteDataSeg);
        return TRUE;
    case ThreadCallback:
    case ThreadExCallback:
    case IncludeThreadCallback:
    case IncludeModuleCallback:
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace WinCrash
} // namespace ZVUIFramework
