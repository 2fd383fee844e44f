// zvwinenv: starts a program with environment variables set, and ends with its exit code.
//
//   zvwinenv NAME=VALUE... -- program [arguments...]
//
// A VALUE may name variables as %NAME%, e.g. PATH=C:\\tools;%PATH%. The Windows build's tests run under Wine, which does not hand variables such as
// QT_QPA_PLATFORM from the Linux side to Windows programs; this sets them inside.
#include "commandline.h"

#include <windows.h>

#include <cwchar>
#include <string>

int wmain(int argc, wchar_t **argv)
{
    int index = 1;
    for (; index < argc && std::wcscmp(argv[index], L"--") != 0; ++index) {
        std::wstring pair(argv[index]);
        const size_t equals = pair.find(L'=');
        if (equals == std::wstring::npos || equals == 0) {
            std::fwprintf(stderr, L"zvwinenv: '%ls' is not NAME=VALUE\n", argv[index]);
            return 125;
        }
        const std::wstring value = pair.substr(equals + 1);
        std::wstring expanded(ExpandEnvironmentStringsW(value.c_str(), nullptr, 0), L'\0');
        if (expanded.empty() || !ExpandEnvironmentStringsW(value.c_str(), &expanded[0], DWORD(expanded.size())))
            expanded = value;
        else
            expanded.resize(expanded.size() - 1);
        SetEnvironmentVariableW(pair.substr(0, equals).c_str(), expanded.c_str());
    }
    if (index + 1 >= argc) {
        std::fwprintf(stderr, L"usage: zvwinenv NAME=VALUE... -- program [arguments...]\n");
        return 125;
    }
    std::wstring commandLine;
    for (int i = index + 1; i < argc; ++i) {
        if (!commandLine.empty())
            commandLine.push_back(L' ');
        commandLine += zvwin::QuoteArgument(argv[i]);
    }
    // The program writes where this one does: its standard handles are passed on.
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    const DWORD ids[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    HANDLE* targets[] = {&startup.hStdInput, &startup.hStdOutput, &startup.hStdError};
    for (int i = 0; i < 3; ++i) {
        const HANDLE handle = GetStdHandle(ids[i]);
        if (handle && handle != INVALID_HANDLE_VALUE)
            SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
        *targets[i] = handle;
    }
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(argv[index + 1], &commandLine[0], nullptr, nullptr, TRUE, 0, nullptr,
                        nullptr, &startup, &process)) {
        std::fwprintf(stderr, L"zvwinenv: cannot start %ls (error %lu)\n", argv[index + 1],
                      GetLastError());
        return 126;
    }
    CloseHandle(process.hThread);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 1;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hProcess);
    return static_cast<int>(code);
}
