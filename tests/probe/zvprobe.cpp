// zvprobe: a small host program that the scenario tests copy into a fresh folder with
// product files and run there. The frame's context and language store are process-wide
// and read the executable's folder, so each scenario runs in a process of its own.
//
//   zvprobe <command> [<command> ...]
//
// Commands run in order; those that report print one JSON object on a line of its own,
// with "cmd" naming the command:
//   prop:<name>=<bool|int|string>:<value>   set an application property
//   addqss:<name>=<0|1>                     ZVApplicationInfo::addQss
//   initskin:<0|1>:<skin name>              ZVApplicationInfo::InitSkin(normal, name)
//   context                                  the context's identity fields, cwd, folders
//   skin                                     skin paths, fonts and the style sheet
//   catalogue                                load localconfig.json and list the records
//   loadcatalogue                            load localconfig.json, report nothing
//   language                                 the language manager's state (creates it)
//   setlang:<name>                           CCommonModule::SetLanguage
//   linkpath:<language>                      CCommonModule::GetLinkFilePath
//   link:<key>                               look-up, decoded link and "is shown" of a key
//   openlink:<key>                           CCommonModule::OpenLink
//   openurl:<url>                            QDesktopServices::openUrl
//   channel                                  channel value and the two marker readers
//   services                                 the link-opening service's values
//   translate:<context>:<source>             QCoreApplication::translate
//   setcrashmail:<address>                   ZVApplicationInfo::SetReceiveEmailOnCrash
//   setuser:<address>                        ZVApplicationInfo::SetUserEmailInfo
//   setsend:<account>|<password>             ZVApplicationInfo::SetSendEmailInfo
//   setupdaterargs:<a>|<b>|...               ZVApplicationInfo::SetUpdaterArguments
//   feedbackargs:<0|1>                       ZVApplicationInfo::GetFeedbackArguments
//   startfeedback:<0|1>                      ZVApplicationInfo::StartFeedback
//   properties                               the application properties the frame sets
//   controlmodule                            builds a CControlModule
//   send:<id>                                ZVCustomEventSendObj::SendEvent(id, 1)
//   wait:<ms>                                runs the event loop
//   crashhandle                              ZVApplicationInfo::InitCrashHandle
//   crashcallback:<marker file>              a host callback that writes the marker
//   crash:<how>                              segv | segv-thread | abort | fpe | two-threads | overflow
// Log lines go to standard error as Qt writes them; tests set QT_MESSAGE_PATTERN.
#include <ZVCore/CSkin>
#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CControlModule>
#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/ZVDesktopServices>
#include <ZVCore/private/CStyleSheetManager>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QApplication>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <cstdio>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <unistd.h>

using namespace ZVUIFramework;

// Kept out of line and out of the anonymous namespace, so that a debugger shows its
// name in the crashing thread's stack.
extern "C" __attribute__((noinline)) void crash_here()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 42;
}

extern "C" __attribute__((noinline)) int overflow_here(int depth)
{
    volatile char frame[4096];
    frame[0] = char(depth);
    return overflow_here(depth + 1) + frame[0];
}

