#include "commandline.h"

namespace zvwin {

std::wstring QuoteArgument(const std::wstring& argument)
{
    if (!argument.empty() && argument.find_first_of(L" \t\n\v\"") == std::wstring::npos)
        return argument;

    std::wstring quoted = L"\"";
    size_t backslashes = 0;
    for (wchar_t c : argument) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        if (c == L'"') {
            // 2n backslashes give n, and the odd one makes the quote a literal.
            quoted.append(2 * backslashes + 1, L'\\');
        } else {
            // Backslashes that precede anything but a quote are literal.
            quoted.append(backslashes, L'\\');
        }
        backslashes = 0;
        quoted += c;
    }
    // Before the closing quote, so that it still closes.
    quoted.append(2 * backslashes, L'\\');
    quoted += L'"';
    return quoted;
}

std::wstring BuildCommandLine(const std::wstring& program, const std::vector<std::wstring>& arguments)
{
    std::wstring line = L"\"" + program + L"\"";
    for (const std::wstring& argument : arguments)
        line += L" " + QuoteArgument(argument);
    return line;
}

std::wstring Wide(const std::u16string& text)
{
    return std::wstring(text.begin(), text.end());
}

std::vector<std::wstring> Wide(const std::vector<std::u16string>& texts)
{
    std::vector<std::wstring> out;
    out.reserve(texts.size());
    for (const std::u16string& text : texts)
        out.push_back(Wide(text));
    return out;
}

} // namespace zvwin
