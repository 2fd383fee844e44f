// The layered shadow with real windows: a plain popup parent of 300 x 200 at (100, 100),
// really moved, resized, shown and hidden, and the shadow window's rectangle, visibility
// and status after each message of the parent. The bitmap cannot be read back from a
// layered window: its computation is checked on its own, and what it puts on the screen
// with a solid colour.
//
//   zvwin_shadow [class | create | setters | move-size | show | bitmap | screen | subclass
//                 | two-windows]
#include "check.h"
#include "cwndshadow_win.h"
#include "rendershadow.h"
#include "shadowregistry.h"

#include <windows.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace {

// A window's rectangle as position and size, which is how the shadow's placement reads.
struct Box
{
    int x, y, width, height;
    bool operator==(const Box& o) const { return x == o.x && y == o.y && width == o.width && height == o.height; }
};

std::ostream& operator<<(std::ostream& out, const Box& b)
{
    return out << "(" << b.x << ", " << b.y << ") " << b.width << " x " << b.height;
}

Box box(HWND window)
{
    RECT r = {0, 0, 0, 0};
    ::GetWindowRect(window, &r);
    return {r.left, r.top, r.right - r.left, r.bottom - r.top};
}

// What the test parent's own procedure saw: with ParentProc in front of it, these show
// that every message still reaches it.
int g_moves = 0;
int g_sizes = 0;
int g_paints = 0;
int g_ncdestroys = 0;

LRESULT CALLBACK plainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_MOVE:
        ++g_moves;
        break;
    case WM_SIZE:
        ++g_sizes;
        break;
    case WM_PAINT:
        ++g_paints;
        break;
    case WM_NCDESTROY:
        ++g_ncdestroys;
        break;
    default:
        break;
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
}

const wchar_t kParentClass[] = L"ZVShadowTestParent";

void registerParentClass()
{
    WNDCLASSEXW wc;
    std::memset(&wc, 0, sizeof wc);
    wc.cbSize = sizeof wc;
    // Redrawn as a whole on every size change, so a resize always ends in a WM_PAINT.
    wc.style = CS_HREDRAW | CS_VREDRAW;
    wc.lpfnWndProc = plainProc;
    wc.hInstance = ::GetModuleHandleW(nullptr);
    wc.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_WINDOW + 1));
    wc.lpszClassName = kParentClass;
    ::RegisterClassExW(&wc);
}

HWND makeParent(DWORD style = WS_POPUP | WS_VISIBLE)
{
    return ::CreateWindowExW(0, kParentClass, L"parent", style, 100, 100, 300, 200, nullptr, nullptr,
                             ::GetModuleHandleW(nullptr), nullptr);
}

void pump()
{
    MSG msg;
    while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
}

