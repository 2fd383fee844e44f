// Crashes of a real host at the worst moments. Every case ends the same way: the process
// dead by the expected signal, at most one dump, at most one start of the feedback
// program, and a dump that lldb opens and unwinds.
//
// Stack overflows: the handler runs on an alternate stack, which the system keeps per
// thread. The frame gives every thread one: the threads that exist when InitCrashHandle
// runs, and every thread created afterwards, however it is created. With the application
// property "CrashHandleAllThreads" false only the installing thread has one, and an
// overflow on another thread ends the process by the system's default action, without
// a dump or a report.
#include "probe.h"

#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

#include <csignal>

#if defined(__SANITIZE_ADDRESS__)
#define ZV_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZV_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_THREAD__)
#define ZV_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define ZV_THREAD_SANITIZER 1
#endif
#endif

namespace {

const QString kCrashMail = QStringLiteral("torture@example.com");

struct Expected
{
    int signal = SIGSEGV;
    int dumps = 1;    // exactly this many
    int launches = 1; // exactly this many
    QString frame;    // a function lldb must show in the dump
    int minFrames = 1;
    int recursionFrames = 0;     // frames of `frame` on the thread that shows it most
    int crashedThreadsShown = 1; // threads whose stack shows `frame`, at least
    bool callbackRuns = true;    // the host's callback (when one was set) ran
};

struct Case
{
    QStringList before;   // before the handler is installed
    QStringList commands; // after the handler and the context are set up
    Expected expected;
    bool readOnlyFolder = false;
    bool feedbackProgram = true;
    bool heapOwnedBySanitizer = false;
    bool ownStacksUnderSanitizer = false;
};

} // namespace

Q_DECLARE_METATYPE(Case)

namespace {

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

int jsonLines(const QString& path)
{
    int n = 0;
    for (const QByteArray& line : readAll(path).split('\n'))
        n += line.trimmed().isEmpty() ? 0 : 1;
    return n;
}

// The stand-in's starts, once they have had time to arrive: at least \a expected, then
// a second more for any extra one.
int launches(const QString& record, int expected)
{
    QElapsedTimer timer;
    timer.start();
    while (jsonLines(record) < expected && timer.elapsed() < 10000)
        QThread::msleep(50);
    QThread::msleep(1000);
    return jsonLines(record);
}

} // namespace

class tst_CrashTorture : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_lldb = QStandardPaths::findExecutable(QStringLiteral("lldb"));
    }

    void crash_data();
    void crash();
    void threadStacksGoWithTheirThreads();
    void signalWaitersGetNothing();

private:
    QString m_lldb;
};

