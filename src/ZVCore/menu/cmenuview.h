#ifndef ZVCORE_CMENUVIEW_H
#define ZVCORE_CMENUVIEW_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtWidgets/QWidget>

class CCustomMenu;
class QAction;

// One entry of the title menu, read from the link file.
struct ZVCORE_AUTOTEST_EXPORT MenuItemInfo
{
    QString name;         // "menuName": selects built-in behaviour
    QString url;          // "url", deciphered
    QString displayName;  // "displayName": the caption
    int order = 1;        // "order": sort key
    int event = 60001;    // "event": bus id sent when the entry has no address
    bool addSeparator = false;
    bool hasUrl = false;
    QAction* action = nullptr; // belongs to the menu
};

// The invisible owner of the title menu: it reads the entries of the current link file,
// builds the menu on every language change and runs the chosen entry.
class ZVCORE_AUTOTEST_EXPORT CMenuView : public QWidget
{
    Q_OBJECT

public:
    explicit CMenuView(QWidget* parent = nullptr);
    ~CMenuView() override;

    void loadMenu();
    void buildMenu();
    void clearMenu();

    // The menu, object name "titleMenu"; null before the first load.
    CCustomMenu* menu() const;
    // The entries in their current order.
    const QList<MenuItemInfo*>& entries() const;

    void onMenuItemTriggered(MenuItemInfo* entry);

Q_SIGNALS:
    void signalShowLanguagePopDlg();
    void signalShowAboutDlg();
    void signalShowFeedback();
    void signalExit();
    void signalAttachEvent(int id);
    void signalMenuItemInited();

public Q_SLOTS:
    void slotShowMenu();

protected:
    void changeEvent(QEvent* event) override;

private:
    QPointer<CCustomMenu> m_menu;
    QList<MenuItemInfo*> m_entries;
};

#endif // ZVCORE_CMENUVIEW_H
