// A private desktop for tests that need a real window manager: Xvfb, openbox with a
// bottom margin that shrinks the work area, and optionally the xcompmgr compositor.
// Everything the session starts is stopped again by its PID; nothing else is touched.
//
// \code
// DisplaySession session;
// QVERIFY2(session.start(DisplaySession::WithCompositor), qPrintable(session.error()));
// const QRect before = session.clientGeometry(window);
// session.drag(before.topLeft() + QPoint(200, 20), QPoint(150, 80));
// \endcode
#ifndef ZVCORE_TESTS_DISPLAYSESSION_H
#define ZVCORE_TESTS_DISPLAYSESSION_H

#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QRect>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>

#include <functional>
#include <memory>

#include "xvfb.h"

class DisplaySession
{
public:
    enum Compositor { WithoutCompositor, WithCompositor };

    static constexpr int kScreenWidth = 1920;
    static constexpr int kScreenHeight = 1080;
    static constexpr int kBottomMargin = 40;
    // xsetroot's colour for the bare desktop; xcompmgr fills a desktop without a root
    // pixmap with the same mid grey, so the background reads the same with and without it.
    static constexpr int kDesktopGrey = 0x80;

    DisplaySession();
    ~DisplaySession();
    DisplaySession(const DisplaySession&) = delete;
    DisplaySession& operator=(const DisplaySession&) = delete;

    // The programs the session drives; empty when all are installed.
    static QStringList missingTools();

    // Starts the X server, paints the desktop grey, starts openbox and waits until it
    // owns the screen, then (optionally) xcompmgr. False with error() on failure.
    bool start(Compositor compositor);
    // The same on a screen of another size or DPI, optionally with "Xft.dpi" set in the
    // X resource database (through xrdb) before the window manager starts.
    bool start(Compositor compositor, int width, int height, int dpi, int xftDpi = 0);
    // Stops what start() started, newest first; safe to call twice.
    void stop();
    // Starts xcompmgr on a running session (and waits until it owns the screen), or
    // stops it again: a compositing manager that comes or goes while windows are open.
    bool startCompositor();
    void stopCompositor();

    QString display() const { return m_xvfb.display(); }
    QString error() const { return m_error; }
    // For child programs: the session's display, the xcb platform, and folders of the
    // session for anything that wants to write a cache or a configuration.
    QProcessEnvironment environment() const;

    // Runs an X tool on the session's display. Returns its standard output; \a ok tells
    // whether it exited with 0 within the time limit.
    QString runTool(const QString& program, const QStringList& arguments, bool* ok = nullptr,
                    int timeoutMs = 15000) const;
    bool xdotool(const QStringList& arguments) const;

    // Mouse input, in root coordinates. A drag presses at \a from, moves in \a steps equal
    // steps with short pauses (a window manager's move follows motion events, not
    // warps) and releases at \a from + \a delta.
    bool drag(const QPoint& from, const QPoint& delta, int steps = 15) const;
    bool doubleClick(const QPoint& at) const;
    bool moveMouse(const QPoint& to) const;

    // The absolute position and size of the client window \a window (what the
    // application created, not the manager's frame around it); null on failure.
    QRect clientGeometry(unsigned long window) const;
    // The manager's frame around \a window: _NET_FRAME_EXTENTS as left, right, top, bottom.
    QList<int> frameExtents(unsigned long window) const;
    // The client geometry once it has stopped changing for \a quietMs.
    QRect settledGeometry(unsigned long window, int quietMs = 500, int timeoutMs = 8000) const;
    // Waits up to \a timeoutMs for \a predicate on the client geometry, then settles.
    QRect waitForGeometry(unsigned long window, const std::function<bool(const QRect&)>& predicate,
                          int timeoutMs = 8000) const;

    // _NET_WORKAREA of the first desktop; null when the manager does not publish it.
    QRect workArea() const;

    // The root window's children, top-most first: managed windows appear as the
    // manager's frames, override-redirect windows as themselves.
    QList<unsigned long> stackingTopFirst() const;
    // The root child that holds \a window (its frame, or itself); 0 on failure.
    unsigned long topLevelOf(unsigned long window) const;
    // Every window that carries the process's _NET_WM_PID.
    QList<unsigned long> windowsOfProcess(qint64 pid) const;
    bool isViewable(unsigned long window) const;

    // A screenshot of the whole screen, kept as \a fileName (a path) to look at afterwards.
    QImage screenshot(const QString& fileName) const;

private:
    bool startOpenbox();
    bool waitForWindowManager(int timeoutMs);
    bool writeOpenboxConfig();
    static void stopProcess(QProcess& process);

    XvfbServer m_xvfb;
    std::unique_ptr<QTemporaryDir> m_home;
    QProcess m_openbox;
    QProcess m_compositor;
    QString m_error;
    bool m_started = false;
};

// A program under test on the session's display, started from a copy of itself in a
// fresh folder (the frame reads and may write files beside its executable), reporting
// on standard output one line per fact ("winid <id>", "widget <name> <x> <y> <w> <h>",
// "ready"). Stopped by its PID when the object goes away.
class DisplayProgram
{
public:
    explicit DisplayProgram(const QString& executable);
    ~DisplayProgram();

    // Starts it and waits for "ready"; false with error() otherwise.
    bool start(const DisplaySession& session, const QStringList& arguments, int timeoutMs = 30000);
    void stop();

    unsigned long windowId() const { return m_windowId; }
    // Reads the report lines in \a output ("winid", "widget", "ready"); true once "ready"
    // has come. Programs other than the ones this class starts report the same way.
    static bool readReport(const QByteArray& output, unsigned long* windowId, QHash<QString, QRect>* widgets);
    // A child widget's rectangle relative to the top-level window, as the program
    // reported it at start; null when it did not.
    QRect widgetRect(const QString& name) const { return m_widgets.value(name); }
    QStringList widgetNames() const { return m_widgets.keys(); }
    QString error() const { return m_error; }
    // The latest "qtgeometry" line: where Qt believes the window is. Null when none.
    QRect qtGeometry();
    qint64 pid() const { return m_process.processId(); }
    // Everything the program wrote so far, for failure messages.
    QString output();

private:
    void readOutput();

    QString m_source;
    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_stdout;
    unsigned long m_windowId = 0;
    QHash<QString, QRect> m_widgets;
    QString m_error;
};

#endif // ZVCORE_TESTS_DISPLAYSESSION_H
