// After InstallFilter nobody can take the unhandled exception filter away: in this
// process SetUnhandledExceptionFilter answers null and its first bytes are the patch, and
// a crashing child that tries to replace the filter still ends in the library's.
#include "check.h"
#include "crashexpect.h"
#include "crashfilter_win.h"
#include "lanesupport.h"

#include <cstring>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;
using SetFilterFunction = LPTOP_LEVEL_EXCEPTION_FILTER(WINAPI*)(LPTOP_LEVEL_EXCEPTION_FILTER);

namespace {

const unsigned char kPatch[7] = {0x33, 0xC0, 0xC3, 0x90, 0x90, 0x90, 0x90};

LONG WINAPI otherFilter(EXCEPTION_POINTERS*)
{
    return EXCEPTION_CONTINUE_SEARCH;
}

SetFilterFunction exported(const wchar_t* module)
{
    HMODULE handle = ::GetModuleHandleW(module);
    return handle ? reinterpret_cast<SetFilterFunction>(
                        reinterpret_cast<void*>(::GetProcAddress(handle, "SetUnhandledExceptionFilter")))
                  : nullptr;
}

bool startsWithPatch(SetFilterFunction function)
{
    return std::memcmp(reinterpret_cast<const void*>(function), kPatch, sizeof kPatch) == 0;
}

void inProcess()
{
    const SetFilterFunction setFilter = exported(L"kernel32.dll");
    if (!CHECK(setFilter))
        return;

    // Unsealed, the function works: it takes a filter and hands back the one before.
    CHECK(!startsWithPatch(setFilter));
    const LPTOP_LEVEL_EXCEPTION_FILTER runtimeFilter = setFilter(&otherFilter);
    CHECK(setFilter(runtimeFilter) == &otherFilter);

    ZVUIFramework::WinCrash::InstallFilter(nullptr);

    CHECK(startsWithPatch(setFilter));
    CHECK(::SetUnhandledExceptionFilter(&otherFilter) == nullptr);
    CHECK(::SetUnhandledExceptionFilter(&otherFilter) == nullptr);
    CHECK(setFilter(&otherFilter) == nullptr);
    CHECK(setFilter(nullptr) == nullptr);

    // Where kernel32 forwards to a kernelbase of its own, that one still holds the real
    // filter: ask it which one is in force, then put it back.
    const SetFilterFunction baseSetFilter = exported(L"kernelbase.dll");
    if (baseSetFilter && baseSetFilter != setFilter) {
        const LPTOP_LEVEL_EXCEPTION_FILTER current = baseSetFilter(nullptr);
        CHECK(current == &ZVUIFramework::WinCrash::Filter);
        baseSetFilter(current);
    } else {
        std::printf("note: no separate kernelbase entry; the filter is checked through the child only\n");
    }
}

void child()
{
    const fs::path folder = zvwin::FreshFolder(L"seal");
    CHECK(zvwin::CopyProgram(L"zv_crash_child.exe", folder));
    CHECK(zvwin::CopyProgram(L"Feedback.exe", folder));
    const zvwin::ChildRun run = zvwin::RunChild(folder / L"zv_crash_child.exe", {L"intrude"}, folder);
    CHECK(run.started);
    CHECK(run.finished);
    CHECK_EQ(run.exitCode, zvwin::kAccessViolationExit);
    CHECK_EQ(zvwin::ReadFile(folder / L"intrude-result.txt"), std::string("refused"));
    CHECK(!fs::exists(folder / L"intruder.txt"));
    CHECK_EQ(zvwin::ReadFile(folder / L"crashcore.dmp").substr(0, 4), std::string("MDMP"));
    CHECK_EQ(zvwin::ReadFile(folder / L"callback.txt"), std::string(zvwin::kAccessViolationText));
    CHECK_EQ(zvwin::ReadLines(folder / L"Feedback-args.jsonl").size(), size_t(1));
}

} // namespace

int main()
{
    inProcess();
    child();
    return zvcheck::finish("seal");
}
