#include "zvbench.h"

#include <QtCore/QJsonDocument>

#include <algorithm>
#include <cstdio>
#include <ctime>

#include <malloc.h>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#define ZVBENCH_HAVE_CALLGRIND 1
#endif

namespace ZVBench {

qint64 monotonicNs()
{
    timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return qint64(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

bool underCallgrind()
{
#ifdef ZVBENCH_HAVE_CALLGRIND
    return RUNNING_ON_VALGRIND != 0;
#else
    return false;
#endif
}

double Samples::median() const
{
    if (ms.empty())
        return 0;
    std::vector<double> sorted = ms;
    std::sort(sorted.begin(), sorted.end());
    const size_t n = sorted.size();
    return n % 2 ? sorted[n / 2] : (sorted[n / 2 - 1] + sorted[n / 2]) / 2;
}

double Samples::minimum() const
{
    return ms.empty() ? 0 : *std::min_element(ms.begin(), ms.end());
}

static double timeOnce(const std::function<void()>& fn)
{
    const qint64 start = monotonicNs();
    fn();
    return double(monotonicNs() - start) / 1e6;
}

Samples time(const std::function<void()>& fn, int runs, int warmup, const std::function<void()>& between)
{
    for (int i = 0; i < warmup; ++i) {
        fn();
        if (between)
            between();
    }
    Samples samples;
    for (int i = 0; i < runs; ++i) {
        samples.ms.push_back(timeOnce(fn));
        if (between)
            between();
    }
    return samples;
}

std::pair<Samples, Samples> timePair(const std::function<void()>& a, const std::function<void()>& b, int runs,
                                     int warmup)
{
    for (int i = 0; i < warmup; ++i) {
        a();
        b();
    }
    std::pair<Samples, Samples> result;
    for (int i = 0; i < runs; ++i) {
        result.first.ms.push_back(timeOnce(a));
        result.second.ms.push_back(timeOnce(b));
    }
    return result;
}

int runsFor(double singleMs, double budgetMs, int minRuns, int maxRuns)
{
    int runs = singleMs > 0 ? int(budgetMs / singleMs) : maxRuns;
    runs = std::max(minRuns, std::min(maxRuns, runs));
    return runs % 2 ? runs : runs + 1;
}

void countInstructions(const QString& label, const std::function<void()>& fn, int warmup,
                       const std::function<void()>& between)
{
#ifdef ZVBENCH_HAVE_CALLGRIND
    if (!underCallgrind())
        return;
    for (int i = 0; i < warmup; ++i) {
        fn();
        if (between)
            between();
    }
    const QByteArray name = "zvbench:" + label.toUtf8();
    CALLGRIND_ZERO_STATS;
    fn();
    CALLGRIND_DUMP_STATS_AT(name.constData());
#else
    Q_UNUSED(label)
    Q_UNUSED(fn)
    Q_UNUSED(warmup)
    Q_UNUSED(between)
#endif
}

void dumpInstructions(const QString& label)
{
#ifdef ZVBENCH_HAVE_CALLGRIND
    if (!underCallgrind())
        return;
    const QByteArray name = "zvbench:" + label.toUtf8();
    CALLGRIND_DUMP_STATS_AT(name.constData());
#else
    Q_UNUSED(label)
#endif
}

static QString goalName(Goal goal)
{
    switch (goal) {
    case Goal::RatioAtMost:
        return QStringLiteral("ratio-at-most");
    case Goal::SpeedupAtLeast:
        return QStringLiteral("speedup-at-least");
    case Goal::ValueAtMost:
        return QStringLiteral("value-at-most");
    case Goal::Report:
        break;
    }
    return QStringLiteral("report");
}

void emitRow(const Row& row)
{
    QJsonObject o;
    o.insert(QStringLiteral("benchmark"), row.benchmark);
    o.insert(QStringLiteral("value"), row.value);
    o.insert(QStringLiteral("unit"), row.unit);
    o.insert(QStringLiteral("baseline"), row.baseline);
    o.insert(QStringLiteral("baselineValue"), row.baselineValue);
    o.insert(QStringLiteral("goal"), goalName(row.goal));
    o.insert(QStringLiteral("limit"), row.limit);
    o.insert(QStringLiteral("goalText"), row.goalText);
    o.insert(QStringLiteral("runs"), row.runs);
    if (!row.instructions.isEmpty())
        o.insert(QStringLiteral("instructions"), row.instructions);
    if (!row.baselineInstructions.isEmpty())
        o.insert(QStringLiteral("baselineInstructions"), row.baselineInstructions);
    if (!row.note.isEmpty())
        o.insert(QStringLiteral("note"), row.note);
    const QByteArray line = "ZVBENCH " + QJsonDocument(o).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fflush(stdout);
}

void keepHeapWarm()
{
    mallopt(M_MMAP_THRESHOLD, 32 * 1024 * 1024);
    mallopt(M_TRIM_THRESHOLD, 1024 * 1024 * 1024);
}

void progress(const QString& text)
{
    const QByteArray line = "  " + text.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
    std::fflush(stderr);
}

} // namespace ZVBench
