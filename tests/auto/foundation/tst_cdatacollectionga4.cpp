#include <ZVFoundation/CDataCollectionGA4>

#include "cdatacollectionga4_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTextStream>
#include <QtTest/QtTest>

#include <cerrno>
#include <thread>
#include <vector>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace Spool = ZVFoundationPrivate::AnalyticsSpool;

namespace {

const char ChildVariable[] = "ZVTEST_SPOOL_CHILD";
const QString SpoolFileName = QStringLiteral("analytics-spool.jsonl");

QByteArray escapeUtf16(const QString& s)
{
    const auto* text = reinterpret_cast<const std::uint16_t*>(s.constData());
    const std::size_t size = Spool::escapeJsonUtf16(text, std::size_t(s.size()), nullptr);
    QByteArray out(int(size), '\0');
    const std::size_t written = Spool::escapeJsonUtf16(text, std::size_t(s.size()), out.data());
    return written == size ? out : QByteArray("size mismatch");
}

QByteArray escapeUtf8(const QByteArray& s)
{
    const std::size_t size = Spool::escapeJsonUtf8(s.constData(), std::size_t(s.size()), nullptr);
    QByteArray out(int(size), '\0');
    const std::size_t written = Spool::escapeJsonUtf8(s.constData(), std::size_t(s.size()), out.data());
    return written == size ? out : QByteArray("size mismatch");
}

QByteArray timestamp(qint64 seconds, int milliseconds)
{
    char out[Spool::TimestampSize + 1];
    std::fill(out, out + sizeof out, '#');
    // Unchanged '#' show what was not written.
    Spool::formatUtcTimestamp(seconds, milliseconds, out);
    return QByteArray(out, int(sizeof out));
}

// Spool process for unusableDataFolder(): the spool is set up at start-up, where the
// test process cannot be brought back.
int runChild(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("zvcore-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("spool-child"));
    CDataCollectionGA4* analytics = CDataCollectionGA4::GetInstance();
    analytics->Send({QStringLiteral("from"), QStringLiteral("child")});
    QTextStream(stdout) << analytics->SpoolPath();
    return 0;
}

} // namespace

class tst_CDataCollectionGA4 : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void spoolPath();
    void singleSend();
    void sendEscaping_data();
    void sendEscaping();
    void twoSendsInOrder();
    void longEvent();
    void concurrentSends();
    void fileMode();

    void spoolIsFolder();
    void readOnlyFolder();
    void appendToSpool();
    void unusableDataFolder();

    void escapeJsonUtf16_data();
    void escapeJsonUtf16();
    void escapeJsonUtf8_data();
    void escapeJsonUtf8();
    void formatUtcTimestamp_data();
    void formatUtcTimestamp();
    void formatUtcTimestampMatchesCalendar();

private:
    QList<QByteArray> spoolLines() const;

    QString m_folder;
    QString m_spool;
};

void tst_CDataCollectionGA4::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setOrganizationName(QStringLiteral("zvcore-tests"));
    QCoreApplication::setApplicationName(
        QStringLiteral("tst_cdatacollectionga4-%1").arg(QCoreApplication::applicationPid()));
    m_folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QVERIFY(!m_folder.isEmpty());
    QVERIFY(!QFileInfo::exists(m_folder));

    m_spool = CDataCollectionGA4::GetInstance()->SpoolPath();
}

void tst_CDataCollectionGA4::init()
{
    QFile::remove(m_spool);
    QVERIFY(!QFileInfo::exists(m_spool));
}

void tst_CDataCollectionGA4::cleanupTestCase()
{
    if (m_folder.isEmpty())
        return;
    QDir(m_folder).removeRecursively();
    // The organisation's folder too, unless something else lives there.
    QDir().rmdir(QFileInfo(m_folder).path());
}

QList<QByteArray> tst_CDataCollectionGA4::spoolLines() const
{
    QFile file(m_spool);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> lines = file.readAll().split('\n');
    // Every line ends in "\n", so the last piece is empty when the file is whole.
    if (lines.isEmpty() || !lines.last().isEmpty())
        return {QByteArray("unterminated line")};
    lines.removeLast();
    return lines;
}

