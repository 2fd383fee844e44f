// Prints the one table of a benchmark run: the rows the programs wrote, and the
// instruction counts callgrind dumped for the pieces they labelled.
//
//   zvbench_report <results folder> [--commit <text>] [--load <text>]
//
// The folder holds <program>.rows (the programs' standard output) and callgrind/ (the
// counting pass's dumps).
#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QTextStream>
#include <QtCore/QThread>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <unistd.h>

namespace {

QString option(const QStringList& arguments, const QString& name)
{
    const int at = arguments.indexOf(name);
    return at >= 0 && at + 1 < arguments.size() ? arguments.at(at + 1) : QString();
}

// label -> instruction counts, from every dump in \a folder.
QMap<QString, std::vector<qint64>> readCallgrind(const QString& folder)
{
    QMap<QString, std::vector<qint64>> counts;
    const QDir dir(folder);
    for (const QString& name : dir.entryList(QDir::Files)) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        QString label;
        qint64 summary = -1;
        qint64 totals = -1;
        // The header and the totals are enough; the per-function lines in between are
        // skipped without being kept.
        while (!file.atEnd()) {
            const QByteArray line = file.readLine();
            if (line.startsWith("desc: Trigger: Client Request: zvbench:"))
                label = QString::fromUtf8(line.mid(int(sizeof "desc: Trigger: Client Request: zvbench:" - 1)).trimmed());
            else if (line.startsWith("summary:"))
                summary = line.mid(8).trimmed().toLongLong();
            else if (line.startsWith("totals:"))
                totals = line.mid(7).trimmed().toLongLong();
        }
        const qint64 count = summary >= 0 ? summary : totals;
        if (!label.isEmpty() && count >= 0)
            counts[label].push_back(count);
    }
    return counts;
}

