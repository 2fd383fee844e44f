// The files the frame writes survive a SIGKILL at any moment of a write: afterwards
// each holds either what it held before or what was being written, never a mix.
//
// A probe rewrites a file as fast as it can; after a random delay it is killed, and the
// file is checked against the contents that can be valid. Many rounds put the kill at
// many points of the write. A writer that rewrites in place is shown to be caught the
// same way, so a pass means something.
#include "cdatacollectionga4_p.h"
#include "killround.h"
#include "probe.h"

#include <QtCore/QJsonArray>
#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>

#include <atomic>
#include <thread>

#include <sys/stat.h>

namespace Spool = ZVFoundationPrivate::AnalyticsSpool;

namespace {

// Names of different lengths: a torn name is neither. The long one spans many pages.
const QString kShortName = QStringLiteral("English");
const int kLongNameSize = 256 * 1024;
const QString kLongName = QString(kLongNameSize, QLatin1Char('L'));
// The two names as the probe's loops take them.
const QString kNames = kShortName + QStringLiteral("|L*") + QString::number(kLongNameSize);

QByteArray readFile(const QString& path, bool* exists = nullptr)
{
    QFile f(path);
    const bool ok = f.open(QIODevice::ReadOnly);
    if (exists)
        *exists = ok;
    return ok ? f.readAll() : QByteArray();
}

// The spool as its readers take it: whole lines only. \a tail gets what follows the last
// line end: the start of a line whose writer was killed.
QList<QByteArray> spoolLines(const QByteArray& bytes, QByteArray* tail)
{
    QList<QByteArray> lines = bytes.split('\n');
    *tail = lines.takeLast(); // empty when the file ends with a line end
    return lines;
}

} // namespace

class tst_KilledWriters : public QObject
{
    Q_OBJECT

private slots:
    void savedLanguage();
    void inPlaceWriterIsCaught();
    void analyticsSpool();
    void spoolCutsPartialLine_data();
    void spoolCutsPartialLine();
    void spoolIsNotARegularFile_data();
    void spoolIsNotARegularFile();
};

void tst_KilledWriters::savedLanguage()
{
    ProbeFolder product;
    QVERIFY(product.isValid());
    // The saved choice starts as the first name, so the language manager's first
    // SetLanguage writes that one again.
    QVERIFY(product.write(QStringLiteral("language/language"), kShortName.toUtf8()));
    const QString saved = product.file(QStringLiteral("language/language"));
    const QSet<QByteArray> valid{kShortName.toUtf8(), kLongName.toUtf8()};

    QMap<QByteArray, int> seen;
    for (int round = 0; round < KillRound::Rounds; ++round) {
        const KillRound kill = KillRound::run(product, {QStringLiteral("langloop:") + kNames});
        QVERIFY2(kill.killed, qPrintable(kill.error));
        bool exists = false;
        const QByteArray content = readFile(saved, &exists);
        QVERIFY2(exists, "the saved-language file vanished");
        QVERIFY2(valid.contains(content),
                 qPrintable(QStringLiteral("round %1, killed after %2 ms: %3 bytes, neither name")
                                .arg(round).arg(kill.delayMs).arg(content.size())));
        ++seen[content.left(16)];
    }
    // Both names were written while the probe ran, so the kills did land between writes.
    QCOMPARE(seen.size(), 2);
    qInfo("old/new: %d/%d", seen.value(kShortName.toUtf8()), seen.value(kLongName.toUtf8().left(16)));
}

void tst_KilledWriters::inPlaceWriterIsCaught()
{
    // The same check on a writer that truncates the file and then writes it: it must
    // find a torn or empty file, or the check proves nothing.
    ProbeFolder product;
    QVERIFY(product.isValid());
    const QString saved = product.file(QStringLiteral("language/language"));
    QVERIFY(product.write(QStringLiteral("language/language"), kShortName.toUtf8()));
    const QSet<QByteArray> valid{kShortName.toUtf8(), kLongName.toUtf8()};
    int torn = 0;
    for (int round = 0; round < KillRound::Rounds && torn == 0; ++round) {
        const KillRound kill = KillRound::run(product, {QStringLiteral("naiveloop:") + kNames});
        QVERIFY2(kill.killed, qPrintable(kill.error));
        if (!valid.contains(readFile(saved)))
            ++torn;
    }
    QVERIFY2(torn > 0, "a writer that rewrites in place was never caught");
}

