// Start-up, whole process: from the moment the process is spawned to its first frame on
// the screen (offscreen platform), for a host of the frame with the library fully
// initialised, against a bare QApplication with a QMainWindow and the same widgets.
// Each host reports its first frame and ends right there.
#include "zvbench.h"
#include "zvprocess.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

#include <sys/wait.h>

using namespace ZVBench;

namespace {

struct Host
{
    QString program;
    QStringList arguments;
    QString label;
};

// Milliseconds from spawning \a host to its first frame; negative when it never came.
double startUp(const Host& host)
{
    Child child;
    const qint64 spawned = monotonicNs();
    if (!child.start(host.program, host.arguments))
        return -1;
    const QByteArray line = child.readLine("first-frame ", 30000);
    child.wait();
    bool ok = false;
    const qint64 frame = line.trimmed().toLongLong(&ok);
    return ok ? double(frame - spawned) / 1e6 : -1;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QString folder = programFolder();
    const Host frame{folder + QStringLiteral("/zvbench_host_frame"), {}, QStringLiteral("frame")};
    const Host bare{folder + QStringLiteral("/zvbench_host_bare"), {}, QStringLiteral("bare")};
    const Host styled{folder + QStringLiteral("/zvbench_host_bare"), {QStringLiteral("--style-sheet")},
                      QStringLiteral("bare-styled")};
    const Host hosts[] = {frame, bare, styled};
    const QString name = QStringLiteral("start-up to the first frame, core window, library fully initialised");
    progress(name);

    const QString counting = callgrindFolder();
    if (!counting.isEmpty()) {
        const QString valgrind = valgrindProgram();
        if (valgrind.isEmpty())
            return 0;
        for (const Host& host : hosts) {
            Child child;
            child.start(valgrind, QStringList{QStringLiteral("--tool=callgrind"),
                                              QStringLiteral("--callgrind-out-file=%1/startup-%2.%p").arg(counting, host.label),
                                              host.program}
                                      + host.arguments);
            child.readLine("first-frame ", 300000);
            child.wait();
        }
        return 0;
    }

    // The first start of each reads everything from disk; it is not measured.
    for (const Host& host : hosts)
        startUp(host);
    Samples times[3];
    const int runs = 21;
    for (int i = 0; i < runs; ++i) {
        // Rotating which goes first, so that none always follows another.
        for (int k = 0; k < 3; ++k) {
            const int which = (i + k) % 3;
            const double ms = startUp(hosts[which]);
            if (ms < 0) {
                progress(QStringLiteral("%1 never showed its first frame; start-up skipped").arg(hosts[which].label));
                return 0;
            }
            times[which].ms.push_back(ms);
        }
    }

    Row row;
    row.benchmark = name;
    row.value = times[0].median();
    row.baseline = QStringLiteral("bare QApplication + QMainWindow, same widgets");
    row.baselineValue = times[1].median();
    row.goal = Goal::RatioAtMost;
    row.limit = 1.25;
    row.goalText = QStringLiteral("≤ 1.25× (whole process)");
    row.runs = runs;
    row.instructions = QStringLiteral("startup.frame");
    row.baselineInstructions = QStringLiteral("startup.bare");
    emitRow(row);

    row.baseline = QStringLiteral("the same bare program with the skin's style sheet");
    row.baselineValue = times[2].median();
    row.goal = Goal::Report;
    row.goalText = QString();
    row.baselineInstructions = QStringLiteral("startup.bare-styled");
    row.note = QStringLiteral("the frame's own share, style sheets aside");
    emitRow(row);
    return 0;
}
