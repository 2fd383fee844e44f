// The 4K picture test on a real X server: the desktop width in physical pixels decides.
#include "probe.h"
#include "xvfb.h"

#include <QtTest/QtTest>

class tst_ZVApplicationInfoDisplay : public QObject
{
    Q_OBJECT

private:
    static ProbeRun runOnScreen(const ProbeFolder& product, int width, int height, const QStringList& commands)
    {
        XvfbServer server;
        if (!server.start(width, height)) {
            ProbeRun failed;
            failed.log.append(server.error());
            return failed;
        }
        QProcessEnvironment env;
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        env.insert(QStringLiteral("DISPLAY"), server.display());
        return product.run(commands, QDir::rootPath(), env);
    }

private slots:
    void wideDesktopUses4KPictures()
    {
        ProbeFolder product;
        const ProbeRun run = runOnScreen(product, 3840, 2160, {QStringLiteral("initskin:0:"), QStringLiteral("skin")});
        QVERIFY2(run.exitCode == 0, qPrintable(run.log.join(QLatin1Char('\n'))));
        QVERIFY(run.logged(QStringLiteral("ZVCore: HighDPI true")));
        const QString base = QFileInfo(product.path()).canonicalFilePath() + QLatin1Char('/');
        const QJsonObject s = run.report(QStringLiteral("skin"));
        QCOMPARE(s.value(QStringLiteral("imagePath")).toString(), base + QStringLiteral("skin/Picture4K/"));
        QCOMPARE(s.value(QStringLiteral("isHighDPI")).toBool(), true);
    }

    void wideDesktopWithNormalPicturesLogsNothing()
    {
        ProbeFolder product;
        const ProbeRun run = runOnScreen(product, 3840, 2160, {QStringLiteral("initskin:1:dark"), QStringLiteral("skin")});
        QVERIFY2(run.exitCode == 0, qPrintable(run.log.join(QLatin1Char('\n'))));
        for (const QString& line : run.log)
            QVERIFY2(!line.startsWith(QLatin1String("ZVCore: HighDPI")), qPrintable(line));
        const QString base = QFileInfo(product.path()).canonicalFilePath() + QLatin1Char('/');
        QCOMPARE(run.report(QStringLiteral("skin")).value(QStringLiteral("imagePath")).toString(),
                 base + QStringLiteral("skin/dark/PictureNormal/"));
    }

    void thresholdIsStrictlyAbove2500_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<bool>("highDpi");
        QTest::newRow("2500") << 2500 << false;
        QTest::newRow("2504") << 2504 << true;
        QTest::newRow("1920") << 1920 << false;
    }

    void thresholdIsStrictlyAbove2500()
    {
        QFETCH(int, width);
        QFETCH(bool, highDpi);
        ProbeFolder product;
        const ProbeRun run = runOnScreen(product, width, 1080, {QStringLiteral("initskin:0:"), QStringLiteral("skin")});
        QVERIFY2(run.exitCode == 0, qPrintable(run.log.join(QLatin1Char('\n'))));
        QVERIFY(run.logged(highDpi ? QStringLiteral("ZVCore: HighDPI true") : QStringLiteral("ZVCore: HighDPI false")));
    }
};

QTEST_GUILESS_MAIN(tst_ZVApplicationInfoDisplay)
#include "tst_zvapplicationinfo_display.moc"