void tst_CDataCollectionGA4::spoolPath()
{
    QCOMPARE(m_spool, m_folder + QLatin1Char('/') + SpoolFileName);
    QVERIFY(QFileInfo(m_folder).isDir());
    QVERIFY(CDataCollectionGA4::GetInstance() == CDataCollectionGA4::GetInstance());
    QCOMPARE(CDataCollectionGA4::GetInstance()->SpoolPath(), m_spool);
}

void tst_CDataCollectionGA4::singleSend()
{
    const QDateTime before = QDateTime::currentDateTimeUtc();
    CDataCollectionGA4::GetInstance()->Send({QStringLiteral("a"), QStringLiteral("b")});
    const QDateTime after = QDateTime::currentDateTimeUtc();

    const QList<QByteArray> lines = spoolLines();
    QCOMPARE(lines.size(), 1);
    const QByteArray line = lines.first();

    const QRegularExpression layout(QStringLiteral(
        "^\\{\"time\":\"(\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z)\",\"event\":\\[\"a\",\"b\"\\]\\}$"));
    const QRegularExpressionMatch match = layout.match(QString::fromUtf8(line));
    QVERIFY2(match.hasMatch(), line.constData());

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    const QJsonObject object = document.object();
    QCOMPARE(object.keys(), QStringList({QStringLiteral("event"), QStringLiteral("time")}));
    QCOMPARE(object.value(QLatin1String("event")).toArray(),
             QJsonArray({QStringLiteral("a"), QStringLiteral("b")}));

    const QString time = object.value(QLatin1String("time")).toString();
    QCOMPARE(time, match.captured(1));
    QVERIFY(time.endsWith(QLatin1Char('Z')));
    const QDateTime stamp = QDateTime::fromString(time, Qt::ISODateWithMs);
    QVERIFY(stamp.isValid());
    QCOMPARE(stamp.offsetFromUtc(), 0);
    // The system clock and Qt's may round differently; allow a little slack.
    QVERIFY2(stamp.msecsTo(before) <= 2000 && after.msecsTo(stamp) <= 2000, qPrintable(time));
}

void tst_CDataCollectionGA4::sendEscaping_data()
{
    QTest::addColumn<QStringList>("strings");
    QTest::addColumn<QByteArray>("event");
    QTest::addColumn<QStringList>("parsed");

    const auto row = [](const char* name, const QStringList& strings, const QByteArray& event) {
        QTest::newRow(name) << strings << event << strings;
    };
    row("no strings", {}, "[]");
    row("empty string", {QString()}, "[\"\"]");
    row("order kept", {QStringLiteral("3"), QStringLiteral("1"), QStringLiteral("2")}, "[\"3\",\"1\",\"2\"]");
    row("quotes", {QStringLiteral("say \"hi\"")}, "[\"say \\\"hi\\\"\"]");
    row("backslashes", {QStringLiteral("C:\\temp\\")}, "[\"C:\\\\temp\\\\\"]");
    row("newline", {QStringLiteral("two\nlines")}, "[\"two\\u000alines\"]");
    row("tab and return", {QStringLiteral("a\tb\r")}, "[\"a\\u0009b\\u000d\"]");
    row("control characters", {QString(QChar(1)) + QChar(0x1f) + QChar(0x7f)}, "[\"\\u0001\\u001f\\u007f\"]");
    row("nul", {QString(QChar(0))}, "[\"\\u0000\"]");
    row("slash", {QStringLiteral("a/b")}, "[\"a/b\"]");
    row("latin", {QString::fromUtf8("caf\xc3\xa9 \xe2\x82\xac")}, "[\"caf\xc3\xa9 \xe2\x82\xac\"]");
    row("cjk", {QString::fromUtf8("\xe4\xb8\xad\xe6\x96\x87")}, "[\"\xe4\xb8\xad\xe6\x96\x87\"]");
    row("emoji", {QString::fromUtf8("\xf0\x9f\x98\x80")}, "[\"\xf0\x9f\x98\x80\"]");
    row("json in a string", {QStringLiteral("{\"k\":[1,2]}"), QStringLiteral("]}")},
        "[\"{\\\"k\\\":[1,2]}\",\"]}\"]");
    QTest::newRow("lone surrogate")
        << QStringList{QString(QChar(0xd83d)) + QLatin1Char('x')} << QByteArray("[\"\xef\xbf\xbdx\"]")
        << QStringList{QString(QChar(0xfffd)) + QLatin1Char('x')};
}

