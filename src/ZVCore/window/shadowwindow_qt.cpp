#include "shadowwindow_qt.h"

#include "compositorwatch.h"

#include <QtCore/QEvent>
#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtGui/QRegion>
#include <QtGui/QWindow>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

// Wherever the frame's platform list is "xcb", libxcb is linked; Qt's own connection is
// not reachable through public API, so the little asked of the X server goes through one
// of ours.
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN) && __has_include(<xcb/xcb.h>)
#include <xcb/xcb.h>
#define ZV_SHADOW_X11 1
#endif

namespace ZVUIFramework {

namespace {

bool onX11()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

#ifdef ZV_SHADOW_X11
// A short-lived connection to the display Qt uses.
class X11Session
{
public:
    X11Session()
    {
        const QByteArray display = qgetenv("DISPLAY");
        m_connection = xcb_connect(display.isEmpty() ? nullptr : display.constData(), &m_screen);
        if (xcb_connection_has_error(m_connection)) {
            xcb_disconnect(m_connection);
            m_connection = nullptr;
        }
    }
    ~X11Session()
    {
        if (m_connection)
            xcb_disconnect(m_connection);
    }
    X11Session(const X11Session&) = delete;
    X11Session& operator=(const X11Session&) = delete;

    bool isValid() const { return m_connection != nullptr; }

    // Puts \a window right under the top-level ancestor of \a owner: under the window
    // manager's frame of it when it has one.
    void stackBelow(xcb_window_t window, xcb_window_t owner) const
    {
        const xcb_window_t sibling = topLevelOf(owner);
        if (sibling == XCB_WINDOW_NONE || sibling == window)
            return;
        const uint32_t values[] = {sibling, XCB_STACK_MODE_BELOW};
        xcb_void_cookie_t cookie = xcb_configure_window_checked(
            m_connection, window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values);
        // An error only means the two are not siblings after all; nothing to repair.
        std::free(xcb_request_check(m_connection, cookie));
    }

private:
    xcb_window_t topLevelOf(xcb_window_t window) const
    {
        for (int depth = 0; depth < 16 && window != XCB_WINDOW_NONE; ++depth) {
            xcb_query_tree_reply_t* tree =
                xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr);
            if (!tree)
                return XCB_WINDOW_NONE;
            const xcb_window_t parent = tree->parent;
            const xcb_window_t root = tree->root;
            std::free(tree);
            if (parent == root || parent == XCB_WINDOW_NONE)
                return window;
            window = parent;
        }
        return XCB_WINDOW_NONE;
    }

    xcb_connection_t* m_connection = nullptr;
    int m_screen = 0;
};
#endif

constexpr int kMaxSize = 20;
constexpr unsigned kMaxSharpness = 20;
constexpr unsigned kMaxDarkness = 255;
constexpr int kMaxOffset = 20;

QSize physicalSize(const QWidget* window, const QSize& logical)
{
    const qreal dpr = window->devicePixelRatioF();
    return QSize(qRound(logical.width() * dpr), qRound(logical.height() * dpr));
}

} // namespace

CShadowWindowQt::CShadowWindowQt()
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowTransparentForInput
                           | Qt::WindowDoesNotAcceptFocus
                           // Out of the window manager's hands on X11: a managed window gets
                           // a frame that takes the clicks its empty input shape lets
                           // through, and is kept above the window it is transient for.
                           | Qt::X11BypassWindowManagerHint)
{
    setAttribute(Qt::WA_TranslucentBackground, true);
    setAttribute(Qt::WA_ShowWithoutActivating, true);
    // The shaded window decides when the shadow exists; closing the last real window
    // must still end the application.
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
}

CShadowWindowQt::~CShadowWindowQt()
{
    if (m_parent)
        m_parent->removeEventFilter(this);
}

void CShadowWindowQt::Create(QWidget* parent)
{
    if (!parent)
        return;
    if (m_parent)
        m_parent->removeEventFilter(this);
    m_parent = parent;
    parent->installEventFilter(this);
    connect(parent, &QObject::destroyed, this, [this] {
        hideShadow();
        m_status &= ~ParentVisible;
    });
    // A compositing manager that starts or stops while the window is open: the shadow
    // appears or goes with it.
    connect(CCompositorWatch::Instance(), &CCompositorWatch::compositingChanged, this, [this](bool compositing) {
        if (!(m_status & Visible))
            return;
        if (!compositing) {
            hide();
        } else if (!isVisible()) {
            render();
            show();
            QTimer::singleShot(0, this, [this] { stackUnderParent(); });
        }
    });

    if (!parent->isVisible()) {
        m_status = Enabled;
    } else if (isPinned(parent)) {
        m_status = Enabled | ParentVisible;
    } else {
        m_status = Enabled | ParentVisible;
        showShadow();
        render();
    }
}

