// Crashes of a real host process: the probe installs the crash handler and crashes in
// the ways a host can, beside a stand-in feedback program.
#include "probe.h"

#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

#include <csignal>
#include <sys/stat.h>

// Built with ThreadSanitizer (the threads lane), the probe runs under its runtime, which
// changes two things these tests rely on; see the QSKIPs.
#if defined(__SANITIZE_THREAD__)
#define ZV_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define ZV_THREAD_SANITIZER 1
#endif
#endif

namespace {

const QString kCrashMail = QStringLiteral("crash@example.com");

QStringList crashArguments(const ProbeFolder& product)
{
    return {kCrashMail, QFileInfo(product.file(QStringLiteral("zvprobe"))).canonicalFilePath(),
            QStringLiteral("user@example.com"), QStringLiteral("send@example.com"), QStringLiteral("pwd"),
            QStringLiteral("0")};
}

QStringList setUp(const ProbeFolder& product)
{
    return product.crashHandlerSetUp(kCrashMail);
}

bool isMinidump(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) && f.read(4) == "MDMP";
}

QString readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

} // namespace

class tst_CrashHandlerLinux : public QObject
{
    Q_OBJECT

private slots:
    void crashOnASecondThread()
    {
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        const ProbeFolder::Death death = product.runUntilDeath(setUp(product) << QStringLiteral("crash:segv-thread"));
        QCOMPARE(death.signal, SIGSEGV);

        const QString dump = product.file(QStringLiteral("crashcore.dmp"));
        QVERIFY(isMinidump(dump));
        struct stat info;
        QCOMPARE(::stat(QFile::encodeName(dump).constData(), &info), 0);
        QCOMPARE(info.st_mode & 0777, mode_t(0600));
        QCOMPARE(readAll(product.file(QStringLiteral("callback.txt"))).trimmed(), QStringLiteral("11"));

        const QList<QStringList> starts = product.standInStarts(QStringLiteral("Feedback"));
        QCOMPARE(starts.size(), 1);
        QCOMPARE(starts.first(), crashArguments(product));

        // The frame's steps that need Qt ran after the launch.
        QVERIFY(readAll(product.file(QStringLiteral("probe.err"))).contains(QLatin1String("ZVCore: Start FeedBack -> (")));
    }

    void debuggerReadsTheDump()
    {
        const QString lldb = QStandardPaths::findExecutable(QStringLiteral("lldb"));
        if (lldb.isEmpty())
            QSKIP("lldb is not installed (Debian package lldb)");
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        QCOMPARE(product.runUntilDeath(setUp(product) << QStringLiteral("crash:segv-thread")).signal, SIGSEGV);
        QProcess p;
        p.setWorkingDirectory(product.path());
        p.start(lldb, {QStringLiteral("--batch"), QStringLiteral("--core"), product.file(QStringLiteral("crashcore.dmp")),
                       QStringLiteral("-o"), QStringLiteral("bt all")});
        QVERIFY(p.waitForFinished(120000));
        const QString out = QString::fromUtf8(p.readAllStandardOutput());
        QVERIFY2(out.contains(QLatin1String("crash_here")), qPrintable(out));
        QVERIFY2(out.count(QLatin1String("thread #")) >= 2, qPrintable(out));
    }

