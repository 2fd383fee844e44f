#include <ZVCore/CSkin>
#include <ZVCore/ZVApplicationInfo>

#include "probe.h"

#include <QtTest/QtTest>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#include <unistd.h>
#endif

using ZVUIFramework::ZVApplicationInfo;

namespace {

const QString kSeparatorRule = QStringLiteral("QLabel#separator_line{background-color: #e1e1e1;}");

QString nativeDir(const QString& path)
{
    return QDir::toNativeSeparators(path) + QDir::separator();
}

} // namespace

class tst_ZVApplicationInfo : public QObject
{
    Q_OBJECT

private slots:
    // --- productInfo.xml -------------------------------------------------------------

    void lowerCaseTagsAndRepeatedInfo()
    {
        ProbeFolder product;
        QVERIFY(product.isValid());
        QVERIFY(product.write(QStringLiteral("productInfo.xml"),
                              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<product>\n"
                              "  <zv_pid>4711</zv_pid>\n"
                              "  <ZV_INFO>first</ZV_INFO>\n"
                              "  <Zv_Info>second</Zv_Info>\n"
                              "</product>\n"));
        const ProbeRun run = product.run({QStringLiteral("context")});
        QCOMPARE(run.exitCode, 0);
        const QJsonObject c = run.report(QStringLiteral("context"));
        QCOMPARE(c.value(QStringLiteral("pid")).toString(), QStringLiteral("4711"));
        QCOMPARE(c.value(QStringLiteral("info")).toString(), QStringLiteral("second"));
    }

    void everyTagFillsItsField_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("field");
        QTest::newRow("ZV_PID") << "ZV_PID" << "pid";
        QTest::newRow("ZV_APP_NAME") << "ZV_APP_NAME" << "appName";
        QTest::newRow("ZV_APP_TITLE") << "ZV_APP_TITLE" << "appTitle";
        QTest::newRow("ZV_INFO") << "ZV_INFO" << "info";
        QTest::newRow("ZV_BRANDNAME") << "ZV_BRANDNAME" << "brandName";
        QTest::newRow("ZV_FEEDBACK_RECEIVE_EMAIL") << "ZV_FEEDBACK_RECEIVE_EMAIL" << "fbReceiveEmailAccount";
        QTest::newRow("ZV_WATCHDOG_RECEIVE_EMAIL") << "ZV_WATCHDOG_RECEIVE_EMAIL" << "receiveEmailOnCrash";
        QTest::newRow("mixed case") << "zv_App_Name" << "appName";
    }

    void everyTagFillsItsField()
    {
        QFETCH(QString, tag);
        QFETCH(QString, field);
        ProbeFolder product;
        const QString xml = QStringLiteral("<p><%1>value \u00e9\u4e2d</%1></p>").arg(tag);
        QVERIFY(product.write(QStringLiteral("productInfo.xml"), xml.toUtf8()));
        const QJsonObject c = product.run({QStringLiteral("context")}).report(QStringLiteral("context"));
        const QStringList fields{"pid", "appName", "appTitle", "info", "brandName",
                                 "fbReceiveEmailAccount", "receiveEmailOnCrash"};
        for (const QString& f : fields) {
            const QString expected = f == field ? QStringLiteral("value \u00e9\u4e2d") : QString();
            QCOMPARE(c.value(f).toString(), expected);
        }
    }

    void onlyChildElementsOfTheRootCount()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("productInfo.xml"),
                              "<p ZV_PID=\"attr\">"
                              "<!-- <ZV_PID>comment</ZV_PID> -->"
                              "<group><ZV_PID>nested</ZV_PID></group>"
                              "<ZV_APP_NAME>Name</ZV_APP_NAME>"
                              "<?ZV_INFO pi?>"
                              "<ZV_BRANDNAME>Brand</ZV_BRANDNAME>"
                              "</p>"));
        const QJsonObject c = product.run({QStringLiteral("context")}).report(QStringLiteral("context"));
        QCOMPARE(c.value(QStringLiteral("pid")).toString(), QString());
        QCOMPARE(c.value(QStringLiteral("info")).toString(), QString());
        QCOMPARE(c.value(QStringLiteral("appName")).toString(), QStringLiteral("Name"));
        QCOMPARE(c.value(QStringLiteral("brandName")).toString(), QStringLiteral("Brand"));
    }

    void badProductFilesLeaveTheIdentityEmpty_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("kind");
        QTest::newRow("missing") << QByteArray() << "missing";
        QTest::newRow("empty") << QByteArray() << "file";
        QTest::newRow("truncated") << QByteArray("<p><ZV_PID>12</ZV_PID><ZV_APP_NA") << "file";
        QTest::newRow("unclosed root") << QByteArray("<p><ZV_PID>12</ZV_PID>") << "file";
        QTest::newRow("binary") << QByteArray("\x00\xff\xfe<\x01\x02ZV_PID>\x80\x81", 14) << "file";
        QTest::newRow("not xml") << QByteArray("ZV_PID=12\n") << "file";
        QTest::newRow("directory") << QByteArray() << "directory";
        QTest::newRow("fifo") << QByteArray() << "fifo";
    }

    void badProductFilesLeaveTheIdentityEmpty()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, kind);
        ProbeFolder product;
        const QString path = product.file(QStringLiteral("productInfo.xml"));
        if (kind == QLatin1String("file"))
            QVERIFY(product.write(QStringLiteral("productInfo.xml"), content));
        else if (kind == QLatin1String("directory"))
            QVERIFY(QDir().mkpath(path));
        else if (kind == QLatin1String("fifo"))
