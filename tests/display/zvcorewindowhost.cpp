// zv_corewindow_host: a core window on a real display, for the display tests to drive
// with the mouse and photograph.
//
//   zv_corewindow_host [--resizable] [--shadow qt|layered|unset] [--maximize]
//                      [--color #rrggbb] [--pos x,y] [--status] [--title text]
//                      [--then <maximize|normal|minimize>[,...]]
//   zv_corewindow_host --pair <qt|layered>,<qt|layered>,<first|second>
//
// The window is 800 x 600 at --pos (300,200 by default), its title bar on top and its
// central widget a solid colour. Once the window is exposed it prints, one per line:
//   winid <decimal X window id>
//   widget <name> <x> <y> <width> <height>   title, central and the title's children,
//                                            relative to the top-level window
//   qtgeometry <x> <y> <width> <height>     the frame geometry as Qt sees it
//   ready
// and then runs until it is terminated, printing "qtgeometry" again whenever Qt sees
// the window move or resize. With --status it also prints, whenever any of it changes:
//   status <x> <y> <w> <h> <normal|maximized|minimized> maxed=<0|1> work=<x>,<y>,<w>,<h>
//          shadow=<x>,<y>,<w>,<h>,<visible 0|1>|none margins=<l>,<t>,<r>,<b> active=<0|1>
// the frame geometry, the window state, the maximise button's "maxed" property, the
// screen's available geometry (the work area), the contents margins and, on Windows,
// the layered shadow window (class "ZVShadowWnd") of this process.
//
// --then changes the window's state as listed, one step a second once it is ready.
//
// --pair opens two core windows in one process, in the two shadow modes given, then
// closes the one named, moves and maximises and restores the other, and closes it too,
// printing "shadows <n>" (the ZVShadowWnd windows of the process, on Windows) after each
// step and "pair done" at the end; the exit code is 0 unless something went wrong.
#include <ZVCore/ZVCoreWindow>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <memory>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace {

void printLine(const QString& line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

// Paints itself rather than relying on a palette, so that no style sheet of the frame
// can change the colour the tests look for.
class SolidWidget : public QWidget
{
public:
    explicit SolidWidget(const QColor& color)
        : m_color(color)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), m_color);
    }

private:
    QColor m_color;
};

class HostWindow;
void printLayout(HostWindow& window);

class HostWindow : public ZVCoreWindow
{
public:
    // Where Qt believes the window is; when it disagrees with the X server, the frame's
    // hit test, which works on Qt's geometry, misses.
    bool reportGeometry = false;
    bool reportStatus = false;

    HostWindow(const QColor& color, bool resizable)
        : ZVCoreWindow(nullptr)
    {
        // The window creates its title bar; placing it is the host's part, as in any
        // product built on the frame.
        if (QWidget* title = GetTitleWidget())
            setMenuWidget(title);
        auto* central = new SolidWidget(color);
        central->setObjectName(QStringLiteral("central"));
        setCentralWidget(central);
        SetResizeable(resizable);
    }

protected:
    bool event(QEvent* event) override
    {
        const bool result = ZVCoreWindow::event(event);
        if (reportGeometry && (event->type() == QEvent::Move || event->type() == QEvent::Resize)) {
            const QRect g = frameGeometry();
            printLine(QStringLiteral("qtgeometry %1 %2 %3 %4").arg(g.x()).arg(g.y()).arg(g.width()).arg(g.height()));
        }
        // The title's buttons move with the window's width: their places again, once the
        // layout has followed.
        if (reportStatus && event->type() == QEvent::Resize)
            QTimer::singleShot(50, this, [this] { printLayout(*this); });
        return result;
    }
};

void printWidget(const QString& name, const QWidget* widget, const QWidget* window)
{
    const QPoint origin = widget->mapTo(window, QPoint(0, 0));
    printLine(QStringLiteral("widget %1 %2 %3 %4 %5")
                  .arg(name)
                  .arg(origin.x())
                  .arg(origin.y())
                  .arg(widget->width())
                  .arg(widget->height()));
}

