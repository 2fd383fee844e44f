#ifndef ZVCONTROL_ZVMENU_H
#define ZVCONTROL_ZVMENU_H

#include <ZVControl/zvcontrol_export.h>

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtWidgets/QMenu>

/*!
 * A menu that style sheets address as \c ZVMenu and that drops down from a widget, the
 * way a tool button's menu does.
 *
 * \code
 * ZVMenu menu;
 * QAction* about = menu.addAction(ZVMenu::tr("About"));
 * menu.addAction(ZVMenu::tr("Quit"));
 * if (menu.execMenuAtWidget(settingsButton, QPoint(0, 2)) == about)
 *     showAbout();
 * \endcode
 */
class ZVCONTROL_EXPORT ZVMenu : public QMenu
{
    Q_OBJECT

public:
    explicit ZVMenu(QWidget* parent = nullptr);
    explicit ZVMenu(const QString& title, QWidget* parent = nullptr);
    ~ZVMenu() override;

    /// Shows the menu modally just below \a widget, moved by \a offset and kept inside the
    /// available area of the widget's screen, and returns the action chosen, or nullptr
    /// when the menu was dismissed. In a right-to-left \a widget the menu's right edge
    /// lines up with the widget's right edge. With a null \a widget nothing is shown.
    QAction* execMenuAtWidget(QWidget* widget, const QPoint& offset);

    /// The top-left corner execMenuAtWidget() gives a menu of \a menuSize for a widget
    /// covering \a widgetGlobalRect: just below it, left edges aligned (right edges for
    /// Qt::RightToLeft), moved by \a offset, then shifted into \a screenArea. A menu
    /// larger than the area gets the area's top-left corner. An invalid area is ignored.
    static QPoint menuPosition(const QRect& widgetGlobalRect, const QSize& menuSize,
                               const QRect& screenArea, const QPoint& offset,
                               Qt::LayoutDirection direction);
};

#endif // ZVCONTROL_ZVMENU_H
