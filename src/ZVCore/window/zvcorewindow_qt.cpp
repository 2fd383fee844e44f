// The core window where no system frame answers for it (X11, Wayland, offscreen and
// other platforms): the hit test drives system moves and resizes from the mouse, the
// window manager maximises, and the layered shadow is a window of our own.
#include "zvcorewindow.h"
#include "zvcorewindow_p.h"

#include "compositorwatch.h"
#include "cwindowmenu.h"
#include "shadowregistry.h"
#include "shadowwindow_qt.h"

#include <ZVCore/private/ZVMainWindowTitle>
#include <ZVFoundation/private/ZVQtCompat>

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QtMath>
#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QShortcut> // QtWidgets in Qt 5, QtGui in Qt 6

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>

// Wherever the frame's platform list is "xcb", libxcb is linked; Qt's own connection is
// not reachable through public API, so the little asked of the X server goes through one
// of ours.
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN) && __has_include(<xcb/xcb.h>)
#include <xcb/xcb.h>
#define ZV_FRAME_X11 1
#endif

using ZVUIFramework::CShadowWindowQt;

namespace {

// The layered shadows, each owned by the window that built it.
ZVUIFramework::ShadowRegistry<CShadowWindowQt> g_shadows;
// Set while a maximised window has given up its shadow margin.
bool g_marginsRemoved = false;

bool isOffscreen()
{
    return QGuiApplication::platformName() == QLatin1String("offscreen");
}

// Logical to physical pixels, rounded up, so that dividing by the ratio and truncating,
// as the title test does, gives the logical position back.
int toPhysical(qreal logical, qreal dpr)
{
    return qCeil(logical * dpr - 1e-9);
}

#ifdef ZV_FRAME_X11
// A short-lived connection to the display Qt uses, with its root window.
struct X11Root
{
    X11Root()
    {
        const QByteArray display = qgetenv("DISPLAY");
        int screenNumber = 0;
        connection = xcb_connect(display.isEmpty() ? nullptr : display.constData(), &screenNumber);
        if (xcb_connection_has_error(connection))
            return;
        xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
        for (int i = 0; i < screenNumber && screens.rem; ++i)
            xcb_screen_next(&screens);
        if (screens.rem)
            root = screens.data->root;
    }
    ~X11Root() { xcb_disconnect(connection); }
    X11Root(const X11Root&) = delete;
    X11Root& operator=(const X11Root&) = delete;

    bool isValid() const { return root != XCB_WINDOW_NONE; }

    xcb_atom_t atom(const char* name) const
    {
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
            connection, xcb_intern_atom(connection, 0, uint16_t(std::strlen(name)), name), nullptr);
        const xcb_atom_t result = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
        std::free(reply);
        return result;
    }

    // Whether the window manager lists \a name in _NET_SUPPORTED.
    bool supports(const char* name) const
    {
        const xcb_atom_t wanted = atom(name);
        const xcb_atom_t supported = atom("_NET_SUPPORTED");
        if (wanted == XCB_ATOM_NONE || supported == XCB_ATOM_NONE)
            return false;
        xcb_get_property_reply_t* reply = xcb_get_property_reply(
            connection, xcb_get_property(connection, 0, root, supported, XCB_ATOM_ATOM, 0, 4096), nullptr);
        bool found = false;
        if (reply && reply->format == 32) {
            const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply));
            const int count = xcb_get_property_value_length(reply) / 4;
            found = std::find(atoms, atoms + count, wanted) != atoms + count;
        }
        std::free(reply);
        return found;
    }

    // A client message about \a window for the window manager.
    void send(xcb_window_t window, xcb_atom_t type, const uint32_t (&data)[5]) const
    {
        xcb_client_message_event_t message = {};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = type;
        std::copy(data, data + 5, message.data.data32);
        xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(connection);
    }

    xcb_connection_t* connection = nullptr;
    xcb_window_t root = XCB_WINDOW_NONE;
};
#endif