void moveParent(HWND parent, int x, int y)
{
    ::SetWindowPos(parent, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void resizeParent(HWND parent, int width, int height)
{
    ::SetWindowPos(parent, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// The WM_SIZE the parent's own change produced, with its current client size.
void sendSize(CWndShadow& shadow, HWND parent, WPARAM kind)
{
    RECT client = {0, 0, 0, 0};
    ::GetClientRect(parent, &client);
    shadow.OnParentMessage(parent, WM_SIZE, kind, MAKELPARAM(client.right, client.bottom));
}

// Where the shadow of \a parent belongs: grown by the size on every side, moved by the
// offsets.
Box expected(HWND parent, int size, int xOffset, int yOffset)
{
    const Box p = box(parent);
    return {p.x + xOffset - size, p.y + yOffset - size, p.width + 2 * size, p.height + 2 * size};
}

// The core window's settings on top of Create.
void coreSettings(CWndShadow& shadow)
{
    CHECK(shadow.SetSize(5));
    CHECK(shadow.SetPosition(0, 0));
    CHECK(shadow.SetDarkness(40));
}

// Initialize succeeds once per process; the cases share that one time.
bool g_initialized = false;

bool initialize()
{
    registerParentClass();
    if (!g_initialized)
        g_initialized = CHECK(CWndShadow::Initialize(::GetModuleHandleW(nullptr)));
    return g_initialized;
}

const HWND kNoWindow = reinterpret_cast<HWND>(static_cast<INT_PTR>(-1));

// ---------------------------------------------------------------------------------

void classCase()
{
    registerParentClass();
    const HINSTANCE instance = ::GetModuleHandleW(nullptr);
    WNDCLASSEXW wc;
    std::memset(&wc, 0, sizeof wc);
    wc.cbSize = sizeof wc;
    CHECK(!::GetClassInfoExW(instance, L"ZVShadowWnd", &wc));

    // Without Initialize there is no shadow at all.
    HWND parent = makeParent();
    {
        CWndShadow shadow;
        shadow.Create(parent);
        CHECK(shadow.shadowWindow() == kNoWindow);
        CHECK_EQ(shadow.status(), 0);
        CHECK_EQ(shadow.updateCount(), 0);
        CHECK(shadow.SetSize(5));
        CHECK_EQ(shadow.updateCount(), 0);
        shadow.OnParentMessage(parent, WM_SIZE, SIZE_RESTORED, MAKELPARAM(300, 200));
        shadow.OnParentMessage(parent, WM_SHOWWINDOW, TRUE, 0);
        CHECK_EQ(shadow.status(), 0);
        CHECK_EQ(shadow.lastParentSize(), 0);
        CHECK(!shadow.updatePending());
    }

    CHECK(!g_initialized);
    g_initialized = CHECK(CWndShadow::Initialize(instance));
    CHECK(!CWndShadow::Initialize(instance));
    CHECK(!CWndShadow::Initialize(nullptr));

    std::memset(&wc, 0, sizeof wc);
    wc.cbSize = sizeof wc;
    if (CHECK(::GetClassInfoExW(instance, L"ZVShadowWnd", &wc))) {
        CHECK_EQ(sizeof(WNDCLASSEXW), size_t(80));
        CHECK_EQ(wc.style, UINT(CS_HREDRAW | CS_VREDRAW));
        CHECK_EQ(wc.style, 3u);
        CHECK(wc.lpfnWndProc == ::DefWindowProcW);
        CHECK_EQ(wc.cbClsExtra, 0);
        CHECK_EQ(wc.cbWndExtra, 0);
        CHECK(wc.hInstance == instance);
        CHECK(wc.hIcon == nullptr);
        CHECK(wc.hCursor == ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)));
        CHECK_EQ(reinterpret_cast<INT_PTR>(wc.hbrBackground), INT_PTR(6));
        CHECK(wc.lpszMenuName == nullptr);
        CHECK(wc.hIconSm == nullptr);
    }

    // The windows are of that class and of this module.
    CWndShadow shadow;
    shadow.Create(parent);
    wchar_t name[64] = {};
    ::GetClassNameW(shadow.shadowWindow(), name, 64);
    CHECK_EQ(std::wstring(name), std::wstring(L"ZVShadowWnd"));
    CHECK(reinterpret_cast<HINSTANCE>(::GetWindowLongPtrW(shadow.shadowWindow(), GWLP_HINSTANCE)) == instance);
    ::DestroyWindow(parent);
}

// ---------------------------------------------------------------------------------

void createCase()
{
    if (!initialize())
        return;

    // A shown parent in its normal state: the shadow is shown and drawn at once, with
    // the defaults (size 0, offsets 5, 5).
    HWND parent = makeParent();
    CWndShadow shadow;
    CHECK(shadow.shadowWindow() == kNoWindow);
    CHECK_EQ(shadow.size(), 0);
    CHECK_EQ(shadow.sharpness(), 5u);
    CHECK_EQ(shadow.darkness(), 150u);
    CHECK_EQ(shadow.xOffset(), 5);
    CHECK_EQ(shadow.yOffset(), 5);
    CHECK_EQ(shadow.color(), COLORREF(0));
    CHECK_EQ(shadow.lastParentSize(), 0);
    CHECK(!shadow.updatePending());
    CHECK(shadow.previousParentProc() == nullptr);

    shadow.Create(parent);
    const HWND window = shadow.shadowWindow();
    CHECK(window != kNoWindow && ::IsWindow(window));
    CHECK_EQ(shadow.status(), 7);
    CHECK(::IsWindowVisible(window));
    CHECK_EQ(shadow.updateCount(), 1);
    CHECK(!shadow.updatePending());
    CHECK_EQ(box(window), (Box{105, 105, 300, 200}));

    const LONG exStyle = ::GetWindowLongW(window, GWL_EXSTYLE);
    CHECK_EQ(exStyle & (WS_EX_LAYERED | WS_EX_TRANSPARENT), LONG(0x80020));
    CHECK_EQ(::GetWindowLongW(window, GWL_STYLE) & LONG(WS_POPUPWINDOW), LONG(WS_POPUPWINDOW));
    CHECK(::GetWindow(window, GW_OWNER) == parent);
    CHECK(::GetParent(window) == parent);
    CHECK(::GetAncestor(window, GA_PARENT) == ::GetDesktopWindow());
    // Drawing the shadow never takes the activation from the parent.
    CHECK(::GetActiveWindow() != window);

    // The core window's settings: 10 pixels wider and taller, 5 up and left, each
    // setter redrawing at once.
    CHECK(shadow.SetSize(5));
    CHECK_EQ(shadow.updateCount(), 2);
    CHECK_EQ(box(window), (Box{100, 100, 310, 210}));
    CHECK(shadow.SetPosition(0, 0));
    CHECK_EQ(shadow.updateCount(), 3);
    CHECK_EQ(box(window), (Box{95, 95, 310, 210}));
    CHECK(shadow.SetDarkness(40));
    CHECK_EQ(shadow.updateCount(), 4);
    CHECK_EQ(box(window), (Box{95, 95, 310, 210}));
    CHECK_EQ(shadow.size(), 5);
    CHECK_EQ(shadow.sharpness(), 5u);
    CHECK_EQ(shadow.darkness(), 40u);
    CHECK_EQ(shadow.xOffset(), 0);
    CHECK_EQ(shadow.yOffset(), 0);
    CHECK_EQ(shadow.color(), COLORREF(0));
    CHECK_EQ(shadow.status(), 7);

    // Click-through: the point lies on the shadow, over the parent and beside it, and
    // the shadow is never the window found there.
    CHECK(::WindowFromPoint(POINT{250, 200}) == parent);
    CHECK(::WindowFromPoint(POINT{97, 200}) != window);

    // A hidden parent: enabled only, nothing shown or drawn.
    HWND hidden = makeParent(WS_POPUP);
    CWndShadow hiddenShadow;
    hiddenShadow.Create(hidden);
    CHECK(::IsWindow(hiddenShadow.shadowWindow()));
    CHECK_EQ(hiddenShadow.status(), 1);
    CHECK(!::IsWindowVisible(hiddenShadow.shadowWindow()));
    CHECK_EQ(hiddenShadow.updateCount(), 0);
    CHECK(::GetWindow(hiddenShadow.shadowWindow(), GW_OWNER) == hidden);

    // A maximised and a minimised parent: parent visible, shadow not.
    HWND maximised = makeParent();
    ::ShowWindow(maximised, SW_MAXIMIZE);
    CHECK(::IsZoomed(maximised));
    CWndShadow maximisedShadow;
    maximisedShadow.Create(maximised);
    CHECK_EQ(maximisedShadow.status(), 5);
    CHECK(!::IsWindowVisible(maximisedShadow.shadowWindow()));
    CHECK_EQ(maximisedShadow.updateCount(), 0);

    HWND minimised = makeParent();
    ::ShowWindow(minimised, SW_MINIMIZE);
    CHECK(::IsIconic(minimised));
    CWndShadow minimisedShadow;
    minimisedShadow.Create(minimised);
    CHECK_EQ(minimisedShadow.status(), 5);
    CHECK(!::IsWindowVisible(minimisedShadow.shadowWindow()));
    CHECK_EQ(minimisedShadow.updateCount(), 0);

    // The shadow windows go with their owners.
    const HWND shadows[] = {window, hiddenShadow.shadowWindow(), maximisedShadow.shadowWindow(),
                            minimisedShadow.shadowWindow()};
    for (HWND p : {parent, hidden, maximised, minimised})
        ::DestroyWindow(p);
    for (HWND s : shadows)
        CHECK(!::IsWindow(s));
}

// ---------------------------------------------------------------------------------

void settersCase()
{
    if (!initialize())
        return;
    HWND parent = makeParent();
    CWndShadow shadow;
    shadow.Create(parent);
    coreSettings(shadow);
    const HWND window = shadow.shadowWindow();
    const Box core{95, 95, 310, 210};
    CHECK_EQ(box(window), core);
    int count = shadow.updateCount();
    CHECK_EQ(count, 4);

    // Refused: nothing stored, nothing drawn, nothing moved.
    CHECK(!shadow.SetSize(21));
    CHECK(!shadow.SetSize(-21));
    CHECK(!shadow.SetSize(INT_MAX));
    CHECK(!shadow.SetSize(INT_MIN));
    CHECK(!shadow.SetSharpness(21));
    CHECK(!shadow.SetSharpness(UINT_MAX));
    CHECK(!shadow.SetDarkness(256));
    CHECK(!shadow.SetDarkness(UINT_MAX));
    CHECK(!shadow.SetPosition(0, -21));
    CHECK(!shadow.SetPosition(21, 0));
    CHECK(!shadow.SetPosition(-21, 0));
    CHECK(!shadow.SetPosition(0, 21));
    CHECK(!shadow.SetPosition(5, 21)); // one good value does not get through either
    CHECK_EQ(shadow.size(), 5);
    CHECK_EQ(shadow.sharpness(), 5u);
    CHECK_EQ(shadow.darkness(), 40u);
    CHECK_EQ(shadow.xOffset(), 0);
    CHECK_EQ(shadow.yOffset(), 0);
    CHECK_EQ(shadow.updateCount(), count);
    CHECK_EQ(box(window), core);

    // Accepted, up to the ends of the ranges: each one redraws at once.
    CHECK(shadow.SetSize(20));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(shadow.size(), 20);
    CHECK_EQ(box(window), (Box{80, 80, 340, 240}));
    CHECK(shadow.SetSize(-20));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(shadow.size(), -20);
    CHECK_EQ(box(window), (Box{120, 120, 260, 160}));
    CHECK(shadow.SetSize(5));
    CHECK_EQ(shadow.updateCount(), ++count);

    CHECK(shadow.SetPosition(-20, 20));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(shadow.xOffset(), -20);
    CHECK_EQ(shadow.yOffset(), 20);
    CHECK_EQ(box(window), (Box{75, 115, 310, 210}));
    CHECK(shadow.SetPosition(20, -20));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), (Box{115, 75, 310, 210}));
    CHECK(shadow.SetPosition(0, 0));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), core);

    CHECK(shadow.SetSharpness(0));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(shadow.sharpness(), 0u);
    CHECK(shadow.SetSharpness(20));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(shadow.sharpness(), 20u);
    CHECK(shadow.SetDarkness(0));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(shadow.darkness(), 0u);
    CHECK(shadow.SetDarkness(255));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(shadow.darkness(), 255u);
    CHECK(shadow.SetColor(RGB(255, 0, 0)));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(shadow.color(), COLORREF(0x0000FF));
    CHECK(shadow.SetColor(0xFFFFFFFFu));
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), core);

    // A shadow that is not shown takes the values and draws nothing.
    HWND hidden = makeParent(WS_POPUP);
    CWndShadow hiddenShadow;
    hiddenShadow.Create(hidden);
    const Box before = box(hiddenShadow.shadowWindow());
    CHECK(hiddenShadow.SetSize(7));
    CHECK(hiddenShadow.SetSharpness(3));
    CHECK(hiddenShadow.SetDarkness(90));
    CHECK(hiddenShadow.SetPosition(-2, 4));
    CHECK(hiddenShadow.SetColor(RGB(0, 0, 255)));
    CHECK(!hiddenShadow.SetSize(-30));
    CHECK_EQ(hiddenShadow.size(), 7);
    CHECK_EQ(hiddenShadow.sharpness(), 3u);
    CHECK_EQ(hiddenShadow.darkness(), 90u);
    CHECK_EQ(hiddenShadow.xOffset(), -2);
    CHECK_EQ(hiddenShadow.yOffset(), 4);
    CHECK_EQ(hiddenShadow.color(), COLORREF(0xFF0000));
    CHECK_EQ(hiddenShadow.updateCount(), 0);
    CHECK_EQ(box(hiddenShadow.shadowWindow()), before);
    CHECK(!::IsWindowVisible(hiddenShadow.shadowWindow()));

    // Shown later, it is drawn with them.
    ::ShowWindow(hidden, SW_SHOWNOACTIVATE);
    hiddenShadow.OnParentMessage(hidden, WM_SHOWWINDOW, TRUE, 0);
    hiddenShadow.OnParentMessage(hidden, WM_PAINT, 0, 0);
    CHECK_EQ(hiddenShadow.updateCount(), 1);
    CHECK_EQ(box(hiddenShadow.shadowWindow()), (Box{100 - 2 - 7, 100 + 4 - 7, 314, 214}));

    ::DestroyWindow(hidden);
    ::DestroyWindow(parent);
}