void tst_CrashTorture::crash_data()
{
    QTest::addColumn<Case>("c");

    Case thread;
    thread.commands = QStringList{QStringLiteral("crash:segv-thread")};
    thread.expected.frame = QStringLiteral("crash_here");
    QTest::newRow("fault on another thread") << thread;

    Case two;
    two.commands = QStringList{QStringLiteral("torture:two-threads-sync")};
    two.expected.frame = QStringLiteral("crash_here");
    // The second thread waits inside the handler; the dump shows it at its fault too.
    two.expected.crashedThreadsShown = 2;
    QTest::newRow("two threads at once") << two;

    Case overflow;
    overflow.commands = QStringList{QStringLiteral("crash:overflow")};
    overflow.expected.frame = QStringLiteral("overflow_here");
    // The stack that overflowed is in the dump, so the recursion unwinds.
    overflow.expected.minFrames = 10;
    QTest::newRow("stack overflow") << overflow;

    // An overflow on a thread other than the installing one, however the thread came to be.
    const auto overflowOn = [](const QString& how, const QString& frame = QStringLiteral("overflow_here")) {
        Case c;
        c.commands = QStringList{QStringLiteral("torture:") + how};
        c.ownStacksUnderSanitizer = true;
        c.expected.frame = frame;
        c.expected.recursionFrames = 20;
        return c;
    };
    QTest::newRow("stack overflow on a std::thread") << overflowOn(QStringLiteral("overflow-thread"));
    QTest::newRow("stack overflow on a QThread") << overflowOn(QStringLiteral("overflow-qthread"));
    QTest::newRow("stack overflow on a pthread_create thread") << overflowOn(QStringLiteral("overflow-raw"));
    Case early = overflowOn(QStringLiteral("overflow-early"));
    early.before = QStringList{QStringLiteral("earlythread")};
    QTest::newRow("stack overflow on a thread older than the handler") << early;
    QTest::newRow("stack overflow on two threads at once") << overflowOn(QStringLiteral("overflow-two"));
    QTest::newRow("stack overflow on a thread of a library loaded later")
        << overflowOn(QStringLiteral("overflow-dlopen"), QStringLiteral("library_overflow_here"));

    Case turnedOff = overflowOn(QStringLiteral("overflow-thread"));
    turnedOff.before = QStringList{QStringLiteral("crashallthreads:off")};
    turnedOff.expected.dumps = 0;
    turnedOff.expected.launches = 0;
    turnedOff.expected.callbackRuns = false;
    QTest::newRow("stack overflow on another thread, every-thread stacks off") << turnedOff;

    Case abort;
    abort.commands = QStringList{QStringLiteral("crash:abort")};
    abort.expected.signal = SIGABRT;
    abort.expected.frame = QStringLiteral("abort");
    QTest::newRow("abort()") << abort;

    Case callback;
    // The report is under way when the host's callback faults: the fault ends the
    // process at once.
    callback.commands = QStringList{QStringLiteral("crashcallback-faulty"), QStringLiteral("crash:abort")};
    callback.expected.signal = SIGSEGV;
    callback.expected.frame = QStringLiteral("abort");
    QTest::newRow("fault inside the host callback") << callback;

    Case doubleFree;
    doubleFree.commands = QStringList{QStringLiteral("torture:double-free")};
    doubleFree.expected.signal = SIGABRT;
    doubleFree.expected.frame = QStringLiteral("double_free_here");
    doubleFree.heapOwnedBySanitizer = true;
    QTest::newRow("double free") << doubleFree;

    Case lockedHeap;
    // The allocator aborts holding its lock: the steps that need Qt hang on it until
    // the watchdog ends the process; the dump and the launch came first.
    lockedHeap.commands = QStringList{QStringLiteral("torture:double-free-large")};
    lockedHeap.expected.signal = SIGABRT;
    lockedHeap.expected.frame = QStringLiteral("double_free_here");
    lockedHeap.expected.callbackRuns = false;
    lockedHeap.heapOwnedBySanitizer = true;
    QTest::newRow("double free, allocator locked") << lockedHeap;

    Case readOnly;
    readOnly.commands = QStringList{QStringLiteral("crash:segv")};
    readOnly.readOnlyFolder = true;
    readOnly.expected.dumps = 0;
    QTest::newRow("read-only folder") << readOnly;

    Case missing;
    missing.commands = QStringList{QStringLiteral("crash:segv")};
    missing.feedbackProgram = false;
    missing.expected.launches = 0;
    missing.expected.frame = QStringLiteral("crash_here");
    QTest::newRow("missing feedback program") << missing;
}