// Restarts a system move that the window manager has just begun, so that it measures
// the mouse from \a globalPos (logical), where the mouse was when the window was last
// placed. Qt reports the position of the last mouse event relative to the window, and
// the window has just caught up with the mouse: the window manager would otherwise be
// told a point off by that distance and pull the window back by it.
void restartSystemMoveFrom(QWidget* window, const QPointF& globalPos)
{
#ifdef ZV_FRAME_X11
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    // A reply on Qt's own connection makes sure the X server has seen Qt's start, and
    // its release of the pointer, before the restart below.
    QCursor::pos(window->screen());
    const X11Root x11;
    const xcb_atom_t type = x11.isValid() ? x11.atom("_NET_WM_MOVERESIZE") : xcb_atom_t(XCB_ATOM_NONE);
    if (type == XCB_ATOM_NONE)
        return;
    const qreal dpr = window->devicePixelRatioF();
    const uint32_t x = uint32_t(qRound(globalPos.x() * dpr));
    const uint32_t y = uint32_t(qRound(globalPos.y() * dpr));
    // _NET_WM_MOVERESIZE directions: 8 moves, 11 cancels. Button 1, source 1 (an
    // application).
    for (const uint32_t direction : {11u, 8u}) {
        const uint32_t data[5] = {x, y, direction, 1u, 1u};
        x11.send(xcb_window_t(window->winId()), type, data);
    }
    // Waited for, so that the window manager has the restart before any further motion
    // of the mouse.
    std::free(xcb_get_input_focus_reply(x11.connection, xcb_get_input_focus(x11.connection), nullptr));
#else
    Q_UNUSED(window)
    Q_UNUSED(globalPos)
#endif
}

// Hands the window to the window manager for a move (keyboard \a move) or a resize by
// keyboard, as a system's window menu does; false where no window manager takes it.
bool startKeyboardMoveResize(QWidget* window, bool move)
{
#ifdef ZV_FRAME_X11
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return false;
    const X11Root x11;
    const xcb_atom_t type = x11.isValid() ? x11.atom("_NET_WM_MOVERESIZE") : xcb_atom_t(XCB_ATOM_NONE);
    if (type == XCB_ATOM_NONE)
        return false;
    const QPoint at = QCursor::pos(window->screen());
    const qreal dpr = window->devicePixelRatioF();
    // _NET_WM_MOVERESIZE directions: 9 sizes by keyboard, 10 moves by keyboard. Source
    // 1: an application.
    const uint32_t data[5] = {uint32_t(qRound(at.x() * dpr)), uint32_t(qRound(at.y() * dpr)), move ? 10u : 9u, 0u, 1u};
    x11.send(xcb_window_t(window->winId()), type, data);
    return true;
#else
    Q_UNUSED(window)
    Q_UNUSED(move)
    return false;
#endif
}

// Asks the window manager to show its own window menu at \a globalPos (logical), where it
// offers one (_GTK_SHOW_WINDOW_MENU); false where it does not.
bool showManagersWindowMenu(QWidget* window, const QPoint& globalPos)
{
#ifdef ZV_FRAME_X11
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return false;
    const X11Root x11;
    if (!x11.isValid() || !x11.supports("_GTK_SHOW_WINDOW_MENU"))
        return false;
    const qreal dpr = window->devicePixelRatioF();
    // Device 0 (the core pointer), then the root position.
    const uint32_t data[5] = {0u, uint32_t(qRound(globalPos.x() * dpr)), uint32_t(qRound(globalPos.y() * dpr)), 0u, 0u};
    x11.send(xcb_window_t(window->winId()), x11.atom("_GTK_SHOW_WINDOW_MENU"), data);
    return true;
#else
    Q_UNUSED(window)
    Q_UNUSED(globalPos)
    return false;
#endif
}

Qt::Edges edgesOf(long code)
{
    using namespace ZVUIFramework;
    switch (code) {
    case kHitLeft:
        return Qt::LeftEdge;
    case kHitRight:
        return Qt::RightEdge;
    case kHitTop:
        return Qt::TopEdge;
    case kHitBottom:
        return Qt::BottomEdge;
    case kHitTopLeft:
        return Qt::TopEdge | Qt::LeftEdge;
    case kHitTopRight:
        return Qt::TopEdge | Qt::RightEdge;
    case kHitBottomLeft:
        return Qt::BottomEdge | Qt::LeftEdge;
    case kHitBottomRight:
        return Qt::BottomEdge | Qt::RightEdge;
    default:
        return Qt::Edges();
    }
}

