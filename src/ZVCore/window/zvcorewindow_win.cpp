// The core window on Windows: the window has no system frame, so it answers the
// non-client messages itself, and the layered shadow follows its messages.
#include "zvcorewindow.h"
#include "zvcorewindow_p.h"

#include "cwndshadow_win.h"
#include "shadowregistry.h"

#include <ZVFoundation/private/ZVQtCompat>

#include <QtCore/QCoreApplication>

#include <windows.h>
#include <windowsx.h>

namespace {

// The layered shadows, each owned by the window that built it.
ZVUIFramework::ShadowRegistry<CWndShadow> g_shadows;
// Set while a maximised window has given up its shadow margin.
bool g_marginsRemoved = false;

HWND handleOf(const QWidget* widget)
{
    return reinterpret_cast<HWND>(widget->winId());
}

void forwardToShadow(const ZVCoreWindow* window, const MSG* msg)
{
    if (CWndShadow* shadow = g_shadows.Of(window))
        shadow->OnParentMessage(msg->hwnd, msg->message, msg->wParam, msg->lParam);
}

} // namespace

void ZVCoreWindowPrivate::createLayeredShadow()
{
    Q_Q(ZVCoreWindow);
    const HWND hwnd = handleOf(q);
    CWndShadow::Initialize(GetModuleHandleW(nullptr));
    auto* shadow = new CWndShadow;
    g_shadows.Add(q, shadow);
    shadow->Create(hwnd);
    shadow->SetSize(5);
    shadow->SetPosition(0, 0);
    shadow->SetDarkness(40);
}

void ZVCoreWindowPrivate::deleteLayeredShadow()
{
    Q_Q(ZVCoreWindow);
    delete g_shadows.Remove(q);
}

void ZVCoreWindowPrivate::setMaximizeBoxHidden(bool hide)
{
    Q_Q(ZVCoreWindow);
    const HWND hwnd = handleOf(q);
    LONG style = GetWindowLongW(hwnd, GWL_STYLE);
    if (hide)
        style &= ~LONG(WS_MAXIMIZEBOX);
    else
        style |= LONG(WS_MAXIMIZEBOX);
    SetWindowLongW(hwnd, GWL_STYLE, style);
}

void ZVCoreWindowPrivate::switchDragFullWindows(bool resizable)
{
    BOOL saved = FALSE;
    SystemParametersInfoW(SPI_GETDRAGFULLWINDOWS, 0, &saved, 0);
    m_savedDragFullWindows = saved != FALSE;
    // Neither persisted nor broadcast: the setting is the window's only while it lives.
    if (m_savedDragFullWindows)
        SystemParametersInfoW(SPI_SETDRAGFULLWINDOWS, resizable ? FALSE : TRUE, nullptr, 0);
}

void ZVCoreWindowPrivate::restoreDragFullWindows()
{
    if (m_savedDragFullWindows)
        SystemParametersInfoW(SPI_SETDRAGFULLWINDOWS, TRUE, nullptr, 0);
}

void ZVCoreWindowPrivate::initFrameHandling()
{
    // The frame rules arrive as native messages.
}

bool ZVCoreWindow::nativeEvent(const QByteArray& eventType, void* message, ZVQtCompat::NativeEventResult* result)
{
    Q_D(ZVCoreWindow);
    const MSG* msg = static_cast<const MSG*>(message);
    if (!msg)
        return QMainWindow::nativeEvent(eventType, message, result);

    switch (msg->message) {
    case WM_DESTROY:
    case WM_MOVE:
    case WM_PAINT:
    case WM_SHOWWINDOW:
    case WM_EXITSIZEMOVE:
        forwardToShadow(this, msg);
        return false;

    case WM_SIZE:
        forwardToShadow(this, msg);
        if (d->m_qtBasedShadow) {
            if (msg->wParam == SIZE_MAXIMIZED) {
                setContentsMargins(0, 0, 0, 0);
                g_marginsRemoved = true;
            } else if (g_marginsRemoved && !IsZoomed(msg->hwnd)) {
                setContentsMargins(ZVUIFramework::kShadowMargin, ZVUIFramework::kShadowMargin,
                                   ZVUIFramework::kShadowMargin, ZVUIFramework::kShadowMargin);
                g_marginsRemoved = false;
                InvalidateRect(handleOf(this), nullptr, FALSE);
            }
        }
        return false;

    case WM_GETMINMAXINFO: {
        // A maximised frameless window covers the work area, not the taskbar.
        RECT area = {};
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
        auto* info = reinterpret_cast<MINMAXINFO*>(msg->lParam);
        if (info) {
            info->ptMaxSize.x = area.right - area.left;
            info->ptMaxSize.y = area.bottom - area.top;
            info->ptMaxPosition.x = area.left;
            info->ptMaxPosition.y = area.top;
            info->ptMaxTrackSize.x = area.right - area.left;
            info->ptMaxTrackSize.y = area.bottom - area.top;
        }
        // Default processing goes on with the changed structure.
        return false;
    }

    case WM_NCCALCSIZE:
        // The whole window is client area.
        if (result)
            *result = WVR_HREDRAW | WVR_VREDRAW;
        return true;

    case WM_NCHITTEST: {
        RECT rect = {};
        GetWindowRect(handleOf(this), &rect);
        const QRect windowRect(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
        const QPoint pos(GET_X_LPARAM(msg->lParam), GET_Y_LPARAM(msg->lParam));
        const long code = HitTest(windowRect, pos);
        if (code == ZVUIFramework::kHitNowhere || !result)
            return false;
        *result = code;
        return true;
    }

    default:
        return QMainWindow::nativeEvent(eventType, message, result);
    }
}

void ZVCoreWindow::changeEvent(QEvent* event)
{
    // The margin rule follows WM_SIZE here.
    QMainWindow::changeEvent(event);
}

bool ZVCoreWindow::eventFilter(QObject* watched, QEvent* event)
{
    return QMainWindow::eventFilter(watched, event);
}
