#include "compositorwatch.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtGui/QGuiApplication>

#include <cstdlib>

// Wherever the frame's platform list is "xcb", libxcb is linked; Qt's own connection is
// not reachable through public API.
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN) && __has_include(<xcb/xcb.h>)
#include <xcb/xcb.h>
#define ZV_WATCH_X11 1
#endif

namespace ZVUIFramework {

struct CCompositorWatch::X11
{
#ifdef ZV_WATCH_X11
    xcb_connection_t* connection = nullptr;
    xcb_atom_t selection = XCB_ATOM_NONE;
#endif
};

CCompositorWatch* CCompositorWatch::Instance()
{
    // Owned by the application object, and made again for a later one.
    static QPointer<CCompositorWatch> watch;
    if (!watch)
        watch = new CCompositorWatch(QCoreApplication::instance());
    return watch;
}

CCompositorWatch::CCompositorWatch(QObject* parent)
    : QObject(parent)
{
#ifdef ZV_WATCH_X11
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        const QByteArray display = qgetenv("DISPLAY");
        int screen = 0;
        xcb_connection_t* connection = xcb_connect(display.isEmpty() ? nullptr : display.constData(), &screen);
        if (xcb_connection_has_error(connection)) {
            xcb_disconnect(connection);
        } else {
            const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screen);
            xcb_intern_atom_reply_t* atom = xcb_intern_atom_reply(
                connection, xcb_intern_atom(connection, 0, uint16_t(name.size()), name.constData()), nullptr);
            m_x11 = new X11;
            m_x11->connection = connection;
            m_x11->selection = atom ? atom->atom : xcb_atom_t(XCB_ATOM_NONE);
            std::free(atom);
        }
    }
#endif
    if (m_x11) {
        m_compositing = query();
        m_timer.setInterval(kPollInterval);
        connect(&m_timer, &QTimer::timeout, this, [this] { IsCompositing(); });
        m_timer.start();
    }
}

CCompositorWatch::~CCompositorWatch()
{
#ifdef ZV_WATCH_X11
    if (m_x11)
        xcb_disconnect(m_x11->connection);
#endif
    delete m_x11;
}

bool CCompositorWatch::IsCompositing()
{
    if (!m_x11)
        return true;
    const bool compositing = query();
    if (compositing != m_compositing) {
        m_compositing = compositing;
        emit compositingChanged(compositing);
    }
    return compositing;
}

bool CCompositorWatch::query()
{
#ifdef ZV_WATCH_X11
    if (!m_x11 || m_x11->selection == XCB_ATOM_NONE || xcb_connection_has_error(m_x11->connection))
        return false;
    xcb_get_selection_owner_reply_t* owner = xcb_get_selection_owner_reply(
        m_x11->connection, xcb_get_selection_owner(m_x11->connection, m_x11->selection), nullptr);
    const bool owned = owner && owner->owner != XCB_WINDOW_NONE;
    std::free(owner);
    return owned;
#else
    return true;
#endif
}

} // namespace ZVUIFramework
