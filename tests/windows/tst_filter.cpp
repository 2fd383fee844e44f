// Filter called directly, as the system would call it: it writes the dump into the
// working directory, hands the exception to the host side, and answers
// EXCEPTION_EXECUTE_HANDLER. (From outside a crashed process, that answer cannot be told
// from the system's own last resort, which ends the process with the same code.)
#include "check.h"
#include "crashfilter_win.h"
#include "lanesupport.h"

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

int s_afterCalls = 0;
EXCEPTION_POINTERS* s_afterInfo = nullptr;

void recordAfter(EXCEPTION_POINTERS* info)
{
    ++s_afterCalls;
    s_afterInfo = info;
}

void enter(const wchar_t* name)
{
    const fs::path folder = zvwin::FreshFolder(name);
    CHECK(::SetCurrentDirectoryW(folder.wstring().c_str()));
}

void withoutException()
{
    enter(L"filter-null");
    s_afterCalls = 0;
    CHECK_EQ(ZVUIFramework::WinCrash::Filter(nullptr), LONG(EXCEPTION_EXECUTE_HANDLER));
    CHECK_EQ(ZVUIFramework::WinCrash::Filter(nullptr), LONG(1));
    const std::string dump = zvwin::ReadFile(L"crashcore.dmp");
    CHECK_EQ(dump.substr(0, 4), std::string("MDMP"));
    DWORD code = 0;
    CHECK(!zvwin::DumpExceptionCode(dump, &code));
    CHECK_EQ(s_afterCalls, 2);
    CHECK(s_afterInfo == nullptr);
}

void withException()
{
    enter(L"filter-exception");
    CONTEXT context{};
    ::RtlCaptureContext(&context);
    EXCEPTION_RECORD record{};
    record.ExceptionCode = 0xE0C0FFEE;
    record.ExceptionAddress = reinterpret_cast<void*>(context.Rip);
    EXCEPTION_POINTERS pointers{&record, &context};
    s_afterCalls = 0;
    CHECK_EQ(ZVUIFramework::WinCrash::Filter(&pointers), LONG(EXCEPTION_EXECUTE_HANDLER));
    CHECK_EQ(s_afterCalls, 1);
    CHECK(s_afterInfo == &pointers);
    const std::string dump = zvwin::ReadFile(L"crashcore.dmp");
    CHECK_EQ(dump.substr(0, 4), std::string("MDMP"));
    DWORD code = 0;
    CHECK(zvwin::DumpExceptionCode(dump, &code));
    CHECK_EQ(code, DWORD(0xE0C0FFEE));
}

} // namespace

int main()
{
    ZVUIFramework::WinCrash::InstallFilter(&recordAfter);
    withoutException();
    withException();
    return zvcheck::finish("filter");
}