bool CShadowWindowQt::SetSize(int size)
{
    if (size < -kMaxSize || size > kMaxSize)
        return false;
    m_settings.size = size;
    if (m_status & Visible)
        render();
    return true;
}

bool CShadowWindowQt::SetSharpness(unsigned sharpness)
{
    if (sharpness > kMaxSharpness)
        return false;
    m_settings.sharpness = sharpness;
    if (m_status & Visible)
        render();
    return true;
}

bool CShadowWindowQt::SetDarkness(unsigned darkness)
{
    if (darkness > kMaxDarkness)
        return false;
    m_settings.darkness = darkness;
    if (m_status & Visible)
        render();
    return true;
}

bool CShadowWindowQt::SetPosition(int x, int y)
{
    if (x < -kMaxOffset || x > kMaxOffset || y < -kMaxOffset || y > kMaxOffset)
        return false;
    m_settings.xOffset = x;
    m_settings.yOffset = y;
    if (m_status & Visible)
        render();
    return true;
}

bool CShadowWindowQt::SetColor(std::uint32_t colorRef)
{
    m_settings.color = colorRef;
    if (m_status & Visible)
        render();
    return true;
}

ShadowSettings CShadowWindowQt::settings() const
{
    return m_settings;
}

QWidget* CShadowWindowQt::shadedWindow() const
{
    return m_parent.data();
}

int CShadowWindowQt::status() const
{
    return m_status;
}

QImage CShadowWindowQt::shadowImage() const
{
    return m_image;
}

bool CShadowWindowQt::updatePending() const
{
    return m_updatePending;
}

int CShadowWindowQt::updateCount() const
{
    return m_updateCount;
}

bool CShadowWindowQt::isPinned(const QWidget* window)
{
    return window->windowState() & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen);
}

QRect CShadowWindowQt::targetGeometry(const QSize& size) const
{
    const QPoint origin = m_parent ? m_parent->frameGeometry().topLeft() : QPoint();
    const int s = m_settings.size;
    return QRect(origin.x() + m_settings.xOffset - s, origin.y() + m_settings.yOffset - s, size.width() + 2 * s,
                 size.height() + 2 * s);
}

void CShadowWindowQt::render()
{
    const QWidget* parent = m_parent.data();
    if (!parent)
        return;

    // The bitmap is computed in physical pixels, from the window's shape where it has
    // one, as the window system would see it.
    const QSize logical = parent->frameGeometry().size();
    const QSize physical = physicalSize(parent, logical);
    const qreal dpr = parent->devicePixelRatioF();
    const QRegion mask = parent->mask();
    std::function<bool(int, int)> inside;
    if (mask.isEmpty())
        inside = [](int, int) { return true; };
    else
        inside = [&mask, dpr](int x, int y) { return mask.contains(QPoint(int(x / dpr), int(y / dpr))); };

    const int s = m_settings.size;
    const int width = physical.width() + 2 * s;
    const int height = physical.height() + 2 * s;
    QImage image;
    if (physical.width() > 0 && physical.height() > 0 && width > 0 && height > 0) {
        const std::vector<std::uint32_t> bits = RenderShadow(physical.width(), physical.height(), inside, m_settings);
        if (bits.size() >= std::size_t(width) * std::size_t(height)) {
            image = QImage(width, height, QImage::Format_ARGB32_Premultiplied);
            // The bitmap runs bottom-up; an image runs top-down.
            for (int y = 0; y < height; ++y)
                std::memcpy(image.scanLine(y), bits.data() + std::size_t(height - 1 - y) * std::size_t(width),
                            std::size_t(width) * sizeof(std::uint32_t));
        }
    }
    m_image = image;
    ++m_updateCount;

    setGeometry(targetGeometry(logical));
    update();
}