    void otherSignals_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("signal");
        QTest::newRow("abort") << "abort" << SIGABRT;
        QTest::newRow("SIGFPE") << "fpe" << SIGFPE;
        QTest::newRow("main thread") << "segv" << SIGSEGV;
        QTest::newRow("stack overflow") << "overflow" << SIGSEGV;
    }

    void otherSignals()
    {
        QFETCH(QString, how);
        QFETCH(int, signal);
#if defined(ZV_THREAD_SANITIZER)
        // Every instrumented call also pushes onto the sanitizer's own call stack, which
        // a runaway recursion overruns as well; the fault may then come from inside the
        // sanitizer, and the handler's own calls fault again.
        if (how == QLatin1String("overflow"))
            QSKIP("ThreadSanitizer's shadow call stack overflows with the real one");
#endif
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        const ProbeFolder::Death death = product.runUntilDeath(setUp(product) << QStringLiteral("crash:") + how);
        QCOMPARE(death.signal, signal);
        QVERIFY(isMinidump(product.file(QStringLiteral("crashcore.dmp"))));
        QCOMPARE(readAll(product.file(QStringLiteral("callback.txt"))).trimmed(), QString::number(signal));
        QCOMPARE(product.standInStarts(QStringLiteral("Feedback")).size(), 1);
    }

    void twoThreadsGiveOneReport()
    {
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        const ProbeFolder::Death death = product.runUntilDeath(setUp(product) << QStringLiteral("crash:two-threads"));
        QCOMPARE(death.signal, SIGSEGV);
        QVERIFY(isMinidump(product.file(QStringLiteral("crashcore.dmp"))));
        QTest::qWait(1000); // a second launch, if any, would have arrived by now
        QCOMPARE(product.standInStarts(QStringLiteral("Feedback"), 2, 1000).size(), 1);
    }

    void withoutCallbackStillDumpsAndReports()
    {
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        // The context makes the executable's folder the current directory, where the dump goes.
        const ProbeFolder::Death death = product.runUntilDeath({QStringLiteral("crashhandle"), QStringLiteral("context"),
                                                                QStringLiteral("crash:segv")});
        QCOMPARE(death.signal, SIGSEGV);
        QVERIFY(isMinidump(product.file(QStringLiteral("crashcore.dmp"))));
        const QList<QStringList> starts = product.standInStarts(QStringLiteral("Feedback"));
        QCOMPARE(starts.size(), 1);
        QCOMPARE(starts.first().size(), 6);
        QCOMPARE(starts.first().last(), QStringLiteral("0"));
    }

    void folderWithoutRoomForTheDump()
    {
        // A folder in the dump's place makes it impossible to create, for root too.
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        QVERIFY(QDir().mkpath(product.file(QStringLiteral("crashcore.dmp"))));
        const ProbeFolder::Death death = product.runUntilDeath(setUp(product) << QStringLiteral("crash:segv"));
        QCOMPARE(death.signal, SIGSEGV);
        QVERIFY(QFileInfo(product.file(QStringLiteral("crashcore.dmp"))).isDir());
        QCOMPARE(product.standInStarts(QStringLiteral("Feedback")).size(), 1);
        QVERIFY(QFile::exists(product.file(QStringLiteral("callback.txt"))));
    }

    void missingFeedbackProgram()
    {
        ProbeFolder product;
        const ProbeFolder::Death death = product.runUntilDeath(setUp(product) << QStringLiteral("crash:segv"));
        QCOMPARE(death.signal, SIGSEGV);
        QVERIFY(isMinidump(product.file(QStringLiteral("crashcore.dmp"))));
        QVERIFY(QFile::exists(product.file(QStringLiteral("callback.txt"))));
    }

    void faultInsideTheCallback()
    {
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        const ProbeFolder::Death death = product.runUntilDeath({QStringLiteral("crashhandle"), QStringLiteral("context"),
                                                                QStringLiteral("crashcallback-faulty"),
                                                                QStringLiteral("crash:segv")});
        QCOMPARE(death.signal, SIGSEGV);
        QVERIFY(isMinidump(product.file(QStringLiteral("crashcore.dmp"))));
        QCOMPARE(product.standInStarts(QStringLiteral("Feedback"), 2, 1500).size(), 1);
    }

    void hangingCallbackIsCutShort()
    {
#if defined(ZV_THREAD_SANITIZER)
        // The watchdog is SIGALRM, an asynchronous signal, which ThreadSanitizer holds
        // back until the thread next calls into the C library; a callback that hangs in a
        // loop never does.
        QSKIP("ThreadSanitizer defers the watchdog's SIGALRM while the callback spins");
#endif
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        const ProbeFolder::Death death = product.runUntilDeath({QStringLiteral("crashhandle"), QStringLiteral("context"),
                                                                QStringLiteral("crashcallback-hang"),
                                                                QStringLiteral("crash:abort")});
        QCOMPARE(death.signal, SIGABRT);
        QVERIFY2(death.elapsedMs < 30000, "the watchdog ends the process");
        QCOMPARE(product.standInStarts(QStringLiteral("Feedback")).size(), 1);
    }

    void withoutTheHandlerNothingIsReported()
    {
        ProbeFolder product;
        QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
        const ProbeFolder::Death death = product.runUntilDeath({QStringLiteral("context"), QStringLiteral("crash:segv")});
        QCOMPARE(death.signal, SIGSEGV);
        QVERIFY(!QFile::exists(product.file(QStringLiteral("crashcore.dmp"))));
        QCOMPARE(product.standInStarts(QStringLiteral("Feedback"), 1, 500).size(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_CrashHandlerLinux)
#include "tst_crashhandler_linux.moc"
