// The little that every benchmark program shares: timing with medians, instruction
// counts under callgrind, and result rows for the report.
//
// A program prints its results on standard output, one row per line:
//     ZVBENCH {"benchmark": ..., "value": ..., "baseline": ..., ...}
// and what it is doing on standard error. Run under valgrind's callgrind it times
// nothing: it runs each measured piece once between a reset and a dump of the counters,
// labelled, and the report reads the counts from the dumps.
#ifndef ZVBENCH_H
#define ZVBENCH_H

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <functional>
#include <utility>
#include <vector>

namespace ZVBench {

// CLOCK_MONOTONIC in nanoseconds; comparable between processes of the machine.
qint64 monotonicNs();

// Whether callgrind is counting this process: measure instructions, not time.
bool underCallgrind();

struct Samples
{
    std::vector<double> ms;
    double median() const;
    double minimum() const;
};

// \a fn timed \a runs times after \a warmup untimed calls; \a between, if given, runs
// untimed after every call.
Samples time(const std::function<void()>& fn, int runs, int warmup = 1,
             const std::function<void()>& between = std::function<void()>());

// \a a and \a b timed in turns (a, b, a, b, ...), so that whatever else the machine does
// falls on both alike.
std::pair<Samples, Samples> timePair(const std::function<void()>& a, const std::function<void()>& b, int runs,
                                     int warmup = 1);

// How many runs fit into \a budgetMs when one takes \a singleMs, within [minRuns, maxRuns];
// always odd, so that the median is a measured value.
int runsFor(double singleMs, double budgetMs, int minRuns, int maxRuns);

// Under callgrind: \a fn \a warmup times (each followed by \a between, if given), then
// once between a reset of the counters and a dump labelled \a label. Otherwise nothing.
void countInstructions(const QString& label, const std::function<void()>& fn, int warmup = 1,
                       const std::function<void()>& between = std::function<void()>());
// Under callgrind: a dump labelled \a label of everything since the process started (or
// the last dump). Otherwise nothing.
void dumpInstructions(const QString& label);

// What a row promises.
enum class Goal {
    Report,      // no goal: the numbers are reported
    RatioAtMost, // value / baseline <= limit
    SpeedupAtLeast, // baseline / value >= limit
    ValueAtMost, // value <= limit (in the row's unit)
};

struct Row
{
    QString benchmark;        // what is measured
    double value = 0;         // its median
    QString unit = QStringLiteral("ms");
    QString baseline;         // what it is compared with; empty for none
    double baselineValue = 0; // its median, measured in the same run
    Goal goal = Goal::Report;
    double limit = 0;
    QString goalText;         // the goal as the table shows it
    int runs = 0;
    QString instructions;         // callgrind label of the measured piece, if any
    QString baselineInstructions; // and of the baseline
    QString note;
};

// Prints the row on standard output.
void emitRow(const Row& row);

// Makes the C library keep freed memory instead of handing it back to the system, so
// that a measured piece and its baseline both find their large buffers already mapped,
// whichever ran before. Blocks above 32 MB (glibc's largest heap threshold) are still
// mapped afresh each time, for both alike.
void keepHeapWarm();

// One line on standard error: what is being measured now.
void progress(const QString& text);

} // namespace ZVBench

#endif // ZVBENCH_H
