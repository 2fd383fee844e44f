// Command lines for CreateProcessW. Windows hands a program one string; the program's
// runtime (or CommandLineToArgvW) splits it again, so each argument has to be quoted
// such that the split gives it back unchanged.
#ifndef ZVWIN_COMMANDLINE_H
#define ZVWIN_COMMANDLINE_H

#include <string>
#include <vector>

namespace zvwin {

// \a argument as one token of a command line: unchanged when it is not empty and has no
// space, tab, newline, vertical tab or quote; otherwise in quotes, with each quote
// escaped by a backslash and the backslashes right before a quote (or before the
// closing quote) doubled.
std::wstring QuoteArgument(const std::wstring& argument);

// The program in quotes (its path is taken literally, without escapes), then each
// argument quoted with QuoteArgument, separated by single spaces.
std::wstring BuildCommandLine(const std::wstring& program, const std::vector<std::wstring>& arguments);

// UTF-16 as the library keeps it to wchar_t strings, which are UTF-16 on Windows.
std::wstring Wide(const std::u16string& text);
std::vector<std::wstring> Wide(const std::vector<std::u16string>& texts);

} // namespace zvwin

#endif // ZVWIN_COMMANDLINE_H