namespace {

void report(const QString& cmd, QJsonObject object)
{
    object.insert(QStringLiteral("cmd"), cmd);
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fflush(stdout);
}

QString utf8(const std::string& s)
{
    return QString::fromUtf8(s.data(), int(s.size()));
}

bool run(const QString& command)
{
    const QString verb = command.section(QLatin1Char(':'), 0, 0);
    const QString rest = command.section(QLatin1Char(':'), 1);

    if (verb == QLatin1String("prop")) {
        const QString name = rest.section(QLatin1Char('='), 0, 0);
        const QString typed = rest.section(QLatin1Char('='), 1);
        const QString type = typed.section(QLatin1Char(':'), 0, 0);
        const QString value = typed.section(QLatin1Char(':'), 1);
        QVariant v;
        if (type == QLatin1String("bool"))
            v = value == QLatin1String("true");
        else if (type == QLatin1String("int"))
            v = value.toInt();
        else
            v = value;
        qApp->setProperty(name.toUtf8().constData(), v);
        return true;
    }
    if (verb == QLatin1String("addqss")) {
        ZVApplicationInfo::GetInstance()->addQss(rest.section(QLatin1Char('='), 0, 0),
                                                 rest.section(QLatin1Char('='), 1) == QLatin1String("1"));
        return true;
    }
    if (verb == QLatin1String("initskin")) {
        ZVApplicationInfo::GetInstance()->InitSkin(rest.section(QLatin1Char(':'), 0, 0) == QLatin1String("1"),
                                                   rest.section(QLatin1Char(':'), 1));
        return true;
    }
    if (verb == QLatin1String("context")) {
        ZVApplicationInfo* c = ZVApplicationInfo::GetInstance();
        CLanguageStore* store = CLanguageStore::GetInstance();
        report(verb, {
            {QStringLiteral("pid"), c->GetPID()},
            {QStringLiteral("appName"), c->GetAppName()},
            {QStringLiteral("appTitle"), c->GetAppTitle()},
            {QStringLiteral("brandName"), c->GetBrandName()},
            {QStringLiteral("info"), c->GetInfo()},
            {QStringLiteral("receiveEmailOnCrash"), c->GetReceiveEmailOnCrash()},
            {QStringLiteral("fbReceiveEmailAccount"), c->GetFBReceiveEmailAccount()},
            {QStringLiteral("cwd"), QDir::currentPath()},
            {QStringLiteral("appDir"), store->GetAppDir()},
            {QStringLiteral("productInfo"), store->GetProductInfoPath()},
            {QStringLiteral("languageMain"), store->GetLanguageMainPath()},
            {QStringLiteral("languageQm"), store->GetLanguageQmPath()},
            {QStringLiteral("savedLanguage"), store->GetSavedLanguagePath()},
            {QStringLiteral("localConfig"), store->GetLocalConfigPath()},
            {QStringLiteral("qssSetting"), CStyleSheetManager::QssSettingPath()},
            {QStringLiteral("qssDir"), CStyleSheetManager::QssDirPath()},
        });
        return true;
    }
    if (verb == QLatin1String("skin")) {
        CSkin& skin = ZVApplicationInfo::GetInstance()->GetSkinObject();
        report(verb, {
            {QStringLiteral("imagePath"), skin.GetImagePath()},
            {QStringLiteral("qssPath"), skin.GetQssPath()},
            {QStringLiteral("fontFamily"), skin.GetFontStyle(CSkin::Style0).family()},
            {QStringLiteral("appFontFamily"), QApplication::font().family()},
            {QStringLiteral("styleSheet"), qApp->styleSheet()},
            {QStringLiteral("isHighDPI"), ZVApplicationInfo::GetInstance()->IsHighDPI()},
        });
        return true;
    }
    if (verb == QLatin1String("catalogue")) {
        CLanguageStore* store = CLanguageStore::GetInstance();
        store->LoadLocalConfig();
        QJsonArray records;
        for (const MCLanguageInfo& r : store->GetLanguageList()) {
            records.append(QJsonObject{
                {QStringLiteral("Name"), utf8(r.name)},
                {QStringLiteral("Show"), utf8(r.show)},
                {QStringLiteral("UrlFileName"), utf8(r.urlFileName)},
                {QStringLiteral("LocaleLanguage"), utf8(r.localeLanguage)},
                {QStringLiteral("LocaleName"), utf8(r.localeName)},
                {QStringLiteral("AppleLanguage"), utf8(r.appleLanguage)},
            });
        }
        report(verb, {{QStringLiteral("records"), records}});
        return true;
    }
    if (verb == QLatin1String("loadcatalogue")) {
        CLanguageStore::GetInstance()->LoadLocalConfig();
        return true;
    }
    if (verb == QLatin1String("language")) {
        CCommonModule* module = CCommonModule::GetInstance();
        QFile saved(CLanguageStore::GetInstance()->GetSavedLanguagePath());
        const bool savedExists = saved.open(QIODevice::ReadOnly);
        const QByteArray savedBytes = savedExists ? saved.readAll() : QByteArray();
        report(verb, {
            {QStringLiteral("current"), ZVApplicationInfo::GetInstance()->GetCurrentLanguage()},
            {QStringLiteral("direction"),
             QGuiApplication::layoutDirection() == Qt::RightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr")},
            {QStringLiteral("savedExists"), savedExists},
            {QStringLiteral("savedHex"), QString::fromLatin1(savedBytes.toHex())},
            {QStringLiteral("linkFile"), module->GetCurrentLinkFilePath()},
        });
        return true;
    }
    if (verb == QLatin1String("setlang")) {
        CCommonModule::GetInstance()->SetLanguage(rest);
        return true;
    }
    if (verb == QLatin1String("linkpath")) {
        report(verb, {{QStringLiteral("path"), CCommonModule::GetInstance()->GetLinkFilePath(rest)}});
        return true;
    }
    if (verb == QLatin1String("link")) {
        CCommonModule* module = CCommonModule::GetInstance();
        // Values the look-up must leave alone when it finds nothing.
        int isShow = -7;
        QString url = QStringLiteral("untouched");
        module->LookupLink(rest, isShow, url);
        report(verb, {
            {QStringLiteral("isShow"), isShow},
            {QStringLiteral("url"), url},
            {QStringLiteral("decoded"), module->GetDecodedLink(rest)},
            {QStringLiteral("shown"), module->IsLinkShown(rest)},
        });
        return true;
    }
    if (verb == QLatin1String("openlink")) {
        CCommonModule::GetInstance()->OpenLink(rest);
        return true;
    }
    if (verb == QLatin1String("openurl")) {
        QDesktopServices::openUrl(QUrl(rest));
        return true;
    }
    if (verb == QLatin1String("channel")) {
        report(verb, {
            {QStringLiteral("value"), CCommonModule::GetChannelValue()},
            {QStringLiteral("hasCustom"), CCommonModule::HasCustomMarker()},
            {QStringLiteral("custom"), CCommonModule::ReadCustomMarker()},
            {QStringLiteral("domain"), CCommonModule::ReadDomainMarker()},
        });
        return true;
    }
    if (verb == QLatin1String("services")) {
        ZVApplicationInfo::GetInstance(); // installs the service
        ZVDesktopServices* s = ZVDesktopServices::Instance();
        report(verb, {
            {QStringLiteral("language"), s->GetLanguage()},
            {QStringLiteral("pid"), s->GetPid()},
            {QStringLiteral("custom"), s->GetCustom()},
        });
        return true;
    }
    if (verb == QLatin1String("translate")) {
        const QByteArray context = rest.section(QLatin1Char(':'), 0, 0).toUtf8();
        const QByteArray source = rest.section(QLatin1Char(':'), 1).toUtf8();
        report(verb, {{QStringLiteral("text"), QCoreApplication::translate(context.constData(), source.constData())}});
        return true;
    }
    if (verb == QLatin1String("setcrashmail")) {
        ZVApplicationInfo::GetInstance()->SetReceiveEmailOnCrash(rest);
        return true;
    }
    if (verb == QLatin1String("setuser")) {
        ZVApplicationInfo::GetInstance()->SetUserEmailInfo(rest);
        return true;
    }
    if (verb == QLatin1String("setsend")) {
        ZVApplicationInfo::GetInstance()->SetSendEmailInfo(rest.section(QLatin1Char('|'), 0, 0),
                                                           rest.section(QLatin1Char('|'), 1));
        return true;
    }
    if (verb == QLatin1String("setupdaterargs")) {
        ZVApplicationInfo::GetInstance()->SetUpdaterArguments(rest.split(QLatin1Char('|')));
        return true;
    }
    if (verb == QLatin1String("feedbackargs")) {
        report(verb, {{QStringLiteral("arguments"),
                       QJsonArray::fromStringList(ZVApplicationInfo::GetInstance()->GetFeedbackArguments(rest == QLatin1String("1")))}});
        return true;
    }
    if (verb == QLatin1String("startfeedback")) {
        ZVApplicationInfo::GetInstance()->StartFeedback(rest == QLatin1String("1"));
        return true;
    }
    if (verb == QLatin1String("properties")) {
        const QVariant crashed = qApp->property("AppCrashed");
        report(verb, {{QStringLiteral("AppCrashedSet"), crashed.isValid()},
                      {QStringLiteral("AppCrashed"), crashed.toBool()}});
        return true;
    }
    if (verb == QLatin1String("controlmodule")) {
        new CControlModule(qApp);
        return true;
    }
    if (verb == QLatin1String("send")) {
        ZVCustomEventSendObj::GetInstance()->SendEvent(rest.toInt(), 1);
        return true;
    }
    if (verb == QLatin1String("wait")) {
        QEventLoop loop;
        QTimer::singleShot(rest.toInt(), &loop, &QEventLoop::quit);
        loop.exec();
        return true;
    }
    if (verb == QLatin1String("crashhandle")) {
        ZVApplicationInfo::InitCrashHandle();
        return true;
    }
    if (verb == QLatin1String("crashcallback")) {
        const QByteArray marker = QFile::encodeName(rest);
        ZVApplicationInfo::GetInstance()->SetCrashCallback([marker](EXCEPTION_POINTERS* info) -> long {
            if (FILE* f = std::fopen(marker.constData(), "w")) {
                std::fprintf(f, "%d\n", info ? info->signalNumber : -1);
                std::fclose(f);
            }
            return 1;
        });
        return true;
    }
    if (verb == QLatin1String("crashcallback-faulty")) {
        ZVApplicationInfo::GetInstance()->SetCrashCallback([](EXCEPTION_POINTERS*) -> long {
            crash_here();
            return 1;
        });
        return true;
    }
    if (verb == QLatin1String("crashcallback-hang")) {
        ZVApplicationInfo::GetInstance()->SetCrashCallback([](EXCEPTION_POINTERS*) -> long {
            for (;;)
                ::pause();
        });
        return true;
    }
    if (verb == QLatin1String("crash")) {
        std::fflush(stdout);
        if (rest == QLatin1String("segv")) {
            crash_here();
        } else if (rest == QLatin1String("segv-thread")) {
            std::thread(crash_here).join();
        } else if (rest == QLatin1String("abort")) {
            std::abort();
        } else if (rest == QLatin1String("fpe")) {
            std::raise(SIGFPE);
        } else if (rest == QLatin1String("two-threads")) {
            std::thread a(crash_here);
            std::thread b(crash_here);
            a.join();
            b.join();
        } else if (rest == QLatin1String("overflow")) {
            overflow_here(0);
        }
        return false;
    }
    std::fprintf(stderr, "zvprobe: unknown command %s\n", qPrintable(command));
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList commands = QCoreApplication::arguments().mid(1);
    for (const QString& command : commands) {
        if (!run(command))
            return 2;
    }
    return 0;
}
