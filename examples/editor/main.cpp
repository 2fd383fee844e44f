// Sample Notes: a small plain-text editor built on the frame.
//
//   zvcore-editor [--skin light|dark] [--language <Name>] [--report] [<file>]
//   zvcore-editor --screenshot <picture.png> [--skin ...] [--language ...] [<file>]
//
// --screenshot shows the main window offscreen, writes it to the picture and exits: 0 when
// the picture was written and the file (if any) opened, 1 otherwise; errors go to
// standard error. --language forces a language for this run (the application property
// "ForceLanguage"); without it the frame uses the saved choice, else the system's.
// --report prints, once the window is on screen, its native id and where its parts lie,
// one line each ("winid <id>", "widget <name> <x> <y> <width> <height>" in the window's
// coordinates, then "ready"), for the tests that drive it on a real display.
#include "mainwindow.h"

#include <ZVCore/ZVApplicationInfo>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>
#include <QtGui/QPalette>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QToolBar>

#include <cstring>

using ZVUIFramework::ZVApplicationInfo;

namespace {

// The window's id and its parts, for --report.
void reportLayout(MainWindow& window)
{
    QTextStream out(stdout);
    out << "winid " << window.winId() << '\n';
    const auto line = [&](const QString& name, const QWidget* widget) {
        if (!widget || !widget->isVisible())
            return;
        const QRect r(widget->mapTo(&window, QPoint(0, 0)), widget->size());
        out << "widget " << name << ' ' << r.x() << ' ' << r.y() << ' ' << r.width() << ' ' << r.height() << '\n';
    };
    line(QStringLiteral("title"), window.GetTitleWidget());
    line(QStringLiteral("menubar"), window.menuBar());
    for (const char* name : {"fileToolBar", "editToolBar", "outlineDock", "statsDock", "editor"})
        line(QLatin1String(name), window.findChild<QWidget*>(QLatin1String(name)));
    line(QStringLiteral("statusbar"), window.statusBar());
    out << "ready\n";
    out.flush();
}

bool hasOption(int argc, char** argv, const char* name)
{
    const size_t length = std::strlen(name);
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], name, length) == 0 && (argv[i][length] == '\0' || argv[i][length] == '='))
            return true;
    }
    return false;
}

void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// The dark skin's style sheets colour the frame and the editor's own widgets; the palette
// colours what no sheet names: menus, dialogs, scroll bars.
void applyDarkPalette()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette palette;
    const QColor window(0x1e, 0x20, 0x26), base(0x27, 0x2a, 0x31), text(0xe6, 0xe8, 0xee);
    const QColor button(0x2c, 0x2f, 0x37), highlight(0x5b, 0x9b, 0xff), muted(0x8a, 0x8f, 0x9c);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, button);
    palette.setColor(QPalette::ToolTipBase, button);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, button);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Link, highlight);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, muted);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, muted);
    QApplication::setPalette(palette);
}

// The language manager saves every language it selects, a forced one too. A picture
// taken in a forced language puts the user's choice back afterwards.
class SavedLanguageGuard
{
public:
    SavedLanguageGuard()
        : m_path(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("language/language")))
    {
        QFile file(m_path);
        m_existed = file.open(QIODevice::ReadOnly);
        if (m_existed)
            m_content = file.readAll();
    }
    ~SavedLanguageGuard()
    {
        if (!m_existed) {
            QFile::remove(m_path);
            return;
        }
        QFile file(m_path);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            file.write(m_content);
    }
    SavedLanguageGuard(const SavedLanguageGuard&) = delete;
    SavedLanguageGuard& operator=(const SavedLanguageGuard&) = delete;

private:
    QString m_path;
    QByteArray m_content;
    bool m_existed = false;
};

} // namespace