#ifdef Q_OS_WIN
            QSKIP("Windows has no FIFOs in the file system");
#else
            QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
#endif

        const ProbeRun run = product.run({QStringLiteral("context")});
        QVERIFY2(run.finished, "the probe hung");
        QCOMPARE(run.exitCode, 0);
        const QJsonObject c = run.report(QStringLiteral("context"));
        QCOMPARE(c.value(QStringLiteral("pid")).toString(), QString());
        QCOMPARE(c.value(QStringLiteral("appName")).toString(), QString());
        QCOMPARE(c.value(QStringLiteral("info")).toString(), QString());
        for (const QString& line : run.log)
            QVERIFY2(!line.startsWith(QLatin1String("ZVCore:")), qPrintable(line));
    }

    void unreadableProductFile()
    {
#ifdef Q_OS_WIN
        QSKIP("QFile::setPermissions() on Windows only sets the read-only attribute; the file stays readable");
#else
        ProbeFolder product;
        if (::geteuid() == 0) {
            if (!ProbeFolder::canHonourFilePermissions())
                QSKIP("root reads files whatever their permissions, and setpriv is missing");
            product.setHonourFilePermissions(true);
        }
        QVERIFY(product.write(QStringLiteral("productInfo.xml"), "<p><ZV_PID>1</ZV_PID></p>"));
        QVERIFY(QFile::setPermissions(product.file(QStringLiteral("productInfo.xml")), {}));
        const ProbeRun run = product.run({QStringLiteral("context")});
        QCOMPARE(run.exitCode, 0);
        const QJsonObject c = run.report(QStringLiteral("context"));
        QCOMPARE(c.value(QStringLiteral("pid")).toString(), QString());
        QCOMPARE(c.value(QStringLiteral("cwd")).toString(), QFileInfo(product.path()).canonicalFilePath());
#endif
    }

    // --- current directory -------------------------------------------------------------

    void currentDirectoryBecomesTheExecutablesFolder_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("startIn");
        QTest::newRow("from /") << "product" << QDir::rootPath();
        QTest::newRow("from tmp") << "product" << QDir::tempPath();
        QTest::newRow("blanks and non-ASCII") << "my product \u00e9\u4e2d" << QDir::rootPath();
    }

    void currentDirectoryBecomesTheExecutablesFolder()
    {
        QFETCH(QString, folder);
        QFETCH(QString, startIn);
        ProbeFolder product(folder);
        QVERIFY(product.isValid());
        const QJsonObject c = product.run({QStringLiteral("context")}, startIn).report(QStringLiteral("context"));
        QCOMPARE(c.value(QStringLiteral("cwd")).toString(), QFileInfo(product.path()).canonicalFilePath());
        QCOMPARE(c.value(QStringLiteral("appDir")).toString(), nativeDir(QFileInfo(product.path()).canonicalFilePath()));
        // Where the host was started stays known, for its command-line paths.
        QCOMPARE(c.value(QStringLiteral("startupDir")).toString(), QFileInfo(startIn).canonicalFilePath());
    }

    // --- in-process: setters, getters, skin -------------------------------------------

    void settersAndGetters()
    {
        ZVApplicationInfo* c = ZVApplicationInfo::GetInstance();
        QCOMPARE(ZVApplicationInfo::GetInstance(), c);
        QVERIFY(c->GetSendEmailAccount().isEmpty());
        QVERIFY(c->GetSendEmailPwd().isEmpty());
        QVERIFY(c->GetUserEmailInfo().isEmpty());
        QVERIFY(c->GetUpdaterArguments().isEmpty());

        c->SetInfo(QStringLiteral("info"));
        c->SetReceiveEmailOnCrash(QStringLiteral("crash@example.com"));
        c->SetUserEmailInfo(QStringLiteral("user@example.com"));
        c->SetSendEmailInfo(QStringLiteral("send@example.com"), QStringLiteral("pwd"));
        c->SetUpdaterArguments({QStringLiteral("--a"), QString(), QStringLiteral("--b")});

        QCOMPARE(c->GetInfo(), QStringLiteral("info"));
        QCOMPARE(c->GetReceiveEmailOnCrash(), QStringLiteral("crash@example.com"));
        QCOMPARE(c->GetUserEmailInfo(), QStringLiteral("user@example.com"));
        QCOMPARE(c->GetSendEmailAccount(), QStringLiteral("send@example.com"));
        QCOMPARE(c->GetSendEmailPwd(), QStringLiteral("pwd"));
        QCOMPARE(c->GetUpdaterArguments(), (QStringList{QStringLiteral("--a"), QString(), QStringLiteral("--b")}));
    }

    void skinObjectIsAlwaysTheSame()
    {
        ZVApplicationInfo* c = ZVApplicationInfo::GetInstance();
        CSkin& first = c->GetSkinObject();
        first.SetBackupPath(QStringLiteral("/backup"));
        CSkin& second = c->GetSkinObject();
        QCOMPARE(&first, &second);
        QCOMPARE(second.GetBackupPath(), QStringLiteral("/backup"));
    }

    void currentLanguageIsTheLanguageManagers()
    {
        ProbeFolder product;
        const ProbeRun run = product.run({QStringLiteral("prop:ForceLanguage=string:German"), QStringLiteral("language")});
        QCOMPARE(run.report(QStringLiteral("language")).value(QStringLiteral("current")).toString(), QStringLiteral("German"));
    }

    void constructionDoesNotStartTheLanguageManager()
    {
        // The language manager's first use belongs to the first core window, after the
        // catalogue is loaded; the context alone must not choose a language.
        ProbeFolder product;
        const ProbeRun run = product.run({QStringLiteral("context")});
        QCOMPARE(run.exitCode, 0);
        for (const QString& line : run.log)
            QVERIFY2(!line.contains(QLatin1String("Language->")), qPrintable(line));
        QVERIFY(!QFile::exists(product.file(QStringLiteral("language/language"))));
    }

    void constructionInstallsTheLinkService()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("productInfo.xml"), "<p><ZV_PID>Pp12p34</ZV_PID></p>"));
        QVERIFY(product.write(QStringLiteral("custom"), "chan\r\nnel\n"));
        const ProbeRun run = product.run({QStringLiteral("services")});
        const QJsonObject s = run.report(QStringLiteral("services"));
        QCOMPARE(s.value(QStringLiteral("pid")).toString(), QStringLiteral("1234"));
        QCOMPARE(s.value(QStringLiteral("custom")).toString(), QStringLiteral("channel"));
        QCOMPARE(s.value(QStringLiteral("language")).toString(), QString());
    }

    // --- InitSkin ------------------------------------------------------------------------

    void normalPicturesSkipTheTest()
    {
        ProbeFolder product;
        const ProbeRun run = product.run({QStringLiteral("initskin:1:dark"), QStringLiteral("skin")});
        QCOMPARE(run.exitCode, 0);
        const QJsonObject s = run.report(QStringLiteral("skin"));
        const QString base = QFileInfo(product.path()).canonicalFilePath() + QLatin1Char('/');
        QCOMPARE(s.value(QStringLiteral("imagePath")).toString(), base + QStringLiteral("skin/dark/PictureNormal/"));
        QCOMPARE(s.value(QStringLiteral("qssPath")).toString(), base + QStringLiteral("skin/dark/qss/"));
        for (const QString& line : run.log)
            QVERIFY2(!line.startsWith(QLatin1String("ZVCore: HighDPI")), qPrintable(line));
    }

    void ordinaryScreenLogsFalse()
    {
        // The offscreen platform's screen is 800 pixels wide.
        ProbeFolder product;
        const ProbeRun run = product.run({QStringLiteral("initskin:0:"), QStringLiteral("skin")});
        QVERIFY(run.logged(QStringLiteral("ZVCore: HighDPI false")));
        const QString base = QFileInfo(product.path()).canonicalFilePath() + QLatin1Char('/');
        const QJsonObject s = run.report(QStringLiteral("skin"));
        QCOMPARE(s.value(QStringLiteral("imagePath")).toString(), base + QStringLiteral("skin/PictureNormal/"));
        QCOMPARE(s.value(QStringLiteral("qssPath")).toString(), base + QStringLiteral("skin/qss/"));
        QCOMPARE(s.value(QStringLiteral("isHighDPI")).toBool(), false);
    }

    void fontIsSetOnSkinAndApplication()
    {
        ProbeFolder product;
        const QJsonObject s = product.run({QStringLiteral("initskin:1:"), QStringLiteral("skin")})
                                  .report(QStringLiteral("skin"));
        QCOMPARE(s.value(QStringLiteral("fontFamily")).toString(), QStringLiteral("Segoe UI"));
        QCOMPARE(s.value(QStringLiteral("appFontFamily")).toString(), QStringLiteral("Segoe UI"));
    }

    // --- style sheets through InitSkin -------------------------------------------------

    void missingFrameworkSheetGivesTheSeparatorRuleOnly()
    {
        ProbeFolder product;
        const QJsonObject s = product.run({QStringLiteral("initskin:1:"), QStringLiteral("skin")})
                                  .report(QStringLiteral("skin"));
        QCOMPARE(s.value(QStringLiteral("styleSheet")).toString(), kSeparatorRule);
    }

    void sheetsInKeyOrderWithRewrittenUrls()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("skin/dark/qss/ZVUIFramework.qss"),
                              "QPushButton#btn_close{image:url(:/close.png);}\n"));
        QVERIFY(product.write(QStringLiteral("skin/dark/qss/Host.qss"),
                              "QLabel#logo{image:url(:/logo.png);} QLabel{border-image:url(:/a.png) url(:/b.png);}\n"));
        QVERIFY(product.write(QStringLiteral("skin/dark/qss/a.qss"), "QWidget{color:red;}"));

        const ProbeRun run = product.run({QStringLiteral("addqss:Host.qss=1"), QStringLiteral("initskin:1:dark"),
                                          QStringLiteral("skin")});
        QCOMPARE(run.report(QStringLiteral("skin")).value(QStringLiteral("styleSheet")).toString(),
                 QStringLiteral("QLabel#logo{image:url(skin/dark/PictureNormal/logo.png);} "
                                "QLabel{border-image:url(skin/dark/PictureNormal/a.png) url(skin/dark/PictureNormal/b.png);}\n"
                                "QPushButton#btn_close{image:url(skin/dark/PictureNormal/close.png);}\n")
                     + kSeparatorRule);

        // "a.qss" sorts after "ZVUIFramework.qss" in Qt's string order (capitals first).
        const ProbeRun second = product.run({QStringLiteral("addqss:a.qss=1"), QStringLiteral("initskin:1:dark"),
                                             QStringLiteral("skin")});
        QCOMPARE(second.report(QStringLiteral("skin")).value(QStringLiteral("styleSheet")).toString(),
                 QStringLiteral("QPushButton#btn_close{image:url(skin/dark/PictureNormal/close.png);}\n"
                                "QWidget{color:red;}")
                     + kSeparatorRule);
    }

    void absoluteImagePathsWhenAsked()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("skin/qss/ZVUIFramework.qss"), "QLabel{image:url(:/x.png);}"));
        const ProbeRun run = product.run({QStringLiteral("prop:QtRelativeImagePath=bool:false"),
                                          QStringLiteral("initskin:1:"), QStringLiteral("skin")});
        const QString base = QFileInfo(product.path()).canonicalFilePath() + QLatin1Char('/');
        QCOMPARE(run.report(QStringLiteral("skin")).value(QStringLiteral("styleSheet")).toString(),
                 QStringLiteral("QLabel{image:url(%1skin/PictureNormal/x.png);}").arg(base) + kSeparatorRule);

        const ProbeRun relative = product.run({QStringLiteral("prop:QtRelativeImagePath=bool:true"),
                                               QStringLiteral("initskin:1:"), QStringLiteral("skin")});
        QCOMPARE(relative.report(QStringLiteral("skin")).value(QStringLiteral("styleSheet")).toString(),
                 QStringLiteral("QLabel{image:url(skin/PictureNormal/x.png);}") + kSeparatorRule);
    }

    void storePaths()
    {
        ProbeFolder product;
        const QJsonObject c = product.run({QStringLiteral("context")}).report(QStringLiteral("context"));
        const QString dir = nativeDir(QFileInfo(product.path()).canonicalFilePath());
        const QChar sep = QDir::separator();
        QCOMPARE(c.value(QStringLiteral("productInfo")).toString(), dir + QStringLiteral("productInfo.xml"));
        QCOMPARE(c.value(QStringLiteral("languageMain")).toString(), dir + QStringLiteral("language") + sep + QStringLiteral("main"));
        QCOMPARE(c.value(QStringLiteral("languageQm")).toString(), dir + QStringLiteral("language") + sep + QStringLiteral("qm"));
        QCOMPARE(c.value(QStringLiteral("savedLanguage")).toString(), dir + QStringLiteral("language") + sep + QStringLiteral("language"));
        QCOMPARE(c.value(QStringLiteral("localConfig")).toString(),
                 dir + QStringLiteral("language") + sep + QStringLiteral("main") + sep + QStringLiteral("localconfig.json"));
        QCOMPARE(c.value(QStringLiteral("qssSetting")).toString(), dir + QStringLiteral("skin") + sep + QStringLiteral("QssSetting.ini"));
        QCOMPARE(c.value(QStringLiteral("qssDir")).toString(), dir + QStringLiteral("skin") + sep + QStringLiteral("qss"));
    }
};

QTEST_MAIN(tst_ZVApplicationInfo)
#include "tst_zvapplicationinfo.moc"
