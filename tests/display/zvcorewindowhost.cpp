// zv_corewindow_host: a core window on a real display, for the display tests to drive
// with the mouse and photograph.
//
//   zv_corewindow_host [--resizable] [--shadow qt|layered|unset] [--maximize]
//                      [--color #rrggbb] [--pos x,y]
//
// The window is 800 x 600 at --pos (300,200 by default), its title bar on top and its
// central widget a solid colour. Once the window is exposed it prints, one per line:
//   winid <decimal X window id>
//   widget <name> <x> <y> <width> <height>   title, central and the title's children,
//                                            relative to the top-level window
//   qtgeometry <x> <y> <width> <height>     the frame geometry as Qt sees it
//   ready
// and then runs until it is terminated, printing "qtgeometry" again whenever Qt sees
// the window move or resize.
#include <ZVCore/ZVCoreWindow>

#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>

#include <cstdio>

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

class HostWindow : public ZVCoreWindow
{
public:
    // Where Qt believes the window is; when it disagrees with the X server, the frame's
    // hit test, which works on Qt's geometry, misses.
    bool reportGeometry = false;

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

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);

    bool resizable = false;
    bool maximize = false;
    QString shadow = QStringLiteral("unset");
    QColor color(42, 157, 92);
    QPoint position(300, 200);
    const QStringList args = QCoreApplication::arguments();
    for (int i = 1; i < args.size(); ++i) {
        const QString& a = args.at(i);
        if (a == QLatin1String("--resizable")) {
            resizable = true;
        } else if (a == QLatin1String("--maximize")) {
            maximize = true;
        } else if (a == QLatin1String("--shadow") && i + 1 < args.size()) {
            shadow = args.at(++i);
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
        });
    });
    poll.start();
    return app.exec();
}
