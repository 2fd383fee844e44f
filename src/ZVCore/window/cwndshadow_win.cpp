#include "cwndshadow_win.h"

#include "rendershadow.h"

#include <cstring>
#include <map>

namespace {

using UpdateLayeredWindowFunction = BOOL(WINAPI*)(HWND window, HDC screen, POINT* position, SIZE* size, HDC source,
                                                  POINT* sourcePosition, COLORREF key, BLENDFUNCTION* blend,
                                                  DWORD flags);

// Looked up at run time rather than imported, so that a system without layered windows
// still loads the library; its windows just have no shadow.
UpdateLayeredWindowFunction s_updateLayeredWindow = nullptr;
HINSTANCE s_instance = nullptr;

const wchar_t kClassName[] = L"ZVShadowWnd";

// The shadows by parent, for ParentProc. A function-level static, so that it exists
// before any static object of another file could create a shadow.
std::map<HWND, CWndShadow*>& registry()
{
    static std::map<HWND, CWndShadow*> shadows;
    return shadows;
}

bool inRange(int value, int low, int high)
{
    return value >= low && value <= high;
}

} // namespace

CWndShadow::CWndShadow()
    : m_shadow(reinterpret_cast<HWND>(static_cast<INT_PTR>(-1)))
    , m_previousParentProc(nullptr)
    , m_status(0)
    , m_darkness(150)
    , m_sharpness(5)
    , m_size(0)
    , m_xOffset(5)
    , m_yOffset(5)
    , m_lastParentSize(0)
    , m_updatePending(false)
    , m_color(0)
    , m_updateCount(0)
{
}

CWndShadow::~CWndShadow()
{
    // The shadow window belongs to the parent and goes with it. What must not outlive
    // this object is a registry entry that a subclassed parent would still follow.
    auto& shadows = registry();
    for (auto it = shadows.begin(); it != shadows.end();) {
        if (it->second == this)
            it = shadows.erase(it);
        else
            ++it;
    }
}

bool CWndShadow::Initialize(HINSTANCE instance)
{
    if (s_updateLayeredWindow)
        return false;
    HMODULE user32 = ::GetModuleHandleW(L"USER32.DLL");
    if (!user32)
        return false;
    s_updateLayeredWindow = reinterpret_cast<UpdateLayeredWindowFunction>(
        reinterpret_cast<void*>(::GetProcAddress(user32, "UpdateLayeredWindow")));
    if (!s_updateLayeredWindow)
        return false;

    s_instance = instance;
    WNDCLASSEXW wc;
    std::memset(&wc, 0, sizeof wc);
    wc.cbSize = sizeof wc;
    wc.style = CS_HREDRAW | CS_VREDRAW;
    wc.lpfnWndProc = ::DefWindowProcW;
    wc.cbClsExtra = 0;
    wc.cbWndExtra = 0;
    wc.hInstance = instance;
    wc.hIcon = nullptr;
    wc.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // IDC_ARROW, whatever UNICODE says
    wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_WINDOW + 1));
    wc.lpszMenuName = nullptr;
    wc.lpszClassName = kClassName;
    wc.hIconSm = nullptr;
    // A class left registered by an earlier instance of the library is just as good.
    ::RegisterClassExW(&wc);
    return true;
}

void CWndShadow::Create(HWND parent)
{
    if (!s_updateLayeredWindow)
        return;
    registry()[parent] = this;

    // Owned by the parent, so it stays above it and goes with it; transparent to the
    // mouse, so that clicks reach whatever lies below the shadow.
    m_shadow = ::CreateWindowExW(WS_EX_LAYERED | WS_EX_TRANSPARENT, kClassName, nullptr, WS_POPUPWINDOW,
                                 CW_USEDEFAULT, 0, 0, 0, parent, nullptr, s_instance, nullptr);

    const LONG style = ::GetWindowLongW(parent, GWL_STYLE);
    if (!(style & WS_VISIBLE)) {
        m_status = Enabled;
    } else if (style & (WS_MAXIMIZE | WS_MINIMIZE)) {
        // Shown again by the WM_SIZE of the restore.
        m_status = Enabled | ParentVisible;
    } else {
        m_status = Enabled | Visible | ParentVisible;
        ::ShowWindow(m_shadow, SW_SHOWNA);
        Update(parent);
    }
}

