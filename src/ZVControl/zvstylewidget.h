#ifndef ZVCONTROL_ZVSTYLEWIDGET_H
#define ZVCONTROL_ZVSTYLEWIDGET_H

#include <ZVControl/zvcontrol_export.h>

#include <QtCore/QScopedPointer>
#include <QtWidgets/QFrame>

class ZVStyleWidgetPrivate;

/*!
 * A frame meant to be drawn by style sheets, which can also serve as the grip by which
 * a frameless window is dragged around with the left mouse button.
 *
 * \code
 * auto* titleBar = new ZVStyleWidget(window);
 * titleBar->setObjectName(QStringLiteral("titleBar"));
 * titleBar->setEnabledMouseDrag(window, true);   // dragging the bar moves the window
 * qApp->setStyleSheet(QStringLiteral("ZVStyleWidget#titleBar { background: #202020; }"));
 * \endcode
 *
 * A press that a child does not take (a plain label, or any child with
 * Qt::WA_TransparentForMouseEvents) reaches the frame and starts the drag too. Maximised
 * and full-screen windows stay where they are. Where clients may not place their own
 * windows (Wayland), the drag is handed to the window system instead.
 */
class ZVCONTROL_EXPORT ZVStyleWidget : public QFrame
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(ZVStyleWidget)

public:
    explicit ZVStyleWidget(QWidget* parent = nullptr);
    ~ZVStyleWidget() override;

    /// With \a enabled and a non-null \a target, left-button drags on this widget move
    /// \a target's window. Disabling forgets the target; \a target is then not used.
    void setEnabledMouseDrag(QWidget* target, bool enabled);
    /// Whether drags move a window: enabled with a target that is still alive.
    bool isMouseDragEnabled() const;
    /// The widget whose window drags move, or nullptr when disabled or once it is destroyed.
    QWidget* mouseDragTarget() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QScopedPointer<ZVStyleWidgetPrivate> d_ptr;
};

#endif // ZVCONTROL_ZVSTYLEWIDGET_H
