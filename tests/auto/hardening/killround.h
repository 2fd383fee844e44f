// One round of a kill test: the probe starts a writing loop, says when its first write
// is done, and is killed with SIGKILL after a random delay.
#ifndef ZVCORE_TESTS_KILLROUND_H
#define ZVCORE_TESTS_KILLROUND_H

#include "probe.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRandomGenerator>
#include <QtCore/QThread>

struct KillRound
{
    // Enough rounds to put kills at many points of a write, few enough for the unit lane.
    static constexpr int Rounds = 60;
#ifdef Q_OS_WIN
    // Under Wine each of the probe's writes takes several times as long; kills must still
    // land between writes, not only before the first.
    static constexpr int kMaxDelayMs = 400;
#else
    static constexpr int kMaxDelayMs = 40;
#endif

    bool killed = false;
    int delayMs = 0;
    QJsonObject ready; // the loop's "ready" report
    QString error;

    static KillRound run(const ProbeFolder& product, const QStringList& commands,
                         const QProcessEnvironment& env = QProcessEnvironment(), int maxDelayMs = kMaxDelayMs)
    {
        KillRound round;
        QProcess p;
        // The loops log as they go; nobody reads it, and a full pipe would stall them.
        p.setStandardErrorFile(QProcess::nullDevice());
        product.start(p, commands, QDir::rootPath(), env);
        if (!p.waitForStarted(10000)) {
            round.error = QStringLiteral("the probe did not start: ") + p.errorString();
            return round;
        }
        QByteArray out;
        QElapsedTimer timer;
        timer.start();
        while (round.ready.isEmpty() && timer.elapsed() < 30000 && p.state() == QProcess::Running) {
            p.waitForReadyRead(100);
            out += p.readAllStandardOutput();
            for (const QByteArray& line : out.split('\n')) {
                const QJsonObject o = QJsonDocument::fromJson(line).object();
                if (o.value(QStringLiteral("cmd")).toString() == QLatin1String("ready"))
                    round.ready = o;
            }
        }
        if (round.ready.isEmpty()) {
            p.kill();
            p.waitForFinished();
            round.error = QStringLiteral("the probe's loop never got ready: ") + QString::fromUtf8(out.left(500));
            return round;
        }
        round.delayMs = int(QRandomGenerator::global()->bounded(maxDelayMs + 1));
        QThread::msleep(ulong(round.delayMs));
        if (p.state() != QProcess::Running) {
            round.error = QStringLiteral("the probe's loop ended by itself");
            return round;
        }
        p.kill(); // SIGKILL
        p.waitForFinished(30000);
        round.killed = p.exitStatus() == QProcess::CrashExit;
        if (!round.killed)
            round.error = QStringLiteral("the probe was not killed");
        return round;
    }
};

#endif // ZVCORE_TESTS_KILLROUND_H