qint64 medianOf(std::vector<qint64> values)
{
    if (values.empty())
        return -1;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

QString number(double value, const QString& unit)
{
    if (unit == QLatin1String("ms")) {
        const int decimals = value < 1 ? 3 : value < 10 ? 2 : 1;
        return QString::number(value, 'f', decimals) + QStringLiteral(" ms");
    }
    if (unit == QLatin1String("KB"))
        return QString::number(value, 'f', 0) + QStringLiteral(" KB");
    return QString::number(value, 'f', 1) + QLatin1Char(' ') + unit;
}

QString instructions(qint64 count)
{
    if (count < 0)
        return QStringLiteral("—");
    if (count >= 1000000000)
        return QString::number(double(count) / 1e9, 'f', 2) + QStringLiteral(" G");
    if (count >= 1000000)
        return QString::number(double(count) / 1e6, 'f', 2) + QStringLiteral(" M");
    return QString::number(double(count) / 1e3, 'f', 1) + QStringLiteral(" k");
}

QString ratioText(double ratio)
{
    if (ratio <= 0)
        return QStringLiteral("—");
    if (ratio < 0.1)
        return QStringLiteral("1/%1").arg(QString::number(1.0 / ratio, 'f', 0));
    return QString::number(ratio, 'f', 2) + QStringLiteral("×");
}

QString cpuModel()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.startsWith("model name"))
                return QString::fromUtf8(line.mid(line.indexOf(':') + 1).trimmed());
        }
    }
    return QStringLiteral("unknown");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: zvbench_report <results folder> [--commit <text>] [--load <text>]\n");
        return 2;
    }
    const QDir results(arguments.at(1));
    const QMap<QString, std::vector<qint64>> counts = readCallgrind(results.filePath(QStringLiteral("callgrind")));

    QList<QStringList> table;
    table.append({QStringLiteral("benchmark"), QStringLiteral("median"), QStringLiteral("baseline (same run)"),
                  QStringLiteral("baseline median"), QStringLiteral("ratio"), QStringLiteral("goal"),
                  QStringLiteral("met"), QStringLiteral("instructions"), QStringLiteral("baseline instr."),
                  QStringLiteral("instr. ratio"), QStringLiteral("runs"), QStringLiteral("note")});
    for (const QString& name : results.entryList({QStringLiteral("*.rows")}, QDir::Files, QDir::Name)) {
        QFile file(results.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (!line.startsWith("ZVBENCH "))
                continue;
            const QJsonObject o = QJsonDocument::fromJson(line.mid(8)).object();
            const double value = o.value(QStringLiteral("value")).toDouble();
            const double base = o.value(QStringLiteral("baselineValue")).toDouble();
            const QString unit = o.value(QStringLiteral("unit")).toString();
            const QString goal = o.value(QStringLiteral("goal")).toString();
            const double limit = o.value(QStringLiteral("limit")).toDouble();
            const bool hasBaseline = !o.value(QStringLiteral("baseline")).toString().isEmpty() && base > 0;
            const double ratio = hasBaseline ? value / base : 0;

            QString ratioCell = ratioText(ratio);
            if (goal == QLatin1String("speedup-at-least") && ratio > 0)
                ratioCell += QStringLiteral(" (%1× faster)").arg(QString::number(1.0 / ratio, 'f', 0));
            if (unit == QLatin1String("MB") && hasBaseline)
                ratioCell += QStringLiteral(" (%1%2 MB)")
                                 .arg(value >= base ? QStringLiteral("+") : QString())
                                 .arg(value - base, 0, 'f', 1);
            QString met = QStringLiteral("—");
            if (goal == QLatin1String("ratio-at-most") && hasBaseline)
                met = ratio <= limit ? QStringLiteral("yes") : QStringLiteral("NO");
            else if (goal == QLatin1String("speedup-at-least") && hasBaseline)
                met = 1.0 / ratio >= limit ? QStringLiteral("yes") : QStringLiteral("NO");
            else if (goal == QLatin1String("value-at-most"))
                met = value <= limit ? QStringLiteral("yes") : QStringLiteral("NO");

            const qint64 ir = medianOf(counts.value(o.value(QStringLiteral("instructions")).toString()));
            const qint64 irBase = medianOf(counts.value(o.value(QStringLiteral("baselineInstructions")).toString()));
            table.append({o.value(QStringLiteral("benchmark")).toString(), number(value, unit),
                          hasBaseline ? o.value(QStringLiteral("baseline")).toString() : QStringLiteral("—"),
                          hasBaseline ? number(base, unit) : QStringLiteral("—"), ratioCell,
                          o.value(QStringLiteral("goalText")).toString().isEmpty()
                              ? QStringLiteral("—")
                              : o.value(QStringLiteral("goalText")).toString(),
                          met, instructions(ir), instructions(irBase),
                          ir > 0 && irBase > 0 ? ratioText(double(ir) / double(irBase)) : QStringLiteral("—"),
                          QString::number(o.value(QStringLiteral("runs")).toInt()),
                          o.value(QStringLiteral("note")).toString()});
        }
    }

    QTextStream out(stdout);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    out.setCodec("UTF-8"); // Qt 6 streams write UTF-8 by default
#endif
    const QString commit = option(arguments, QStringLiteral("--commit"));
    const QString load = option(arguments, QStringLiteral("--load"));
    out << "libZVCore benchmarks, " << QDateTime::currentDateTime().toString(Qt::ISODate) << '\n';
    out << "cores (nproc): " << ::sysconf(_SC_NPROCESSORS_ONLN) << "; CPU: " << cpuModel() << '\n';
    out << "Qt: " << qVersion() << " (built against " << QT_VERSION_STR << ")" << '\n';
    if (!commit.isEmpty())
        out << "commit: " << commit << '\n';
    if (!load.isEmpty())
        out << "load average (1, 5, 15 min) before and after: " << load << '\n';
    out << "median: the median of the runs; instructions: callgrind's count of one run, the same every time\n\n";

    std::vector<int> widths(size_t(table.first().size()), 0);
    for (const QStringList& row : table)
        for (int c = 0; c < row.size(); ++c)
            widths[size_t(c)] = std::max(widths[size_t(c)], int(row.at(c).size()));
    const auto printRow = [&](const QStringList& row) {
        out << '|';
        for (int c = 0; c < row.size(); ++c)
            out << ' ' << row.at(c).leftJustified(widths[size_t(c)]) << " |";
        out << '\n';
    };
    printRow(table.first());
    QStringList rule;
    for (int w : widths)
        rule << QString(w, QLatin1Char('-'));
    printRow(rule);
    for (int r = 1; r < table.size(); ++r)
        printRow(table.at(r));
    return table.size() > 1 ? 0 : 1;
}
