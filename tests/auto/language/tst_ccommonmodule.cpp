// The language manager and the link file, each scenario in a product folder of its own.
#include "probe.h"

#include <ZVCore/private/zvcoreconfig_p.h>
#include <ZVFoundation/CSimpleCrypt>

#include <QtTest/QtTest>

namespace {

// English, German, Arabic and both Chinese variants, as a product would ship them.
const QByteArray kCatalogue = R"json({"LanguageInfoArray":[
 {"Name":"English","Show":"English","UrlFileName":"English_URL.xml","LocaleLanguage":"English","LocaleName":""},
 {"Name":"German","Show":"Deutsch","UrlFileName":"German_URL.xml","LocaleLanguage":"German","LocaleName":""},
 {"Name":"ChineseSimplified","Show":"简体中文","UrlFileName":"ChineseSimplified_URL.xml","LocaleLanguage":"Chinese","LocaleName":"zh_CN,zh_SG"},
 {"Name":"ChineseTraditional","Show":"繁體中文","UrlFileName":"ChineseTraditional_URL.xml","LocaleLanguage":"Chinese","LocaleName":"zh_TW,zh_HK"},
 {"Name":"Arabic","Show":"العربية","UrlFileName":"Arabic_URL.xml","LocaleLanguage":"Arabic","LocaleName":""}
]})json";

QProcessEnvironment locale(const QString& name)
{
    QProcessEnvironment env;
    env.insert(QStringLiteral("LC_ALL"), name);
    env.insert(QStringLiteral("LANG"), name);
    env.insert(QStringLiteral("LANGUAGE"), QString());
    return env;
}

QString hex(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

QByteArray cipher(const QString& plain)
{
    return CSimpleCrypt(ZVCORE_LINK_CIPHER_KEY).encryptToString(plain).toLatin1();
}

// Copies the frame's compiled translations into a product folder.
bool installTranslations(const ProbeFolder& product)
{
    const QDir from(QStringLiteral(ZV_QM_DIR));
    const QStringList files = from.entryList({QStringLiteral("ZVCore_*.qm")}, QDir::Files);
    if (files.isEmpty())
        return false;
    QDir().mkpath(product.file(QStringLiteral("language/qm/ZVCore")));
    for (const QString& f : files) {
        if (!QFile::copy(from.filePath(f), product.file(QStringLiteral("language/qm/ZVCore/") + f)))
            return false;
    }
    return true;
}

} // namespace

class tst_CCommonModule : public QObject
{
    Q_OBJECT

private slots:
    // --- choosing --------------------------------------------------------------------

