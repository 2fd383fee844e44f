// DumpCallback as MiniDumpWriteDump calls it, case by case.
#include "check.h"
#include "crashfilter_win.h"

#include <string>

using ZVUIFramework::WinCrash::DumpCallback;

namespace {

constexpr ULONG kModuleFlags = ModuleWriteModule | ModuleWriteDataSeg | ModuleWriteMiscRecord | ModuleWriteCvRecord;

struct ModuleCase
{
    const wchar_t* fullPath;
    bool keepsDataSegments;
};

void nullArguments()
{
    MINIDUMP_CALLBACK_INPUT input{};
    MINIDUMP_CALLBACK_OUTPUT output{};
    input.CallbackType = ModuleCallback;
    CHECK_EQ(DumpCallback(nullptr, nullptr, &output), FALSE);
    CHECK_EQ(DumpCallback(nullptr, &input, nullptr), FALSE);
    CHECK_EQ(DumpCallback(nullptr, nullptr, nullptr), FALSE);
}

void modules()
{
    const ModuleCase cases[] = {
        {L"C:\\Windows\\System32\\NTDLL.DLL", true},
        {L"C:\\Windows\\System32\\ntdll.dll", true},
        {L"ntdll", true},
        {L"c:/a/ntdll.dll", true},
        {L"C:\\x\\kernel32.dll", false},
        {L"C:\\Windows\\System32\\ntdll32.dll", false},
        {L"C:\\ntdll\\kernel32.dll", false},
        {L"C:\\x\\myntdll.dll", false},
        {L"C:\\x\\zv_crash_child.exe", false},
    };
    for (const ModuleCase& c : cases) {
        std::wstring path = c.fullPath;
        MINIDUMP_CALLBACK_INPUT input{};
        input.CallbackType = ModuleCallback;
        input.Module.FullPath = &path[0];
        MINIDUMP_CALLBACK_OUTPUT output{};
        output.ModuleWriteFlags = kModuleFlags;
        std::printf("module %ls\n", c.fullPath);
        CHECK_EQ(DumpCallback(nullptr, &input, &output), TRUE);
        // Only the data segment flag is the callback's business.
        CHECK_EQ(output.ModuleWriteFlags,
                 c.keepsDataSegments ? kModuleFlags : ULONG(kModuleFlags & ~ULONG(ModuleWriteDataSeg)));
    }
}

void callbackTypes()
{
    for (ULONG type = 0; type <= 20; ++type) {
        std::wstring path = L"C:\\x\\kernel32.dll";
        MINIDUMP_CALLBACK_INPUT input{};
        input.CallbackType = type;
        if (type == ModuleCallback)
            input.Module.FullPath = &path[0];
        MINIDUMP_CALLBACK_OUTPUT output{};
        output.ModuleWriteFlags = kModuleFlags;
        const BOOL expected = type <= IncludeModuleCallback ? TRUE : FALSE;
        std::printf("callback type %lu\n", static_cast<unsigned long>(type));
        CHECK_EQ(DumpCallback(nullptr, &input, &output), expected);
        if (type != ModuleCallback)
            CHECK_EQ(output.ModuleWriteFlags, kModuleFlags);
    }
    static_assert(ModuleCallback == 0 && ThreadCallback == 1 && ThreadExCallback == 2 && IncludeThreadCallback == 3
                      && IncludeModuleCallback == 4 && MemoryCallback == 5,
                  "the callback types of the tables above");
    MINIDUMP_CALLBACK_INPUT input{};
    input.CallbackType = 0xFFFFFFFFu;
    MINIDUMP_CALLBACK_OUTPUT output{};
    CHECK_EQ(DumpCallback(nullptr, &input, &output), FALSE);
}

} // namespace

int main()
{
    nullArguments();
    modules();
    callbackTypes();
    return zvcheck::finish("dump-callback");
}
