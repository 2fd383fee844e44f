// ZVApplicationInfo::EnableHighDPISupport in a process of its own, before the
// application object exists, where there is no X11 screen to measure.
#include "probe.h"

#include <QtTest/QtTest>

class tst_HighDpi : public QObject
{
    Q_OBJECT

private slots:
    void withoutAScreenQtScales()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("factor.tmp"), "2.000000"));
        QProcessEnvironment env;
        env.insert(QStringLiteral("DISPLAY"), QString());
        const ProbeRun run = product.run({QStringLiteral("highdpi:windowWidth=1100,windowHeight=760,syncRatio=true"),
                                          QStringLiteral("highdpi-report")},
                                         QDir::rootPath(), env);
        QCOMPARE(run.exitCode, 0);
        const QJsonObject r = run.report(QStringLiteral("highdpi-report"));
        QCOMPARE(r.value(QStringLiteral("qtScaling")).toBool(), true);
        QCOMPARE(r.value(QStringLiteral("scaleFactorSet")).toBool(), false);
        QCOMPARE(r.value(QStringLiteral("pixmaps")).toBool(), true);
        // Nothing else is touched: the factor file stays as it was.
        QCOMPARE(r.value(QStringLiteral("factorHex")).toString(), QString::fromLatin1(QByteArray("2.000000").toHex()));
    }
};

QTEST_GUILESS_MAIN(tst_HighDpi)
#include "tst_highdpi.moc"