// ---------------------------------------------------------------------------------

void moveSizeCase()
{
    if (!initialize())
        return;
    HWND parent = makeParent();
    CWndShadow shadow;
    shadow.Create(parent);
    coreSettings(shadow);
    const HWND window = shadow.shadowWindow();
    int count = shadow.updateCount();

    // A move only repositions.
    moveParent(parent, 150, 120);
    shadow.OnParentMessage(parent, WM_MOVE, 0, MAKELPARAM(150, 120));
    CHECK_EQ(shadow.updateCount(), count);
    CHECK_EQ(box(window), (Box{145, 115, 310, 210}));
    CHECK(shadow.SetPosition(3, -4));
    CHECK_EQ(shadow.updateCount(), ++count);
    moveParent(parent, 160, 130);
    shadow.OnParentMessage(parent, WM_MOVE, 0, MAKELPARAM(160, 130));
    CHECK_EQ(shadow.updateCount(), count);
    CHECK_EQ(box(window), (Box{160 + 3 - 5, 130 - 4 - 5, 310, 210}));
    CHECK(shadow.SetPosition(0, 0));
    CHECK_EQ(shadow.updateCount(), ++count);

    // The first size is larger than the none before it: growing, drawn at the paint.
    resizeParent(parent, 320, 220);
    sendSize(shadow, parent, SIZE_RESTORED);
    CHECK(shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), count);
    CHECK_EQ(shadow.lastParentSize(), MAKELPARAM(320, 220));
    CHECK_EQ(box(window), (Box{155, 125, 310, 210}));
    CHECK_EQ(shadow.status(), 7);
    shadow.OnParentMessage(parent, WM_PAINT, 0, 0);
    CHECK(!shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), (Box{155, 125, 330, 230}));
    shadow.OnParentMessage(parent, WM_PAINT, 0, 0);
    CHECK_EQ(shadow.updateCount(), count);

    // Shrinking draws at once; so does the same size again.
    resizeParent(parent, 250, 150);
    sendSize(shadow, parent, SIZE_RESTORED);
    CHECK(!shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), (Box{155, 125, 260, 160}));
    sendSize(shadow, parent, SIZE_RESTORED);
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK(!shadow.updatePending());

    // Wider but lower still counts as growing.
    resizeParent(parent, 280, 140);
    sendSize(shadow, parent, SIZE_RESTORED);
    CHECK(shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), count);
    CHECK_EQ(box(window), (Box{155, 125, 260, 160}));
    shadow.OnParentMessage(parent, WM_PAINT, 0, 0);
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), (Box{155, 125, 290, 150}));

    // Maximised: hidden, and while hidden neither a move nor the end of a size loop
    // touches it.
    ::ShowWindow(parent, SW_MAXIMIZE);
    CHECK(::IsZoomed(parent));
    sendSize(shadow, parent, SIZE_MAXIMIZED);
    const LPARAM maximisedSize = shadow.lastParentSize();
    CHECK(maximisedSize != MAKELPARAM(280, 140));
    CHECK(!::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 5);
    CHECK_EQ(shadow.updateCount(), count);
    const Box hiddenBox = box(window);
    shadow.OnParentMessage(parent, WM_MOVE, 0, 0);
    shadow.OnParentMessage(parent, WM_EXITSIZEMOVE, 0, 0);
    CHECK_EQ(shadow.updateCount(), count);
    CHECK_EQ(box(window), hiddenBox);

    // Restored, smaller than maximised: shown and drawn at once.
    ::ShowWindow(parent, SW_RESTORE);
    CHECK(!::IsZoomed(parent));
    sendSize(shadow, parent, SIZE_RESTORED);
    CHECK(::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 7);
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK(!shadow.updatePending());
    CHECK_EQ(box(window), expected(parent, 5, 0, 0));
    CHECK_EQ(box(window), (Box{155, 125, 290, 150}));

    // Minimised: hidden; restored from the empty minimised size it grows, so it is shown
    // at once and drawn at the paint.
    ::ShowWindow(parent, SW_MINIMIZE);
    CHECK(::IsIconic(parent));
    shadow.OnParentMessage(parent, WM_SIZE, SIZE_MINIMIZED, 0);
    CHECK(!::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 5);
    CHECK_EQ(shadow.lastParentSize(), 0);
    CHECK_EQ(shadow.updateCount(), count);
    ::ShowWindow(parent, SW_RESTORE);
    CHECK(!::IsIconic(parent));
    sendSize(shadow, parent, SIZE_RESTORED);
    CHECK(::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 7);
    CHECK(shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), count);
    shadow.OnParentMessage(parent, WM_PAINT, 0, 0);
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), (Box{155, 125, 290, 150}));

    // The end of a move or size loop redraws for wherever the parent is now.
    ::SetWindowPos(parent, nullptr, 200, 180, 260, 190, SWP_NOZORDER | SWP_NOACTIVATE);
    shadow.OnParentMessage(parent, WM_EXITSIZEMOVE, 0, 0);
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), (Box{195, 175, 270, 200}));

    // Other messages mean nothing to the shadow.
    shadow.OnParentMessage(parent, WM_ACTIVATE, WA_ACTIVE, 0);
    shadow.OnParentMessage(parent, WM_NCDESTROY, 0, 0);
    CHECK_EQ(shadow.updateCount(), count);
    CHECK(::IsWindow(window));

    // A parent that is not shown: sizes are remembered, nothing is shown or drawn.
    HWND hidden = makeParent(WS_POPUP);
    CWndShadow hiddenShadow;
    hiddenShadow.Create(hidden);
    hiddenShadow.OnParentMessage(hidden, WM_SIZE, SIZE_RESTORED, MAKELPARAM(300, 200));
    CHECK_EQ(hiddenShadow.status(), 1);
    CHECK_EQ(hiddenShadow.lastParentSize(), MAKELPARAM(300, 200));
    CHECK(!hiddenShadow.updatePending());
    CHECK(!::IsWindowVisible(hiddenShadow.shadowWindow()));
    hiddenShadow.OnParentMessage(hidden, WM_MOVE, 0, 0);
    hiddenShadow.OnParentMessage(hidden, WM_EXITSIZEMOVE, 0, 0);
    CHECK_EQ(hiddenShadow.updateCount(), 0);

    // The parent's destruction takes the shadow window along, and only it.
    shadow.OnParentMessage(parent, WM_DESTROY, 0, 0);
    CHECK(!::IsWindow(window));
    CHECK(::IsWindow(parent));
    ::DestroyWindow(hidden);
    ::DestroyWindow(parent);
}

