#ifndef ZVCORE_CCUSTOMWIDGETTITLE_H
#define ZVCORE_CCUSTOMWIDGETTITLE_H

#include <ZVCore/zvcore_export.h>
#include <ZVControl/ZVStyleWidget>

class QLabel;
class QPushButton;

// The small title bar of the frame's own dialogs: a title and a close button. The
// dialog that owns it connects signalCilckClose() to its closing and, to be dragged by
// it, calls setEnabledMouseDrag(dialog, true).
class ZVCORE_AUTOTEST_EXPORT CCustomWidgetTitle : public ZVStyleWidget
{
    Q_OBJECT

public:
    explicit CCustomWidgetTitle(QWidget* parent = nullptr);
    ~CCustomWidgetTitle() override;

    void setTitle(const QString& title);

Q_SIGNALS:
    // The letters are transposed on purpose: hosts connect to this name.
    void signalCilckClose();

private:
    QLabel* m_title = nullptr;
    QPushButton* m_close = nullptr;
};

#endif // ZVCORE_CCUSTOMWIDGETTITLE_H