    void forcedLanguageIsUsedUncheckedAndSaved()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), kCatalogue));
        const ProbeRun run = product.run({QStringLiteral("prop:ForceLanguage=string:Klingon"), QStringLiteral("loadcatalogue"),
                                          QStringLiteral("language")});
        const QJsonObject l = run.report(QStringLiteral("language"));
        QCOMPARE(l.value(QStringLiteral("current")).toString(), QStringLiteral("Klingon"));
        QCOMPARE(l.value(QStringLiteral("savedHex")).toString(), hex("Klingon"));
        QVERIFY(run.logged(QStringLiteral("ZVCore: Set Language->Klingon")));
    }

    void forcedLanguageBeatsTheSavedOne()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("language/language"), "German"));
        const ProbeRun run = product.run({QStringLiteral("prop:ForceLanguage=string:Arabic"), QStringLiteral("language")});
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(), QStringLiteral("Arabic"));
    }

    void savedLanguageIsUsedUncheckedAndAsItIs_data()
    {
        QTest::addColumn<QByteArray>("saved");
        QTest::newRow("in the catalogue") << QByteArray("German");
        QTest::newRow("not in the catalogue") << QByteArray("Elvish");
        QTest::newRow("with a line end") << QByteArray("German\n");
        QTest::newRow("non-ASCII") << QByteArray("Espa\xc3\xb1ol");
    }

    void savedLanguageIsUsedUncheckedAndAsItIs()
    {
        QFETCH(QByteArray, saved);
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), kCatalogue));
        QVERIFY(product.write(QStringLiteral("language/language"), saved));
        const ProbeRun run = product.run({QStringLiteral("loadcatalogue"), QStringLiteral("language")},
                                         QDir::rootPath(), locale(QStringLiteral("zh_TW.UTF-8")));
        const QJsonObject l = run.report(QStringLiteral("language"));
        QCOMPARE(l.value(QStringLiteral("current")).toString(), QString::fromUtf8(saved));
        QCOMPARE(l.value(QStringLiteral("savedHex")).toString(), hex(saved));
        for (const QString& line : run.log)
            QVERIFY2(!line.startsWith(QLatin1String("ZVCore: Auto Select Language->")), qPrintable(line));
    }

    void automaticChoiceFromTheSystemLocale_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("candidate");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("zh_TW") << "zh_TW.UTF-8" << "ChineseTraditional" << "ChineseTraditional";
        QTest::newRow("zh_HK") << "zh_HK.UTF-8" << "ChineseTraditional" << "ChineseTraditional";
        QTest::newRow("zh_CN") << "zh_CN.UTF-8" << "ChineseSimplified" << "ChineseSimplified";
        QTest::newRow("de_DE") << "de_DE.UTF-8" << "German" << "German";
        QTest::newRow("de_AT") << "de_AT.UTF-8" << "German" << "German";
        QTest::newRow("ar_EG") << "ar_EG.UTF-8" << "Arabic" << "Arabic";
        QTest::newRow("en_US") << "en_US.UTF-8" << "English" << "English";
        QTest::newRow("fr_FR, not in the catalogue") << "fr_FR.UTF-8" << "" << "English";
        QTest::newRow("xx_XX") << "xx_XX" << "" << "English";
    }

    void automaticChoiceFromTheSystemLocale()
    {
        QFETCH(QString, locale);
        QFETCH(QString, candidate);
        QFETCH(QString, chosen);
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), kCatalogue));
        const ProbeRun run = product.run({QStringLiteral("loadcatalogue"), QStringLiteral("language")}, QDir::rootPath(),
                                         ::locale(locale));
        const QJsonObject l = run.report(QStringLiteral("language"));
        QCOMPARE(l.value(QStringLiteral("current")).toString(), chosen);
        QVERIFY(run.logged(QStringLiteral("ZVCore: Auto Select Language->") + candidate));
        QVERIFY(run.logged(QStringLiteral("ZVCore: Set Language->") + chosen));
        // The choice is saved, without a line end.
        QCOMPARE(l.value(QStringLiteral("savedHex")).toString(), hex(chosen.toUtf8()));
    }

    void traditionalChineseLocaleEndToEnd()
    {
        ProbeFolder product;
        QVERIFY(installTranslations(product));
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), R"({"LanguageInfoArray":[
            {"Name":"English","Show":"English","UrlFileName":"English_URL.xml","LocaleLanguage":"English","LocaleName":""},
            {"Name":"German","Show":"Deutsch","UrlFileName":"German_URL.xml","LocaleLanguage":"German","LocaleName":""},
            {"Name":"ChineseTraditional","Show":"繁體中文","UrlFileName":"ChineseTraditional_URL.xml","LocaleLanguage":"Chinese","LocaleName":"zh_TW,zh_HK"}]})"));
        const ProbeRun run = product.run({QStringLiteral("loadcatalogue"), QStringLiteral("language"),
                                          QStringLiteral("translate:LanguageSelectDialog:Please select a language")},
                                         QDir::rootPath(), locale(QStringLiteral("zh_TW.UTF-8")));
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(),
                 QStringLiteral("ChineseTraditional"));
        QFile saved(product.file(QStringLiteral("language/language")));
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(saved.readAll(), QByteArray("ChineseTraditional"));
        QCOMPARE(run.report(QStringLiteral("translate")).value(QStringLiteral("text")).toString(), QStringLiteral("請選擇語言"));
    }

    void emptyCatalogueGivesEnglish()
    {
        ProbeFolder product;
        const ProbeRun run = product.run({QStringLiteral("language")}, QDir::rootPath(), locale(QStringLiteral("de_DE.UTF-8")));
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(), QStringLiteral("English"));
        QVERIFY(run.logged(QStringLiteral("ZVCore: Auto Select Language->")));
    }

    void localeNameFragmentIsASubstring_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::newRow("zh_CN") << "zh_CN.UTF-8";
        QTest::newRow("zh_TW") << "zh_TW.UTF-8";
    }

    void localeNameFragmentIsASubstring()
    {
        QFETCH(QString, locale);
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"),
                              R"({"LanguageInfoArray":[{"Name":"Chinese","LocaleLanguage":"Chinese","LocaleName":",zh,"}]})"));
        const ProbeRun run = product.run({QStringLiteral("loadcatalogue"), QStringLiteral("language")}, QDir::rootPath(),
                                         ::locale(locale));
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(), QStringLiteral("Chinese"));
    }

    void recordsWithLocaleNamesComeFirstLatestFirst()
    {
        // Both "zh" records match zh_TW: the later one in the file is considered first.
        // A record without locale names matches any locale of its language, but only
        // after every record that has them.
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"),
                              R"({"LanguageInfoArray":[
                                 {"Name":"ChineseAny","LocaleLanguage":"Chinese","LocaleName":""},
                                 {"Name":"ChineseFirst","LocaleLanguage":"Chinese","LocaleName":"zh"},
                                 {"Name":"ChineseHK","LocaleLanguage":"Chinese","LocaleName":"zh_HK"},
                                 {"Name":"ChineseSecond","LocaleLanguage":"Chinese","LocaleName":"zh_T"}]})"));
        const ProbeRun run = product.run({QStringLiteral("loadcatalogue"), QStringLiteral("language")}, QDir::rootPath(),
                                         locale(QStringLiteral("zh_TW.UTF-8")));
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(),
                 QStringLiteral("ChineseSecond"));

        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"),
                              R"({"LanguageInfoArray":[
                                 {"Name":"ChineseAny","LocaleLanguage":"Chinese","LocaleName":""},
                                 {"Name":"ChineseHK","LocaleLanguage":"Chinese","LocaleName":"zh_HK"}]})"));
        QFile::remove(product.file(QStringLiteral("language/language")));
        const ProbeRun second = product.run({QStringLiteral("loadcatalogue"), QStringLiteral("language")}, QDir::rootPath(),
                                            locale(QStringLiteral("zh_TW.UTF-8")));
        QCOMPARE(second.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(),
                 QStringLiteral("ChineseAny"));
    }

    void manyMatchingRecordsDoNotSlowTheChoice()
    {
        QByteArray json = "{\"LanguageInfoArray\":[";
        for (int i = 0; i < 100000; ++i)
            json += QByteArray("{\"Name\":\"L") + QByteArray::number(i) + "\",\"LocaleLanguage\":\"German\",\"LocaleName\":\"xx\"},";
        json += "{\"Name\":\"Last\",\"LocaleLanguage\":\"German\",\"LocaleName\":\"de\"}]}";
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), json));
        QElapsedTimer timer;
        timer.start();
        const ProbeRun run = product.run({QStringLiteral("loadcatalogue"), QStringLiteral("language")}, QDir::rootPath(),
                                         locale(QStringLiteral("de_DE.UTF-8")));
        QVERIFY(run.finished);
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(), QStringLiteral("Last"));
        QVERIFY2(timer.elapsed() < 20000, "the choice must stay linear in the catalogue size");
    }

    // --- setting ---------------------------------------------------------------------

    void arabicIsRightToLeftOnlyWhenEnabled()
    {
        ProbeFolder product;
        const ProbeRun without = product.run({QStringLiteral("setlang:Arabic"), QStringLiteral("language")});
        QCOMPARE(without.report(QStringLiteral("language")).value(QStringLiteral("direction")).toString(), QStringLiteral("ltr"));

        const ProbeRun with = product.run({QStringLiteral("prop:EnableRightToLeft=bool:true"), QStringLiteral("setlang:Arabic"),
                                           QStringLiteral("language")});
        QCOMPARE(with.report(QStringLiteral("language")).value(QStringLiteral("direction")).toString(), QStringLiteral("rtl"));

        const ProbeRun back = product.run({QStringLiteral("prop:EnableRightToLeft=bool:true"), QStringLiteral("setlang:Arabic"),
                                           QStringLiteral("setlang:German"), QStringLiteral("language")});
        QCOMPARE(back.report(QStringLiteral("language")).value(QStringLiteral("direction")).toString(), QStringLiteral("ltr"));

        // The name is compared exactly.
        const ProbeRun lower = product.run({QStringLiteral("prop:EnableRightToLeft=bool:true"), QStringLiteral("setlang:arabic"),
                                            QStringLiteral("language")});
        QCOMPARE(lower.report(QStringLiteral("language")).value(QStringLiteral("direction")).toString(), QStringLiteral("ltr"));
    }

    void translatorsForTheFrameAndTheHost()
    {
        ProbeFolder product;
        QVERIFY2(installTranslations(product), "the frame's translations were not built");
        QVERIFY(QFile::copy(QStringLiteral(ZV_HOST_QM), product.file(QStringLiteral("language/qm/German.qm"))));
        const ProbeRun run = product.run({QStringLiteral("setlang:German"),
                                          QStringLiteral("translate:LanguageSelectDialog:Cancel"),
                                          QStringLiteral("translate:HostWindow:Hello")});
        QCOMPARE(run.reports.size(), 2);
        QCOMPARE(run.reports.at(0).value(QStringLiteral("text")).toString(), QStringLiteral("Abbrechen"));
        QCOMPARE(run.reports.at(1).value(QStringLiteral("text")).toString(), QStringLiteral("Hallo"));
    }

    void settingAgainReplacesTranslatorsAndRewritesTheFile()
    {
        ProbeFolder product;
        QVERIFY(installTranslations(product));
        const ProbeRun run = product.run({QStringLiteral("setlang:German"), QStringLiteral("setlang:French"),
                                          QStringLiteral("translate:LanguageSelectDialog:Cancel"),
                                          QStringLiteral("setlang:German"), QStringLiteral("setlang:German"),
                                          QStringLiteral("translate:LanguageSelectDialog:Cancel"),
                                          QStringLiteral("language")});
        QCOMPARE(run.reports.at(0).value(QStringLiteral("text")).toString(), QStringLiteral("Annuler"));
        QCOMPARE(run.reports.at(1).value(QStringLiteral("text")).toString(), QStringLiteral("Abbrechen"));
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("savedHex")).toString(), hex("German"));
    }

    void missingTranslationsLeaveSourceTexts()
    {
        ProbeFolder product;
        const ProbeRun run = product.run({QStringLiteral("setlang:German"),
                                          QStringLiteral("translate:LanguageSelectDialog:Cancel"), QStringLiteral("language")});
        QCOMPARE(run.report(QStringLiteral("translate")).value(QStringLiteral("text")).toString(), QStringLiteral("Cancel"));
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(), QStringLiteral("German"));
    }

    void unwritableSavedFileIsIgnored()
    {
        ProbeFolder product;
        QVERIFY(QDir().mkpath(product.file(QStringLiteral("language/language")))); // a folder in its place
        const ProbeRun run = product.run({QStringLiteral("setlang:German"), QStringLiteral("language")});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(), QStringLiteral("German"));
    }

    // --- link file ---------------------------------------------------------------------

    void linkFilePerLanguage()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), R"({"LanguageInfoArray":[
            {"Name":"German","UrlFileName":"Old_URL.xml"},
            {"Name":"German","UrlFileName":"German_URL.xml"},
            {"Name":"French","UrlFileName":"French_URL.xml"}]})"));
        QVERIFY(product.write(QStringLiteral("language/main/German_URL.xml"), "<root/>"));
        QVERIFY(product.write(QStringLiteral("language/main/Old_URL.xml"), "<root/>"));
        const QString dir = QDir::toNativeSeparators(QFileInfo(product.file(QStringLiteral("language/main"))).canonicalFilePath())
            + QDir::separator();
        const ProbeRun run = product.run({QStringLiteral("loadcatalogue"), QStringLiteral("linkpath:German"),
                                          QStringLiteral("linkpath:French"), QStringLiteral("linkpath:Klingon"),
                                          QStringLiteral("setlang:German"), QStringLiteral("language")});
        QCOMPARE(run.reports.at(0).value(QStringLiteral("path")).toString(), dir + QStringLiteral("German_URL.xml"));
        QCOMPARE(run.reports.at(1).value(QStringLiteral("path")).toString(), dir + QStringLiteral("English_URL.xml"));
        QCOMPARE(run.reports.at(2).value(QStringLiteral("path")).toString(), dir + QStringLiteral("English_URL.xml"));
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("linkFile")).toString(),
                 dir + QStringLiteral("German_URL.xml"));
    }

    void lookUpByKey_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("isShow");
        QTest::addColumn<QString>("decoded");
        QTest::addColumn<bool>("shown");
        QTest::newRow("substring of an earlier entry") << "Home" << 1 << "https://a.example/home" << true;
        QTest::newRow("exact later entry") << "HomePage" << 1 << "https://a.example/home" << true;
        QTest::newRow("hidden") << "Buy" << 0 << "https://a.example/buy" << false;
        QTest::newRow("isShow 2") << "Support" << 2 << "https://a.example/support" << true;
        QTest::newRow("isShow not a number") << "Forum" << 0 << "https://a.example/forum" << false;
        QTest::newRow("no isShow") << "Blog" << -7 << "https://a.example/blog" << true;
        QTest::newRow("no url") << "Separator" << 1 << "" << true;
        QTest::newRow("case-sensitive") << "home" << -7 << "" << true;
        QTest::newRow("outside a menu") << "Stray" << -7 << "" << true;
        QTest::newRow("missing") << "Nothing" << -7 << "" << true;
    }

    void lookUpByKey()
    {
        QFETCH(QString, key);
        QFETCH(int, isShow);
        QFETCH(QString, decoded);
        QFETCH(bool, shown);
        ProbeFolder product;
        const QByteArray xml = "<root>"
                               "<Menu><childMenu><menuName>home</menuName><url>" + cipher(QStringLiteral("https://a.example/x")) + "</url></childMenu></Menu>"
                               "<childMenu><menuName>Stray</menuName><url>" + cipher(QStringLiteral("https://a.example/x")) + "</url></childMenu>"
                               "<menu>"
                               "<item><menuName>Home</menuName></item>"
                               "<childMenu><menuName>HomePage</menuName><url>" + cipher(QStringLiteral("https://a.example/home")) + "</url><isShow>1</isShow></childMenu>"
                               "<childMenu><menuName>Home</menuName><url>" + cipher(QStringLiteral("https://a.example/other")) + "</url></childMenu>"
                               "<childMenu><menuName>Buy</menuName><url>" + cipher(QStringLiteral("https://a.example/buy")) + "</url><isShow>0</isShow></childMenu>"
                               "<childMenu><menuName>Support</menuName><url>" + cipher(QStringLiteral("https://a.example/support")) + "</url><isShow>2</isShow></childMenu>"
                               "<childMenu><menuName>Forum</menuName><url>" + cipher(QStringLiteral("https://a.example/forum")) + "</url><isShow>yes</isShow></childMenu>"
                               "<childMenu><menuName>Blog</menuName><url>" + cipher(QStringLiteral("https://a.example/blog")) + "</url></childMenu>"
                               "<childMenu><menuName>Separator</menuName><isShow>1</isShow></childMenu>"
                               "</menu></root>";
        QVERIFY(product.write(QStringLiteral("language/main/English_URL.xml"), xml));
        const QJsonObject l = product.run({QStringLiteral("setlang:English"), QStringLiteral("link:") + key})
                                  .report(QStringLiteral("link"));
        QCOMPARE(l.value(QStringLiteral("isShow")).toInt(), isShow);
        QCOMPARE(l.value(QStringLiteral("decoded")).toString(), decoded);
        QCOMPARE(l.value(QStringLiteral("shown")).toBool(), shown);
        if (decoded.isEmpty() && isShow == -7)
            QCOMPARE(l.value(QStringLiteral("url")).toString(), QStringLiteral("untouched"));
    }

    void badLinkFilesFindNothing_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("asDirectory");
        QTest::newRow("missing") << QByteArray() << false;
        QTest::newRow("not xml") << QByteArray("menu childMenu menuName Home") << false;
        QTest::newRow("truncated") << QByteArray("<root><menu><childMenu><menuName>Home</menuName><url>x") << false;
        QTest::newRow("directory") << QByteArray() << true;
    }

    void badLinkFilesFindNothing()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, asDirectory);
        ProbeFolder product;
        if (asDirectory)
            QVERIFY(QDir().mkpath(product.file(QStringLiteral("language/main/English_URL.xml"))));
        else if (!content.isEmpty())
            QVERIFY(product.write(QStringLiteral("language/main/English_URL.xml"), content));
        const ProbeRun run = product.run({QStringLiteral("setlang:English"), QStringLiteral("link:Home")});
        QCOMPARE(run.exitCode, 0);
        const QJsonObject l = run.report(QStringLiteral("link"));
        QCOMPARE(l.value(QStringLiteral("isShow")).toInt(), -7);
        QCOMPARE(l.value(QStringLiteral("url")).toString(), QStringLiteral("untouched"));
        QCOMPARE(l.value(QStringLiteral("shown")).toBool(), true);
    }

    // --- channel ---------------------------------------------------------------------

    void onlyCustomIsChosenWithLineBreaksRemoved()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("custom"), "ab\r\ncd\n"));
        const ProbeRun run = product.run({QStringLiteral("channel")});
        const QJsonObject c = run.report(QStringLiteral("channel"));
        QCOMPARE(c.value(QStringLiteral("value")).toString(), QStringLiteral("abcd"));
        QCOMPARE(c.value(QStringLiteral("hasCustom")).toBool(), true);
        QCOMPARE(c.value(QStringLiteral("custom")).toString(), QStringLiteral("ab\r\ncd\n"));
        QVERIFY(run.logged(QStringLiteral("custom:ab\r")));
    }

    void onlyDomainIsChosen()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("domain"), "dom"));
        const QJsonObject c = product.run({QStringLiteral("channel")}).report(QStringLiteral("channel"));
        QCOMPARE(c.value(QStringLiteral("value")).toString(), QStringLiteral("dom"));
        QCOMPARE(c.value(QStringLiteral("hasCustom")).toBool(), false);
        QCOMPARE(c.value(QStringLiteral("domain")).toString(), QStringLiteral("dom"));
    }

    void theOlderMarkerWins_data()
    {
        QTest::addColumn<bool>("customFirst");
        QTest::newRow("custom older") << true;
        QTest::newRow("domain older") << false;
    }

    void theOlderMarkerWins()
    {
        QFETCH(bool, customFirst);
        ProbeFolder product;
        // Creation times are compared in whole seconds.
        QVERIFY(product.write(customFirst ? QStringLiteral("custom") : QStringLiteral("domain"), "older"));
        QTest::qWait(1100);
        QVERIFY(product.write(customFirst ? QStringLiteral("domain") : QStringLiteral("custom"), "newer"));
        const QJsonObject c = product.run({QStringLiteral("channel")}).report(QStringLiteral("channel"));
        QCOMPARE(c.value(QStringLiteral("value")).toString(), QStringLiteral("older"));
    }

    void neitherMarkerGivesNothingAndTheEqualityLine()
    {
        ProbeFolder product;
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        const ProbeRun run = product.run({QStringLiteral("channel")});
        const qint64 after = QDateTime::currentSecsSinceEpoch();
        QCOMPARE(run.report(QStringLiteral("channel")).value(QStringLiteral("value")).toString(), QString());
        QString line;
        for (const QString& l : run.log) {
            if (l.startsWith(QLatin1String("customCreatedTimeT == domainCreatedTimeT ")))
                line = l;
        }
        QVERIFY2(!line.isEmpty(), qPrintable(run.log.join(QLatin1Char('\n'))));
        const qint64 logged = line.section(QLatin1Char(' '), -1).toLongLong();
        QVERIFY(logged >= before + 10 && logged <= after + 10);
    }

    void languageManagerHandsTheChannelToTheService()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("custom"), "chan"));
        const ProbeRun run = product.run({QStringLiteral("language"), QStringLiteral("services")});
        const QJsonObject s = run.report(QStringLiteral("services"));
        QCOMPARE(s.value(QStringLiteral("custom")).toString(), QStringLiteral("chan"));
        QCOMPARE(s.value(QStringLiteral("language")).toString(), QStringLiteral("english"));
    }
};

QTEST_GUILESS_MAIN(tst_CCommonModule)
#include "tst_ccommonmodule.moc"