// ---------------------------------------------------------------------------------

void showCase()
{
    if (!initialize())
        return;
    HWND parent = makeParent();
    CWndShadow shadow;
    shadow.Create(parent);
    coreSettings(shadow);
    const HWND window = shadow.shadowWindow();
    int count = shadow.updateCount();

    // Hidden with the parent.
    ::ShowWindow(parent, SW_HIDE);
    shadow.OnParentMessage(parent, WM_SHOWWINDOW, FALSE, 0);
    CHECK(!::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 1);
    CHECK_EQ(shadow.updateCount(), count);

    // Sized while hidden: remembered, not shown.
    resizeParent(parent, 240, 160);
    sendSize(shadow, parent, SIZE_RESTORED);
    CHECK(!::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 1);
    CHECK(!shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), count);

    // Shown again: visible at once, drawn for the new size at the first paint.
    ::ShowWindow(parent, SW_SHOWNOACTIVATE);
    shadow.OnParentMessage(parent, WM_SHOWWINDOW, TRUE, 0);
    CHECK(::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 7);
    CHECK(shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), count);
    shadow.OnParentMessage(parent, WM_PAINT, 0, 0);
    CHECK(!shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), (Box{95, 95, 250, 170}));

    // Shown when already known as shown: nothing.
    shadow.OnParentMessage(parent, WM_SHOWWINDOW, TRUE, 0);
    CHECK(!shadow.updatePending());
    CHECK_EQ(shadow.status(), 7);
    shadow.OnParentMessage(parent, WM_PAINT, 0, 0);
    CHECK_EQ(shadow.updateCount(), count);

    // A parent created hidden gets its shadow when it is first shown.
    HWND late = makeParent(WS_POPUP);
    CWndShadow lateShadow;
    lateShadow.Create(late);
    coreSettings(lateShadow);
    CHECK_EQ(lateShadow.updateCount(), 0);
    ::ShowWindow(late, SW_SHOWNOACTIVATE);
    lateShadow.OnParentMessage(late, WM_SHOWWINDOW, TRUE, 0);
    CHECK_EQ(lateShadow.status(), 7);
    CHECK(::IsWindowVisible(lateShadow.shadowWindow()));
    CHECK(lateShadow.updatePending());
    lateShadow.OnParentMessage(late, WM_PAINT, 0, 0);
    CHECK_EQ(lateShadow.updateCount(), 1);
    CHECK_EQ(box(lateShadow.shadowWindow()), (Box{95, 95, 310, 210}));

    // A parent created maximised is already known as shown: WM_SHOWWINDOW changes
    // nothing, the restore's WM_SIZE brings the shadow.
    HWND maximised = makeParent();
    ::ShowWindow(maximised, SW_MAXIMIZE);
    CWndShadow maximisedShadow;
    maximisedShadow.Create(maximised);
    coreSettings(maximisedShadow);
    maximisedShadow.OnParentMessage(maximised, WM_SHOWWINDOW, TRUE, 0);
    CHECK_EQ(maximisedShadow.status(), 5);
    CHECK(!maximisedShadow.updatePending());
    CHECK(!::IsWindowVisible(maximisedShadow.shadowWindow()));
    ::ShowWindow(maximised, SW_RESTORE);
    sendSize(maximisedShadow, maximised, SIZE_RESTORED);
    CHECK_EQ(maximisedShadow.status(), 7);
    CHECK(::IsWindowVisible(maximisedShadow.shadowWindow()));
    CHECK(maximisedShadow.updatePending());
    maximisedShadow.OnParentMessage(maximised, WM_PAINT, 0, 0);
    CHECK_EQ(maximisedShadow.updateCount(), 1);
    CHECK_EQ(box(maximisedShadow.shadowWindow()), (Box{95, 95, 310, 210}));

    for (HWND p : {parent, late, maximised})
        ::DestroyWindow(p);
}

