// A stand-in for a companion program (the feedback program or the updater), built only
// for the tests. Each start appends one line to "<its own name>-args.jsonl" beside it:
// a JSON array of the arguments it received, empty ones included. Plain C++, so that the
// same source builds for Linux and, with MinGW, for Windows.
#include <cstdio>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <climits>
#include <unistd.h>
#endif

namespace {

std::string jsonString(const std::string& utf8)
{
    std::string out = "\"";
    for (unsigned char c : utf8) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", c);
                out += buf;
            } else {
                out += char(c);
            }
        }
    }
    return out + "\"";
}

void record(const std::string& self, const std::vector<std::string>& arguments)
{
    const std::string path = self + "-args.jsonl";
    std::string line = "[";
    for (size_t i = 0; i < arguments.size(); ++i) {
        if (i)
            line += ",";
        line += jsonString(arguments[i]);
    }
    line += "]\n";
    if (FILE* f = std::fopen(path.c_str(), "ab")) {
        std::fwrite(line.data(), 1, line.size(), f);
        std::fclose(f);
    }
}

} // namespace

#if defined(_WIN32)
int main()
{
    int argc = 0;
    wchar_t** argv = CommandLineToArgvW(GetCommandLineW(), &argc);
    const auto utf8 = [](const wchar_t* w) {
        const int n = WideCharToMultiByte(CP_UTF8, 0, w, -1, nullptr, 0, nullptr, nullptr);
        std::string s(n > 0 ? size_t(n - 1) : 0, '\0');
        if (n > 1)
            WideCharToMultiByte(CP_UTF8, 0, w, -1, &s[0], n, nullptr, nullptr);
        return s;
    };
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::string selfPath = utf8(self);
    if (selfPath.size() > 4 && selfPath.compare(selfPath.size() - 4, 4, ".exe") == 0)
        selfPath.resize(selfPath.size() - 4);
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i)
        arguments.push_back(utf8(argv[i]));
    record(selfPath, arguments);
    return 0;
}
#else
int main(int argc, char** argv)
{
    char self[PATH_MAX + 1] = {};
    const ssize_t n = readlink("/proc/self/exe", self, PATH_MAX);
    // A copy keeps its own name; /proc/self/exe names the file that was started.
    const std::string selfPath = n > 0 ? std::string(self, size_t(n)) : std::string(argv[0]);
    std::vector<std::string> arguments(argv + 1, argv + argc);
    record(selfPath, arguments);
    return 0;
}
#endif
