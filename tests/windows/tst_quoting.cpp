// The command-line quoting the crash child starts the feedback program with: fixed
// outputs, and the round trip through the system's own splitting.
#include "check.h"
#include "commandline.h"

#include <windows.h>

#include <shellapi.h>

#include <string>
#include <vector>

namespace {

struct QuoteCase
{
    const wchar_t* argument;
    const wchar_t* quoted;
};

std::vector<std::wstring> split(const std::wstring& line)
{
    int count = 0;
    wchar_t** argv = ::CommandLineToArgvW(line.c_str(), &count);
    std::vector<std::wstring> out;
    for (int i = 0; argv && i < count; ++i)
        out.emplace_back(argv[i]);
    ::LocalFree(argv);
    return out;
}

} // namespace

int main()
{
    const QuoteCase cases[] = {
        {L"plain", L"plain"},
        {L"", L"\"\""},
        {L"with space", L"\"with space\""},
        {L"with\ttab", L"\"with\ttab\""},
        {L"C:\\dir\\file", L"C:\\dir\\file"},
        {L"C:\\Program Files\\x", L"\"C:\\Program Files\\x\""},
        {L"C:\\dir with space\\", L"\"C:\\dir with space\\\\\""},
        {L"say \"hi\"", L"\"say \\\"hi\\\"\""},
        {L"a\\\"b", L"\"a\\\\\\\"b\""},
        {L"a\\\\\"b c", L"\"a\\\\\\\\\\\"b c\""},
        {L"a\\\\b c", L"\"a\\\\b c\""},
        {L"\"", L"\"\\\"\""},
    };
    std::vector<std::wstring> arguments;
    for (const QuoteCase& c : cases) {
        CHECK_EQ(zvwin::QuoteArgument(c.argument), std::wstring(c.quoted));
        arguments.emplace_back(c.argument);
    }

    const std::wstring program = L"C:\\Program Files\\ZV Demo\\Feedback.exe";
    const std::wstring line = zvwin::BuildCommandLine(program, arguments);
    const std::vector<std::wstring> back = split(line);
    CHECK_EQ(back.size(), arguments.size() + 1);
    if (back.size() == arguments.size() + 1) {
        CHECK_EQ(back[0], program);
        for (size_t i = 0; i < arguments.size(); ++i)
            CHECK_EQ(back[i + 1], arguments[i]);
    }
    return zvcheck::finish("quoting");
}
