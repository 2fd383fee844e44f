#include <ZVControl/ZVStyleWidget>

#include "zvstylewidget_p.h"

#include <ZVFoundation/private/ZVQtCompat>

#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QWindow>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

namespace {

// Wayland gives clients no say over where their windows are, so moving the widget would
// silently do nothing; the compositor has to run the move itself.
bool windowSystemMovesWindows()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool isPinned(const QWidget* window)
{
    return window->isMaximized() || window->isFullScreen();
}

} // namespace

ZVStyleWidget::ZVStyleWidget(QWidget* parent)
    : QFrame(parent)
    , d_ptr(new ZVStyleWidgetPrivate)
{
}

ZVStyleWidget::~ZVStyleWidget() = default;

void ZVStyleWidget::setEnabledMouseDrag(QWidget* target, bool enabled)
{
    Q_D(ZVStyleWidget);
    d->enabled = enabled && target;
    d->target = d->enabled ? target : nullptr;
    d->dragging = false;
}

bool ZVStyleWidget::isMouseDragEnabled() const
{
    Q_D(const ZVStyleWidget);
    return d->enabled && d->target;
}

QWidget* ZVStyleWidget::mouseDragTarget() const
{
    Q_D(const ZVStyleWidget);
    return d->enabled ? d->target.data() : nullptr;
}

void ZVStyleWidget::paintEvent(QPaintEvent* event)
{
    if (!event)
        return;
    // PE_Widget is where styles paint a widget's own background, the style-sheet style
    // included; QFrame on its own only asks for its frame.
    {
        QStyleOption option;
        option.initFrom(this);
        QPainter painter(this);
        style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
    }
    QFrame::paintEvent(event);
}

void ZVStyleWidget::mousePressEvent(QMouseEvent* event)
{
    Q_D(ZVStyleWidget);
    if (!event)
        return;
    QFrame::mousePressEvent(event);

    d->dragging = false;
    QWidget* window = d->targetWindow();
    if (!window || event->button() != Qt::LeftButton || event->buttons() != Qt::LeftButton
        || isPinned(window))
        return;

    if (windowSystemMovesWindows()) {
        if (QWindow* handle = window->windowHandle()) {
            if (handle->startSystemMove())
                event->accept();
        }
        return;
    }

    d->pressOffset = ZVQtCompat::GlobalPosition(event).toPoint() - window->frameGeometry().topLeft();
    d->dragging = true;
    // Accepted so that the moves and the release of this press come back here.
    event->accept();
}

void ZVStyleWidget::mouseMoveEvent(QMouseEvent* event)
{
    Q_D(ZVStyleWidget);
    if (!event)
        return;
    QFrame::mouseMoveEvent(event);
    if (!d->dragging)
        return;

    QWidget* window = d->targetWindow();
    // A release delivered elsewhere (another popup, a grab) leaves only the button state
    // to tell that the drag is over.
    if (!window || !(event->buttons() & Qt::LeftButton)) {
        d->dragging = false;
        return;
    }
    if (isPinned(window))
        return;
    window->move(ZVQtCompat::GlobalPosition(event).toPoint() - d->pressOffset);
}

void ZVStyleWidget::mouseReleaseEvent(QMouseEvent* event)
{
    Q_D(ZVStyleWidget);
    if (!event)
        return;
    QFrame::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton)
        d->dragging = false;
}
