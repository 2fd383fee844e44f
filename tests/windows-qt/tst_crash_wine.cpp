// The crash filter inside a running Qt program of the Windows build, under Wine: a fault
// on the GUI thread (from a timer of its event loop), one on a QThread, abort(), and a
// stack overflow on a QThread. Each writes one crashcore.dmp, starts Feedback.exe once
// with the crash-mode arguments and runs the host's callback once. The dumps are copied to ZV_DUMP_DIR/<case>/ for the Linux side,
// whose lldb opens them (wine.crash.dumps).
#include "probe.h"

#include <QtTest/QtTest>

#include <windows.h>

namespace {

const QString kCrashMail = QStringLiteral("crash@example.com");

QStringList setUp(const ProbeFolder& product)
{
    return product.crashHandlerSetUp(kCrashMail);
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class tst_CrashWine : public QObject
{
    Q_OBJECT

private slots:
    void crashInARunningProgram_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("command");
        QTest::addColumn<quint32>("code");
        QTest::newRow("GUI thread, from the event loop")
            << "eventloop" << "crash:segv-eventloop" << quint32(EXCEPTION_ACCESS_VIOLATION);
        QTest::newRow("a QThread") << "qthread" << "crash:segv-qthread" << quint32(EXCEPTION_ACCESS_VIOLATION);
        // STATUS_FATAL_APP_EXIT: what abort() becomes.
        QTest::newRow("abort()") << "abort" << "crash:abort" << quint32(0x40000015);
        QTest::newRow("stack overflow on a QThread")
            << "overflow-qthread" << "torture:overflow-qthread" << quint32(EXCEPTION_STACK_OVERFLOW);
    }

    void crashInARunningProgram()
    {
        QFETCH(QString, where);
        QFETCH(QString, command);
        QFETCH(quint32, code);
        ProbeFolder product;
        QVERIFY(product.isValid());
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        // With Qt's own Windows platform, as the host runs.
        qputenv("QT_QPA_PLATFORM", "windows");
        const ProbeFolder::Death death =
            product.runUntilDeath(setUp(product) << command);
        qunsetenv("QT_QPA_PLATFORM");
        // The process ends with the exception the filter passed on. QProcess calls an end
        // by a code below 0x80000000 (as STATUS_FATAL_APP_EXIT is) a normal exit.
        QCOMPARE(death.signal ? quint32(death.signal) : quint32(death.exitCode), code);

        const QString dump = product.file(QStringLiteral("crashcore.dmp"));
        QCOMPARE(readAll(dump).left(4), QByteArray("MDMP"));
        QCOMPARE(readAll(product.file(QStringLiteral("callback.txt"))).trimmed(),
                 QByteArray::number(qint32(code)));

        const QList<QStringList> starts = product.standInStarts(QStringLiteral("Feedback"), 2, 3000);
        QCOMPARE(starts.size(), 1);
        const QString program = QFileInfo(product.file(QStringLiteral("zvprobe.exe"))).canonicalFilePath();
        QCOMPARE(starts.first(), (QStringList{kCrashMail, program, QStringLiteral("user@example.com"),
                                              QStringLiteral("send@example.com"), QStringLiteral("pwd"),
                                              QStringLiteral("0")}));

        const QString kept = QStringLiteral(ZV_DUMP_DIR "/") + where;
        QDir(kept).removeRecursively();
        QVERIFY(QDir().mkpath(kept));
        QVERIFY(QFile::copy(dump, kept + QStringLiteral("/crashcore.dmp")));
    }
};

QTEST_GUILESS_MAIN(tst_CrashWine)
#include "tst_crash_wine.moc"
