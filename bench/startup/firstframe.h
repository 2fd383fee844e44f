// The moment a window's first frame is on the screen: an application object that
// watches the expose events of one window. On the offscreen platform (and on X11) the
// widget paints and flushes its backing store while the expose event is delivered, so
// once delivery returns, the frame is there.
#ifndef ZVBENCH_FIRSTFRAME_H
#define ZVBENCH_FIRSTFRAME_H

#include "zvbench.h"

#include <QtGui/QExposeEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <cstdio>
#include <cstring>
#include <unistd.h>

class FirstFrameApplication : public QApplication
{
public:
    using QApplication::QApplication;

    // With \a stay false the process reports the first frame of \a window on standard
    // output ("first-frame <CLOCK_MONOTONIC ns>") and ends at once; with \a stay true it
    // reports and keeps running. Under callgrind the instructions up to that moment are
    // dumped as "startup.<label>".
    void watch(QWidget* window, bool stay, const QString& label)
    {
        m_window = window;
        m_stay = stay;
        m_label = label;
    }

    bool notify(QObject* receiver, QEvent* event) override
    {
        const bool result = QApplication::notify(receiver, event);
        if (m_window && event->type() == QEvent::Expose && m_window->windowHandle() == receiver
            && m_window->windowHandle()->isExposed()) {
            const qint64 now = ZVBench::monotonicNs();
            ZVBench::dumpInstructions(QStringLiteral("startup.") + m_label);
            char line[64];
            const int n = std::snprintf(line, sizeof line, "first-frame %lld\n", static_cast<long long>(now));
            if (::write(STDOUT_FILENO, line, size_t(n)) != n) {
                // Nobody listening: nothing to report to.
            }
            m_window = nullptr;
            if (!m_stay)
                ::_exit(0);
        }
        return result;
    }

private:
    QWidget* m_window = nullptr;
    bool m_stay = false;
    QString m_label;
};

inline bool stayRequested(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--stay") == 0)
            return true;
    }
    return false;
}

#endif // ZVBENCH_FIRSTFRAME_H