void tst_CrashTorture::crash()
{
    QFETCH(Case, c);
#if defined(ZV_ADDRESS_SANITIZER)
    if (c.heapOwnedBySanitizer)
        QSKIP("AddressSanitizer reports a double free itself and ends the process its own way");
    if (c.ownStacksUnderSanitizer)
        QSKIP("AddressSanitizer gives every thread an alternate signal stack of its own and unmaps it when the "
              "thread ends; the frame leaves the threads' stacks to it");
#endif
#if defined(ZV_THREAD_SANITIZER)
    if (c.heapOwnedBySanitizer)
        QSKIP("ThreadSanitizer's allocator reports a double free itself and ends the process its own way");
    // Every instrumented call also pushes onto the sanitizer's own call stack, which a
    // runaway recursion overruns too; the fault may then come from inside the sanitizer.
    if (c.commands.contains(QStringLiteral("crash:overflow")) || c.ownStacksUnderSanitizer)
        QSKIP("ThreadSanitizer's shadow call stack overflows with the real one");
#endif
    if (c.readOnlyFolder && !ProbeFolder::canHonourFilePermissions())
        QSKIP("setpriv (util-linux) is needed to take root's access to read-only folders away");

    ProbeFolder product;
    QVERIFY(product.isValid());
    // Records that must stay writable when the product folder is not: the feedback
    // stand-in (started through a link beside the probe) and the callback's marker.
    QTemporaryDir outside;
    QVERIFY(outside.isValid());
    const QString standIn = outside.filePath(QStringLiteral("Feedback"));
    const QString record = standIn + QStringLiteral("-args.jsonl");
    const QString marker = outside.filePath(QStringLiteral("callback.txt"));
    if (c.feedbackProgram) {
        QVERIFY(QFile::copy(QStringLiteral(ZV_STANDIN_PATH), standIn));
        QVERIFY(QFile::setPermissions(standIn, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(QFile::link(standIn, product.file(QStringLiteral("Feedback"))));
    }

    QStringList commands = c.before;
    commands += QStringList{QStringLiteral("crashhandle"), QStringLiteral("context"),
                         QStringLiteral("setcrashmail:") + kCrashMail};
    if (!c.commands.contains(QStringLiteral("crashcallback-faulty")))
        commands << QStringLiteral("crashcallback:") + marker;
    commands += c.commands;

    const QFile::Permissions writable = QFileInfo(product.path()).permissions();
    if (c.readOnlyFolder) {
        QVERIFY(QFile::setPermissions(product.path(), QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup
                                                          | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther));
        product.setHonourFilePermissions(true);
    }
    const ProbeFolder::Death death = product.runUntilDeath(commands);
    const int started = launches(record, c.expected.launches);
    QFile::setPermissions(product.path(), writable);

    const QString err = QString::fromUtf8(readAll(product.file(QStringLiteral("probe.err"))));
    QVERIFY2(death.signal == c.expected.signal,
             qPrintable(QStringLiteral("died by signal %1 (exit code %2), %3 ms; log:\n%4")
                            .arg(death.signal).arg(death.exitCode).arg(death.elapsedMs).arg(err.right(2000))));
    // The watchdog bounds the steps after the launch to 5 seconds.
    QVERIFY2(death.elapsedMs < 20000, QByteArray::number(death.elapsedMs).constData());

    QStringList dumps = QDir(product.path()).entryList({QStringLiteral("*.dmp")}, QDir::Files);
    dumps += QDir(outside.path()).entryList({QStringLiteral("*.dmp")}, QDir::Files);
    QCOMPARE(dumps.size(), c.expected.dumps);
    QCOMPARE(started, c.expected.launches);
    if (started > 0) {
        const QList<QByteArray> line = readAll(record).split('\n');
        QVERIFY(line.first().startsWith("[\"" + kCrashMail.toUtf8() + "\","));
        QVERIFY(line.first().endsWith(",\"0\"]"));
    }
    // The host's callback, when it was set, received the signal.
    if (!c.commands.contains(QStringLiteral("crashcallback-faulty")))
        QCOMPARE(readAll(marker).trimmed(), c.expected.callbackRuns ? QByteArray::number(c.expected.signal) : QByteArray());

    if (c.expected.dumps == 0)
        return;
    const QString dump = product.file(QStringLiteral("crashcore.dmp"));
    QCOMPARE(readAll(dump).left(4), QByteArray("MDMP"));
    if (m_lldb.isEmpty())
        QSKIP("lldb is not installed (Debian package lldb); the dump was not opened");
    QProcess lldb;
    lldb.start(m_lldb, {QStringLiteral("--batch"), QStringLiteral("--core"), dump, QStringLiteral("-o"),
                        QStringLiteral("bt all")});
    QVERIFY(lldb.waitForFinished(120000));
    const QString bt = QString::fromUtf8(lldb.readAllStandardOutput());
    const QString why = QStringLiteral("lldb says:\n") + bt.left(6000);
    QVERIFY2(bt.contains(QLatin1String("was loaded")), qPrintable(why));
    // One thread carries the exception.
    QVERIFY2(bt.count(QLatin1String("stop reason = signal")) == 1, qPrintable(why));
    QVERIFY2(bt.count(QLatin1String("frame #")) >= c.expected.minFrames, qPrintable(why));
    if (!c.expected.frame.isEmpty()) {
        int threadsShowing = 0;
        for (const QString& thread : bt.split(QStringLiteral("thread #")))
            threadsShowing += thread.contains(c.expected.frame) ? 1 : 0;
        QVERIFY2(threadsShowing >= c.expected.crashedThreadsShown, qPrintable(why));
    }
    if (c.expected.recursionFrames > 0) {
        // The overflowing thread unwinds through its recursion, and the other threads
        // are there too.
        int deepest = 0;
        for (const QString& thread : bt.split(QStringLiteral("thread #")))
            deepest = qMax(deepest, int(thread.count(c.expected.frame + QLatin1Char('('))
                                        + thread.count(c.expected.frame + QLatin1Char(' '))));
        QVERIFY2(deepest >= c.expected.recursionFrames, qPrintable(why));
        QVERIFY2(bt.count(QLatin1String("thread #")) >= 2, qPrintable(why));
    }
}

// 10,000 threads created and joined under the handler leave no alternate stack behind:
// afterwards there are at most the 16 stacks the frame keeps for the next threads.
void tst_CrashTorture::threadStacksGoWithTheirThreads()
{
#if defined(ZV_ADDRESS_SANITIZER) || defined(ZV_THREAD_SANITIZER)
    QSKIP("under a sanitizer the threads' alternate stacks are the sanitizer's");
#endif
    const auto measure = [](bool everyThread) {
        ProbeFolder product;
        product.setTimeout(120000);
        const ProbeRun run = product.run({QStringLiteral("crashallthreads:") + (everyThread ? "on" : "off"),
                                          QStringLiteral("crashhandle"), QStringLiteral("threadstacks:10000")});
        return run.report(QStringLiteral("threadstacks"));
    };
    const QJsonObject off = measure(false);
    const QJsonObject on = measure(true);
    QVERIFY2(!off.isEmpty() && !on.isEmpty(), "the probe gave no report");
    QCOMPARE(on.value(QStringLiteral("threads")).toInt(), 10000);
    // A thread created under the handler has a stack of 256 KiB; without the feature none.
    QCOMPARE(on.value(QStringLiteral("altStackInThread")).toInt(), 256 * 1024);
    QCOMPARE(off.value(QStringLiteral("altStackInThread")).toInt(), 0);
    const int before = on.value(QStringLiteral("before")).toInt();
    QVERIFY(before >= 1); // the main thread's stack
    const int after = on.value(QStringLiteral("after")).toInt();
    QVERIFY2(after >= before && after <= before + 16,
             qPrintable(QStringLiteral("%1 stack-sized mappings before, %2 after").arg(before).arg(after)));
}

// The existing threads are asked for their stacks with a real-time signal that no thread
// handles or blocks: a thread that waits for the highest one with sigtimedwait, its
// signal blocked everywhere, receives nothing from InitCrashHandle.
void tst_CrashTorture::signalWaitersGetNothing()
{
#if defined(ZV_ADDRESS_SANITIZER) || defined(ZV_THREAD_SANITIZER)
    QSKIP("under a sanitizer the threads' alternate stacks are the sanitizer's");
#endif
    ProbeFolder product;
    const ProbeRun run = product.run({QStringLiteral("sigwaiter"), QStringLiteral("crashhandle"),
                                      QStringLiteral("threadstacks:1"), QStringLiteral("sigwaited")});
    QVERIFY(run.report(QStringLiteral("sigwaiter")).value(QStringLiteral("started")).toBool());
    // The handler did run: new threads have their stacks.
    QCOMPARE(run.report(QStringLiteral("threadstacks")).value(QStringLiteral("altStackInThread")).toInt(), 256 * 1024);
    const QJsonObject waited = run.report(QStringLiteral("sigwaited"));
    QVERIFY(!waited.isEmpty());
    QCOMPARE(waited.value(QStringLiteral("received")).toInt(), 0);
}

QTEST_GUILESS_MAIN(tst_CrashTorture)
#include "tst_crashtorture.moc"
