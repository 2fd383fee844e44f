// The feedback program and the updater, started for real: stand-ins beside the probe
// record the arguments they receive.
#include "probe.h"

#include <QtTest/QtTest>

namespace {

QString appPath(const ProbeFolder& product)
{
    return QFileInfo(product.file(QStringLiteral("zvprobe") + ProbeFolder::exeSuffix())).canonicalFilePath();
}

} // namespace

class tst_Launchers : public QObject
{
    Q_OBJECT

private slots:
    void feedbackArgumentsWithNothingSet()
    {
        ProbeFolder product;
        const ProbeRun run = product.run({QStringLiteral("feedbackargs:1")});
        const QJsonArray a = run.report(QStringLiteral("feedbackargs")).value(QStringLiteral("arguments")).toArray();
        QCOMPARE(a.size(), 6);
        QCOMPARE(a.at(0).toString(), QString());
        QCOMPARE(a.at(1).toString(), appPath(product));
        QCOMPARE(a.at(2).toString(), QString());
        QCOMPARE(a.at(3).toString(), QString());
        QCOMPARE(a.at(4).toString(), QString());
        QCOMPARE(a.at(5).toString(), QStringLiteral("0"));
    }

    void feedbackArgumentsByMode_data()
    {
        QTest::addColumn<bool>("crashed");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("last");
        QTest::newRow("crash report") << true << "watchdog@example.com" << "0";
        QTest::newRow("feedback") << false << "feedback@example.com" << "1";
    }

