// A crash of a host that installed the filter, seen from outside:
//   zvwin_crash crash        dump, feedback launch and host callback
//   zvwin_crash readonly     the dump cannot be created; the host side still runs
//   zvwin_crash no-callback  no host side; the dump is still written
// and crashes at the worst moments, each ending with the process dead by the exception's
// code, at most one dump and at most one start of the feedback program:
//   zvwin_crash thread | two-threads | overflow | overflow-thread | abort | assert | faulty |
//               double-free | heap-smash | missing-feedback
#include "check.h"
#include "crashexpect.h"
#include "lanesupport.h"

#include <cstring>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

fs::path prepare(const std::wstring& name)
{
    const fs::path folder = zvwin::FreshFolder(name);
    CHECK(zvwin::CopyProgram(L"zv_crash_child.exe", folder));
    CHECK(zvwin::CopyProgram(L"Feedback.exe", folder));
    return folder;
}

void checkCrashExit(const zvwin::ChildRun& run)
{
    CHECK(run.started);
    CHECK(run.finished);
    CHECK_EQ(run.exitCode, zvwin::kAccessViolationExit);
}

void checkDump(const fs::path& folder)
{
    const fs::path dump = folder / L"crashcore.dmp";
    CHECK(fs::is_regular_file(dump));
    const std::string bytes = zvwin::ReadFile(dump);
    CHECK_EQ(bytes.substr(0, 4), std::string("MDMP"));
    DWORD code = 0;
    CHECK(zvwin::DumpExceptionCode(bytes, &code));
    CHECK_EQ(code, DWORD(EXCEPTION_ACCESS_VIOLATION));
}

void checkHostSide(const fs::path& folder)
{
    const auto lines = zvwin::ReadLines(folder / L"Feedback-args.jsonl");
    CHECK_EQ(lines.size(), size_t(1));
    if (!lines.empty())
        CHECK_EQ(lines.front(), std::string(zvwin::kFeedbackLine));
    CHECK(fs::is_regular_file(folder / L"callback.txt"));
    CHECK_EQ(zvwin::ReadFile(folder / L"callback.txt"), std::string(zvwin::kAccessViolationText));
}

void crash()
{
    const fs::path folder = prepare(L"crash");
    const zvwin::ChildRun run = zvwin::RunChild(folder / L"zv_crash_child.exe", {L"after"}, folder);
    checkCrashExit(run);
    checkDump(folder);
    checkHostSide(folder);
}

void readonly()
{
    const fs::path folder = prepare(L"readonly");
    // A folder of the dump's name: CreateFileW cannot open it as a file, not even for an
    // administrator (or root under Wine), where a read-only attribute would not stop it.
    CHECK(fs::create_directory(folder / L"crashcore.dmp"));
    const zvwin::ChildRun run = zvwin::RunChild(folder / L"zv_crash_child.exe", {L"after"}, folder);
    checkCrashExit(run);
    CHECK(fs::is_directory(folder / L"crashcore.dmp"));
    CHECK(fs::is_empty(folder / L"crashcore.dmp"));
    checkHostSide(folder);
}

void noCallback()
{
    const fs::path folder = prepare(L"no-callback");
    const zvwin::ChildRun run = zvwin::RunChild(folder / L"zv_crash_child.exe", {L"none"}, folder);
    checkCrashExit(run);
    checkDump(folder);
    CHECK(!fs::exists(folder / L"Feedback-args.jsonl"));
    CHECK(!fs::exists(folder / L"callback.txt"));
}

struct Torture
{
    const char* name;
    const wchar_t* mode;  // zv_crash_child's host side
    const wchar_t* crash; // and how it crashes
    DWORD exitCode;
    int dumps;            // exactly, or at most with `atMost`
    int launches;
    const char* callback; // callback.txt, or null when it must not exist
    bool feedbackProgram;
    bool atMost;
};

constexpr DWORD kStackOverflowExit = 0xC00000FD;