void tst_CDataCollectionGA4::sendEscaping()
{
    QFETCH(QStringList, strings);
    QFETCH(QByteArray, event);
    QFETCH(QStringList, parsed);

    CDataCollectionGA4::GetInstance()->Send(strings);
    const QList<QByteArray> lines = spoolLines();
    QCOMPARE(lines.size(), 1);
    const QByteArray line = lines.first();
    QVERIFY(line.startsWith("{\"time\":\""));
    QCOMPARE(line.mid(9 + 24), "\",\"event\":" + event + '}');

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(document.object().value(QLatin1String("event")).toArray(), QJsonArray::fromStringList(parsed));
}

void tst_CDataCollectionGA4::twoSendsInOrder()
{
    CDataCollectionGA4* analytics = CDataCollectionGA4::GetInstance();
    analytics->Send({QStringLiteral("first")});
    analytics->Send({QStringLiteral("second"), QStringLiteral("x")});

    const QList<QByteArray> lines = spoolLines();
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).endsWith("\"event\":[\"first\"]}"));
    QVERIFY(lines.at(1).endsWith("\"event\":[\"second\",\"x\"]}"));
    const QString first = QJsonDocument::fromJson(lines.at(0)).object().value(QLatin1String("time")).toString();
    const QString second = QJsonDocument::fromJson(lines.at(1)).object().value(QLatin1String("time")).toString();
    QVERIFY(!first.isEmpty());
    QVERIFY(first <= second);
}

void tst_CDataCollectionGA4::longEvent()
{
    // Far longer than a line usually is.
    const QStringList strings = {QString(20000, QLatin1Char('x')), QString(5000, QChar(0x4e2d)),
                                 QString(3000, QLatin1Char('\n'))};
    CDataCollectionGA4::GetInstance()->Send(strings);
    const QList<QByteArray> lines = spoolLines();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().size(), 9 + 24 + 11 + (20002 + 1 + 15002 + 1 + 18002) + 2);
    const QJsonDocument document = QJsonDocument::fromJson(lines.first());
    QCOMPARE(document.object().value(QLatin1String("event")).toArray(), QJsonArray::fromStringList(strings));
}