// ---------------------------------------------------------------------------------

std::uint32_t at(const std::vector<std::uint32_t>& bits, int width, int height, int x, int y)
{
    // Shadow coordinates from the top; the bitmap is bottom-up.
    return bits[size_t(height - 1 - y) * size_t(width) + size_t(x)];
}

void bitmapCase()
{
    registerParentClass();
    // The region as the shadow takes it: the rectangle, unless the window has a region
    // of its own.
    HWND parent = makeParent();
    HRGN region = ::CreateRectRgn(0, 0, 300, 200);
    CHECK_EQ(::GetWindowRgn(parent, region), ERROR);
    CHECK(::PtInRegion(region, 0, 0));
    CHECK(::PtInRegion(region, 299, 199));
    CHECK(!::PtInRegion(region, 300, 199));
    CHECK(!::PtInRegion(region, 299, 200));

    ZVUIFramework::ShadowSettings core;
    core.size = 5;
    core.sharpness = 5;
    core.darkness = 40;
    core.xOffset = 0;
    core.yOffset = 0;
    core.color = 0;
    const auto inside = [region](int x, int y) { return ::PtInRegion(region, x, y) != FALSE; };
    const std::vector<std::uint32_t> bits = ZVUIFramework::RenderShadow(300, 200, inside, core);
    const int W = 310;
    const int H = 210;
    if (CHECK_EQ(bits.size(), size_t(W * H))) {
        // Nothing under the parent, which sits 5 pixels in.
        int covered = 0;
        for (int y = 0; y < 200; ++y)
            for (int x = 0; x < 300; ++x)
                covered += at(bits, W, H, x + 5, y + 5) != 0;
        CHECK_EQ(covered, 0);

        // Black, premultiplied: only alpha, and never more than the darkness.
        unsigned maxAlpha = 0;
        bool onlyAlpha = true;
        for (std::uint32_t p : bits) {
            maxAlpha = std::max(maxAlpha, unsigned(p >> 24));
            onlyAlpha = onlyAlpha && (p & 0xFFFFFF) == 0;
        }
        CHECK(maxAlpha <= 40);
        CHECK_EQ(maxAlpha, 33u);
        CHECK(onlyAlpha);

        // The ramp across the 5 pixels beside the middle of each edge: the kernel
        // (1 - d / 6) * 40 at distances 1 to 5 from the edge.
        const unsigned ramp[5] = {33, 26, 20, 13, 6};
        for (int d = 1; d <= 5; ++d) {
            CHECK_EQ(at(bits, W, H, 5 - d, 105) >> 24, ramp[d - 1]);
            CHECK_EQ(at(bits, W, H, 304 + d, 105) >> 24, ramp[d - 1]);
            CHECK_EQ(at(bits, W, H, 155, 5 - d) >> 24, ramp[d - 1]);
            CHECK_EQ(at(bits, W, H, 155, 204 + d) >> 24, ramp[d - 1]);
        }
        // The corners are rounded off: more than 5 pixels from the parent's corner.
        CHECK_EQ(at(bits, W, H, 0, 0), 0u);
        CHECK_EQ(at(bits, W, H, W - 1, H - 1), 0u);
    }

    // A colour is premultiplied by each pixel's alpha.
    ZVUIFramework::ShadowSettings orange = core;
    orange.color = RGB(255, 128, 0);
    const std::vector<std::uint32_t> coloured = ZVUIFramework::RenderShadow(300, 200, inside, orange);
    if (CHECK_EQ(coloured.size(), size_t(W * H))) {
        CHECK_EQ(at(coloured, W, H, 4, 105), 0x21211000u);
        CHECK_EQ(at(coloured, W, H, 0, 105), 0x06060300u);
    }
    ::DeleteObject(region);

    // A window with a region of its own: the region is what the shadow sees, so the
    // corner cut off the window is no longer cut out of the shadow. Window pixel (5, 5)
    // lies just outside the rounded corner.
    HRGN rounded = ::CreateRoundRectRgn(0, 0, 301, 201, 40, 40);
    CHECK(::SetWindowRgn(parent, rounded, TRUE));
    HRGN windowRegion = ::CreateRectRgn(0, 0, 300, 200);
    CHECK(::GetWindowRgn(parent, windowRegion) != ERROR);
    CHECK(!::PtInRegion(windowRegion, 0, 0));
    CHECK(::PtInRegion(windowRegion, 150, 100));
    const std::vector<std::uint32_t> roundBits = ZVUIFramework::RenderShadow(
        300, 200, [windowRegion](int x, int y) { return ::PtInRegion(windowRegion, x, y) != FALSE; }, core);
    if (CHECK_EQ(roundBits.size(), size_t(W * H))) {
        CHECK_EQ(at(bits, W, H, 10, 10), 0u);
        CHECK((at(roundBits, W, H, 10, 10) >> 24) > 0);
        CHECK_EQ(at(roundBits, W, H, 155, 105), 0u);
    }
    ::DeleteObject(windowRegion);

    // Update draws a window with a region at the same place and size.
    if (initialize()) {
        CWndShadow shadow;
        shadow.Create(parent);
        coreSettings(shadow);
        CHECK_EQ(shadow.updateCount(), 4);
        CHECK_EQ(box(shadow.shadowWindow()), (Box{95, 95, 310, 210}));
    }
    ::DestroyWindow(parent);
}

