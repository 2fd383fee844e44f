// Assertions for the Windows lane's plain C++ tests. A failed check prints where and
// what, and the test goes on, so that one run shows every broken case; the exit code of
// main comes from zvcheck::finish().
#ifndef ZVWIN_CHECK_H
#define ZVWIN_CHECK_H

#include <cstdio>
#include <sstream>
#include <string>
#include <type_traits>

namespace zvcheck {

inline int& failures()
{
    static int count = 0;
    return count;
}

inline std::string show(const std::string& s) { return "\"" + s + "\""; }
inline std::string show(const char* s) { return s ? show(std::string(s)) : std::string("(null)"); }
inline std::string show(const std::wstring& s)
{
    std::string out = "L\"";
    for (wchar_t c : s)
        out += (c >= 0x20 && c < 0x7f) ? char(c) : '?';
    return out + "\"";
}
inline std::string show(bool b) { return b ? "true" : "false"; }
template <typename T>
std::string show(const T& value)
{
    std::ostringstream out;
    if constexpr (std::is_integral_v<T> || std::is_enum_v<T>)
        out << std::showbase << std::hex << static_cast<unsigned long long>(value);
    else
        out << value;
    return out.str();
}

inline bool check(bool ok, const char* what, const char* file, int line)
{
    if (!ok) {
        ++failures();
        std::printf("FAIL %s:%d: %s\n", file, line, what);
        std::fflush(stdout);
    }
    return ok;
}

template <typename A, typename B>
bool equal(const A& actual, const B& expected, const char* a, const char* b, const char* file, int line)
{
    const bool ok = actual == expected;
    if (!ok) {
        ++failures();
        std::printf("FAIL %s:%d: %s == %s\n    actual:   %s\n    expected: %s\n", file, line, a, b,
                    show(actual).c_str(), show(expected).c_str());
        std::fflush(stdout);
    }
    return ok;
}

inline int finish(const char* name)
{
    std::printf("%s: %s (%d failed)\n", name, failures() ? "FAILED" : "passed", failures());
    return failures() ? 1 : 0;
}

} // namespace zvcheck

#define CHECK(cond) zvcheck::check(bool(cond), #cond, __FILE__, __LINE__)
#define CHECK_EQ(actual, expected) zvcheck::equal((actual), (expected), #actual, #expected, __FILE__, __LINE__)

#endif // ZVWIN_CHECK_H