bool isBorder(long code)
{
    return code >= ZVUIFramework::kHitLeft && code <= ZVUIFramework::kHitBottomRight;
}

Qt::CursorShape cursorOf(long code)
{
    using namespace ZVUIFramework;
    switch (code) {
    case kHitLeft:
    case kHitRight:
        return Qt::SizeHorCursor;
    case kHitTop:
    case kHitBottom:
        return Qt::SizeVerCursor;
    case kHitTopLeft:
    case kHitBottomRight:
        return Qt::SizeFDiagCursor;
    case kHitTopRight:
    case kHitBottomLeft:
        return Qt::SizeBDiagCursor;
    default:
        return Qt::ArrowCursor;
    }
}

// One side of a manual resize: the new extent within the window's limits.
int boundedExtent(int start, int delta, int minimum, int maximum)
{
    return qBound(qMax(minimum, 1), start + delta, qMax(maximum, 1));
}

} // namespace

void ZVCoreWindowPrivate::createLayeredShadow()
{
    Q_Q(ZVCoreWindow);
    // No native window is forced into being here: the shadow takes the window as its
    // owner when it first shows. Under a window manager, a native window made this early
    // and a shadow mapped along with it were seen to leave Qt with a wrong window position.
    auto* shadow = new CShadowWindowQt;
    g_shadows.Add(q, shadow);
    shadow->Create(q);
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
    Qt::WindowFlags flags = q->windowFlags();
    flags.setFlag(Qt::WindowMaximizeButtonHint, !hide);
    if (QWindow* handle = q->windowHandle()) {
        // Told to the existing native window: changing the widget's flags would
        // recreate it and hide the window.
        q->overrideWindowFlags(flags);
        handle->setFlags(flags);
    } else {
        q->setWindowFlags(flags);
    }
}

void ZVCoreWindowPrivate::switchDragFullWindows(bool resizable)
{
    // Window managers here have no system-wide outline-dragging switch to flip.
    Q_UNUSED(resizable)
}

void ZVCoreWindowPrivate::restoreDragFullWindows()
{
}

void ZVCoreWindowPrivate::initFrameHandling()
{
    Q_Q(ZVCoreWindow);
    // Application-wide, because presses on the title and hovers over any child near the
    // border must be seen too, and children without mouse tracking never pass a bare
    // move on to their parents.
    if (QCoreApplication* app = QCoreApplication::instance())
        app->installEventFilter(q);

    if (m_qtBasedShadow) {
        ZVUIFramework::CCompositorWatch* watch = ZVUIFramework::CCompositorWatch::Instance();
        // Before the host places the window: its size is then the window's, margin or not.
        m_compositing = watch->IsCompositing();
        if (!m_compositing)
            q->setContentsMargins(0, 0, 0, 0);
        QObject::connect(watch, &ZVUIFramework::CCompositorWatch::compositingChanged, q,
                         [this](bool compositing) { setCompositing(compositing); });
    }

    // Alt+Space opens the window menu below the title's left end, as on a system frame.
    auto* shortcut = new QShortcut(QKeySequence(Qt::ALT | Qt::Key_Space), q);
    shortcut->setContext(Qt::WindowShortcut);
    QObject::connect(shortcut, &QShortcut::activated, q, [this] {
        Q_Q(ZVCoreWindow);
        const QWidget* title = q->GetTitleWidget();
        const QPoint at = title ? title->mapToGlobal(QPoint(0, title->height())) : q->mapToGlobal(QPoint(0, 0));
        showWindowMenu(at);
    });
}

void ZVCoreWindowPrivate::showWindowMenu(const QPoint& globalPos)
{
    Q_Q(ZVCoreWindow);
    if (showManagersWindowMenu(q, globalPos))
        return;
    std::function<void()> move;
    std::function<void()> size;
    if (!isOffscreen() && QGuiApplication::platformName() == QLatin1String("xcb")) {
        move = [q] { startKeyboardMoveResize(q, true); };
        size = [q] { startKeyboardMoveResize(q, false); };
    }
    auto* menu = new ZVUIFramework::CWindowMenu(q, move, size);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPos);
}

