// The scale-factor file survives a SIGKILL at any moment of EnableHighDPISupport: it
// holds the factor written before or the one being written, never a torn or missing
// file. The decision needs an X screen to measure: a private Xvfb of 1920 x 1080 pixels
// at 144 DPI, where a window of 1100 x 760 gets 1.25 and one of 1300 x 1000 gets 1.0
// (no window manager, so the work area is the whole screen).
#include "killround.h"
#include "probe.h"
#include "xvfb.h"

#include <QtTest/QtTest>

class tst_KilledWritersDisplay : public QObject
{
    Q_OBJECT

private slots:
    void factorFile()
    {
        XvfbServer server;
        QVERIFY2(server.start(1920, 1080, 144), qPrintable(server.error()));
        QProcessEnvironment env;
        env.insert(QStringLiteral("DISPLAY"), server.display());
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        env.insert(QStringLiteral("QT_SCALE_FACTOR"), QString());

        ProbeFolder product;
        QVERIFY(product.isValid());
        const QString factor = product.file(QStringLiteral("factor.tmp"));
        const QSet<QByteArray> valid{"1.250000", "1.000000"};
        QMap<QByteArray, int> seen;
        for (int round = 0; round < KillRound::Rounds; ++round) {
            const KillRound kill = KillRound::run(product, {QStringLiteral("highdpiloop")}, env, 20);
            QVERIFY2(kill.killed, qPrintable(kill.error));
            QFile f(factor);
            QVERIFY2(f.open(QIODevice::ReadOnly), qPrintable(QStringLiteral("round %1: no factor file").arg(round)));
            const QByteArray content = f.readAll();
            QVERIFY2(valid.contains(content), qPrintable(QStringLiteral("round %1, killed after %2 ms: \"%3\"")
                                                             .arg(round).arg(kill.delayMs).arg(QString::fromLatin1(content))));
            ++seen[content];
        }
        // Both factors were written while the probe ran.
        QCOMPARE(seen.size(), 2);
        qInfo("1.25/1.0: %d/%d", seen.value("1.250000"), seen.value("1.000000"));
        // QSaveFile names its temporary file just before the rename; a kill between the
        // two leaves that name behind, beside an intact factor file.
        qInfo("temporary files left: %d",
              QDir(product.path()).entryList({QStringLiteral("factor.tmp.*")}, QDir::Files | QDir::Hidden).size());
    }
};

QTEST_GUILESS_MAIN(tst_KilledWritersDisplay)
#include "tst_killedwriters_display.moc"
