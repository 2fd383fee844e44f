#ifndef ZVCORE_CWINDOWMENU_H
#define ZVCORE_CWINDOWMENU_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVCore/zvcore_export.h>

#include <QtWidgets/QMenu>

#include <functional>

class ZVCoreWindow;

namespace ZVUIFramework {

/*
 * The window menu of a core window where the frame draws its own (X11 without a window
 * manager that shows one, and the other platforms without a system menu): Restore, Move,
 * Size, Minimise, Maximise and Close, each enabled as the window's state allows, in the
 * current language. A right click on the empty title or Alt+Space opens it.
 */
class ZVCORE_AUTOTEST_EXPORT CWindowMenu : public QMenu
{
    Q_OBJECT

public:
    enum Entry { Restore, Move, Size, Minimise, Maximise, Close, EntryCount };

    // \a startMove and \a startSize hand the window to the window system for a move or a
    // resize by keyboard; without them Move and Size are disabled.
    CWindowMenu(ZVCoreWindow* window, std::function<void()> startMove, std::function<void()> startSize);

    QAction* action(Entry entry) const { return m_actions[entry]; }

private:
    QAction* m_actions[EntryCount] = {};
};

} // namespace ZVUIFramework

#endif // ZVCORE_CWINDOWMENU_H