void CShadowWindowQt::showShadow()
{
    if (m_parent)
        setGeometry(targetGeometry(m_parent->frameGeometry().size()));
    // Before the first show, so that the window system learns the owner when the
    // shadow is mapped.
    if (m_parent && m_parent->windowHandle()) {
        winId();
        if (QWindow* handle = windowHandle()) {
            if (handle->transientParent() != m_parent->windowHandle())
                handle->setTransientParent(m_parent->windowHandle());
        }
    }
    m_status |= Visible;
    if (!canBlend())
        return;
    show();
    // Once Qt has sent the new window to the display.
    QTimer::singleShot(0, this, [this] { stackUnderParent(); });
}

bool CShadowWindowQt::canBlend()
{
    return CCompositorWatch::Instance()->IsCompositing();
}

void CShadowWindowQt::hideShadow()
{
    hide();
    m_status &= ~Visible;
}

void CShadowWindowQt::stackUnderParent()
{
    // Qt only puts a window above or below all others; below everything the shadow would
    // vanish under whatever the shaded window lies on, so it goes right under it.
#ifdef ZV_SHADOW_X11
    if (onX11() && isVisible() && m_parent && m_parent->windowHandle() && windowHandle()) {
        const X11Session session;
        if (session.isValid())
            session.stackBelow(xcb_window_t(winId()), xcb_window_t(m_parent->winId()));
    }
#endif
}

void CShadowWindowQt::onParentMoved()
{
    // A move never recomputes the bitmap.
    if ((m_status & Visible) && m_parent)
        move(targetGeometry(size()).topLeft());
}

void CShadowWindowQt::onParentSized()
{
    if (!(m_status & Enabled) || !m_parent)
        return;
    const QSize current = m_parent->size();
    if (isPinned(m_parent)) {
        hideShadow();
    } else if (m_status & ParentVisible) {
        if (current.width() <= m_lastParentSize.width() && current.height() <= m_lastParentSize.height())
            render();
        else
            m_updatePending = true; // growing: drawn with the window's next paint
        if (!(m_status & Visible))
            showShadow();
    }
    m_lastParentSize = current;
}

void CShadowWindowQt::onParentStateChanged()
{
    if (!(m_status & Enabled) || !m_parent)
        return;
    if (isPinned(m_parent)) {
        hideShadow();
    } else if ((m_status & ParentVisible) && !(m_status & Visible)) {
        // Restored: the size change that goes with it may have come first, while the
        // window still counted as maximised, so it is applied here as well.
        onParentSized();
    }
}

void CShadowWindowQt::onParentShown()
{
    if (!(m_status & Enabled) || !m_parent || (m_status & ParentVisible))
        return;
    m_status |= ParentVisible;
    if (isPinned(m_parent))
        return;
    m_updatePending = true;
    // Mapping a second window from inside the window's own show, before the window
    // manager has taken the window on, can leave Qt with a wrong idea of where the
    // window is; the next turn of the event loop is soon enough for a shadow.
    QTimer::singleShot(0, this, [this] {
        if ((m_status & ParentVisible) && !(m_status & Visible) && m_parent && m_parent->isVisible()
            && !isPinned(m_parent))
            showShadow();
    });
}

void CShadowWindowQt::onParentHidden()
{
    if (!(m_status & Enabled))
        return;
    hideShadow();
    m_status &= ~ParentVisible;
}

void CShadowWindowQt::onParentPainted()
{
    if (!m_updatePending)
        return;
    m_updatePending = false;
    render();
}

bool CShadowWindowQt::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_parent.data() || !event)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::Move:
        onParentMoved();
        break;
    case QEvent::Resize:
        onParentSized();
        break;
    case QEvent::WindowStateChange:
        onParentStateChanged();
        break;
    case QEvent::Show:
        onParentShown();
        break;
    case QEvent::Hide:
        onParentHidden();
        break;
    // Activation raises the window with most window managers; the shadow follows.
    case QEvent::ActivationChange:
        if (m_status & Visible)
            stackUnderParent();
        break;
    // Any repaint of the window goes through an update request to its top level, even
    // when its children cover it completely and it gets no paint event of its own.
    case QEvent::Paint:
    case QEvent::UpdateRequest:
        onParentPainted();
        break;
    default:
        break;
    }
    return false;
}

void CShadowWindowQt::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (m_image.isNull())
        painter.fillRect(rect(), Qt::transparent);
    else
        painter.drawImage(rect(), m_image);
}

} // namespace ZVUIFramework
