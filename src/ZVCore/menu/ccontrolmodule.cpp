#include "ccontrolmodule.h"

#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/LaunchArguments>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtCore/QVariant>

namespace ZVUIFramework {

namespace {

constexpr int kCheckNewVersionEvent = 1001;

std::u16string u16(const QString& s)
{
    return std::u16string(reinterpret_cast<const char16_t*>(s.utf16()), size_t(s.size()));
}

} // namespace

CControlModule::CControlModule(QObject* parent)
    : QObject(parent)
{
    // A missing entry, or one without "isShow", leaves the check on.
    int isShow = 1;
    QString url;
    CCommonModule::GetInstance()->LookupLink(QStringLiteral("CheckNewVersion"), isShow, url);
    if (isShow == 1)
        QTimer::singleShot(kSilentCheckDelayMs, this, qOverload<>(&CControlModule::slotCheckUpdate));

    ZVCustomEventSendObj::GetInstance()->Attach(kCheckNewVersionEvent, this);
}

CControlModule::~CControlModule() = default;

void CControlModule::customEvent(QEvent* event)
{
    if (event && int(event->type()) == kCheckNewVersionEvent)
        slotOpenChkUpdateDlg();
}

void CControlModule::slotCheckUpdate()
{
    startUpdater(true);
}

void CControlModule::slotOpenChkUpdateDlg(int)
{
    startUpdater(false);
}

void CControlModule::slotOpenChkUpdateDlg()
{
    startUpdater(false);
}

void CControlModule::slotCheckUpdate(int, QString text, int)
{
    if (!text.isEmpty())
        startUpdater(false);
}

void CControlModule::startUpdater(bool silent)
{
    std::vector<std::u16string> hostArguments;
    for (const QString& argument : ZVApplicationInfo::GetInstance()->GetUpdaterArguments())
        hostArguments.push_back(u16(argument));
    const QCoreApplication* app = QCoreApplication::instance();
    const QString server = app ? app->property("UpdateServerURL").toString() : QString();

    QStringList arguments;
    for (const std::u16string& a : UpdaterArguments(hostArguments, silent, u16(server)))
        arguments.append(QString::fromUtf16(a.data(), int(a.size())));
    QProcess::startDetached(QCoreApplication::applicationDirPath() + QLatin1Char('/')
                                + QString::fromUtf16(kUpdaterProgram),
                            arguments);
}

} // namespace ZVUIFramework
