// ZVApplicationInfo::EnableHighDPISupport on a real X server with a window manager: the
// system DPI from the X screen or from Xft.dpi, the work area from _NET_WORKAREA.
#include "displaysession.h"
#include "probe.h"

#include <QtTest/QtTest>

namespace {

const QStringList kWorkedExample{QStringLiteral("highdpi:windowWidth=1100,windowHeight=760,syncRatio=true"),
                                 QStringLiteral("highdpi-report")};

// The worked example followed by a core window on screen, for its device pixel ratio.
const QStringList kWorkedExampleWindow = kWorkedExample
    + QStringList{QStringLiteral("corewindow:build"), QStringLiteral("corewindow:show:100,100,400,300"),
                  QStringLiteral("corewindow:report")};

} // namespace

class tst_HighDpiDisplay : public QObject
{
    Q_OBJECT

private:
    static ProbeRun runOn(const DisplaySession& session, const ProbeFolder& product, const QStringList& commands)
    {
        QProcessEnvironment env = session.environment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        env.remove(QStringLiteral("QT_SCALE_FACTOR"));
        return product.run(commands, QDir::rootPath(), env);
    }

private slots:
    void workedExample_data()
    {
        QTest::addColumn<int>("serverDpi");
        QTest::addColumn<int>("xftDpi");
        QTest::newRow("-dpi 144") << 144 << 0;
        QTest::newRow("Xft.dpi 144 on -dpi 96") << 96 << 144;
    }

    void workedExample()
    {
        QFETCH(int, serverDpi);
        QFETCH(int, xftDpi);
        DisplaySession session;
        QVERIFY2(session.start(DisplaySession::WithoutCompositor, 1920, 1080, serverDpi, xftDpi), qPrintable(session.error()));
        QCOMPARE(session.workArea(), QRect(0, 0, 1920, 1040));

        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("factor.tmp"), "9.000000"));
        const ProbeRun run = runOn(session, product, kWorkedExampleWindow);
        QVERIFY2(run.exitCode == 0, qPrintable(run.log.join(QLatin1Char('\n'))));
        const QJsonObject r = run.report(QStringLiteral("highdpi-report"));
        QCOMPARE(r.value(QStringLiteral("scaleFactor")).toString(), QStringLiteral("1.250000"));
        // Scaled by the factor alone, on Qt 6 as on Qt 5: not by 1.5 × 1.25.
        QCOMPARE(run.report(QStringLiteral("corewindow:report")).value(QStringLiteral("dpr")).toDouble(), 1.25);
        QCOMPARE(r.value(QStringLiteral("qtScaling")).toBool(), false);
        QCOMPARE(r.value(QStringLiteral("pixmaps")).toBool(), true);
        QFile factor(product.file(QStringLiteral("factor.tmp")));
        QVERIFY(factor.open(QIODevice::ReadOnly));
        QCOMPARE(factor.readAll(), QByteArray("1.250000"));
        QVERIFY(run.logged(QStringLiteral("ZVCore: SystemDPI-> 144  SystemScaleFactor: 1.5")));
        QVERIFY(run.logged(QStringLiteral("x_avaliable 1280  y_avaliable-> 720")));
        QVERIFY(run.logged(QStringLiteral("availableGeometry 1920 1040 1")));
        QVERIFY(run.logged(QStringLiteral("set QT_SCALE_FACTOR= 1.250000")));
    }

    void roomyScreenLetsQtScale_data()
    {
        QTest::addColumn<int>("dpi");
        QTest::addColumn<double>("dpr");
        QTest::newRow("4K at 96 DPI") << 96 << 1.0;
        // A 4K monitor at 200 %: X screen and Xft.dpi agree, as a desktop sets them. Qt 5
        // scales by the screen's physical DPI, Qt 6 by Xft.dpi; both come to 2.
        QTest::newRow("4K at 192 DPI") << 192 << 2.0;
    }

    void roomyScreenLetsQtScale()
    {
        QFETCH(int, dpi);
        QFETCH(double, dpr);
        DisplaySession session;
        QVERIFY2(session.start(DisplaySession::WithoutCompositor, 3840, 2160, dpi, dpi == 96 ? 0 : dpi),
                 qPrintable(session.error()));
        ProbeFolder product;
        const ProbeRun run = runOn(session, product, kWorkedExampleWindow);
        QVERIFY2(run.exitCode == 0, qPrintable(run.log.join(QLatin1Char('\n'))));
        const QJsonObject r = run.report(QStringLiteral("highdpi-report"));
        QCOMPARE(r.value(QStringLiteral("qtScaling")).toBool(), true);
        QCOMPARE(r.value(QStringLiteral("scaleFactorSet")).toBool(), false);
        QCOMPARE(r.value(QStringLiteral("factorFile")).toBool(), false);
        QVERIFY(run.logged(QStringLiteral("Enable High Dpi Scaling")));
        QCOMPARE(run.report(QStringLiteral("corewindow:report")).value(QStringLiteral("dpr")).toDouble(), dpr);
    }
};

QTEST_GUILESS_MAIN(tst_HighDpiDisplay)
#include "tst_highdpi_display.moc"