void ZVCoreWindowPrivate::setCompositing(bool compositing)
{
    Q_Q(ZVCoreWindow);
    if (compositing == m_compositing || !m_qtBasedShadow)
        return;
    m_compositing = compositing;
    const Qt::WindowStates state = q->windowState();
    const bool zoomed = (state & Qt::WindowMaximized) && !(state & Qt::WindowMinimized);
    if (!zoomed && !(state & Qt::WindowFullScreen)) {
        // The content keeps its place and size on the screen: the window grows or
        // shrinks around it by the margin.
        const int m = ZVUIFramework::kShadowMargin;
        const QRect content = q->geometry().marginsRemoved(q->contentsMargins());
        q->setContentsMargins(compositing ? QMargins(m, m, m, m) : QMargins());
        q->setGeometry(content.marginsAdded(q->contentsMargins()));
    }
    q->update();
}

long ZVCoreWindowPrivate::hitTestAt(const QPointF& globalPos) const
{
    Q_Q(const ZVCoreWindow);
    const qreal dpr = q->devicePixelRatioF();
    const QRect frame = q->frameGeometry();
    const int left = toPhysical(frame.x(), dpr);
    const int top = toPhysical(frame.y(), dpr);
    const QRect physical(left, top, toPhysical(frame.x() + frame.width(), dpr) - left,
                         toPhysical(frame.y() + frame.height(), dpr) - top);
    return q->HitTest(physical, QPoint(toPhysical(globalPos.x(), dpr), toPhysical(globalPos.y(), dpr)));
}

void ZVCoreWindowPrivate::updateFrameCursor(long code)
{
    Q_Q(ZVCoreWindow);
    if (isBorder(code)) {
        q->setCursor(cursorOf(code));
        m_frameCursorSet = true;
    } else if (m_frameCursorSet) {
        q->unsetCursor();
        m_frameCursorSet = false;
    }
}

void ZVCoreWindowPrivate::dragTo(const QPointF& globalPos)
{
    Q_Q(ZVCoreWindow);
    const QPoint delta = (globalPos - m_pressGlobal).toPoint();
    if (m_drag == Drag::Move) {
        q->move(m_pressGeometry.topLeft() + delta);
        return;
    }
    if (m_drag != Drag::Resize)
        return;

    const QRect start = m_pressGeometry;
    const QSize minimum = q->minimumSize();
    const QSize maximum = q->maximumSize();
    QRect target = start;
    if (m_dragEdges & Qt::LeftEdge)
        target.setLeft(start.right() + 1 - boundedExtent(start.width(), -delta.x(), minimum.width(), maximum.width()));
    if (m_dragEdges & Qt::RightEdge)
        target.setWidth(boundedExtent(start.width(), delta.x(), minimum.width(), maximum.width()));
    if (m_dragEdges & Qt::TopEdge)
        target.setTop(start.bottom() + 1
                      - boundedExtent(start.height(), -delta.y(), minimum.height(), maximum.height()));
    if (m_dragEdges & Qt::BottomEdge)
        target.setHeight(boundedExtent(start.height(), delta.y(), minimum.height(), maximum.height()));
    q->setGeometry(target);
}

bool ZVCoreWindowPrivate::handOverMove(const QPointF& globalPos)
{
    Q_Q(ZVCoreWindow);
    QWindow* handle = q->windowHandle();
    if (!handle || !handle->startSystemMove())
        return false;
    restartSystemMoveFrom(q, globalPos);
    return true;
}

