// The crash path on Linux: from the fault of a host with eight threads and 500 MB of
// heap to the start of the feedback program, and the dump it leaves. The dump must hold
// the threads with their stacks and the modules, and none of the heap: its memory list
// is checked against the heap blocks the host reported.
#include "zvbench.h"
#include "zvprocess.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <vector>

#include <sys/wait.h>

using namespace ZVBench;

namespace {

quint32 u32(const QByteArray& b, qint64 at)
{
    quint32 v = 0;
    if (at >= 0 && at + 4 <= b.size())
        std::memcpy(&v, b.constData() + at, 4);
    return v;
}

quint64 u64(const QByteArray& b, qint64 at)
{
    quint64 v = 0;
    if (at >= 0 && at + 8 <= b.size())
        std::memcpy(&v, b.constData() + at, 8);
    return v;
}

struct DumpFacts
{
    bool valid = false;
    int threads = 0;
    int threadsWithStacks = 0;
    quint64 stackBytes = 0;
    int modules = 0;
    int memoryRanges = 0;
    quint64 memoryBytes = 0;
    int rangesInHeap = 0;
};

struct Range
{
    quint64 start;
    quint64 end;
};

// The streams of a minidump: thread list (3), module list (4), memory list (5).
DumpFacts readDump(const QString& path, const std::vector<Range>& heap)
{
    DumpFacts facts;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return facts;
    const QByteArray dump = file.readAll();
    if (dump.size() < 32 || u32(dump, 0) != 0x504D444D) // "MDMP"
        return facts;
    facts.valid = true;
    const quint32 streams = u32(dump, 8);
    const quint32 directory = u32(dump, 12);
    for (quint32 i = 0; i < streams; ++i) {
        const qint64 entry = qint64(directory) + qint64(i) * 12;
        const quint32 type = u32(dump, entry);
        const quint32 rva = u32(dump, entry + 8);
        if (type == 3) {
            facts.threads = int(u32(dump, rva));
            for (int t = 0; t < facts.threads; ++t) {
                const quint32 stack = u32(dump, qint64(rva) + 4 + qint64(t) * 48 + 32);
                facts.stackBytes += stack;
                facts.threadsWithStacks += stack > 0 ? 1 : 0;
            }
        } else if (type == 4) {
            facts.modules = int(u32(dump, rva));
        } else if (type == 5) {
            facts.memoryRanges = int(u32(dump, rva));
            for (int m = 0; m < facts.memoryRanges; ++m) {
                const qint64 at = qint64(rva) + 4 + qint64(m) * 16;
                const quint64 start = u64(dump, at);
                const quint64 size = u32(dump, at + 8);
                facts.memoryBytes += size;
                for (const Range& block : heap) {
                    if (start < block.end && block.start < start + size) {
                        ++facts.rangesInHeap;
                        break;
                    }
                }
            }
        }
    }
    return facts;
}

std::vector<Range> readRanges(const QString& path)
{
    std::vector<Range> ranges;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return ranges;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QList<QByteArray> parts = line.split(' ');
        if (parts.size() == 2)
            ranges.push_back({parts[0].toULongLong(nullptr, 16), parts[1].toULongLong(nullptr, 16)});
    }
    return ranges;
}

qint64 fileNumber(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toLongLong() : 0;
}

struct CrashRuns
{
    Samples toFeedback;
    std::vector<qint64> sizes;
    DumpFacts facts;
    bool allSegv = true;
};