// ---------------------------------------------------------------------------------

// The screen as composed, which is where a layered window's pixels can be seen.
COLORREF screenPixel(int x, int y)
{
    HDC screen = ::GetDC(nullptr);
    const COLORREF colour = ::GetPixel(screen, x, y);
    ::ReleaseDC(nullptr, screen);
    return colour;
}

// Lets the windows reach the screen: until \a x, \a y shows \a colour, three seconds
// at most.
bool waitForPixel(int x, int y, COLORREF colour)
{
    for (int i = 0; i < 150; ++i) {
        pump();
        if (screenPixel(x, y) == colour)
            return true;
        ::Sleep(20);
    }
    return false;
}

// The screen at \a x, \a y comes to show \a colour. Covered parts of the parent repaint
// when the shadow changes above them, so each point gets its time.
void expectPixel(int x, int y, COLORREF colour)
{
    waitForPixel(x, y, colour);
    if (!CHECK_EQ(screenPixel(x, y), colour))
        std::printf("    at (%d, %d)\n", x, y);
}

void screenCase()
{
    if (!initialize())
        return;
    // A parent with rounded corners of radius 20 and a shadow of one solid colour,
    // without a ramp, so that each pixel on the screen is either the shadow's or what
    // lies below it.
    HWND parent = makeParent();
    CHECK(::SetWindowRgn(parent, ::CreateRoundRectRgn(0, 0, 301, 201, 40, 40), TRUE));
    ::UpdateWindow(parent);
    const COLORREF parentColour = ::GetSysColor(COLOR_WINDOW);
    const COLORREF red = RGB(255, 0, 0);
    CHECK(parentColour != red);
    expectPixel(250, 200, parentColour);

    CWndShadow shadow;
    shadow.Create(parent);
    coreSettings(shadow);
    CHECK(shadow.SetSharpness(0));
    CHECK(shadow.SetDarkness(255));
    CHECK(shadow.SetColor(red));
    CHECK_EQ(box(shadow.shadowWindow()), (Box{95, 95, 310, 210}));

    // The ring: 5 pixels on every side, and nothing beyond.
    for (const POINT p : {POINT{97, 200}, POINT{95, 200}, POINT{99, 200}, POINT{400, 200}, POINT{404, 200},
                          POINT{250, 95}, POINT{250, 99}, POINT{250, 300}, POINT{250, 304}})
        expectPixel(p.x, p.y, red);
    // Over the parent the shadow is fully transparent, up to the parent's edges.
    for (const POINT p : {POINT{250, 200}, POINT{100, 200}, POINT{399, 200}, POINT{250, 100}, POINT{250, 299},
                          POINT{120, 120}})
        expectPixel(p.x, p.y, parentColour);
    // The rounded corner: just outside the region the shadow shows, as it follows the
    // region and not the rectangle.
    expectPixel(104, 104, red);
    expectPixel(395, 104, red);
    // Nothing beyond the ring, nor where the rectangle's corner would have reached.
    for (const POINT p : {POINT{94, 200}, POINT{405, 200}, POINT{250, 94}, POINT{250, 305}, POINT{96, 96}})
        CHECK(screenPixel(p.x, p.y) != red);

    // After a move the same picture is at the new place, and the old one is gone.
    const COLORREF desktop = screenPixel(50, 50);
    CHECK(desktop != red);
    moveParent(parent, 300, 250);
    shadow.OnParentMessage(parent, WM_MOVE, 0, MAKELPARAM(300, 250));
    expectPixel(297, 350, red);
    expectPixel(450, 350, parentColour);
    expectPixel(97, 200, desktop);

    ::DestroyWindow(parent);
}