void tst_CDataCollectionGA4::concurrentSends()
{
    constexpr int Threads = 8;
    constexpr int PerThread = 200;
    std::vector<std::thread> threads;
    for (int t = 0; t < Threads; ++t) {
        threads.emplace_back([t] {
            // Lines of different lengths make a torn write visible.
            const QString padding(t * 37, QLatin1Char('p'));
            for (int i = 0; i < PerThread; ++i)
                CDataCollectionGA4::GetInstance()->Send(
                    {QStringLiteral("thread"), QString::number(t), QString::number(i), padding});
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    const QList<QByteArray> lines = spoolLines();
    QCOMPARE(lines.size(), Threads * PerThread);
    QVector<int> next(Threads, 0);
    for (const QByteArray& line : lines) {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(line, &error);
        QVERIFY2(error.error == QJsonParseError::NoError, line.constData());
        const QJsonArray event = document.object().value(QLatin1String("event")).toArray();
        QCOMPARE(event.size(), 4);
        QCOMPARE(event.at(0).toString(), QStringLiteral("thread"));
        const int t = event.at(1).toString().toInt();
        QVERIFY(t >= 0 && t < Threads);
        QCOMPARE(event.at(3).toString(), QString(t * 37, QLatin1Char('p')));
        // Each thread's events arrive in the order it sent them.
        QCOMPARE(event.at(2).toString().toInt(), next[t]);
        ++next[t];
    }
    QCOMPARE(next, QVector<int>(Threads, PerThread));
}

void tst_CDataCollectionGA4::fileMode()
{
#ifdef Q_OS_WIN
    QSKIP("Windows files have access lists rather than modes");
#else
    CDataCollectionGA4::GetInstance()->Send({QStringLiteral("mode")});
    struct stat info = {};
    QCOMPARE(::stat(QFile::encodeName(m_spool).constData(), &info), 0);
    QCOMPARE(int(info.st_mode & 07777), 0600);
#endif
}

void tst_CDataCollectionGA4::spoolIsFolder()
{
    // A folder where the spool should be cannot be opened for writing, not even by root.
    QVERIFY(QDir().mkdir(m_spool));
    CDataCollectionGA4::GetInstance()->Send({QStringLiteral("lost")});
    QVERIFY(QFileInfo(m_spool).isDir());
    QVERIFY(QDir(m_spool).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden).isEmpty());
    QVERIFY(QDir().rmdir(m_spool));

    CDataCollectionGA4::GetInstance()->Send({QStringLiteral("kept")});
    const QList<QByteArray> lines = spoolLines();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first().endsWith("[\"kept\"]}"));
}

void tst_CDataCollectionGA4::readOnlyFolder()
{
#ifdef Q_OS_WIN
    QSKIP("Windows folders have access lists rather than modes");
#else
    if (::geteuid() == 0)
        QSKIP("root writes into read-only folders");
    const QByteArray folder = QFile::encodeName(m_folder);
    QCOMPARE(::chmod(folder.constData(), 0500), 0);
    CDataCollectionGA4::GetInstance()->Send({QStringLiteral("lost")});
    const bool created = QFileInfo::exists(m_spool);
    QCOMPARE(::chmod(folder.constData(), 0700), 0);
    QVERIFY(!created);
#endif
}

void tst_CDataCollectionGA4::appendToSpool()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString regular = dir.filePath(QStringLiteral("regular"));
    {
        QFile file(regular);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("before\n"), qint64(7));
    }

    const QByteArray path = Spool::nativeSpoolPath(regular);
    errno = 1234;
    QVERIFY(Spool::appendToSpool(path.constData(), "line\n", 5));
    QCOMPARE(errno, 1234);
    QFile file(regular);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("before\nline\n"));
    file.close();

    // A path below a regular file fails for every user.
    const QByteArray below = Spool::nativeSpoolPath(regular + QLatin1Char('/') + SpoolFileName);
    errno = 1234;
    QVERIFY(!Spool::appendToSpool(below.constData(), "line\n", 5));
    QCOMPARE(errno, 1234);
    QVERIFY(QFileInfo(regular).isFile());
    QCOMPARE(QFileInfo(regular).size(), qint64(12));

    QVERIFY(Spool::nativeSpoolPath(QString()).isEmpty());
}

void tst_CDataCollectionGA4::unusableDataFolder()
{
#ifdef Q_OS_WIN
    QSKIP("the data folder of Windows cannot be moved through the environment");
#else
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString regular = dir.filePath(QStringLiteral("regular"));
    {
        QFile file(regular);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("content"), qint64(7));
    }

    // The data folder lies below a regular file, so it can be neither made nor written.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(ChildVariable), QStringLiteral("1"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), regular + QStringLiteral("/data"));
    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), QStringList());
    QVERIFY(child.waitForFinished(60000));
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(QString::fromLocal8Bit(child.readAllStandardOutput()),
             regular + QStringLiteral("/data/zvcore-tests/spool-child/") + SpoolFileName);

    QVERIFY(QFileInfo(regular).isFile());
    QFile file(regular);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("content"));
#endif
}

