// The same host without the frame: a bare QApplication with a QMainWindow carrying a
// title row of the same widgets and the same host form. With --style-sheet it first
// sets the application style sheet the frame would assemble from the skin's files, so
// that the frame's own share of the start-up shows apart from that of style sheets.
#include "firstframe.h"
#include "hostform.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtWidgets/QMainWindow>

namespace {

bool hasFlag(int argc, char** argv, const char* flag)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], flag) == 0)
            return true;
    }
    return false;
}

QString skinStyleSheet()
{
    QString sheet;
    const QDir qss(QCoreApplication::applicationDirPath() + QStringLiteral("/skin/qss"));
    for (const QString& name : {QStringLiteral("Host.qss"), QStringLiteral("ZVUIFramework.qss")}) {
        QFile file(qss.filePath(name));
        if (file.open(QIODevice::ReadOnly | QIODevice::Text))
            sheet += QString::fromUtf8(file.readAll());
    }
    return sheet;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    FirstFrameApplication app(argc, argv);
    const bool styled = hasFlag(argc, argv, "--style-sheet");
    if (styled)
        app.setStyleSheet(skinStyleSheet());
    QMainWindow window;
    window.setMenuWidget(new BareTitle);
    window.setCentralWidget(new HostForm);
    window.setMinimumSize(760, 520);
    window.resize(1000, 680);
    app.watch(&window, stayRequested(argc, argv), styled ? QStringLiteral("bare-styled") : QStringLiteral("bare"));
    window.show();
    return app.exec();
}
