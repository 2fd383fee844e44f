#ifndef ZVCORE_COMPOSITORWATCH_H
#define ZVCORE_COMPOSITORWATCH_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVCore/zvcore_export.h>

#include <QtCore/QObject>
#include <QtCore/QTimer>

namespace ZVUIFramework {

/*
 * Whether translucent windows are blended with what lies under them, followed while the
 * process runs. On X11 that takes a compositing manager, which owns the selection
 * _NET_WM_CM_S<screen> while it runs; without one a translucent window shows its
 * transparent pixels black (openbox, fluxbox, i3, xfwm4 or metacity with compositing off,
 * most remote desktops). The selection is asked for twice a second, on a connection of
 * the watch's own, and compositingChanged() tells of a change. Everywhere else (Windows,
 * Wayland, offscreen) windows are always blended.
 */
class ZVCORE_AUTOTEST_EXPORT CCompositorWatch : public QObject
{
    Q_OBJECT

public:
    // The process's watch, made on first use on the GUI thread.
    static CCompositorWatch* Instance();
    ~CCompositorWatch() override;

    // Whether windows are blended now, asked afresh.
    bool IsCompositing();
    // The answer of the last look, without asking.
    bool LastAnswer() const { return m_compositing; }

    // How often the watch looks, in milliseconds.
    static constexpr int kPollInterval = 500;

signals:
    void compositingChanged(bool compositing);

private:
    explicit CCompositorWatch(QObject* parent);
    bool query();

    struct X11;
    X11* m_x11 = nullptr;
    QTimer m_timer;
    bool m_compositing = true;
};

} // namespace ZVUIFramework

#endif // ZVCORE_COMPOSITORWATCH_H
