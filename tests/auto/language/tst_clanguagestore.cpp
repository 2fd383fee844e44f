#include <ZVCore/private/CLanguageStore>

#include "probe.h"

#include <QtCore/QJsonArray>
#include <QtTest/QtTest>

using ZVUIFramework::CLanguageStore;
using ZVUIFramework::MCLanguageInfo;

class tst_CLanguageStore : public QObject
{
    Q_OBJECT

private slots:
    void isOneObjectWithTheExecutablesFolder()
    {
        CLanguageStore* store = CLanguageStore::GetInstance();
        QCOMPARE(CLanguageStore::GetInstance(), store);
        QCOMPARE(store->GetAppDir(),
                 QDir::toNativeSeparators(QCoreApplication::applicationDirPath()) + QDir::separator());
    }

    void listIsEmptyAtFirstAndReplacedBySet()
    {
        CLanguageStore* store = CLanguageStore::GetInstance();
        QVERIFY(store->GetLanguageList().empty());
        MCLanguageInfo english;
        english.name = "English";
        english.show = "English";
        MCLanguageInfo german;
        german.name = "German";
        store->SetLanguageList({english, german});
        QCOMPARE(store->GetLanguageList().size(), size_t(2));
        QCOMPARE(QString::fromStdString(store->GetLanguageList().at(1).name), QStringLiteral("German"));
        store->SetLanguageList({});
        QVERIFY(store->GetLanguageList().empty());
    }

    void catalogueFromTheProductFolder()
    {
        ProbeFolder product;
        const QByteArray json = R"json({"LanguageInfoArray":[
                                  {"Name":"English","Show":"English","UrlFileName":"English_URL.xml",
                                   "LocaleLanguage":"English","LocaleName":"","AppleLanguage":"en"},
                                  {"Name":"ChineseTraditional","Show":"中文(繁體)","UrlFileName":"ChineseTraditional_URL.xml",
                                   "LocaleLanguage":"Chinese","LocaleName":"zh_TW,zh_HK","AppleLanguage":"zh-Hant"}]})json";
        QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), json));
        const ProbeRun run = product.run({QStringLiteral("catalogue")});
        QCOMPARE(run.exitCode, 0);
        const QJsonArray records = run.report(QStringLiteral("catalogue")).value(QStringLiteral("records")).toArray();
        QCOMPARE(records.size(), 2);
        const QJsonObject second = records.at(1).toObject();
        QCOMPARE(second.value(QStringLiteral("Name")).toString(), QStringLiteral("ChineseTraditional"));
        QCOMPARE(second.value(QStringLiteral("Show")).toString(), QStringLiteral("中文(繁體)"));
        QCOMPARE(second.value(QStringLiteral("UrlFileName")).toString(), QStringLiteral("ChineseTraditional_URL.xml"));
        QCOMPARE(second.value(QStringLiteral("LocaleLanguage")).toString(), QStringLiteral("Chinese"));
        QCOMPARE(second.value(QStringLiteral("LocaleName")).toString(), QStringLiteral("zh_TW,zh_HK"));
        QCOMPARE(second.value(QStringLiteral("AppleLanguage")).toString(), QStringLiteral("zh-Hant"));
    }

    void catalogueEdgeCases_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("count");
        QTest::newRow("missing file") << QByteArray() << 0;
        QTest::newRow("array is an object") << QByteArray(R"({"LanguageInfoArray":{"Name":"English"}})") << 0;
        QTest::newRow("array is a string") << QByteArray(R"({"LanguageInfoArray":"English"})") << 0;
        QTest::newRow("empty array") << QByteArray(R"({"LanguageInfoArray":[]})") << 0;
        QTest::newRow("malformed") << QByteArray(R"({"LanguageInfoArray":[{"Name":"English"})") << 0;
        QTest::newRow("200 levels") << QByteArray(R"({"LanguageInfoArray":)") + QByteArray(200, '[')
                + QByteArray(200, ']') + QByteArray("}") << 1;
        QTest::newRow("a million levels") << QByteArray(R"({"LanguageInfoArray":)") + QByteArray(1000000, '[')
                + QByteArray(1000000, ']') + QByteArray("}") << 1;
    }

    void catalogueEdgeCases()
    {
        QFETCH(QByteArray, json);
        QFETCH(int, count);
        ProbeFolder product;
        if (!json.isEmpty())
            QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), json));
        const ProbeRun run = product.run({QStringLiteral("catalogue")});
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
        const QJsonArray records = run.report(QStringLiteral("catalogue")).value(QStringLiteral("records")).toArray();
        QCOMPARE(records.size(), count);
        for (const QJsonValue& r : records) {
            // A nested array is not an object: its record keeps six empty strings.
            for (const QString& key : r.toObject().keys())
                QVERIFY(r.toObject().value(key).toString().isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(tst_CLanguageStore)
#include "tst_clanguagestore.moc"