const Torture kTorture[] = {
    {"thread", L"after", L"thread", zvwin::kAccessViolationExit, 1, 1, zvwin::kAccessViolationText, true, false},
    // The second thread waits in the filter until the first one's report ends the process.
    {"two-threads", L"after", L"two-threads", zvwin::kAccessViolationExit, 1, 1, zvwin::kAccessViolationText, true, false},
    // The report runs on a thread of its own, with a stack of its own.
    {"overflow", L"after", L"overflow", kStackOverflowExit, 1, 1, "c00000fd", true, false},
    {"overflow-thread", L"after", L"overflow-thread", kStackOverflowExit, 1, 1, "c00000fd", true, false},
    // abort() and a failed assert become STATUS_FATAL_APP_EXIT, reported like a fault.
    {"abort", L"after", L"abort", 0x40000015, 1, 1, "40000015", true, false},
    {"assert", L"after", L"assert", 0x40000015, 1, 1, "40000015", true, false},
    // The host side faults after the launch: the process ends at once, with that code.
    {"faulty", L"faulty", L"", zvwin::kAccessViolationExit, 1, 1, nullptr, true, false},
    {"double-free", L"after", L"double-free", zvwin::kAccessViolationExit, 1, 1, zvwin::kAccessViolationText, true, false},
    // With the heap's records destroyed, writing the dump (which allocates) may fault in
    // turn; the process then ends at once, with no report or a partial one.
    {"heap-smash", L"after", L"heap-smash", 0, 1, 1, nullptr, true, true},
    {"missing-feedback", L"after", L"", zvwin::kAccessViolationExit, 1, 0, zvwin::kAccessViolationText, false, false},
};

const Torture* findTorture(const char* name)
{
    for (const Torture& t : kTorture) {
        if (std::strcmp(t.name, name) == 0)
            return &t;
    }
    return nullptr;
}

void torture(const Torture& t)
{
    const fs::path folder = zvwin::FreshFolder(std::wstring(t.name, t.name + std::strlen(t.name)));
    CHECK(zvwin::CopyProgram(L"zv_crash_child.exe", folder));
    if (t.feedbackProgram)
        CHECK(zvwin::CopyProgram(L"Feedback.exe", folder));
    const zvwin::ChildRun run = zvwin::RunChild(folder / L"zv_crash_child.exe", {t.mode, t.crash}, folder);
    CHECK(run.started);
    CHECK(run.finished);
    if (t.exitCode)
        CHECK_EQ(run.exitCode, t.exitCode);
    else // a fault of the heap or in the heap's own code
        CHECK(run.exitCode == zvwin::kAccessViolationExit || run.exitCode == 0xC0000374);

    const fs::path dump = folder / L"crashcore.dmp";
    const int dumps = fs::is_regular_file(dump) ? 1 : 0;
    const int launches = int(zvwin::ReadLines(folder / L"Feedback-args.jsonl").size());
    if (t.atMost) {
        CHECK(dumps <= t.dumps);
        CHECK(launches <= t.launches);
    } else {
        CHECK_EQ(dumps, t.dumps);
        CHECK_EQ(launches, t.launches);
    }
    if (dumps && !t.atMost) {
        // One writer: the dump is whole and names the exception that ended the process.
        const std::string bytes = zvwin::ReadFile(dump);
        CHECK_EQ(bytes.substr(0, 4), std::string("MDMP"));
        DWORD code = 0;
        CHECK(zvwin::DumpExceptionCode(bytes, &code));
        CHECK_EQ(code, t.exitCode);
    }
    if (launches == 1)
        CHECK_EQ(zvwin::ReadLines(folder / L"Feedback-args.jsonl").front(), std::string(zvwin::kFeedbackLine));
    if (t.callback)
        CHECK_EQ(zvwin::ReadFile(folder / L"callback.txt"), std::string(t.callback));
    else if (!t.atMost)
        CHECK(!fs::exists(folder / L"callback.txt"));
}

} // namespace

int main(int argc, char** argv)
{
    const char* which = argc > 1 ? argv[1] : "";
    if (std::strcmp(which, "crash") == 0)
        crash();
    else if (std::strcmp(which, "readonly") == 0)
        readonly();
    else if (std::strcmp(which, "no-callback") == 0)
        noCallback();
    else if (const Torture* t = findTorture(which))
        torture(*t);
    else
        CHECK(!"usage: zvwin_crash crash|readonly|no-callback|<torture case>");
    return zvcheck::finish(which);
}