// ---------------------------------------------------------------------------------

void subclassCase()
{
    if (!initialize())
        return;
    HWND parent = makeParent();
    pump(); // the first paint, before the shadow listens
    CWndShadow shadow;
    shadow.Create(parent);
    coreSettings(shadow);
    const HWND window = shadow.shadowWindow();
    int count = shadow.updateCount();

    const WNDPROC previous = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(parent, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CWndShadow::ParentProc)));
    CHECK(previous == plainProc);
    shadow.SetPreviousParentProc(previous);
    CHECK(shadow.previousParentProc() == plainProc);

    // Found by the parent's handle.
    CWndShadow::ParentProc(parent, WM_EXITSIZEMOVE, 0, 0);
    CHECK_EQ(shadow.updateCount(), ++count);

    // A real move: the shadow follows without a redraw, and the parent's own procedure
    // still gets the message.
    const int moves = g_moves;
    moveParent(parent, 200, 150);
    CHECK(g_moves > moves);
    CHECK_EQ(shadow.updateCount(), count);
    CHECK_EQ(box(window), (Box{195, 145, 310, 210}));

    // A real resize: the first one grows from nothing and is drawn at the paint.
    const int sizes = g_sizes;
    resizeParent(parent, 260, 180);
    CHECK(g_sizes > sizes);
    CHECK_EQ(shadow.lastParentSize(), MAKELPARAM(260, 180));
    CHECK(shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), count);
    const int paints = g_paints;
    pump();
    CHECK(g_paints > paints);
    CHECK(!shadow.updatePending());
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK_EQ(box(window), (Box{195, 145, 270, 190}));

    // Shrinking: drawn at once.
    resizeParent(parent, 240, 160);
    CHECK_EQ(shadow.updateCount(), ++count);
    CHECK(!shadow.updatePending());
    CHECK_EQ(box(window), (Box{195, 145, 250, 170}));
    pump();

    // Growing: at the paint.
    resizeParent(parent, 320, 220);
    CHECK(shadow.updatePending());
    CHECK_EQ(box(window), (Box{195, 145, 250, 170}));
    pump();
    CHECK(!shadow.updatePending());
    CHECK_EQ(box(window), (Box{195, 145, 330, 230}));
    count = shadow.updateCount();

    // Hidden and shown for real.
    ::ShowWindow(parent, SW_HIDE);
    CHECK(!::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 1);
    ::ShowWindow(parent, SW_SHOWNOACTIVATE);
    CHECK(::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 7);
    pump();
    CHECK(!shadow.updatePending());
    CHECK(shadow.updateCount() > count);
    CHECK_EQ(box(window), (Box{195, 145, 330, 230}));

    // Maximised and restored for real.
    ::ShowWindow(parent, SW_MAXIMIZE);
    CHECK(!::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 5);
    ::ShowWindow(parent, SW_RESTORE);
    pump();
    CHECK(::IsWindowVisible(window));
    CHECK_EQ(shadow.status(), 7);
    CHECK(!shadow.updatePending());
    CHECK_EQ(box(window), (Box{195, 145, 330, 230}));
    count = shadow.updateCount();

    // Destroyed: the shadow window goes, the parent leaves the registry on
    // WM_NCDESTROY, and the parent's own procedure sees that message too.
    const int ncdestroys = g_ncdestroys;
    ::DestroyWindow(parent);
    CHECK(!::IsWindow(window));
    CHECK_EQ(g_ncdestroys, ncdestroys + 1);
    CWndShadow::ParentProc(parent, WM_EXITSIZEMOVE, 0, 0);
    CHECK_EQ(shadow.updateCount(), count);
}