int main(int argc, char** argv)
{
    // The frame's debug lines (language chosen, scaling decided) are for its developers,
    // not for the user's terminal. QT_LOGGING_RULES="default.debug=true" brings them back.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));

    // Pictures need no screen: without a display they are drawn offscreen.
    if (hasOption(argc, argv, "--screenshot") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    ZVApplicationInfo::EnableHighDPISupport({{"windowWidth", 1000}, {"windowHeight", 700}, {"syncRatio", true}});

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Sample Notes"));
    QApplication::setApplicationVersion(QStringLiteral("1.0.0.3"));
    // QSettings (recent files, the layout of docks and tool bars) files under these names.
    QApplication::setOrganizationName(QStringLiteral("Sample"));
    QApplication::setOrganizationDomain(QStringLiteral("example.com"));
    app.setProperty("dlgRadius", 8);
    app.setProperty("QtBasedShadow", true);
    app.setProperty("CrashDataCollection", QStringLiteral("notes-crash"));
    app.setProperty("FullProductName", QStringLiteral("Sample Notes"));
    app.setProperty("HomeURL", QStringLiteral("https://notes.example.com/"));
    app.setProperty("SupportURL", QStringLiteral("https://support.example.com/"));
    // Arabic is laid out from right to left, whether forced here or chosen by the user.
    app.setProperty("EnableRightToLeft", true);

    // Read before anything is translated: the options keep their English descriptions.
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Sample Notes, a small plain-text editor."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
        QStringLiteral("Writes a picture of the main window to <file> and exits."), QStringLiteral("file"));
    const QCommandLineOption languageOption(QStringLiteral("language"),
        QStringLiteral("Uses the language <name> (English, German, Arabic)."), QStringLiteral("name"));
    const QCommandLineOption skinOption(QStringLiteral("skin"),
        QStringLiteral("Uses the skin <name>: light or dark."), QStringLiteral("name"), QStringLiteral("light"));
    const QCommandLineOption reportOption(QStringLiteral("report"),
        QStringLiteral("Prints the window's id and where its parts lie once it is shown."));
    parser.addOptions({screenshotOption, languageOption, skinOption, reportOption});
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The document to open."), QStringLiteral("[file]"));
    parser.process(app);

    const QString language = parser.value(languageOption);
    if (!language.isEmpty())
        app.setProperty("ForceLanguage", language);

    ZVApplicationInfo::InitCrashHandle();

    ZVApplicationInfo* context = ZVApplicationInfo::GetInstance();
    context->SetSendEmailInfo(QStringLiteral("reports@example.com"), QString());
    context->SetUserEmailInfo(QStringLiteral("user@example.com"));
    context->SetCrashCallback([](EXCEPTION_POINTERS*) -> long {
        qCritical("Sample Notes: crashed; a report is on its way");
        return 0;
    });
    // The editor's menu bar, tool bars, docks and status bar; it has no pictures of its own.
    context->addQss(QStringLiteral("Editor.qss"), false);

    // The context has just made the executable's folder the current directory, so paths
    // from the command line are resolved against the one the user started us in.
    const QDir startup(ZVApplicationInfo::GetStartupDirectory());
    const QStringList positional = parser.positionalArguments();
    const QString document = positional.isEmpty() ? QString() : startup.absoluteFilePath(positional.first());
    const QString screenshot =
        parser.isSet(screenshotOption) ? startup.absoluteFilePath(parser.value(screenshotOption)) : QString();
    if (parser.isSet(screenshotOption) && parser.value(screenshotOption).isEmpty()) {
        QTextStream(stderr) << "zvcore-editor: --screenshot needs a file name\n";
        return 1;
    }

    QString skin = parser.value(skinOption);
    if (skin != QLatin1String("light") && skin != QLatin1String("dark")) {
        QTextStream(stderr) << "zvcore-editor: unknown skin " << skin << ", using light\n";
        skin = QStringLiteral("light");
    }
    if (skin == QLatin1String("dark"))
        applyDarkPalette();
    context->InitSkin(false, skin);

    if (screenshot.isEmpty()) {
        MainWindow window(true);
        window.show();
        // Opened once the window is up, so that an error box has the window to sit on.
        if (!document.isEmpty())
            QTimer::singleShot(0, &window, [&window, document] { window.openFile(document); });
        if (parser.isSet(reportOption))
            QTimer::singleShot(500, &window, [&window] { reportLayout(window); });
        return app.exec();
    }

    QScopedPointer<SavedLanguageGuard> languageGuard(language.isEmpty() ? nullptr : new SavedLanguageGuard);
    MainWindow window(false);
    const bool opened = document.isEmpty() || window.openFile(document);
    window.show();
    // Lets the window lay itself out and paint once before it is grabbed.
    wait(300);
    const QPixmap picture = window.grab();
    const bool written = !picture.isNull() && picture.save(screenshot, "PNG");
    if (!written)
        QTextStream(stderr) << "zvcore-editor: could not write " << QDir::toNativeSeparators(screenshot) << "\n";
    window.close();
    return opened && written ? 0 : 1;
}
