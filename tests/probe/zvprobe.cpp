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
// Log lines go to standard error as Qt writes them; tests set QT_MESSAGE_PATTERN.
#include <ZVCore/CSkin>
#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/CStyleSheetManager>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtWidgets/QApplication>

#include <cstdio>

using namespace ZVUIFramework;

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
            {QStringLiteral("currentLanguage"), c->GetCurrentLanguage()},
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
