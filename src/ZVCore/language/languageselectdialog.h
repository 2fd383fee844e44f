#ifndef ZVCORE_LANGUAGESELECTDIALOG_H
#define ZVCORE_LANGUAGESELECTDIALOG_H

#include <ZVCore/zvcore_export.h>
#include <ZVControl/ZVStyleDialog>

#include <QtCore/QPoint>

class QLabel;
class QWidget;
class ZVStyleButton;
class ZVStyleComboBox;
class ZVDialogTitleBar;

// The modal language picker: the catalogue languages that have a translation of the
// frame, the one in force selected. OK switches the language at once and posts event
// 1002, on which the host decides, for instance, to restart.
class ZVCORE_AUTOTEST_EXPORT LanguageSelectDialog : public ZVStyleDialog
{
    Q_OBJECT

public:
    explicit LanguageSelectDialog(QWidget* parent = nullptr);
    ~LanguageSelectDialog() override;

public Q_SLOTS:
    // Whether the dialog shows the restart notice; call it before showing the dialog.
    void writeText(bool needRestart);

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void apply();
    void fillLanguages();
    void retranslate();

    QPoint m_dragOrigin;
    ZVDialogTitleBar* m_title = nullptr;
    QWidget* m_background = nullptr;
    QLabel* m_notice = nullptr;
    QWidget* m_noticeSpacer = nullptr;
    QLabel* m_selectLabel = nullptr;
    ZVStyleComboBox* m_combo = nullptr;
    ZVStyleButton* m_cancel = nullptr;
    ZVStyleButton* m_ok = nullptr;
    int m_currentIndex = 0;
    bool m_polished = false;
    bool m_needRestart = false;
};

#endif // ZVCORE_LANGUAGESELECTDIALOG_H