void tst_CDataCollectionGA4::escapeJsonUtf16_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("empty") << QString() << QByteArray();
    QTest::newRow("plain") << QStringLiteral("plain text 123") << QByteArray("plain text 123");
    QTest::newRow("quote") << QStringLiteral("\"") << QByteArray("\\\"");
    QTest::newRow("backslash") << QStringLiteral("\\") << QByteArray("\\\\");
    QTest::newRow("newline") << QStringLiteral("\n") << QByteArray("\\u000a");
    QTest::newRow("carriage return") << QStringLiteral("\r") << QByteArray("\\u000d");
    QTest::newRow("tab") << QStringLiteral("\t") << QByteArray("\\u0009");
    QTest::newRow("nul") << QString(QChar(0)) << QByteArray("\\u0000");
    QTest::newRow("unit separator") << QString(QChar(0x1f)) << QByteArray("\\u001f");
    QTest::newRow("delete") << QString(QChar(0x7f)) << QByteArray("\\u007f");
    QTest::newRow("space and tilde") << QStringLiteral(" ~") << QByteArray(" ~");
    QTest::newRow("two bytes") << QString(QChar(0xe9)) << QByteArray("\xc3\xa9");
    QTest::newRow("last of two bytes") << QString(QChar(0x7ff)) << QByteArray("\xdf\xbf");
    QTest::newRow("three bytes") << QString(QChar(0x20ac)) << QByteArray("\xe2\x82\xac");
    QTest::newRow("line separator") << QString(QChar(0x2028)) << QByteArray("\xe2\x80\xa8");
    QTest::newRow("last of three bytes") << QString(QChar(0xffff)) << QByteArray("\xef\xbf\xbf");
    QTest::newRow("emoji") << QString::fromUtf8("\xf0\x9f\x98\x80") << QByteArray("\xf0\x9f\x98\x80");
    QTest::newRow("last code point") << (QString(QChar(0xdbff)) + QChar(0xdfff)) << QByteArray("\xf4\x8f\xbf\xbf");
    QTest::newRow("lone high") << QString(QChar(0xd800)) << QByteArray("\xef\xbf\xbd");
    QTest::newRow("lone low") << QString(QChar(0xdc00)) << QByteArray("\xef\xbf\xbd");
    QTest::newRow("high before text") << (QString(QChar(0xd83d)) + QLatin1Char('a')) << QByteArray("\xef\xbf\xbd" "a");
    QTest::newRow("reversed pair") << (QString(QChar(0xde00)) + QChar(0xd83d)) << QByteArray("\xef\xbf\xbd\xef\xbf\xbd");
    QTest::newRow("mixed") << QString::fromUtf8("\"\xc3\xa9\\\n\xf0\x9f\x98\x80")
                           << QByteArray("\\\"\xc3\xa9\\\\\\u000a\xf0\x9f\x98\x80");
}

void tst_CDataCollectionGA4::escapeJsonUtf16()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, expected);
    QCOMPARE(escapeUtf16(text), expected);
}

void tst_CDataCollectionGA4::escapeJsonUtf8_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("plain") << QByteArray("plain") << QByteArray("plain");
    QTest::newRow("quote and backslash") << QByteArray("\"\\") << QByteArray("\\\"\\\\");
    QTest::newRow("controls") << QByteArray("\n\x01\x7f", 3) << QByteArray("\\u000a\\u0001\\u007f");
    QTest::newRow("nul") << QByteArray("\0", 1) << QByteArray("\\u0000");
    QTest::newRow("valid multibyte") << QByteArray("\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\xf4\x8f\xbf\xbf")
                                     << QByteArray("\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\xf4\x8f\xbf\xbf");
    // Every byte that does not begin a well-formed sequence becomes one U+FFFD.
    QTest::newRow("stray continuation") << QByteArray("a\x80z") << QByteArray("a\xef\xbf\xbdz");
    QTest::newRow("overlong slash") << QByteArray("\xc0\xaf") << QByteArray("\xef\xbf\xbd\xef\xbf\xbd");
    QTest::newRow("overlong three bytes") << QByteArray("\xe0\x80\xaf")
                                          << QByteArray("\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd");
    QTest::newRow("surrogate") << QByteArray("\xed\xa0\x80") << QByteArray("\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd");
    QTest::newRow("beyond unicode") << QByteArray("\xf4\x90\x80\x80")
                                    << QByteArray("\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd");
    QTest::newRow("truncated at end") << QByteArray("x\xe2\x82") << QByteArray("x\xef\xbf\xbd\xef\xbf\xbd");
    QTest::newRow("interrupted") << QByteArray("\xe2\x82z") << QByteArray("\xef\xbf\xbd\xef\xbf\xbdz");
    QTest::newRow("invalid lead") << QByteArray("\xff\xfe") << QByteArray("\xef\xbf\xbd\xef\xbf\xbd");
}

void tst_CDataCollectionGA4::escapeJsonUtf8()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    const QByteArray escaped = escapeUtf8(text);
    QCOMPARE(escaped, expected);
    // Always a valid JSON string.
    QJsonParseError error;
    QJsonDocument::fromJson("[\"" + escaped + "\"]", &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
}

