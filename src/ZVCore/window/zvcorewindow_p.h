#ifndef ZVCORE_ZVCOREWINDOW_P_H
#define ZVCORE_ZVCOREWINDOW_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include "zvcorewindow.h"

#include <QtCore/QPointF>
#include <QtCore/QPointer>
#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtGui/QImage>

#include <QtWidgets/QWidget>

class ZVMainWindowTitle;
class QMouseEvent;
class QPainter;
class QVBoxLayout;

namespace ZVUIFramework {
class CControlModule;

// Hit codes as the window system numbers them, so that every platform answers alike.
enum HitCode : long {
    kHitNowhere = 0,
    kHitCaption = 2,
    kHitLeft = 10,
    kHitRight = 11,
    kHitTop = 12,
    kHitTopLeft = 13,
    kHitTopRight = 14,
    kHitBottom = 15,
    kHitBottomLeft = 16,
    kHitBottomRight = 17,
};

// Width of the resize bands, in physical pixels: a border is grabbed by the same
// amount of screen whatever the scaling.
constexpr int kBorderBand = 5;
// Width of the painted shadow margin, in device-independent pixels.
constexpr int kShadowMargin = 5;

// The resize code of the border bands for a window rectangle given as left, top and
// exclusive right and bottom, and a position, all in physical pixels; 0 outside them.
// The bands are tried left, right, bottom, top and then the corners, and a later match
// replaces an earlier one, so that a corner beats its two sides and, on a window too
// small for separate bands, right beats left and top beats bottom.
inline long BorderHitCode(int left, int top, int right, int bottom, int x, int y, bool widthResizable,
                          bool heightResizable)
{
    const bool inLeft = left <= x && x < left + kBorderBand;
    const bool inRight = right - kBorderBand <= x && x < right;
    const bool inBottom = bottom - kBorderBand <= y && y < bottom;
    const bool inTop = top <= y && y < top + kBorderBand;

    long code = kHitNowhere;
    if (widthResizable) {
        if (inLeft)
            code = kHitLeft;
        if (inRight)
            code = kHitRight;
    }
    if (heightResizable) {
        if (inBottom)
            code = kHitBottom;
        if (inTop)
            code = kHitTop;
    }
    if (widthResizable && heightResizable) {
        if (inLeft && inBottom)
            code = kHitBottomLeft;
        if (inRight && inBottom)
            code = kHitBottomRight;
        if (inLeft && inTop)
            code = kHitTopLeft;
        if (inRight && inTop)
            code = kHitTopRight;
    }
    return code;
}

} // namespace ZVUIFramework

// The top of a core window, in QMainWindow's menu-widget slot: room for the title bar and,
// below it, for the host's menu bar or menu widget. Both lie over their rooms as children
// of the window itself, as QMainWindow keeps its menu bar. QMainWindow's own menu-bar
// functions, reached through a QMainWindow*, may take the slot from it or have it
// deleted; it then takes their widget in and returns to the slot (see
// ZVCoreWindow::event).
class CWindowTop : public QWidget
{
public:
    CWindowTop(ZVCoreWindow* window, QWidget* title);

    QWidget* menuWidget() const { return m_menuWidget.data(); }
    // Puts \a widget below the title; the previous menu widget is deleted, as
    // QMainWindow deletes a menu widget it replaces. Null removes it.
    void setMenuWidget(QWidget* widget);
    // Back into the window's menu-widget slot, taking along whatever widget QMainWindow
    // put there in its place.
    void returnToSlot();
    // The rooms' heights from the title's and the menu widget's, then their places.
    void syncRooms();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void placeChildren();

    ZVCoreWindow* m_window;
    QVBoxLayout* m_layout;
    QWidget* m_room;
    QWidget* m_menuRoom;
    QPointer<QWidget> m_title;
    QPointer<QWidget> m_menuWidget;
    bool m_placing = false;
};

class ZVCoreWindowPrivate
{
    Q_DECLARE_PUBLIC(ZVCoreWindow)

public:
    explicit ZVCoreWindowPrivate(ZVCoreWindow* q)
        : q_ptr(q)
    {
    }

    ZVCoreWindow* q_ptr;

    bool m_qtBasedShadow = true;
    // Whether translucent windows are blended with what lies under them. Where they are
    // not (X11 without a compositing manager) the painted shadow would show black: the
    // window then has no shadow margin and paints itself opaque.
    bool m_compositing = true;
    // Follows a compositing manager that starts or stops while the window is open.
    void setCompositing(bool compositing);
    // Guarded: a host that replaces the title (for instance through setMenuWidget) has
    // it deleted, and the hit test must then see no title rather than a dangling one.
    QPointer<ZVMainWindowTitle> m_title;
    CWindowTop* m_top = nullptr;
    // A return of the top to the menu-widget slot is queued.
    bool m_topReturnQueued = false;
    void queueTopReturn();
    ZVUIFramework::CControlModule* m_controlModule = nullptr;
    bool m_resizable = false;
    bool m_savedDragFullWindows = false;

    // The Qt-painted frame: a white rounded background and five rings. Stroking the
    // rings is nearly all that the frame adds to a repaint of the window (well over
    // half of what a plain window's whole repaint costs), while everything but a band
    // along the edges is plain white; so once a size has been painted twice, the four
    // edge bands are kept as images (some 200 kB for a 1000 x 680 window) and later
    // paints copy them and fill the inside.
    void paintFrame(QPainter& painter, int radius);
    // The window's own background in Qt-painted mode: the frame, or plain white where
    // nothing blends.
    void paintBackground();
    // Set while the background is painted already for the paint event under way.
    bool m_framePainted = false;
    static void drawFrame(QPainter& painter, const QSize& size, int radius);
    struct FrameBands
    {
        QSize size;
        int radius = 0;
        QImage top, bottom, left, right;
    };
    FrameBands m_frameBands;
    QSize m_lastFrameSize;
    int m_lastFrameRadius = 0;

    // The operating-system side, one definition per platform file.

    // Builds the process-wide layered shadow for this window.
    void createLayeredShadow();
    // Deletes the layered shadow this window built, if it built one (shadowregistry.h).
    void deleteLayeredShadow();
    void setMaximizeBoxHidden(bool hide);
    // Reads the system's drag-full-windows setting into m_savedDragFullWindows and
    // switches it for a window that is (not) resizable.
    void switchDragFullWindows(bool resizable);
    // Switches full-window dragging back on if it was on when it was read.
    void restoreDragFullWindows();
    // Whatever the platform needs so that the frame rules reach the window.
    void initFrameHandling();

    // The frame driven by Qt's own events, where no system frame answers for the window.
    enum class Drag { None, PendingMove, Move, Resize };
    Drag m_drag = Drag::None;
    Qt::Edges m_dragEdges;
    QPointF m_pressGlobal;
    QRect m_pressGeometry;
    bool m_frameCursorSet = false;

    bool handleFrameMouse(QMouseEvent* event);
    // The window menu at \a globalPos: the window manager's where it shows one, else the
    // frame's own (CWindowMenu).
    void showWindowMenu(const QPoint& globalPos);
    bool handOverMove(const QPointF& globalPos);
    long hitTestAt(const QPointF& globalPos) const;
    void updateFrameCursor(long code);
    void dragTo(const QPointF& globalPos);
    void applyMarginRule();
};

#endif // ZVCORE_ZVCOREWINDOW_P_H
