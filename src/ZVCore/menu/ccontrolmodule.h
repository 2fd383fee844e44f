#ifndef ZVCORE_CCONTROLMODULE_H
#define ZVCORE_CCONTROLMODULE_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QObject>
#include <QtCore/QString>

namespace ZVUIFramework {

// The update check. Three seconds after it is built it starts the updater silently,
// unless the link file hides its "CheckNewVersion" entry; event 1001 on the bus (the
// title menu's "CheckNewVersion") starts the updater with its dialog. The core window
// builds one.
class ZVCORE_AUTOTEST_EXPORT CControlModule : public QObject
{
    Q_OBJECT

public:
    explicit CControlModule(QObject* parent = nullptr);
    ~CControlModule() override;

    // The delay of the silent check after construction.
    static constexpr int kSilentCheckDelayMs = 3000;

public Q_SLOTS:
    // The silent launch: the host's updater arguments and "--silent=true".
    void slotCheckUpdate();
    // The launch with the updater's dialog. The trigger is not used.
    void slotOpenChkUpdateDlg(int updateTrigger);
    void slotOpenChkUpdateDlg();
    // The launch with the dialog when \a text is not empty; the numbers are not used.
    void slotCheckUpdate(int, QString text, int);

protected:
    void customEvent(QEvent* event) override;

private:
    static void startUpdater(bool silent);
};

} // namespace ZVUIFramework

#endif // ZVCORE_CCONTROLMODULE_H
