#ifndef ZVCORE_CCUSTOMMENU_H
#define ZVCORE_CCUSTOMMENU_H

#include <ZVCore/zvcore_export.h>
#include <ZVControl/ZVMenu>

#include <QtCore/QString>

// The title menu's popup: frameless and translucent, it paints its own rounded
// background inside a five-pixel band that holds a soft shadow, and switches off the
// shadow the system would draw around popups of its window class.
//
// Both properties are meant to come from the style sheet:
//   CCustomMenu { qproperty-menuRadius: 6; qproperty-menuBackgroundColor: "#ffffff"; }
class ZVCORE_AUTOTEST_EXPORT CCustomMenu : public ZVMenu
{
    Q_OBJECT
    Q_PROPERTY(int menuRadius READ menuRadius WRITE setMenuRadius)
    Q_PROPERTY(QString menuBackgroundColor READ menuBackgroundColor WRITE setMenuBackgroundColor)

public:
    explicit CCustomMenu(const QString& title, QWidget* parent = nullptr);
    explicit CCustomMenu(QWidget* parent = nullptr);
    ~CCustomMenu() override;

    // Corner radius of the background and of the shadow rings, in pixels.
    int menuRadius() const;
    void setMenuRadius(int radius);

    // A colour name QColor understands; empty (or a name it does not know) paints white.
    QString menuBackgroundColor() const;
    void setMenuBackgroundColor(const QString& color);

    // Whether a menu of this process has taken the system drop shadow off its window
    // class. It happens once, when the first menu gets its native window.
    static bool classShadowRemoved();

protected:
    bool event(QEvent* e) override;
    void paintEvent(QPaintEvent* e) override;

private:
    void init();

    int m_menuRadius = 0;
    QString m_menuBackgroundColor;

    static bool ms_classShadowRemoved;
};

#endif // ZVCORE_CCUSTOMMENU_H