    void feedbackArgumentsByMode()
    {
        QFETCH(bool, crashed);
        QFETCH(QString, first);
        QFETCH(QString, last);
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("productInfo.xml"),
                              "<p><ZV_FEEDBACK_RECEIVE_EMAIL>feedback@example.com</ZV_FEEDBACK_RECEIVE_EMAIL>"
                              "<ZV_WATCHDOG_RECEIVE_EMAIL>watchdog@example.com</ZV_WATCHDOG_RECEIVE_EMAIL></p>"));
        const ProbeRun run = product.run({QStringLiteral("setuser:user@example.com"),
                                          QStringLiteral("setsend:send@example.com|secret pwd"),
                                          QStringLiteral("feedbackargs:") + (crashed ? QStringLiteral("1") : QStringLiteral("0"))});
        const QJsonArray a = run.report(QStringLiteral("feedbackargs")).value(QStringLiteral("arguments")).toArray();
        QCOMPARE(a.toVariantList(), (QVariantList{first, appPath(product), QStringLiteral("user@example.com"),
                                                  QStringLiteral("send@example.com"), QStringLiteral("secret pwd"), last}));
    }

    void startFeedbackForFeedback()
    {
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        QVERIFY(product.write(QStringLiteral("productInfo.xml"),
                              "<p><ZV_FEEDBACK_RECEIVE_EMAIL>feedback@example.com</ZV_FEEDBACK_RECEIVE_EMAIL></p>"));
        const ProbeRun run = product.run({QStringLiteral("prop:CrashDataCollection=string:crash-label"),
                                          QStringLiteral("startfeedback:0"), QStringLiteral("properties")});
        const QList<QStringList> starts = product.standInStarts(QStringLiteral("Feedback"));
        QCOMPARE(starts.size(), 1);
        QCOMPARE(starts.first(), (QStringList{QStringLiteral("feedback@example.com"), appPath(product), QString(), QString(),
                                              QString(), QStringLiteral("1")}));
        QCOMPARE(run.report(QStringLiteral("properties")).value(QStringLiteral("AppCrashedSet")).toBool(), false);
        for (const QString& line : run.log)
            QVERIFY2(!line.startsWith(QLatin1String("send GA crash")), qPrintable(line));
        bool logged = false;
        for (const QString& line : run.log)
            logged = logged || line.startsWith(QLatin1String("ZVCore: Start FeedBack -> ("));
        QVERIFY2(logged, qPrintable(run.log.join(QLatin1Char('\n'))));
    }

    void startFeedbackAfterACrash()
    {
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        QProcessEnvironment env;
        env.insert(QStringLiteral("XDG_DATA_HOME"), product.file(QStringLiteral("data")));
#ifdef Q_OS_WIN
        const QString sharedSpool = product.freshSharedSpool();
        QVERIFY(!sharedSpool.isEmpty());
#endif
        const ProbeRun run = product.run({QStringLiteral("setcrashmail:crash@example.com"),
                                          QStringLiteral("prop:CrashDataCollection=string:crash-label"),
                                          QStringLiteral("startfeedback:1"), QStringLiteral("properties")},
                                         QDir::rootPath(), env);
        const QList<QStringList> starts = product.standInStarts(QStringLiteral("Feedback"));
        QCOMPARE(starts.size(), 1);
        QCOMPARE(starts.first(), (QStringList{QStringLiteral("crash@example.com"), appPath(product), QString(), QString(),
                                              QString(), QStringLiteral("0")}));
        const QJsonObject p = run.report(QStringLiteral("properties"));
        QCOMPARE(p.value(QStringLiteral("AppCrashed")).toBool(), true);
        QVERIFY(run.logged(QStringLiteral("send GA crash \"crash-label\"")));
        // The analytics event is spooled as one JSON line holding the one string.
#ifdef Q_OS_WIN
        QFile spool(sharedSpool);
#else
        QDirIterator it(product.file(QStringLiteral("data")), {QStringLiteral("analytics-spool.jsonl")}, QDir::Files,
                        QDirIterator::Subdirectories);
        QVERIFY(it.hasNext());
        QFile spool(it.next());
#endif
        QVERIFY(spool.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = spool.readAll().split('\n');
        QCOMPARE(QJsonDocument::fromJson(lines.first()).object().value(QStringLiteral("event")).toArray(),
                 QJsonArray{QStringLiteral("crash-label")});
    }

    void crashWithoutAnalyticsLabelSendsNothing()
    {
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        const ProbeRun run = product.run({QStringLiteral("startfeedback:1"), QStringLiteral("properties")});
        QCOMPARE(run.report(QStringLiteral("properties")).value(QStringLiteral("AppCrashed")).toBool(), true);
        for (const QString& line : run.log)
            QVERIFY2(!line.startsWith(QLatin1String("send GA crash")), qPrintable(line));
        QCOMPARE(product.standInStarts(QStringLiteral("Feedback")).size(), 1);
    }

    void missingFeedbackProgramIsSilent()
    {
        ProbeFolder product;
        const ProbeRun run = product.run({QStringLiteral("startfeedback:0"), QStringLiteral("properties")});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.report(QStringLiteral("properties")).contains(QStringLiteral("AppCrashed")));
    }

    // --- updater -----------------------------------------------------------------------

    void interactiveUpdateOnEvent1001_data()
    {
        QTest::addColumn<QString>("server");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("with a server") << "srv" << QStringList{QStringLiteral("--host"), QString(), QStringLiteral("two words"),
                                                               QStringLiteral("--updateURL=srv")};
        QTest::newRow("without a server") << "" << QStringList{QStringLiteral("--host"), QString(), QStringLiteral("two words")};
    }

    void interactiveUpdateOnEvent1001()
    {
        QFETCH(QString, server);
        QFETCH(QStringList, expected);
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("appAutoUpdate")}));
        // The link file hides "CheckNewVersion", so only the event starts the updater.
        QVERIFY(product.write(QStringLiteral("language/main/English_URL.xml"),
                              "<r><menu><childMenu><menuName>CheckNewVersion</menuName><isShow>0</isShow></childMenu></menu></r>"));
        QStringList commands{QStringLiteral("prop:ForceLanguage=string:English"),
                             QStringLiteral("setupdaterargs:--host||two words")};
        if (!server.isEmpty())
            commands << QStringLiteral("prop:UpdateServerURL=string:") + server;
        commands << QStringLiteral("controlmodule") << QStringLiteral("send:1001");
        QCOMPARE(product.run(commands).exitCode, 0);
        const QList<QStringList> starts = product.standInStarts(QStringLiteral("appAutoUpdate"));
        QCOMPARE(starts.size(), 1);
        QCOMPARE(starts.first(), expected);
    }

    void silentCheckThreeSecondsAfterStart_data()
    {
        QTest::addColumn<QByteArray>("linkFile");
        QTest::addColumn<int>("starts");
        QTest::newRow("no entry") << QByteArray() << 1;
        QTest::newRow("entry shown") << QByteArray("<r><menu><childMenu><menuName>CheckNewVersion</menuName><isShow>1</isShow>"
                                                   "</childMenu></menu></r>") << 1;
        QTest::newRow("entry hidden") << QByteArray("<r><menu><childMenu><menuName>CheckNewVersion</menuName><isShow>0</isShow>"
                                                    "</childMenu></menu></r>") << 0;
        QTest::newRow("entry without isShow") << QByteArray("<r><menu><childMenu><menuName>CheckNewVersion</menuName>"
                                                            "</childMenu></menu></r>") << 1;
    }

    void silentCheckThreeSecondsAfterStart()
    {
        QFETCH(QByteArray, linkFile);
        QFETCH(int, starts);
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("appAutoUpdate")}));
        if (!linkFile.isEmpty())
            QVERIFY(product.write(QStringLiteral("language/main/English_URL.xml"), linkFile));
        // Not yet after 2.5 s; then exactly once with "--silent=true", after the host's.
        const ProbeRun early = product.run({QStringLiteral("prop:ForceLanguage=string:English"),
                                            QStringLiteral("setupdaterargs:--a|--b"), QStringLiteral("controlmodule"),
                                            QStringLiteral("wait:2500")});
        QCOMPARE(early.exitCode, 0);
        QCOMPARE(product.standInStarts(QStringLiteral("appAutoUpdate"), 1, 500).size(), 0);

        const ProbeRun run = product.run({QStringLiteral("prop:ForceLanguage=string:English"),
                                          QStringLiteral("setupdaterargs:--a|--b"), QStringLiteral("controlmodule"),
                                          QStringLiteral("wait:3500")});
        QCOMPARE(run.exitCode, 0);
        const QList<QStringList> seen = product.standInStarts(QStringLiteral("appAutoUpdate"), starts, starts ? 10000 : 1000);
        QCOMPARE(seen.size(), starts);
        if (starts)
            QCOMPARE(seen.first(), (QStringList{QStringLiteral("--a"), QStringLiteral("--b"), QStringLiteral("--silent=true")}));
    }

    void silentCheckCarriesTheServer()
    {
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("appAutoUpdate")}));
        const ProbeRun run = product.run({QStringLiteral("prop:UpdateServerURL=string:https://upd.example/"),
                                          QStringLiteral("controlmodule"), QStringLiteral("wait:3300")});
        QCOMPARE(run.exitCode, 0);
        const QList<QStringList> seen = product.standInStarts(QStringLiteral("appAutoUpdate"));
        QCOMPARE(seen.size(), 1);
        QCOMPARE(seen.first(), (QStringList{QStringLiteral("--silent=true"), QStringLiteral("--updateURL=https://upd.example/")}));
    }
};

QTEST_GUILESS_MAIN(tst_Launchers)
#include "tst_launchers.moc"
