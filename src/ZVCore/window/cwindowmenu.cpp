#include "cwindowmenu.h"

#include <ZVCore/ZVCoreWindow>

namespace ZVUIFramework {

CWindowMenu::CWindowMenu(ZVCoreWindow* window, std::function<void()> startMove, std::function<void()> startSize)
    : QMenu(window)
{
    setObjectName(QStringLiteral("Core_windowMenu"));
    const Qt::WindowStates state = window->windowState();
    const bool minimised = state.testFlag(Qt::WindowMinimized);
    const bool maximised = state.testFlag(Qt::WindowMaximized) || state.testFlag(Qt::WindowFullScreen);
    const bool normal = !minimised && !maximised;
    const bool resizable = window->minimumSize() != window->maximumSize();
    const bool canMaximise = window->windowFlags().testFlag(Qt::WindowMaximizeButtonHint) && resizable;

    // The texts belong to the window, as a system's window menu does.
    m_actions[Restore] = addAction(ZVCoreWindow::tr("&Restore"), window, &QWidget::showNormal);
    m_actions[Move] = addAction(ZVCoreWindow::tr("&Move"));
    m_actions[Size] = addAction(ZVCoreWindow::tr("&Size"));
    m_actions[Minimise] = addAction(ZVCoreWindow::tr("Mi&nimise"), window, &QWidget::showMinimized);
    m_actions[Maximise] = addAction(ZVCoreWindow::tr("Ma&ximise"), window, &QWidget::showMaximized);
    addSeparator();
    m_actions[Close] = addAction(ZVCoreWindow::tr("&Close"), window, &QWidget::close);

    m_actions[Restore]->setEnabled(!normal);
    m_actions[Move]->setEnabled(normal && startMove != nullptr);
    m_actions[Size]->setEnabled(normal && resizable && startSize != nullptr);
    m_actions[Minimise]->setEnabled(!minimised);
    m_actions[Maximise]->setEnabled(!maximised && canMaximise);
    if (startMove)
        connect(m_actions[Move], &QAction::triggered, this, [startMove] { startMove(); });
    if (startSize)
        connect(m_actions[Size], &QAction::triggered, this, [startSize] { startSize(); });
    static const char* const kNames[EntryCount] = {"restore", "move", "size", "minimise", "maximise", "close"};
    for (int i = 0; i < EntryCount; ++i)
        m_actions[i]->setObjectName(QStringLiteral("Core_windowMenu_") + QLatin1String(kNames[i]));
}

} // namespace ZVUIFramework
