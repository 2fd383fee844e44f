// A crash of a host that installed the filter, seen from outside:
//   zvwin_crash crash        dump, feedback launch and host callback
//   zvwin_crash readonly     the dump cannot be created; the host side still runs
//   zvwin_crash no-callback  no host side; the dump is still written
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
    else
        CHECK(!"usage: zvwin_crash crash|readonly|no-callback");
    return zvcheck::finish(which);
}