CrashRuns crash(const QString& child, int heapMegabytes, int runs)
{
    const QString folder = programFolder();
    const QString dump = folder + QStringLiteral("/crashcore.dmp");
    const QString stamp = folder + QStringLiteral("/feedback-started");
    const QString heapRanges = folder + QStringLiteral("/crash-heap-ranges");
    qputenv("ZVBENCH_FEEDBACK_STAMP", QFile::encodeName(stamp));
    qputenv("ZVBENCH_HEAP_RANGES", QFile::encodeName(heapRanges));
    qputenv("ZVBENCH_HEAP_MB", QByteArray::number(heapMegabytes));
    CrashRuns result;
    for (int run = 0; run < runs; ++run) {
        QFile::remove(dump);
        QFile::remove(stamp);
        QFile::remove(heapRanges);
        Child host;
        if (!host.start(child, {}))
            break;
        const QByteArray fault = host.readLine("fault ", 120000).trimmed();
        const int status = host.wait();
        if (fault.isEmpty())
            continue;
        result.allSegv = result.allSegv && WIFSIGNALED(status) && WTERMSIG(status) == SIGSEGV;
        QElapsedTimer waited;
        waited.start();
        while (!QFileInfo::exists(stamp) && waited.elapsed() < 10000)
            QThread::msleep(10);
        QThread::msleep(20); // the stand-in writes its one line right after it creates the file
        const qint64 started = fileNumber(stamp);
        if (started <= 0)
            continue;
        result.toFeedback.ms.push_back(double(started - fault.toLongLong()) / 1e6);
        const QFileInfo written(dump);
        if (written.isFile())
            result.sizes.push_back(written.size());
        result.facts = readDump(dump, readRanges(heapRanges));
    }
    std::sort(result.sizes.begin(), result.sizes.end());
    QFile::remove(dump);
    QFile::remove(stamp);
    QFile::remove(heapRanges);
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (!callgrindFolder().isEmpty())
        return 0; // processes that crash are timed, not counted
    const QString child = programFolder() + QStringLiteral("/zvbench_crash_child");
    const QString name = QStringLiteral("crash path: fault → feedback program started (8 threads, 500 MB heap)");
    progress(name);

    const CrashRuns big = crash(child, 500, 7);
    const CrashRuns small = crash(child, 0, 7);
    if (big.toFeedback.ms.empty()) {
        progress(QStringLiteral("the feedback program never started; crash path skipped"));
        return 0;
    }

    Row row;
    row.benchmark = name;
    row.value = big.toFeedback.median();
    row.baseline = QStringLiteral("the same host without the 500 MB heap");
    row.baselineValue = small.toFeedback.median();
    // The dump helper and the launch share the host's memory instead of copying it, so
    // the heap's size does not show.
    row.goal = Goal::RatioAtMost;
    row.limit = 1.5;
    row.goalText = QStringLiteral("≤ 1.5× and under 10 ms");
    row.runs = int(big.toFeedback.ms.size());
    row.note = big.allSegv && small.allSegv ? QStringLiteral("dump, then the feedback program; the host ends by SIGSEGV")
                                            : QStringLiteral("a host did NOT end by SIGSEGV");
    if (row.value >= 10.0)
        row.note += QStringLiteral("; NOT under 10 ms");
    emitRow(row);

    const DumpFacts& facts = big.facts;
    Row size;
    size.benchmark = QStringLiteral("crash dump size (same host, 500 MB heap)");
    size.value = big.sizes.empty() ? 0 : double(big.sizes[big.sizes.size() / 2]) / 1024.0;
    size.unit = QStringLiteral("KB");
    size.baseline = QStringLiteral("the same host without the 500 MB heap");
    size.baselineValue = small.sizes.empty() ? 0 : double(small.sizes[small.sizes.size() / 2]) / 1024.0;
    size.goal = Goal::Report;
    size.goalText = QStringLiteral("stacks and modules, not the heap");
    size.runs = int(big.sizes.size());
    size.note = facts.valid
        ? QStringLiteral("%1 threads, %2 with stacks (%3 KB); %4 modules; memory list: %5 ranges, %6 KB, %7 of them inside the heap")
              .arg(facts.threads)
              .arg(facts.threadsWithStacks)
              .arg(facts.stackBytes / 1024)
              .arg(facts.modules)
              .arg(facts.memoryRanges)
              .arg(facts.memoryBytes / 1024)
              .arg(facts.rangesInHeap)
        : QStringLiteral("no readable dump");
    emitRow(size);
    return 0;
}
