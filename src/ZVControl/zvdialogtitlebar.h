#ifndef ZVCONTROL_ZVDIALOGTITLEBAR_H
#define ZVCONTROL_ZVDIALOGTITLEBAR_H

#include <ZVControl/zvcontrol_export.h>
#include <ZVControl/ZVStyleWidget>

#include <QtCore/QPointer>

class QHBoxLayout;
class QLabel;
class QPushButton;

/*!
 * The title bar of a frameless dialog: a title label and a close button, optionally a
 * minimise and a maximise button, on a ZVStyleWidget that drags the dialog around.
 *
 * \code
 * ZVStyleDialog dialog(mainWindow);
 * auto* layout = new QVBoxLayout(&dialog);
 * auto* titleBar = new ZVDialogTitleBar(&dialog);
 * titleBar->setTitle(QStringLiteral("Export"));
 * titleBar->setupForDialog(&dialog, true);   // drags and closes the dialog
 * layout->addWidget(titleBar);
 * layout->addWidget(content);
 * dialog.exec();
 * \endcode
 *
 * Style sheets address the parts by object name: "label_title", "btn_close" and, once
 * created, "btn_min" and "btn_max". The window buttons exist only after
 * setWindowButtonsVisible(true); until then minimizeButton() and maximizeButton() are
 * null. The bar only reports their clicks; what minimising or maximising means is the
 * owner's business.
 */
class ZVCONTROL_EXPORT ZVDialogTitleBar : public ZVStyleWidget
{
    Q_OBJECT

public:
    explicit ZVDialogTitleBar(QWidget* parent = nullptr);
    /// With \a windowButtons the minimise and maximise buttons are created and shown.
    explicit ZVDialogTitleBar(bool windowButtons, QWidget* parent = nullptr);
    ~ZVDialogTitleBar() override;

    void setTitle(const QString& title);
    QString title() const;

    QLabel* titleLabel() const;
    QPushButton* closeButton() const;
    /// Null until the window buttons are asked for.
    QPushButton* minimizeButton() const;
    QPushButton* maximizeButton() const;

    /// Shows the minimise and maximise buttons, creating them on first use, or hides
    /// them when they exist.
    void setWindowButtonsVisible(bool visible);

    /// Makes this bar the title bar of \a dialog: dragging the bar moves the dialog
    /// when \a enabled, the close button closes it, and the window buttons, which a
    /// dialog does not offer, are hidden. Calling it again with another dialog moves
    /// the close connection over to that one.
    void setupForDialog(QWidget* dialog, bool enabled);

Q_SIGNALS:
    void closeClicked();
    void minimizeClicked();
    void maximizeClicked();

protected:
    void changeEvent(QEvent* event) override;

private:
    void createWindowButtons();
    // The buttons' accessible names and descriptions in the current language (the
    // frame's catalogue carries them): the buttons show only pictures.
    void retranslate();

    QHBoxLayout* m_layout = nullptr;
    QLabel* m_title = nullptr;
    QPushButton* m_min = nullptr;
    QPushButton* m_max = nullptr;
    QPushButton* m_close = nullptr;
    QPointer<QWidget> m_dialog;
    QMetaObject::Connection m_closeConnection;
};

#endif // ZVCONTROL_ZVDIALOGTITLEBAR_H