void tst_CDataCollectionGA4::formatUtcTimestamp_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("epoch") << Q_INT64_C(0) << 0 << QByteArray("1970-01-01T00:00:00.000Z#");
    QTest::newRow("milliseconds") << Q_INT64_C(0) << 7 << QByteArray("1970-01-01T00:00:00.007Z#");
    QTest::newRow("last millisecond") << Q_INT64_C(86399) << 999 << QByteArray("1970-01-01T23:59:59.999Z#");
    QTest::newRow("2000-02-29") << Q_INT64_C(951782400) << 0 << QByteArray("2000-02-29T00:00:00.000Z#");
    QTest::newRow("2000-03-01") << Q_INT64_C(951868800) << 0 << QByteArray("2000-03-01T00:00:00.000Z#");
    QTest::newRow("2024-02-29") << Q_INT64_C(1709164800) << 0 << QByteArray("2024-02-29T00:00:00.000Z#");
    QTest::newRow("2024-12-31") << Q_INT64_C(1735689599) << 500 << QByteArray("2024-12-31T23:59:59.500Z#");
    QTest::newRow("2026-11-21") << Q_INT64_C(1795256430) << 123 << QByteArray("2026-11-21T10:20:30.123Z#");
    QTest::newRow("2100-02-28") << Q_INT64_C(4107542399) << 0 << QByteArray("2100-02-28T23:59:59.000Z#");
    QTest::newRow("2100-03-01") << Q_INT64_C(4107542400) << 0 << QByteArray("2100-03-01T00:00:00.000Z#");
    QTest::newRow("9999-12-31") << Q_INT64_C(253402300799) << 0 << QByteArray("9999-12-31T23:59:59.000Z#");
    QTest::newRow("before the epoch") << Q_INT64_C(-1) << 0 << QByteArray("1969-12-31T23:59:59.000Z#");
    QTest::newRow("0000-01-01") << Q_INT64_C(-62167219200) << 0 << QByteArray("0000-01-01T00:00:00.000Z#");

    const QByteArray untouched(25, '#');
    QTest::newRow("year 10000") << Q_INT64_C(253402300800) << 0 << untouched;
    QTest::newRow("before year 0") << Q_INT64_C(-62167219201) << 0 << untouched;
    QTest::newRow("negative milliseconds") << Q_INT64_C(0) << -1 << untouched;
    QTest::newRow("1000 milliseconds") << Q_INT64_C(0) << 1000 << untouched;
    QTest::newRow("largest") << std::numeric_limits<qint64>::max() << 0 << untouched;
    QTest::newRow("smallest") << std::numeric_limits<qint64>::min() << 0 << untouched;
}

void tst_CDataCollectionGA4::formatUtcTimestamp()
{
    QFETCH(qint64, seconds);
    QFETCH(int, milliseconds);
    QFETCH(QByteArray, expected);
    // The byte after the 24 characters shows that nothing beyond them is written.
    QCOMPARE(timestamp(seconds, milliseconds), expected);
}

void tst_CDataCollectionGA4::formatUtcTimestampMatchesCalendar()
{
    // Qt's calendar has no year 0, so the comparison starts at 0001-01-01.
    constexpr qint64 First = Q_INT64_C(-62135596800);
    constexpr qint64 Last = Q_INT64_C(253402300799);
    const quint32 seed = 4107542399u;
    qInfo("random seed: %u", seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < 20000; ++i) {
        const qint64 seconds = i < 10000 ? First + qint64(random.bounded(double(Last - First + 1)))
                                         : qint64(random.bounded(4102444800.0)); // 1970..2099
        const int milliseconds = int(random.bounded(1000));
        const QDateTime reference = QDateTime::fromMSecsSinceEpoch(seconds * 1000 + milliseconds, Qt::UTC);
        const QByteArray expected = reference.toString(Qt::ISODateWithMs).toLatin1() + '#';
        QCOMPARE(timestamp(seconds, milliseconds), expected);
    }
}

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsSet(ChildVariable))
        return runChild(argc, argv);

    QCoreApplication app(argc, argv);
    tst_CDataCollectionGA4 test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_cdatacollectionga4.moc"
