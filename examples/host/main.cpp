// Folder Lens: a folder-size viewer built on the frame.
//
//   zvcore-demo [--skin light|dark] [--language <Name>] [--folder <path>]
//   zvcore-demo --screenshots <folder>     pictures of every window, skin and language
//
// --language forces a language for this run (the application property "ForceLanguage");
// without it the frame uses the saved choice, else the system's language.
#include "folderview.h"
#include "mainwindow.h"
#include "screenshots.h"

#include <ZVCore/ZVApplicationInfo>

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtWidgets/QApplication>

#include <cstring>

using ZVUIFramework::ZVApplicationInfo;

namespace {

// The value following \a name on the command line, or \a fallback.
QString option(int argc, char** argv, const char* name, const QString& fallback = QString())
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], name) == 0)
            return QString::fromLocal8Bit(argv[i + 1]);
    }
    return fallback;
}

} // namespace

int main(int argc, char** argv)
{
    const QString screenshots = option(argc, argv, "--screenshots");
    // Pictures need no screen: without a display they are drawn offscreen.
    if (!screenshots.isEmpty() && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    ZVApplicationInfo::EnableHighDPISupport({{"windowWidth", 1000}, {"windowHeight", 680}, {"syncRatio", true}});

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Folder Lens"));
    QApplication::setApplicationVersion(QStringLiteral("1.2.0.7"));
    QApplication::setOrganizationName(QStringLiteral("Sample"));
    QApplication::setOrganizationDomain(QStringLiteral("example.com"));
    app.setProperty("dlgRadius", 8);
    app.setProperty("QtBasedShadow", true);
    app.setProperty("UpdateServerURL", QStringLiteral("https://updates.example.com/"));
    app.setProperty("CrashDataCollection", QStringLiteral("demo-crash"));
    app.setProperty("FullProductName", QStringLiteral("Sample Folder Lens"));
    app.setProperty("HomeURL", QStringLiteral("https://www.example.com/"));
    app.setProperty("SupportURL", QStringLiteral("https://support.example.com/"));
    // Arabic is laid out from right to left, whether forced here or chosen by the user.
    app.setProperty("EnableRightToLeft", true);
    const QString language = option(argc, argv, "--language");
    if (!language.isEmpty())
        app.setProperty("ForceLanguage", language);

    ZVApplicationInfo::InitCrashHandle();

    ZVApplicationInfo* context = ZVApplicationInfo::GetInstance();
    context->SetSendEmailInfo(QStringLiteral("reports@example.com"), QString());
    context->SetUserEmailInfo(QStringLiteral("user@example.com"));
    context->SetUpdaterArguments({QStringLiteral("--product=folderlens")});
    context->SetCrashCallback([](EXCEPTION_POINTERS*) -> long {
        qCritical("Folder Lens: crashed; a report is on its way");
        return 0;
    });
    context->addQss(QStringLiteral("Host.qss"), true);

    QString skin = option(argc, argv, "--skin", QStringLiteral("light"));
    if (skin != QLatin1String("light") && skin != QLatin1String("dark")) {
        qWarning().noquote() << "Folder Lens: unknown skin" << skin << "- using light";
        skin = QStringLiteral("light");
    }
    context->InitSkin(false, skin);

    // Without a language, the screenshot mode runs one process per skin and language.
    if (!screenshots.isEmpty() && language.isEmpty())
        return Screenshots::runAll(QDir(screenshots).absolutePath());

    const QString folder = screenshots.isEmpty() ? option(argc, argv, "--folder", QDir::homePath())
                                                 : Screenshots::sampleFolder();
    MainWindow window(folder);
    if (!screenshots.isEmpty())
        return Screenshots::takeAll(&window, QDir(screenshots).absolutePath(), skin + QLatin1Char('-') + language);

    window.show();
    return app.exec();
}