void printLayout(HostWindow& window)
{
    printLine(QStringLiteral("winid %1").arg(quint64(window.winId())));
    if (QWidget* central = window.centralWidget())
        printWidget(QStringLiteral("central"), central, &window);
    QWidget* title = window.GetTitleWidget();
    if (!title)
        return;
    printWidget(QStringLiteral("title"), title, &window);
    int unnamed = 0;
    for (QObject* object : title->children()) {
        auto* child = qobject_cast<QWidget*>(object);
        if (!child || child->isWindow() || !child->isVisible())
            continue;
        const QString name = child->objectName().isEmpty() ? QStringLiteral("title_child%1").arg(++unnamed)
                                                           : child->objectName();
        printWidget(name, child, &window);
    }
}

#ifdef Q_OS_WIN
bool isOwnShadow(HWND hwnd)
{
    wchar_t name[64] = {};
    DWORD pid = 0;
    ::GetWindowThreadProcessId(hwnd, &pid);
    return pid == ::GetCurrentProcessId() && ::GetClassNameW(hwnd, name, 64) && wcscmp(name, L"ZVShadowWnd") == 0;
}

BOOL CALLBACK findShadow(HWND hwnd, LPARAM out)
{
    if (isOwnShadow(hwnd)) {
        *reinterpret_cast<HWND*>(out) = hwnd;
        return FALSE;
    }
    return TRUE;
}

BOOL CALLBACK countShadow(HWND hwnd, LPARAM out)
{
    if (isOwnShadow(hwnd))
        ++*reinterpret_cast<int*>(out);
    return TRUE;
}
#endif

int shadowCount()
{
    int count = 0;
#ifdef Q_OS_WIN
    ::EnumWindows(countShadow, reinterpret_cast<LPARAM>(&count));
#endif
    return count;
}

QString statusLine(HostWindow& window)
{
    const QRect g = window.frameGeometry();
    const Qt::WindowStates state = window.windowState();
    const QString stateText = state & Qt::WindowMinimized ? QStringLiteral("minimized")
                              : state & Qt::WindowMaximized ? QStringLiteral("maximized")
                                                            : QStringLiteral("normal");
    const QWidget* max = window.findChild<QWidget*>(QStringLiteral("btn_max"));
    const QRect work = window.screen() ? window.screen()->availableGeometry() : QRect();
    QString shadow = QStringLiteral("none");
#ifdef Q_OS_WIN
    HWND found = nullptr;
    ::EnumWindows(findShadow, reinterpret_cast<LPARAM>(&found));
    RECT r;
    if (found && ::GetWindowRect(found, &r))
        shadow = QStringLiteral("%1,%2,%3,%4,%5")
                     .arg(r.left)
                     .arg(r.top)
                     .arg(r.right - r.left)
                     .arg(r.bottom - r.top)
                     .arg(::IsWindowVisible(found) ? 1 : 0);
#endif
    const QMargins m = window.contentsMargins();
    return QStringLiteral("status %1 %2 %3 %4 %5 maxed=%6 work=%7,%8,%9,%10 shadow=%11 margins=%12,%13,%14,%15 active=%16")
        .arg(g.x())
        .arg(g.y())
        .arg(g.width())
        .arg(g.height())
        .arg(stateText)
        .arg(max && max->property("maxed").toBool() ? 1 : 0)
        .arg(work.x())
        .arg(work.y())
        .arg(work.width())
        .arg(work.height())
        .arg(shadow)
        .arg(m.left())
        .arg(m.top())
        .arg(m.right())
        .arg(m.bottom())
        .arg(window.isActiveWindow() ? 1 : 0);
}

// Waits for the event loop to settle.
void settle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

