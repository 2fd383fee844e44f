#include "benchhost.h"

#include <ZVCore/ZVApplicationInfo>

#include <QtWidgets/QApplication>

using ZVUIFramework::ZVApplicationInfo;

namespace ZVBench {

void prepareHostProcess()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ZVApplicationInfo::EnableHighDPISupport({{QStringLiteral("windowWidth"), 1000},
                                             {QStringLiteral("windowHeight"), 680}});
}

void initialiseFrame(QApplication& app)
{
    QApplication::setApplicationName(QStringLiteral("Bench Host"));
    QApplication::setApplicationVersion(QStringLiteral("1.0.0.1"));
    app.setProperty("dlgRadius", 8);
    app.setProperty("QtBasedShadow", true);
    // Every run starts in the same language, whatever an earlier run saved.
    app.setProperty("ForceLanguage", QStringLiteral("English"));

    ZVApplicationInfo::InitCrashHandle();
    ZVApplicationInfo* context = ZVApplicationInfo::GetInstance();
    context->SetSendEmailInfo(QStringLiteral("reports@example.com"), QString());
    context->SetUserEmailInfo(QStringLiteral("user@example.com"));
    context->addQss(QStringLiteral("Host.qss"), true);
    context->InitSkin(false, QString());
}

HostWindow::HostWindow()
    : ZVCoreWindow(nullptr)
{
    m_form = new HostForm;
    setCentralWidget(m_form);
    SetResizeable(true);
    setMinimumSize(760, 520);
    resize(1000, 680);
    CenterWindow();
}

} // namespace ZVBench
