#ifndef ZVCORE_ZVMAINWINDOWTITLE_H
#define ZVCORE_ZVMAINWINDOWTITLE_H

#include <ZVCore/zvcore_export.h>
#include <ZVControl/ZVStyleWidget>

class CMenuView;
class QLabel;
class QPushButton;

namespace ZVUIFramework {
class CCommonModule;
}

// The title bar of the frameless main window: logo, product title, and the feedback,
// menu, minimise, maximise/restore and close buttons. Button clicks become signals the
// main window acts on; every button release is reported on the event bus as event 1003.
// The parent given to the constructor is taken as the main window.
//
// Kept outside the framework namespace on purpose: its translations use the context
// "ZVMainWindowTitle".
class ZVCORE_AUTOTEST_EXPORT ZVMainWindowTitle : public ZVStyleWidget
{
    Q_OBJECT

public:
    explicit ZVMainWindowTitle(QWidget* parent = nullptr);
    ~ZVMainWindowTitle() override;

    // Fills the title, connects the buttons and creates the title menu view; call once,
    // right after construction.
    void init();

    // Hides or shows "btn_max". A hidden button stays enabled, so its "maxed" property
    // keeps following the window state.
    void setMaxButtonHidden(const bool& hide);
    // Sets "maxed" on "btn_max" from the main window's state and re-polishes the button;
    // a disabled button is left alone.
    void updateMaxButton();

    // Null until init().
    CMenuView* menuView() const;

    // The parent of the most recently constructed title bar.
    static QWidget* mainWindow();
    // Whether a main window's first Show has been seen by a title bar in this process.
    static bool firstShowDone();

Q_SIGNALS:
    void signalCloseWindow();
    void signalShowMinimized();
    void signalShowMaxOrNormal();
    void signalAttachEvent(int id);
    void signalMenuInited();

public Q_SLOTS:
    void slotShowAboutDlg();
    void slotShowLanguageSelectDlg();
    void slotFeedbackClick();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void customEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // The buttons' accessible names and descriptions, in the current language: what a
    // screen reader announces for buttons that show only a picture.
    void retranslateAccessibility();
    void buildForm();
    void initUi();
    void initConnect();
    void initMenu();
    void postButtonReleased(QObject* button);

    QLabel* m_logo = nullptr;
    QLabel* m_title = nullptr;
    QLabel* m_separator = nullptr;
    QPushButton* m_btnFeedback = nullptr;
    QPushButton* m_btnMenu = nullptr;
    QPushButton* m_btnMin = nullptr;
    QPushButton* m_btnMax = nullptr;
    QPushButton* m_btnClose = nullptr;
    CMenuView* m_menuView = nullptr;
    ZVUIFramework::CCommonModule* m_commonModule = nullptr;
};

#endif // ZVCORE_ZVMAINWINDOWTITLE_H