int runPair(QApplication& app, const QString& modes)
{
    const QStringList parts = modes.split(QLatin1Char(','));
    if (parts.size() != 3)
        return 2;
    std::unique_ptr<HostWindow> windows[2];
    for (int i = 0; i < 2; ++i) {
        app.setProperty("QtBasedShadow", parts.at(i) == QLatin1String("qt"));
        windows[i].reset(new HostWindow(i ? QColor(200, 80, 40) : QColor(42, 157, 92), true));
        windows[i]->resize(600, 400);
        windows[i]->move(100 + 700 * i, 200);
        windows[i]->show();
    }
    settle(500);
    printLine(QStringLiteral("shadows %1").arg(shadowCount()));
    const int leaving = parts.at(2) == QLatin1String("first") ? 0 : 1;
    windows[leaving].reset();
    settle(300);
    printLine(QStringLiteral("shadows %1").arg(shadowCount()));
    HostWindow& staying = *windows[1 - leaving];
    staying.move(staying.pos() + QPoint(40, 30));
    settle(200);
    staying.showMaximized();
    settle(300);
    staying.showNormal();
    settle(300);
    printLine(QStringLiteral("shadows %1").arg(shadowCount()));
    windows[1 - leaving].reset();
    settle(300);
    printLine(QStringLiteral("shadows %1").arg(shadowCount()));
    printLine(QStringLiteral("pair done"));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);

    bool resizable = false;
    bool maximize = false;
    QString shadow = QStringLiteral("unset");
    QColor color(42, 157, 92);
    QPoint position(300, 200);
    bool status = false;
    QString title;
    QStringList then;
    const QStringList args = QCoreApplication::arguments();
    if (args.size() == 3 && args.at(1) == QLatin1String("--pair"))
        return runPair(app, args.at(2));
    for (int i = 1; i < args.size(); ++i) {
        const QString& a = args.at(i);
        if (a == QLatin1String("--resizable")) {
            resizable = true;
        } else if (a == QLatin1String("--maximize")) {
            maximize = true;
        } else if (a == QLatin1String("--shadow") && i + 1 < args.size()) {
            shadow = args.at(++i);
        } else if (a == QLatin1String("--status")) {
            status = true;
        } else if (a == QLatin1String("--then") && i + 1 < args.size()) {
            then = args.at(++i).split(QLatin1Char(','));
        } else if (a == QLatin1String("--title") && i + 1 < args.size()) {
            title = args.at(++i);
        } else if (a == QLatin1String("--color") && i + 1 < args.size()) {
            color = QColor(args.at(++i));
        } else if (a == QLatin1String("--pos") && i + 1 < args.size()) {
            const QStringList xy = args.at(++i).split(QLatin1Char(','));
            if (xy.size() == 2)
                position = QPoint(xy.at(0).toInt(), xy.at(1).toInt());
        } else {
            std::fprintf(stderr, "zv_corewindow_host: unknown argument %s\n", qPrintable(a));
            return 2;
        }
    }
    // Read by the window's constructor.
    if (shadow == QLatin1String("qt"))
        app.setProperty("QtBasedShadow", true);
    else if (shadow == QLatin1String("layered"))
        app.setProperty("QtBasedShadow", false);

    HostWindow window(color, resizable);
    if (!title.isEmpty())
        window.setWindowTitle(title);
    window.resize(800, 600);
    window.move(position);
    if (maximize)
        window.showMaximized();
    else
        window.show();

    QTimer poll;
    poll.setInterval(20);
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (!window.windowHandle() || !window.windowHandle()->isExposed())
            return;
        poll.stop();
        // One more turn so that the first frame has been painted and flushed.
        QTimer::singleShot(100, [&] {
            printLayout(window);
            const QRect g = window.frameGeometry();
            printLine(QStringLiteral("qtgeometry %1 %2 %3 %4").arg(g.x()).arg(g.y()).arg(g.width()).arg(g.height()));
            window.reportGeometry = true;
            printLine(QStringLiteral("ready"));
            for (int step = 0; step < then.size(); ++step) {
                const QString action = then.at(step);
                QTimer::singleShot(1000 * (step + 1), &window, [&window, action] {
                    if (action == QLatin1String("maximize"))
                        window.showMaximized();
                    else if (action == QLatin1String("minimize"))
                        window.showMinimized();
                    else
                        window.showNormal();
                });
            }
        });
    });
    poll.start();

    QTimer statusPoll;
    QString lastStatus;
    if (status) {
        window.reportStatus = true;
        statusPoll.setInterval(50);
        QObject::connect(&statusPoll, &QTimer::timeout, [&] {
            const QString line = statusLine(window);
            if (line != lastStatus) {
                lastStatus = line;
                printLine(line);
            }
        });
        statusPoll.start();
    }
    return app.exec();
}