bool CWndShadow::SetSize(int size)
{
    if (!inRange(size, -20, 20))
        return false;
    m_size = static_cast<signed char>(size);
    if (m_status & Visible)
        Update(::GetParent(m_shadow));
    return true;
}

bool CWndShadow::SetSharpness(unsigned int sharpness)
{
    if (sharpness > 20)
        return false;
    m_sharpness = static_cast<unsigned char>(sharpness);
    if (m_status & Visible)
        Update(::GetParent(m_shadow));
    return true;
}

bool CWndShadow::SetDarkness(unsigned int darkness)
{
    if (darkness > 255)
        return false;
    m_darkness = static_cast<unsigned char>(darkness);
    if (m_status & Visible)
        Update(::GetParent(m_shadow));
    return true;
}

bool CWndShadow::SetPosition(int x, int y)
{
    if (!inRange(x, -20, 20) || !inRange(y, -20, 20))
        return false;
    m_xOffset = static_cast<signed char>(x);
    m_yOffset = static_cast<signed char>(y);
    if (m_status & Visible)
        Update(::GetParent(m_shadow));
    return true;
}

bool CWndShadow::SetColor(COLORREF color)
{
    m_color = color;
    if (m_status & Visible)
        Update(::GetParent(m_shadow));
    return true;
}