// The lane's X server has no window manager, and Wine, which leaves most top-level
// windows to one, then waits two seconds for it on every hide. Its per-program setting
// makes it place this program's windows itself; written before the first window, it
// holds for this run already. Nothing of this on Windows.
// Two parents with a shadow each, owned through the registry as the core windows own
// them, closed in both orders: the parent that stays keeps a live shadow that follows
// it, the one that goes takes its own shadow window along, and nothing is deleted twice.
void twoWindowsCase()
{
    if (!initialize())
        return;
    for (const bool firstGoesFirst : {true, false}) {
        ZVUIFramework::ShadowRegistry<CWndShadow> registry;
        HWND parents[2] = {makeParent(), makeParent()};
        HWND shadowWindows[2] = {};
        for (int i = 0; i < 2; ++i) {
            auto* shadow = new CWndShadow;
            registry.Add(parents[i], shadow);
            shadow->Create(parents[i]);
            coreSettings(*shadow);
            shadowWindows[i] = shadow->shadowWindow();
            CHECK(::IsWindow(shadowWindows[i]));
            CHECK_EQ(registry.Current(), shadow);
        }
        CHECK(shadowWindows[0] != shadowWindows[1]);
        const int leaving = firstGoesFirst ? 0 : 1;
        const int staying = 1 - leaving;

        CWndShadow* own = registry.Remove(parents[leaving]);
        CHECK(own != nullptr);
        CHECK_EQ(own->shadowWindow(), shadowWindows[leaving]);
        delete own;
        ::DestroyWindow(parents[leaving]);
        pump();
        CHECK(!::IsWindow(shadowWindows[leaving]));
        CHECK(::IsWindow(shadowWindows[staying]));
        CHECK_EQ(registry.Remove(parents[leaving]), static_cast<CWndShadow*>(nullptr));

        // The window that stays forwards its move to its own shadow, which follows.
        CWndShadow* remaining = registry.Of(parents[staying]);
        CHECK(remaining != nullptr);
        CHECK_EQ(registry.Current(), remaining);
        if (remaining) {
            moveParent(parents[staying], 170, 140);
            remaining->OnParentMessage(parents[staying], WM_MOVE, 0, MAKELPARAM(170, 140));
            CHECK_EQ(box(shadowWindows[staying]), (Box{165, 135, 310, 210}));
        }
        delete registry.Remove(parents[staying]);
        ::DestroyWindow(parents[staying]);
        pump();
        CHECK(!::IsWindow(shadowWindows[staying]));
        CHECK_EQ(registry.Count(), std::size_t(0));
    }
}

void placeWindowsOurselvesUnderWine()
{
    HMODULE ntdll = ::GetModuleHandleW(L"ntdll.dll");
    if (!ntdll || !::GetProcAddress(ntdll, "wine_get_version"))
        return;
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring program(path);
    program = program.substr(program.find_last_of(L"\\/") + 1);
    const std::wstring keyName = L"Software\\Wine\\AppDefaults\\" + program + L"\\X11 Driver";
    HKEY key = nullptr;
    if (::RegCreateKeyExW(HKEY_CURRENT_USER, keyName.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr) ==
        ERROR_SUCCESS) {
        const wchar_t no[] = L"N";
        ::RegSetValueExW(key, L"Managed", 0, REG_SZ, reinterpret_cast<const BYTE*>(no), sizeof no);
        ::RegCloseKey(key);
    }
}

struct Case
{
    const char* name;
    void (*run)();
};

// "class" first: it sees the process before Initialize.
const Case kCases[] = {
    {"class", classCase},   {"create", createCase}, {"setters", settersCase}, {"move-size", moveSizeCase},
    {"show", showCase},     {"bitmap", bitmapCase}, {"screen", screenCase},   {"subclass", subclassCase},
    {"two-windows", twoWindowsCase},
};

} // namespace

// Without an argument all cases run, in one process: each process with windows costs
// the lane a desktop start. With a case name only that one runs.
int main(int argc, char** argv)
{
    placeWindowsOurselvesUnderWine();
    const std::string which = argc > 1 ? argv[1] : "";
    bool found = false;
    for (const Case& c : kCases) {
        if (!which.empty() && which != c.name)
            continue;
        found = true;
        const int before = zvcheck::failures();
        c.run();
        pump();
        std::printf("%s: %d failed\n", c.name, zvcheck::failures() - before);
    }
    if (!found)
        CHECK(!"unknown case");
    return zvcheck::finish(("shadow " + which).c_str());
}