void tst_KilledWriters::analyticsSpool()
{
    ProbeFolder product;
    QVERIFY(product.isValid());
    QTemporaryDir data;
    QVERIFY(data.isValid());
    QProcessEnvironment env;
    env.insert(QStringLiteral("XDG_DATA_HOME"), data.path());
#ifdef Q_OS_WIN
    QVERIFY(!product.freshSharedSpool().isEmpty());
#endif

    // Each round appends events tagged with the round, numbered from 0; their lengths
    // vary by up to 7 x 700 bytes, so that lines often cross a page boundary, where the
    // kernel lets a kill stop a write.
    QString spool;
    int tornTails = 0;
    QVector<int> perRound;
    for (int round = 0; round < KillRound::Rounds; ++round) {
        const QString tag = QStringLiteral("r%1").arg(round);
        const KillRound kill = KillRound::run(product, {QStringLiteral("spoolloop:") + tag + QStringLiteral("|700")}, env);
        QVERIFY2(kill.killed, qPrintable(kill.error));
        if (spool.isEmpty())
            spool = kill.ready.value(QStringLiteral("spool")).toString();
        QVERIFY(!spool.isEmpty());

        QByteArray tail;
        const QList<QByteArray> lines = spoolLines(readFile(spool), &tail);
        if (!tail.isEmpty())
            ++tornTails;
        // Every whole line is one event, the rounds in order, each numbered from 0 on.
        int expectedRound = 0;
        int next = 0;
        perRound.fill(0, round + 1);
        for (const QByteArray& line : lines) {
            QJsonParseError error;
            const QJsonArray event = QJsonDocument::fromJson(line, &error).object().value(QStringLiteral("event")).toArray();
            QVERIFY2(error.error == QJsonParseError::NoError && event.size() == 4,
                     qPrintable(QStringLiteral("round %1: not an event: ").arg(round) + QString::fromUtf8(line.left(200))));
            QCOMPARE(event.at(0).toString(), QStringLiteral("kill"));
            const int lineRound = event.at(1).toString().mid(1).toInt();
            const int i = event.at(2).toString().toInt();
            if (lineRound != expectedRound) {
                QCOMPARE(lineRound, expectedRound + 1);
                expectedRound = lineRound;
                next = 0;
            }
            QCOMPARE(i, next);
            QCOMPARE(event.at(3).toString(), QString((i % 7) * 700, QLatin1Char('p')));
            ++next;
            ++perRound[lineRound];
        }
        // A round whose kill came before its first line was complete has no lines.
        QVERIFY(expectedRound <= round);
    }
    qInfo("rounds left %d partial last lines; events per round: first %d, last %d", tornTails, perRound.value(0),
          perRound.value(perRound.size() - 1));

    // The next event cuts a partial line off and starts on a line of its own.
    const ProbeRun last = product.run({QStringLiteral("spoolsend:after|the|kills")}, QDir::rootPath(), env);
    QCOMPARE(last.exitCode, 0);
    QByteArray tail;
    const QList<QByteArray> lines = spoolLines(readFile(spool), &tail);
    QVERIFY(tail.isEmpty());
    QVERIFY(!lines.isEmpty());
    for (const QByteArray& line : lines) {
        QJsonParseError error;
        QJsonDocument::fromJson(line, &error);
        QVERIFY2(error.error == QJsonParseError::NoError, line.left(200).constData());
    }
    QCOMPARE(QJsonDocument::fromJson(lines.last()).object().value(QStringLiteral("event")).toArray(),
             QJsonArray({QStringLiteral("after"), QStringLiteral("the"), QStringLiteral("kills")}));
}

void tst_KilledWriters::spoolCutsPartialLine_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray line = "{\"time\":\"2030-01-01T00:00:00.000Z\",\"event\":[\"x\"]}\n";
    QTest::newRow("empty") << QByteArray() << line;
    QTest::newRow("whole lines") << QByteArray("a\nb\n") << QByteArray("a\nb\n") + line;
    QTest::newRow("partial last line") << QByteArray("a\nb\n{\"time\":\"20") << QByteArray("a\nb\n") + line;
    QTest::newRow("only a partial line") << QByteArray("{\"time") << line;
    // Longer than the piece read at a time from the end.
    QTest::newRow("long partial line") << QByteArray("a\n") + QByteArray(10000, 'p') << QByteArray("a\n") + line;
    QTest::newRow("long partial line, nothing before") << QByteArray(10000, 'p') << line;
    QTest::newRow("line end at a piece's edge")
        << QByteArray(4095, 'a') + '\n' + QByteArray(4096, 'p') << QByteArray(4095, 'a') + '\n' + line;
}

void tst_KilledWriters::spoolCutsPartialLine()
{
    // What a writer killed in the middle of a line leaves, and the next append.
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("analytics-spool.jsonl"));
    if (!before.isEmpty()) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        QCOMPARE(f.write(before), qint64(before.size()));
    }
    const QByteArray line = "{\"time\":\"2030-01-01T00:00:00.000Z\",\"event\":[\"x\"]}\n";
    const QByteArray native = Spool::nativeSpoolPath(path);
    QVERIFY(Spool::appendToSpool(native.constData(), line.constData(), size_t(line.size())));
    QCOMPARE(readFile(path), after);
}

void tst_KilledWriters::spoolIsNotARegularFile_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("FIFO") << QStringLiteral("fifo");
    QTest::newRow("folder") << QStringLiteral("folder");
}

void tst_KilledWriters::spoolIsNotARegularFile()
{
    // Opening a FIFO for writing waits for a reader; the spool must not.
    QFETCH(QString, kind);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("analytics-spool.jsonl"));
    if (kind == QLatin1String("fifo"))
#ifdef Q_OS_WIN
        QSKIP("Windows has no FIFOs in the file system");
#else
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
#endif
    else
        QVERIFY(QDir().mkdir(path));
    const QByteArray native = Spool::nativeSpoolPath(path);
    std::atomic<int> result{-1};
    std::thread writer([&] { result = Spool::appendToSpool(native.constData(), "x\n", 2) ? 1 : 0; });
    QElapsedTimer timer;
    timer.start();
    while (result.load() < 0 && timer.elapsed() < 5000)
        QThread::msleep(10);
    if (result.load() < 0) {
        writer.detach(); // stuck in open(); the process ends it
        QFAIL("the append waited for a reader");
    }
    writer.join();
    QCOMPARE(result.load(), 0);
    QCOMPARE(QFileInfo(path).isFile(), false);
}

QTEST_GUILESS_MAIN(tst_KilledWriters)
#include "tst_killedwriters.moc"
