#include <ZVControl/ZVMenu>

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

namespace {

QScreen* screenOf(const QWidget* widget, const QRect& globalRect)
{
    if (QScreen* screen = widget->screen())
        return screen;
    if (QScreen* screen = QGuiApplication::screenAt(globalRect.center()))
        return screen;
    return QGuiApplication::primaryScreen();
}

} // namespace

ZVMenu::ZVMenu(QWidget* parent)
    : QMenu(parent)
{
}

ZVMenu::ZVMenu(const QString& title, QWidget* parent)
    : QMenu(title, parent)
{
}

ZVMenu::~ZVMenu() = default;

QPoint ZVMenu::menuPosition(const QRect& widgetGlobalRect, const QSize& menuSize,
                            const QRect& screenArea, const QPoint& offset,
                            Qt::LayoutDirection direction)
{
    QPoint pos(direction == Qt::RightToLeft
                   ? widgetGlobalRect.x() + widgetGlobalRect.width() - menuSize.width()
                   : widgetGlobalRect.x(),
               widgetGlobalRect.y() + widgetGlobalRect.height());
    pos += offset;

    if (!screenArea.isValid())
        return pos;

    // Right and bottom first, so that a menu too large for the area ends up at its
    // top-left corner, where at least the start of the menu can be read.
    if (pos.x() + menuSize.width() - 1 > screenArea.right())
        pos.setX(screenArea.right() - menuSize.width() + 1);
    if (pos.x() < screenArea.left())
        pos.setX(screenArea.left());
    if (pos.y() + menuSize.height() - 1 > screenArea.bottom())
        pos.setY(screenArea.bottom() - menuSize.height() + 1);
    if (pos.y() < screenArea.top())
        pos.setY(screenArea.top());
    return pos;
}

QAction* ZVMenu::execMenuAtWidget(QWidget* widget, const QPoint& offset)
{
    if (!widget)
        return nullptr;

    const QRect widgetRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
    const QScreen* screen = screenOf(widget, widgetRect);
    const QRect area = screen ? screen->availableGeometry() : QRect();

    // The size hint depends on the style, which polishing settles.
    ensurePolished();
    const QPoint pos = menuPosition(widgetRect, sizeHint(), area, offset,
                                    widget->layoutDirection());
    return exec(pos);
}
