// Resident memory after start: the demo (zvcore-demo) against a bare Qt Widgets program
// with the demo's widgets; and the benchmarks' own host of the frame against the same
// host without the frame, whose widgets are identical. Each program runs on the
// offscreen platform, listing the same small folder, until its resident size has
// settled; then it is read from /proc and the program is ended.
#include "zvbench.h"
#include "zvprocess.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>

#include <algorithm>

#include <unistd.h>

using namespace ZVBench;

namespace {

// A field of /proc/<pid>/status or smaps_rollup, in kB; -1 when missing.
qint64 procField(pid_t pid, const char* file, const char* field)
{
    QFile status(QStringLiteral("/proc/%1/%2").arg(pid).arg(QLatin1String(file)));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray prefix = QByteArray(field) + ':';
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(prefix)) {
            const QList<QByteArray> parts = line.mid(prefix.size()).simplified().split(' ');
            return parts.isEmpty() ? -1 : parts.first().toLongLong();
        }
    }
    return -1;
}

struct Resident
{
    double rssMb = -1;
    double pssMb = -1;
};

// Starts \a program, waits until it has shown its first frame (when it reports one) or
// its resident size has not moved by more than 64 kB for a second, and reads it.
Resident residentAfterStart(const QString& program, const QStringList& arguments, bool reportsFrame)
{
    Resident result;
    Child child;
    if (!child.start(program, arguments))
        return result;
    if (reportsFrame && child.readLine("first-frame ", 30000).isEmpty())
        return result;
    QElapsedTimer clock;
    clock.start();
    qint64 last = -1;
    qint64 stableSince = 0;
    while (clock.elapsed() < 15000) {
        QThread::msleep(100);
        const qint64 rss = procField(child.pid(), "status", "VmRSS");
        if (rss < 0)
            return result; // it ended by itself
        if (last < 0 || std::abs(rss - last) > 64) {
            last = rss;
            stableSince = clock.elapsed();
        } else if (clock.elapsed() - stableSince >= 1000 && clock.elapsed() >= 1500) {
            break;
        }
    }
    result.rssMb = double(procField(child.pid(), "status", "VmRSS")) / 1024.0;
    result.pssMb = double(procField(child.pid(), "smaps_rollup", "Pss")) / 1024.0;
    child.kill();
    return result;
}

Resident median(const QList<Resident>& runs)
{
    std::vector<double> rss;
    std::vector<double> pss;
    for (const Resident& r : runs) {
        if (r.rssMb > 0) {
            rss.push_back(r.rssMb);
            pss.push_back(r.pssMb);
        }
    }
    Resident m;
    if (rss.empty())
        return m;
    std::sort(rss.begin(), rss.end());
    std::sort(pss.begin(), pss.end());
    m.rssMb = rss[rss.size() / 2];
    m.pssMb = pss[pss.size() / 2];
    return m;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (!callgrindFolder().isEmpty())
        return 0; // memory is measured, not counted
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QString folder = programFolder();
    progress(QStringLiteral("resident memory after start"));

    // The folder both list: twenty small files.
    QTemporaryDir listed;
    for (int i = 0; i < 20; ++i) {
        QFile file(listed.filePath(QStringLiteral("file-%1.txt").arg(i)));
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray(100 * (i + 1), 'x'));
    }
    const QStringList listing{QStringLiteral("--folder"), listed.path()};

    const int runs = 3;
    const QString demo = QStringLiteral(ZVBENCH_DEMO);
    QList<Resident> demoRuns, demoBareRuns, frameRuns, bareRuns;
    for (int i = 0; i < runs; ++i) {
        if (!demo.isEmpty() && QFileInfo(demo).isExecutable()) {
            demoRuns.append(residentAfterStart(demo, listing, false));
            demoBareRuns.append(residentAfterStart(folder + QStringLiteral("/zvbench_demo_bare"), listing, false));
        }
        frameRuns.append(residentAfterStart(folder + QStringLiteral("/zvbench_host_frame"), {QStringLiteral("--stay")}, true));
        bareRuns.append(residentAfterStart(folder + QStringLiteral("/zvbench_host_bare"), {QStringLiteral("--stay")}, true));
    }

    const auto emitMemory = [runs](const QString& benchmark, const QString& baseline, const Resident& value,
                                   const Resident& base) {
        if (value.rssMb <= 0 || base.rssMb <= 0)
            return;
        Row row;
        row.benchmark = benchmark;
        row.value = value.rssMb;
        row.unit = QStringLiteral("MB");
        row.baseline = baseline;
        row.baselineValue = base.rssMb;
        row.goal = Goal::Report;
        row.goalText = QStringLiteral("report the difference");
        row.runs = runs;
        row.note = QStringLiteral("resident %1%2 MB; proportional set %3 MB against %4 MB")
                       .arg(value.rssMb >= base.rssMb ? QStringLiteral("+") : QString())
                       .arg(value.rssMb - base.rssMb, 0, 'f', 1)
                       .arg(value.pssMb, 0, 'f', 1)
                       .arg(base.pssMb, 0, 'f', 1);
        emitRow(row);
    };
    if (!demoRuns.isEmpty()) {
        emitMemory(QStringLiteral("resident memory of zvcore-demo after start"),
                   QStringLiteral("bare Qt Widgets program with the demo's widgets"), median(demoRuns), median(demoBareRuns));
    } else {
        progress(QStringLiteral("zvcore-demo was not built; only the benchmarks' own host is measured"));
    }
    emitMemory(QStringLiteral("resident memory of a core-window host after start"),
               QStringLiteral("the same host without the frame (same widgets)"), median(frameRuns), median(bareRuns));
    return 0;
}