void CWndShadow::OnParentMessage(HWND parent, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_DESTROY:
        ::DestroyWindow(m_shadow);
        break;

    case WM_MOVE:
        // A move keeps the bitmap: only the window goes along.
        if (m_status & Visible) {
            RECT rect;
            ::GetWindowRect(parent, &rect);
            ::SetWindowPos(m_shadow, nullptr, rect.left + m_xOffset - m_size, rect.top + m_yOffset - m_size, 0, 0,
                           SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
        break;

    case WM_SIZE:
        if (m_status & Enabled) {
            if (wParam == SIZE_MAXIMIZED || wParam == SIZE_MINIMIZED) {
                // A maximised or minimised window has no shadow.
                ::ShowWindow(m_shadow, SW_HIDE);
                m_status &= ~Visible;
            } else if (m_status & ParentVisible) {
                // Shrinking redraws at once, or the old, larger shadow would stick out;
                // growing waits for the parent's paint, which comes after the new area
                // is ready, so that a live resize does not recompute on every step.
                if (LOWORD(lParam) <= LOWORD(m_lastParentSize) && HIWORD(lParam) <= HIWORD(m_lastParentSize))
                    Update(parent);
                else
                    m_updatePending = true;
                if (!(m_status & Visible)) {
                    ::ShowWindow(m_shadow, SW_SHOWNA);
                    m_status |= Visible;
                }
            }
            m_lastParentSize = lParam;
        }
        break;

    case WM_PAINT:
        if (m_updatePending) {
            Update(parent);
            m_updatePending = false;
        }
        break;

    case WM_SHOWWINDOW:
        if (m_status & Enabled) {
            if (!wParam) {
                ::ShowWindow(m_shadow, SW_HIDE);
                m_status &= ~(Visible | ParentVisible);
            } else if (!(m_status & ParentVisible)) {
                // The parent's size may have changed while it was hidden: redraw with
                // its first paint.
                m_updatePending = true;
                ::ShowWindow(m_shadow, SW_SHOWNA);
                m_status |= Visible | ParentVisible;
            }
        }
        break;

    case WM_EXITSIZEMOVE:
        if (m_status & Visible)
            Update(parent);
        break;

    default:
        break;
    }
}

LRESULT CALLBACK CWndShadow::ParentProc(HWND parent, UINT message, WPARAM wParam, LPARAM lParam)
{
    WNDPROC previous = nullptr;
    auto& shadows = registry();
    const auto it = shadows.find(parent);
    if (it != shadows.end()) {
        CWndShadow* shadow = it->second;
        previous = shadow->m_previousParentProc;
        shadow->OnParentMessage(parent, message, wParam, lParam);
        if (message == WM_NCDESTROY)
            shadows.erase(parent);
    }
    if (!previous)
        return ::DefWindowProcW(parent, message, wParam, lParam);
    return ::CallWindowProcW(previous, parent, message, wParam, lParam);
}

void CWndShadow::SetPreviousParentProc(WNDPROC previous)
{
    m_previousParentProc = previous;
}

WNDPROC CWndShadow::previousParentProc() const
{
    return m_previousParentProc;
}

HWND CWndShadow::shadowWindow() const
{
    return m_shadow;
}

unsigned char CWndShadow::status() const
{
    return m_status;
}

bool CWndShadow::updatePending() const
{
    return m_updatePending;
}

int CWndShadow::size() const
{
    return m_size;
}

unsigned int CWndShadow::sharpness() const
{
    return m_sharpness;
}

unsigned int CWndShadow::darkness() const
{
    return m_darkness;
}

int CWndShadow::xOffset() const
{
    return m_xOffset;
}

int CWndShadow::yOffset() const
{
    return m_yOffset;
}

COLORREF CWndShadow::color() const
{
    return m_color;
}

LPARAM CWndShadow::lastParentSize() const
{
    return m_lastParentSize;
}

int CWndShadow::updateCount() const
{
    return m_updateCount;
}

void CWndShadow::Update(HWND parent)
{
    ++m_updateCount;

    RECT rect = {0, 0, 0, 0};
    ::GetWindowRect(parent, &rect);
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;
    const int size = m_size;
    const int shadowWidth = width + 2 * size;
    const int shadowHeight = height + 2 * size;

    // 32-bit bottom-up, the layout the computation produces and UpdateLayeredWindow
    // takes as premultiplied alpha.
    BITMAPINFO info;
    std::memset(&info, 0, sizeof info);
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = shadowWidth;
    info.bmiHeader.biHeight = shadowHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    info.bmiHeader.biSizeImage = DWORD(shadowWidth) * DWORD(shadowHeight) * 4;
    void* bits = nullptr;
    HBITMAP bitmap = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);

    if (bits && shadowWidth > 0 && shadowHeight > 0) {
        const size_t count = size_t(shadowWidth) * size_t(shadowHeight);
        std::memset(bits, 0, count * 4);

        // The region in window coordinates; a window without a region of its own keeps
        // the rectangle, as GetWindowRgn then leaves it alone.
        HRGN region = ::CreateRectRgn(0, 0, width, height);
        ::GetWindowRgn(parent, region);
        ZVUIFramework::ShadowSettings settings;
        settings.size = size;
        settings.sharpness = m_sharpness;
        settings.darkness = m_darkness;
        settings.xOffset = m_xOffset;
        settings.yOffset = m_yOffset;
        settings.color = m_color;
        const std::vector<std::uint32_t> pixels = ZVUIFramework::RenderShadow(
            width, height, [region](int x, int y) { return ::PtInRegion(region, x, y) != FALSE; }, settings);
        ::DeleteObject(region);
        std::memcpy(bits, pixels.data(), (pixels.size() < count ? pixels.size() : count) * 4);
    }

    HDC dc = ::CreateCompatibleDC(nullptr);
    HGDIOBJ oldBitmap = ::SelectObject(dc, bitmap);

    POINT position = {rect.left + m_xOffset - size, rect.top + m_yOffset - size};
    ::MoveWindow(m_shadow, position.x, position.y, shadowWidth, shadowHeight, FALSE);
    SIZE extent = {shadowWidth, shadowHeight};
    POINT origin = {0, 0};
    BLENDFUNCTION blend = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    if (s_updateLayeredWindow)
        s_updateLayeredWindow(m_shadow, nullptr, &position, &extent, dc, &origin, 0, &blend, ULW_ALPHA);

    ::SelectObject(dc, oldBitmap);
    ::DeleteObject(bitmap);
    ::DeleteDC(dc);
}
