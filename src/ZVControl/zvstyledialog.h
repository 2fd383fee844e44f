#ifndef ZVCONTROL_ZVSTYLEDIALOG_H
#define ZVCONTROL_ZVSTYLEDIALOG_H

#include <ZVControl/zvcontrol_export.h>

#include <QtWidgets/QDialog>

/*!
 * A frameless dialog with a translucent background, drawn entirely by the application's
 * style sheet: whatever the sheet does not paint stays see-through, which is what allows
 * rounded corners and drop shadows around the content.
 *
 * \code
 * qApp->setStyleSheet(QStringLiteral(
 *     "ZVStyleDialog { background: white; border: 1px solid gray; border-radius: 6px; }"));
 * ZVStyleDialog dialog(mainWindow);
 * auto* layout = new QVBoxLayout(&dialog);
 * layout->addWidget(new ZVLabel(QStringLiteral("Save changes?"), &dialog));
 * if (dialog.exec() == QDialog::Accepted)
 *     save();
 * \endcode
 *
 * Without a window frame the dialog has no title bar to drag it by; a ZVStyleWidget with
 * mouse dragging enabled serves as one.
 */
class ZVCONTROL_EXPORT ZVStyleDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ZVStyleDialog(QWidget* parent = nullptr);
    ~ZVStyleDialog() override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

#endif // ZVCONTROL_ZVSTYLEDIALOG_H
