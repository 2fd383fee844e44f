// The Windows inputs of the high-DPI decision under Wine: the system DPI from LogPixels,
// the desktop resolution and size, the work area, and the decision they lead to. Wine
// reads "HKCU\Control Panel\Desktop\LogPixels" when a process starts, so the test sets it
// to 144 and measures in a child process.
#include "check.h"
#include "planhighdpi.h"
#include "screenmetrics_p.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

using namespace ZVUIFramework;

namespace {

const wchar_t kDesktopKey[] = L"Control Panel\\Desktop";

bool setLogPixels(DWORD dpi)
{
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, kDesktopKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr) != ERROR_SUCCESS)
        return false;
    const bool ok = RegSetValueExW(key, L"LogPixels", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&dpi), sizeof dpi) == ERROR_SUCCESS;
    RegCloseKey(key);
    return ok;
}

std::wstring resultPath()
{
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    return std::wstring(self) + L".result.txt";
}

// The child: measures and plans, and writes one line the parent parses. A file rather
// than a pipe: a process that opens the desktop can leave Wine's desktop process holding
// inherited handles open.
int child()
{
    Platform::SetDpiAwareness();
    ScreenMetrics m{};
    const bool read = Platform::ReadScreenMetrics(m);
    HighDpiOptions o;
    o.windowWidth = 900;
    o.windowHeight = 700;
    o.syncRatio = true;
    const HighDpiPlan plan = PlanHighDpi(o, m);
    FILE* out = _wfopen(resultPath().c_str(), L"w");
    if (!out)
        return 1;
    if (read) {
        std::fprintf(out, "%d %d %d %d %g %d %d %d %d %s %d %d %d\n", m.horzRes, m.vertRes, m.widthMM, m.heightMM,
                     m.systemDpi, m.workLeft, m.workTop, m.workRight, m.workBottom, plan.scaleFactor.c_str(),
                     plan.writeFactorFile ? 1 : 0, plan.enableQtScaling ? 1 : 0, plan.deleteFactorFile ? 1 : 0);
    } else {
        std::fprintf(out, "no-metrics\n");
    }
    std::fclose(out);
    return 0;
}

std::string runChild()
{
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    DeleteFileW(resultPath().c_str());
    std::wstring command = L"\"" + std::wstring(self) + L"\" child";
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!CreateProcessW(nullptr, &command[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
        return "no child";
    WaitForSingleObject(pi.hProcess, 60000);
    CloseHandle(pi.hProcess);
    CloseHandle(pi.hThread);
    std::string out;
    if (FILE* in = _wfopen(resultPath().c_str(), L"r")) {
        char buffer[512] = {};
        if (std::fgets(buffer, sizeof buffer, in))
            out = buffer;
        std::fclose(in);
    }
    return out;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "child") == 0)
        return child();

    CHECK(setLogPixels(144));
    const std::string line = runChild();
    std::printf("child: %s", line.c_str());
    int horz = 0, vert = 0, wmm = 0, hmm = 0, left = -1, top = -1, right = 0, bottom = 0, write = -1, qt = -1, del = -1;
    double dpi = 0;
    char factor[32] = {};
    const int fields = std::sscanf(line.c_str(), "%d %d %d %d %lf %d %d %d %d %31s %d %d %d", &horz, &vert, &wmm, &hmm,
                                   &dpi, &left, &top, &right, &bottom, factor, &write, &qt, &del);
    CHECK_EQ(fields, 13);
    // The lane's X server is 1280 x 1024; LogPixels 144 makes the system factor 1.5.
    CHECK_EQ(horz, 1280);
    CHECK_EQ(vert, 1024);
    CHECK(wmm > 0 && hmm > 0);
    CHECK_EQ(dpi, 144.0);
    CHECK_EQ(left, 0);
    CHECK_EQ(top, 0);
    CHECK(right > 0 && right <= 1280);
    CHECK(bottom > 0 && bottom <= 1024);
    // 853 x 682 logical pixels at 1.5: no room for Qt's scaling; 900 x 700 at 1.5 is
    // 1350 wide, too wide; at 1.25 it is 1125 x 875, which fits.
    CHECK_EQ(std::string(factor), std::string("1.250000"));
    CHECK_EQ(write, 1);
    CHECK_EQ(qt, 0);
    CHECK_EQ(del, 1);

    CHECK(setLogPixels(96));
    return zvcheck::finish("highdpi");
}