bool ZVCoreWindowPrivate::handleFrameMouse(QMouseEvent* event)
{
    Q_Q(ZVCoreWindow);
    const QPointF global = ZVQtCompat::GlobalPosition(event);

    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        m_drag = Drag::None;
        if (event->button() == Qt::RightButton && event->buttons() == Qt::RightButton
            && hitTestAt(global) == ZVUIFramework::kHitCaption) {
            // The window menu, as a right click on a system frame's caption gives it.
            showWindowMenu(global.toPoint());
            return true;
        }
        if (event->button() != Qt::LeftButton || event->buttons() != Qt::LeftButton)
            return false;
        const long code = hitTestAt(global);
        if (isBorder(code)) {
            updateFrameCursor(code);
            m_dragEdges = edgesOf(code);
            QWindow* handle = q->windowHandle();
            // The window manager runs the resize when it can; otherwise the window
            // follows the mouse itself.
            if (!isOffscreen() && handle && handle->startSystemResize(m_dragEdges))
                return true;
            m_drag = Drag::Resize;
            m_pressGlobal = global;
            m_pressGeometry = q->geometry();
            return true;
        }
        if (code == ZVUIFramework::kHitCaption) {
            // The move starts only once the mouse has really moved, so that a double
            // click on the title still arrives as one.
            m_drag = Drag::PendingMove;
            m_pressGlobal = global;
            m_pressGeometry = q->geometry();
            return true;
        }
        return false;
    }
    case QEvent::MouseMove: {
        if (m_drag == Drag::None || !(event->buttons() & Qt::LeftButton)) {
            // A release taken by the window manager during a system move never comes
            // back to us; the buttons tell that the drag is over.
            m_drag = Drag::None;
            if (event->buttons() == Qt::NoButton)
                updateFrameCursor(hitTestAt(global));
            return false;
        }
        if (m_drag == Drag::PendingMove) {
            if ((global - m_pressGlobal).manhattanLength() < QApplication::startDragDistance())
                return true;
            if (q->isMaximized() || q->isFullScreen()) {
                // A maximised window stays put unless the window manager moves it.
                if (!isOffscreen() && q->windowHandle())
                    q->windowHandle()->startSystemMove();
                m_drag = Drag::None;
                return true;
            }
            // The window catches up with the distance moved so far; then the window
            // manager runs the move when it can, otherwise the window keeps following
            // the mouse itself.
            m_drag = Drag::Move;
            dragTo(global);
            if (!isOffscreen() && handOverMove(global))
                m_drag = Drag::None;
            return true;
        }
        dragTo(global);
        return true;
    }
    case QEvent::MouseButtonRelease: {
        if (event->button() != Qt::LeftButton || m_drag == Drag::None)
            return false;
        m_drag = Drag::None;
        return true;
    }
    case QEvent::MouseButtonDblClick: {
        if (event->button() != Qt::LeftButton)
            return false;
        m_drag = Drag::None;
        if (hitTestAt(global) != ZVUIFramework::kHitCaption)
            return false;
        // A window without its maximise ability keeps its size, as with a system frame.
        if (q->windowFlags() & Qt::WindowMaximizeButtonHint) {
            if (q->isMaximized())
                q->showNormal();
            else
                q->showMaximized();
        }
        return true;
    }
    default:
        return false;
    }
}

void ZVCoreWindowPrivate::applyMarginRule()
{
    Q_Q(ZVCoreWindow);
    if (!m_qtBasedShadow)
        return;
    // "Zoomed" as the window system has it: a minimised window is not, even when it
    // will come back maximised.
    const Qt::WindowStates state = q->windowState();
    const bool zoomed = (state & Qt::WindowMaximized) && !(state & Qt::WindowMinimized);
    if (zoomed) {
        q->setContentsMargins(0, 0, 0, 0);
        g_marginsRemoved = true;
    } else if (g_marginsRemoved) {
        // Without blending there is no margin to come back.
        const int m = m_compositing ? ZVUIFramework::kShadowMargin : 0;
        q->setContentsMargins(m, m, m, m);
        g_marginsRemoved = false;
        q->update();
    }
}

bool ZVCoreWindow::nativeEvent(const QByteArray& eventType, void* message, ZVQtCompat::NativeEventResult* result)
{
    // Nothing here comes as a native message; Qt's events carry the frame rules.
    Q_UNUSED(eventType)
    Q_UNUSED(message)
    Q_UNUSED(result)
    return false;
}

void ZVCoreWindow::changeEvent(QEvent* event)
{
    Q_D(ZVCoreWindow);
    if (event && event->type() == QEvent::WindowStateChange)
        d->applyMarginRule();
    QMainWindow::changeEvent(event);
}

bool ZVCoreWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (!event || !watched)
        return QMainWindow::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        if (watched->isWidgetType() && static_cast<QWidget*>(watched)->window() == this) {
            Q_D(ZVCoreWindow);
            if (d->handleFrameMouse(static_cast<QMouseEvent*>(event)))
                return true;
        }
        break;
    default:
        break;
    }
    return QMainWindow::eventFilter(watched, event);
}
