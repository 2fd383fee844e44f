// The crashing host of the crash tests: installs the library's filter, then dereferences
// a null pointer in its working directory.
//
//   zv_crash_child <mode>
//     after    the filter with a host side: starts the feedback program beside this one
//              with the crash arguments, then writes "callback.txt" with the exception code
//     none     the filter without a host side
//     intrude  as after, then another filter tries to take over; the outcome of that
//              SetUnhandledExceptionFilter call goes to "intrude-result.txt"
#include "commandline.h"
#include "crashfilter_win.h"
#include "lanesupport.h"
#include "launcharguments.h"

#include <cstdio>
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

void afterDump(EXCEPTION_POINTERS* info)
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
        // The test reads what the stand-in recorded as soon as this process is gone.
        ::WaitForSingleObject(process.hProcess, 30000);
        ::CloseHandle(process.hThread);
        ::CloseHandle(process.hProcess);
    }
    char code[16] = "none";
    if (info && info->ExceptionRecord)
        std::snprintf(code, sizeof code, "%08lx", static_cast<unsigned long>(info->ExceptionRecord->ExceptionCode));
    writeText(L"callback.txt", code);
}

LONG WINAPI intruder(EXCEPTION_POINTERS*)
{
    writeText(L"intruder.txt", "intruder");
    return EXCEPTION_EXECUTE_HANDLER;
}

} // namespace

int main(int argc, char** argv)
{
    const char* mode = argc > 1 ? argv[1] : "after";
    if (std::strcmp(mode, "none") == 0) {
        ZVUIFramework::WinCrash::InstallFilter(nullptr);
    } else if (std::strcmp(mode, "after") == 0 || std::strcmp(mode, "intrude") == 0) {
        ZVUIFramework::WinCrash::InstallFilter(&afterDump);
    } else {
        std::fprintf(stderr, "unknown mode %s\n", mode);
        return 2;
    }
    if (std::strcmp(mode, "intrude") == 0) {
        const LPTOP_LEVEL_EXCEPTION_FILTER previous = ::SetUnhandledExceptionFilter(&intruder);
        writeText(L"intrude-result.txt", previous ? "replaced" : "refused");
    }

    // Both volatile: a volatile pointer hides the null from the compiler (which would turn
    // the store into a trap instruction), and a volatile target keeps it from dropping
    // the store as dead. The point is a real access violation.
    volatile int* volatile nowhere = nullptr;
    *nowhere = 42;
    return 0;
}
