#include "minidump_linux.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtCore/QVector>
#include <QtTest/QtTest>

#include <elf.h>
#include <grp.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <thread>

extern char** environ;

using ZVUIFramework::Minidump::WriteLinuxMinidump;

namespace {

// Stream types of the minidump format and its Linux extensions.
enum : quint32 {
    ThreadListStream = 3,
    ModuleListStream = 4,
    MemoryListStream = 5,
    ExceptionStream = 6,
    SystemInfoStream = 7,
    MiscInfoStream = 15,
    LinuxCpuInfo = 0x47670003,
    LinuxProcStatus = 0x47670004,
    LinuxCmdLine = 0x47670006,
    LinuxEnviron = 0x47670007,
    LinuxAuxv = 0x47670008,
    LinuxMaps = 0x47670009,
    LinuxDsoDebug = 0x4767000A,
};

#if defined(__x86_64__)
constexpr quint16 kArchitecture = 9;
constexpr quint32 kContextSize = 1232;
constexpr quint32 kFlagsOffset = 0x30;
constexpr quint32 kSpOffset = 0x98;
constexpr quint32 kIpOffset = 0xf8;
constexpr quint32 kContextArch = 0x00100000;
#elif defined(__aarch64__)
constexpr quint16 kArchitecture = 12;
constexpr quint32 kContextSize = 912;
constexpr quint32 kFlagsOffset = 0;
constexpr quint32 kSpOffset = 256;
constexpr quint32 kIpOffset = 264;
constexpr quint32 kContextArch = 0x00400000;
#endif

// The secret the crasher finds in its environment; it must not reach the dump.
const QByteArray kSecret = "zv-minidump-secret-6f1d2c";

// Whether the crasher's allocation count says something about the writer. In a build
// with AddressSanitizer it does not: before each call that does not return, the
// instrumented code unpoisons the stack, and on an alternate signal stack the sanitizer
// looks up the thread's own stack with pthread_getattr_np(), which allocates. Those
// calls are the sanitizer's; only the writer's result is checked there.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kAllocationsCounted = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kAllocationsCounted = false;
#else
constexpr bool kAllocationsCounted = true;
#endif
#else
constexpr bool kAllocationsCounted = true;
#endif

// handler.out of a run in which the writer succeeded without allocating; where the
// count means nothing, the count is not compared.
#define COMPARE_HANDLER_OUT(out)                                                                  \
    QCOMPARE(kAllocationsCounted ? QString(out) : QString(out).section(QLatin1Char(' '), 0, 0), \
             kAllocationsCounted ? QStringLiteral("ok=1 allocations=0") : QStringLiteral("ok=1"))

struct Location
{
    quint32 size = 0;
    quint32 rva = 0;
};

struct Thread
{
    quint32 tid = 0;
    quint64 stackStart = 0;
    Location stack;
    Location context;
};

struct Range
{
    quint64 start = 0;
    Location data;
};

struct Module
{
    quint64 base = 0;
    quint32 size = 0;
    QString name;
    QByteArray buildId;
};

// Reads just what the tests look at; every access is bounds-checked.
class Minidump
{
public:
    explicit Minidump(const QByteArray& bytes) : d(bytes)
    {
        const quint32 count = u32(8);
        const quint32 dir = u32(12);
        for (quint32 i = 0; i < count && has(dir + i * 12, 12); ++i) {
            types.append(u32(dir + i * 12));
            locations.append({u32(dir + i * 12 + 4), u32(dir + i * 12 + 8)});
        }
    }

    bool has(qint64 off, qint64 n) const { return off >= 0 && n >= 0 && off + n <= d.size(); }
    template <typename T>
    T get(qint64 off) const
    {
        T v{};
        if (has(off, sizeof v))
            memcpy(&v, d.constData() + off, sizeof v);
        return v;
    }
    quint16 u16(qint64 off) const { return get<quint16>(off); }
    quint32 u32(qint64 off) const { return get<quint32>(off); }
    quint64 u64(qint64 off) const { return get<quint64>(off); }

    Location stream(quint32 type) const
    {
        const int i = types.indexOf(type);
        return i < 0 ? Location() : locations.at(i);
    }
    QByteArray bytes(Location l) const { return has(l.rva, l.size) ? d.mid(l.rva, l.size) : QByteArray(); }
    QByteArray streamBytes(quint32 type) const { return bytes(stream(type)); }

    QString string(quint32 rva) const
    {
        const quint32 length = u32(rva);
        if (!has(rva + 4, length) || length % 2)
            return QString();
        return QString::fromUtf16(reinterpret_cast<const char16_t*>(d.constData() + rva + 4), int(length / 2));
    }

    QVector<Thread> threads() const
    {
        QVector<Thread> list;
        const Location l = stream(ThreadListStream);
        const quint32 count = u32(l.rva);
        for (quint32 i = 0; i < count && 4 + (i + 1) * 48 <= l.size; ++i) {
            const qint64 at = l.rva + 4 + i * 48;
            list.append(Thread{u32(at), u64(at + 24), {u32(at + 32), u32(at + 36)}, {u32(at + 40), u32(at + 44)}});
        }
        return list;
    }

    QVector<Range> memory() const
    {
        QVector<Range> list;
        const Location l = stream(MemoryListStream);
        const quint32 count = u32(l.rva);
        for (quint32 i = 0; i < count && 4 + (i + 1) * 16 <= l.size; ++i) {
            const qint64 at = l.rva + 4 + i * 16;
            list.append(Range{u64(at), {u32(at + 8), u32(at + 12)}});
        }
        return list;
    }

    QVector<Module> modules() const
    {
        QVector<Module> list;
        const Location l = stream(ModuleListStream);
        const quint32 count = u32(l.rva);
        for (quint32 i = 0; i < count && 4 + (i + 1) * 108 <= l.size; ++i) {
            const qint64 at = l.rva + 4 + i * 108;
            Module m{u64(at), u32(at + 8), string(u32(at + 20)), QByteArray()};
            const QByteArray cv = bytes({u32(at + 76), u32(at + 80)});
            if (cv.size() > 4 && get<quint32>(u32(at + 80)) == 0x4270454c)
                m.buildId = cv.mid(4);
            list.append(m);
        }
        return list;
    }

    // The bytes the dump holds for [address, address + n), or empty.
    QByteArray memoryAt(quint64 address, quint32 n) const
    {
        for (const Range& r : memory()) {
            if (address >= r.start && address + n <= r.start + r.data.size)
                return bytes({n, quint32(r.data.rva + (address - r.start))});
        }
        return QByteArray();
    }

    QByteArray d;
    QVector<quint32> types;
    QVector<Location> locations;
};

// The GNU build id of an ELF file on disk.
QByteArray FileBuildId(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    const QByteArray elf = file.readAll();
    Elf64_Ehdr eh;
    if (elf.size() < qint64(sizeof eh))
        return QByteArray();
    memcpy(&eh, elf.constData(), sizeof eh);
    for (int i = 0; i < eh.e_phnum; ++i) {
        Elf64_Phdr ph;
        const qint64 at = qint64(eh.e_phoff) + i * qint64(sizeof ph);
        if (at + qint64(sizeof ph) > elf.size())
            break;
        memcpy(&ph, elf.constData() + at, sizeof ph);
        if (ph.p_type != PT_NOTE)
            continue;
        for (quint64 off = ph.p_offset; off + 12 <= ph.p_offset + ph.p_filesz && off + 12 <= quint64(elf.size());) {
            quint32 note[3];
            memcpy(note, elf.constData() + off, sizeof note);
            const quint64 desc = off + 12 + ((note[0] + 3) & ~3u);
            if (note[2] == NT_GNU_BUILD_ID && note[0] == 4 && desc + note[1] <= quint64(elf.size()))
                return elf.mid(qint64(desc), note[1]);
            off = desc + ((note[1] + 3) & ~3u);
        }
    }
    return QByteArray();
}

struct CrashRun
{
    bool started = false;
    bool signaled = false;
    int signal = 0;
    QByteArray dump;
    QString dumpPath;
    QHash<QString, QStringList> info; // crasher.info: key, then values
    QString handler;                  // handler.out

    quint64 hex(const QString& key, int index = 0) const { return info.value(key).value(index).toULongLong(nullptr, 16); }
    quint32 dec(const QString& key) const { return info.value(key).value(0).toUInt(); }
};

// Runs the crasher in `dir` with the secret in its environment, as user nobody when
// `unprivileged` and we are root; fork and exec rather than QProcess, which would not
// tell a death by signal from a crash of its own.
CrashRun RunCrasher(const QString& dir, const QStringList& arguments, bool unprivileged = false)
{
    CrashRun run;
    QList<QByteArray> argStorage{QByteArrayLiteral(ZV_MINIDUMP_CRASHER)};
    for (const QString& a : arguments)
        argStorage.append(a.toLocal8Bit());
    QList<QByteArray> envStorage;
    for (char** e = environ; *e; ++e)
        envStorage.append(QByteArray(*e));
    envStorage.append("ZV_MINIDUMP_SECRET=" + kSecret);
    QVector<char*> argv, envp;
    for (QByteArray& a : argStorage)
        argv.append(a.data());
    argv.append(nullptr);
    for (QByteArray& e : envStorage)
        envp.append(e.data());
    envp.append(nullptr);
    const QByteArray workDir = QFile::encodeName(dir);

    const pid_t child = fork();
    if (child < 0)
        return run;
    if (child == 0) {
        if (unprivileged && geteuid() == 0) {
            const gid_t nobody = 65534;
            if (setgroups(0, nullptr) != 0 || setresgid(nobody, nobody, nobody) != 0
                || setresuid(nobody, nobody, nobody) != 0)
                _exit(126);
        }
        if (chdir(workDir.constData()) == 0)
            execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    run.started = true;
    int status = 0;
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        const pid_t r = waitpid(child, &status, WNOHANG);
        if (r == child)
            break;
        if (r < 0 || timer.elapsed() > 60000) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return run;
        }
        usleep(10 * 1000);
    }
    run.signaled = WIFSIGNALED(status);
    run.signal = run.signaled ? WTERMSIG(status) : 0;

    QFile infoFile(dir + QStringLiteral("/crasher.info"));
    if (infoFile.open(QIODevice::ReadOnly)) {
        const QStringList lines = QString::fromLatin1(infoFile.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString& line : lines) {
            QStringList fields = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
            if (!fields.isEmpty()) {
                const QString key = fields.takeFirst();
                run.info.insert(key, fields);
            }
        }
    }
    QFile handlerFile(dir + QStringLiteral("/handler.out"));
    if (handlerFile.open(QIODevice::ReadOnly))
        run.handler = QString::fromLatin1(handlerFile.readAll()).trimmed();
    run.dumpPath = dir + QStringLiteral("/crashcore.dmp");
    QFile dumpFile(run.dumpPath);
    if (dumpFile.open(QIODevice::ReadOnly))
        run.dump = dumpFile.readAll();
    return run;
}

bool IsZero(const QByteArray& bytes)
{
    for (char c : bytes) {
        if (c)
            return false;
    }
    return true;
}

} // namespace

class TestMinidumpLinux : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void crashIsReported();
    void streamsArePresent();
    void systemInfo();
    void exceptionAndThreads();
    void stacksAreInMemoryList();
    void modulesCarryBuildIds();
    void linkMapListsLibraries();
    void processStreams();
    void environmentStaysOut();
    void writerDoesNotAllocate();
    void lldbShowsTheCrash();
    void listsEveryThread();
    void withoutPtrace_data();
    void withoutPtrace();
    void undumpableProcess();
    void dumpOfRunningProcess();
    void unwritablePathCreatesNothing();

private:
    void checkCrashThread(const Minidump& dump, const CrashRun& run);

    QTemporaryDir m_dir;
    CrashRun m_crash;
};

void TestMinidumpLinux::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_crash = RunCrasher(m_dir.path(), {});
    QVERIFY(m_crash.started);
}

void TestMinidumpLinux::checkCrashThread(const Minidump& dump, const CrashRun& run)
{
    const quint32 crashTid = run.dec(QStringLiteral("crash_tid"));
    const quint64 crashStart = run.hex(QStringLiteral("crash_here"), 0);
    const quint64 crashSize = run.hex(QStringLiteral("crash_here"), 1);
    QVERIFY(crashTid != 0);
    QVERIFY(crashStart != 0);
    QVERIFY(crashSize != 0);

    const Location ex = dump.stream(ExceptionStream);
    QCOMPARE(ex.size, 168u);
    QCOMPARE(dump.u32(ex.rva), crashTid);
    QCOMPARE(dump.u32(ex.rva + 8), quint32(SIGSEGV));
    QCOMPARE(dump.u32(ex.rva + 12), quint32(SEGV_MAPERR));
    QCOMPARE(dump.u64(ex.rva + 24), quint64(0)); // the null pointer written through

    bool found = false;
    for (const Thread& t : dump.threads()) {
        if (t.tid != crashTid)
            continue;
        found = true;
        QCOMPARE(t.context.size, kContextSize);
        QCOMPARE(dump.u32(ex.rva + 160), t.context.size);
        QCOMPARE(dump.u32(ex.rva + 164), t.context.rva);
        const quint64 ip = dump.u64(t.context.rva + kIpOffset);
        QVERIFY2(ip >= crashStart && ip < crashStart + crashSize,
                 qPrintable(QStringLiteral("ip %1 outside crash_here %2+%3")
                                .arg(ip, 0, 16).arg(crashStart, 0, 16).arg(crashSize)));
        const quint64 sp = dump.u64(t.context.rva + kSpOffset);
        QVERIFY(t.stack.size > 0);
        QVERIFY(sp >= t.stackStart && sp < t.stackStart + t.stack.size);
    }
    QVERIFY(found);
}

void TestMinidumpLinux::crashIsReported()
{
    QVERIFY(m_crash.signaled);
    QCOMPARE(m_crash.signal, SIGSEGV);
    QVERIFY(QFileInfo::exists(m_crash.dumpPath));
    struct stat st = {};
    QCOMPARE(stat(QFile::encodeName(m_crash.dumpPath).constData(), &st), 0);
    QCOMPARE(int(st.st_mode & 07777), 0600);
    QVERIFY(m_crash.dump.startsWith("MDMP"));
    const Minidump dump(m_crash.dump);
    QCOMPARE(dump.u32(4) & 0xffff, 0xa793u);
    QCOMPARE(dump.u32(12), 32u);
}

void TestMinidumpLinux::streamsArePresent()
{
    const Minidump dump(m_crash.dump);
    const quint32 wanted[] = {ThreadListStream, ModuleListStream, MemoryListStream, ExceptionStream,
                              SystemInfoStream, MiscInfoStream,  LinuxCpuInfo,     LinuxProcStatus,
                              LinuxCmdLine,     LinuxAuxv,       LinuxMaps,        LinuxDsoDebug};
    for (quint32 type : wanted) {
        QVERIFY2(dump.types.count(type) == 1, qPrintable(QString::number(type, 16)));
        const Location l = dump.stream(type);
        QVERIFY2(l.size > 0 && dump.has(l.rva, l.size), qPrintable(QString::number(type, 16)));
    }
    // The environment can hold secrets.
    QVERIFY(!dump.types.contains(LinuxEnviron));
}

void TestMinidumpLinux::systemInfo()
{
    const Minidump dump(m_crash.dump);
    const Location l = dump.stream(SystemInfoStream);
    QCOMPARE(l.size, 56u);
    QCOMPARE(dump.u16(l.rva), kArchitecture);
    QCOMPARE(dump.u32(l.rva + 20), 0x8201u);
    const int processors = quint8(dump.d.at(l.rva + 6));
    QVERIFY(processors >= 1);
    QCOMPARE(processors, int(qMin(sysconf(_SC_NPROCESSORS_ONLN), 255L)));
    QVERIFY(dump.string(dump.u32(l.rva + 24)).startsWith(QLatin1String("Linux ")));
#if defined(__x86_64__)
    const QByteArray vendor = dump.bytes({12, l.rva + 32});
    QVERIFY2(vendor == "GenuineIntel" || vendor == "AuthenticAMD" || QRegularExpression(QStringLiteral("^[ -~]{12}$")).match(QString::fromLatin1(vendor)).hasMatch(),
             vendor.constData());
    QVERIFY(dump.u32(l.rva + 44) != 0); // cpuid version information
#endif
}

void TestMinidumpLinux::exceptionAndThreads()
{
    const Minidump dump(m_crash.dump);
    const QVector<Thread> threads = dump.threads();
    QCOMPARE(threads.size(), 2);
    checkCrashThread(dump, m_crash);
    if (QTest::currentTestFailed())
        return;

    // The main thread, read through ptrace, waits in main_waits.
    const quint32 pid = m_crash.dec(QStringLiteral("pid"));
    bool found = false;
    for (const Thread& t : threads) {
        if (t.tid != pid)
            continue;
        found = true;
        QCOMPARE(t.context.size, kContextSize);
        QCOMPARE(dump.u32(t.context.rva + kFlagsOffset) & kContextArch, kContextArch);
        QVERIFY(dump.u32(t.context.rva + kFlagsOffset) != kContextArch); // has registers
        const quint64 sp = dump.u64(t.context.rva + kSpOffset);
        QVERIFY(dump.u64(t.context.rva + kIpOffset) != 0);
        QVERIFY(t.stack.size > 0);
        QVERIFY(sp >= t.stackStart && sp < t.stackStart + t.stack.size);
        // main_waits called pthread_join, so its return address is on the stack.
        const quint64 waitStart = m_crash.hex(QStringLiteral("main_waits"), 0);
        const quint64 waitSize = m_crash.hex(QStringLiteral("main_waits"), 1);
        const QByteArray stack = dump.bytes(t.stack);
        bool returnAddress = false;
        for (int off = 0; off + 8 <= stack.size() && !returnAddress; off += 8) {
            quint64 word;
            memcpy(&word, stack.constData() + off, 8);
            returnAddress = word > waitStart && word <= waitStart + waitSize;
        }
        QVERIFY(returnAddress);
    }
    QVERIFY(found);
}

void TestMinidumpLinux::stacksAreInMemoryList()
{
    const Minidump dump(m_crash.dump);
    const QVector<Range> memory = dump.memory();
    for (const Thread& t : dump.threads()) {
        QVERIFY(t.stack.size > 0);
        QVERIFY(t.stack.size <= 256 * 1024);
        bool listed = false;
        for (const Range& r : memory)
            listed |= r.start == t.stackStart && r.data.size == t.stack.size && r.data.rva == t.stack.rva;
        QVERIFY2(listed, qPrintable(QString::number(t.tid)));
    }
    // The code around the crash is there too.
    QVERIFY(!dump.memoryAt(m_crash.hex(QStringLiteral("crash_here")), 4).isEmpty());
}

void TestMinidumpLinux::modulesCarryBuildIds()
{
    const Minidump dump(m_crash.dump);
    const QVector<Module> modules = dump.modules();
    QVERIFY(modules.size() >= 3);

    // The executable comes first.
    const Module& exe = modules.first();
    QCOMPARE(QFileInfo(exe.name).canonicalFilePath(), QFileInfo(QStringLiteral(ZV_MINIDUMP_CRASHER)).canonicalFilePath());
    const quint64 crashHere = m_crash.hex(QStringLiteral("crash_here"));
    QVERIFY(crashHere >= exe.base && crashHere < exe.base + exe.size);
    QVERIFY(!exe.buildId.isEmpty());
    QCOMPARE(exe.buildId.toHex(), FileBuildId(exe.name).toHex());

    bool libc = false;
    QStringList names;
    for (const Module& m : modules) {
        QVERIFY(!m.name.isEmpty());
        QVERIFY2(!names.contains(m.name), qPrintable(m.name));
        names.append(m.name);
        if (QFileInfo(m.name).fileName().startsWith(QLatin1String("libc.so"))) {
            libc = true;
            QVERIFY(!m.buildId.isEmpty());
            QCOMPARE(m.buildId.toHex(), FileBuildId(m.name).toHex());
        }
    }
    QVERIFY2(libc, qPrintable(names.join(QLatin1Char(' '))));
}

void TestMinidumpLinux::linkMapListsLibraries()
{
    const Minidump dump(m_crash.dump);
    const Location l = dump.stream(LinuxDsoDebug);
    QVERIFY(l.size >= 40);
    QCOMPARE(dump.u32(l.rva), 1u); // r_version
    const quint32 map = dump.u32(l.rva + 4);
    const quint32 count = dump.u32(l.rva + 8);
    QVERIFY(count >= 3);
    QVERIFY(dump.u64(l.rva + 16) != 0); // r_brk
    QVERIFY(dump.u64(l.rva + 32) != 0); // the executable's dynamic section
    QVERIFY(dump.has(map, count * 24));
    bool libc = false;
    for (quint32 i = 0; i < count; ++i) {
        const QString name = dump.string(dump.u32(map + i * 24 + 8));
        libc |= QFileInfo(name).fileName().startsWith(QLatin1String("libc.so"));
    }
    QVERIFY(libc);
}

void TestMinidumpLinux::processStreams()
{
    const Minidump dump(m_crash.dump);
    const quint32 pid = m_crash.dec(QStringLiteral("pid"));

    const Location misc = dump.stream(MiscInfoStream);
    QVERIFY(misc.size >= 12);
    QVERIFY(dump.u32(misc.rva + 4) & 1);
    QCOMPARE(dump.u32(misc.rva + 8), pid);

    QVERIFY(dump.streamBytes(LinuxProcStatus).contains("\nPid:\t" + QByteArray::number(pid) + '\n'));
    QVERIFY(dump.streamBytes(LinuxCmdLine).startsWith(QByteArrayLiteral(ZV_MINIDUMP_CRASHER) + '\0'));
    QVERIFY(dump.streamBytes(LinuxMaps).contains("zv_minidump_crasher"));
    QVERIFY(dump.streamBytes(LinuxCpuInfo).contains("processor"));

    const QByteArray auxv = dump.streamBytes(LinuxAuxv);
    QVERIFY(auxv.size() >= 32);
    QCOMPARE(auxv.size() % 16, 0);
    bool entry = false;
    for (int off = 0; off + 16 <= auxv.size(); off += 16) {
        quint64 key;
        memcpy(&key, auxv.constData() + off, 8);
        entry |= key == AT_ENTRY;
    }
    QVERIFY(entry);
}

void TestMinidumpLinux::environmentStaysOut()
{
    QVERIFY(!m_crash.dump.isEmpty());
    QVERIFY(!m_crash.dump.contains(kSecret));
    // Not by luck: the main thread's stack copy reaches the environment block, and the
    // bytes the secret occupied are blank.
    const quint64 secretAt = m_crash.hex(QStringLiteral("secret_at"));
    QVERIFY(secretAt != 0);
    const Minidump dump(m_crash.dump);
    const QByteArray there = dump.memoryAt(secretAt, quint32(kSecret.size()));
    QCOMPARE(there.size(), kSecret.size());
    QVERIFY(IsZero(there));
}

void TestMinidumpLinux::writerDoesNotAllocate()
{
    // The crasher wraps malloc, calloc and realloc (and with them operator new) and counts
    // the calls made while the writer runs, in the crashing process and in the helper
    // process, which shares the counter.
    if (!kAllocationsCounted)
        QSKIP("AddressSanitizer's own stack handling allocates in the signal handler");
    QCOMPARE(m_crash.handler, QStringLiteral("ok=1 allocations=0"));
}

void TestMinidumpLinux::lldbShowsTheCrash()
{
    const QString lldb = QStandardPaths::findExecutable(QStringLiteral("lldb"));
    if (lldb.isEmpty())
        QSKIP("lldb is not installed");
    QVERIFY(!m_crash.dump.isEmpty());

    QProcess process;
    process.setWorkingDirectory(m_dir.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(lldb, {QStringLiteral("--batch"), QStringLiteral("--core"), QStringLiteral("crashcore.dmp"),
                         QStringLiteral("-o"), QStringLiteral("bt all")});
    QVERIFY(process.waitForFinished(120000));
    const QByteArray raw = process.readAll();
    const QString output = QString::fromLocal8Bit(raw);
    const auto fail = [&raw] { return raw.constData(); };

    QVERIFY2(output.contains(QLatin1String("crash_here")), fail());
    // Split the backtrace into threads; the selected one is the crashing thread.
    const QRegularExpression threadLine(QStringLiteral("^\\s*(\\*\\s*)?thread #\\d+"));
    const QRegularExpression frameLine(QStringLiteral("^\\s*(\\*\\s*)?frame #\\d+"));
    QStringList blocks;
    bool crashedBlock = false;
    int crashedFrames = 0;
    int threads = 0;
    for (const QString& line : output.split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch m = threadLine.match(line);
        if (m.hasMatch()) {
            ++threads;
            crashedBlock = !m.captured(1).isEmpty();
            blocks.append(line);
        } else if (!blocks.isEmpty()) {
            blocks.last() += QLatin1Char('\n') + line;
            if (crashedBlock && frameLine.match(line).hasMatch())
                ++crashedFrames;
        }
    }
    QVERIFY2(threads >= 2, fail());
    QVERIFY2(crashedFrames > 1, fail());
    bool crashInSelected = false, mainWaits = false;
    for (const QString& block : blocks) {
        crashInSelected |= block.trimmed().startsWith(QLatin1Char('*')) && block.contains(QLatin1String("crash_here"));
        mainWaits |= block.contains(QLatin1String("main_waits"));
    }
    QVERIFY2(crashInSelected, fail());
    // The other thread unwinds too: its registers and its stack match.
    QVERIFY2(mainWaits, fail());
}

void TestMinidumpLinux::listsEveryThread()
{
    // Seven idle threads, the crashing one and the main thread.
    QTemporaryDir dir;
    const CrashRun run = RunCrasher(dir.path(), {QStringLiteral("--threads"), QStringLiteral("7")});
    QVERIFY(run.signaled);
    QCOMPARE(run.signal, SIGSEGV);
    COMPARE_HANDLER_OUT(run.handler);
    const Minidump dump(run.dump);
    const QVector<Thread> threads = dump.threads();
    QCOMPARE(threads.size(), 9);
    QSet<quint32> tids;
    for (const Thread& t : threads) {
        tids.insert(t.tid);
        QVERIFY(dump.u64(t.context.rva + kIpOffset) != 0);
        QVERIFY(t.stack.size > 0);
    }
    QCOMPARE(tids.size(), 9);
    QVERIFY(tids.contains(run.dec(QStringLiteral("pid"))));
    checkCrashThread(dump, run);
}

void TestMinidumpLinux::withoutPtrace_data()
{
    QTest::addColumn<QString>("denied");
    // Tracing refused: the helper still writes the dump.
    QTest::newRow("ptrace") << QStringLiteral("ptrace");
    // No helper process: the crashing thread writes the dump itself.
    QTest::newRow("clone") << QStringLiteral("clone");
}

void TestMinidumpLinux::withoutPtrace()
{
    QFETCH(QString, denied);
    QTemporaryDir dir;
    const CrashRun run = RunCrasher(dir.path(), {QStringLiteral("--deny"), denied});
    QVERIFY(run.signaled);
    QCOMPARE(run.signal, SIGSEGV);
    COMPARE_HANDLER_OUT(run.handler);
    const Minidump dump(run.dump);
    const QVector<Thread> threads = dump.threads();
    // Every thread is listed; only the crashing one has registers.
    QCOMPARE(threads.size(), 2);
    checkCrashThread(dump, run);
    for (const Thread& t : threads) {
        if (t.tid == run.dec(QStringLiteral("crash_tid")))
            continue;
        QCOMPARE(t.tid, run.dec(QStringLiteral("pid")));
        QCOMPARE(t.context.size, kContextSize);
        QCOMPARE(dump.u32(t.context.rva + kFlagsOffset), kContextArch);
        QCOMPARE(dump.u64(t.context.rva + kIpOffset), quint64(0));
    }
    QVERIFY(dump.modules().size() >= 3);
    QVERIFY(!run.dump.contains(kSecret));
}

void TestMinidumpLinux::undumpableProcess()
{
    // A process that is not dumpable hides its memory, maps and auxv from every other
    // process of its user, the helper included (unless it may trace anything).
    QTemporaryDir dir;
    QCOMPARE(chmod(QFile::encodeName(dir.path()).constData(), 0777), 0);
    const CrashRun run = RunCrasher(dir.path(), {QStringLiteral("--undumpable")}, true);
    QVERIFY(run.signaled);
    QCOMPARE(run.signal, SIGSEGV);
    COMPARE_HANDLER_OUT(run.handler);
    const Minidump dump(run.dump);
    QCOMPARE(dump.threads().size(), 2);
    checkCrashThread(dump, run);
    if (QTest::currentTestFailed())
        return;
    const QVector<Module> modules = dump.modules();
    QVERIFY(modules.size() >= 3);
    QCOMPARE(QFileInfo(modules.first().name).canonicalFilePath(),
             QFileInfo(QStringLiteral(ZV_MINIDUMP_CRASHER)).canonicalFilePath());
    QCOMPARE(modules.first().buildId.toHex(), FileBuildId(modules.first().name).toHex());
    QVERIFY(dump.streamBytes(LinuxMaps).contains("zv_minidump_crasher"));
    QVERIFY(dump.streamBytes(LinuxAuxv).size() >= 32);
    QVERIFY(!run.dump.contains(kSecret));
}

void TestMinidumpLinux::dumpOfRunningProcess()
{
    // Not only for crashes: a running process can dump itself and go on.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("running.dmp"));
    {
        // An older, larger file is replaced, not overwritten in part.
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write(QByteArray(8 << 20, 'x'));
    }

    std::atomic<bool> stop{false};
    std::atomic<quint64> ticks{0};
    std::atomic<pid_t> workerTid{0};
    std::thread worker([&] {
        workerTid = pid_t(syscall(SYS_gettid));
        while (!stop.load(std::memory_order_relaxed))
            ticks.fetch_add(1, std::memory_order_relaxed);
    });
    while (!workerTid.load())
        std::this_thread::yield();

    ucontext_t context;
    memset(&context, 0, sizeof context);
    QCOMPARE(getcontext(&context), 0);
    siginfo_t info;
    memset(&info, 0, sizeof info);
    info.si_signo = SIGUSR1;
    info.si_code = SI_USER;
    const pid_t self = pid_t(syscall(SYS_gettid));
    const bool written = WriteLinuxMinidump(QFile::encodeName(path).constData(), SIGUSR1, &info, &context, self);

    // The worker was stopped only while the dump was taken.
    const quint64 before = ticks.load();
    QTRY_VERIFY_WITH_TIMEOUT(ticks.load() > before, 5000);
    QFile status(QStringLiteral("/proc/self/status"));
    QVERIFY(status.open(QIODevice::ReadOnly));
    QVERIFY(status.readAll().contains("\nTracerPid:\t0\n"));
    stop = true;
    worker.join();
    QVERIFY(written);

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.startsWith("MDMP"));
    QVERIFY(!bytes.contains(QByteArray(64, 'x')));
    const Minidump dump(bytes);

    const Location ex = dump.stream(ExceptionStream);
    QCOMPARE(dump.u32(ex.rva), quint32(self));
    QCOMPARE(dump.u32(ex.rva + 8), quint32(SIGUSR1));
    QCOMPARE(dump.u64(ex.rva + 24), quint64(0));

    bool haveSelf = false, haveWorker = false;
    for (const Thread& t : dump.threads()) {
        const quint64 ip = dump.u64(t.context.rva + kIpOffset);
        const quint64 sp = dump.u64(t.context.rva + kSpOffset);
        if (t.tid == quint32(self)) {
            haveSelf = true;
#if defined(__x86_64__)
            QCOMPARE(ip, quint64(context.uc_mcontext.gregs[REG_RIP]));
#endif
        } else if (t.tid == quint32(workerTid.load())) {
            haveWorker = true;
            QVERIFY(ip != 0);
            QVERIFY(t.stack.size > 0);
            QVERIFY(sp >= t.stackStart && sp < t.stackStart + t.stack.size);
        }
    }
    QVERIFY(haveSelf);
    QVERIFY(haveWorker);
}

void TestMinidumpLinux::unwritablePathCreatesNothing()
{
    QTemporaryDir dir;
    const auto write = [](const QString& path) {
        return WriteLinuxMinidump(QFile::encodeName(path).constData(), SIGSEGV, nullptr, nullptr,
                                  pid_t(syscall(SYS_gettid)));
    };

    // A folder that does not exist.
    QVERIFY(!write(dir.filePath(QStringLiteral("missing/deeper/crash.dmp"))));
    QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("missing"))));
    // A path that names a folder.
    QVERIFY(!write(dir.path()));
    // No path at all.
    QVERIFY(!WriteLinuxMinidump(nullptr, SIGSEGV, nullptr, nullptr, 0));
    QVERIFY(!WriteLinuxMinidump("", SIGSEGV, nullptr, nullptr, 0));

    // A read-only folder. Root writes anywhere, so the attempt runs in a child that
    // gives up root first.
    QCOMPARE(chmod(QFile::encodeName(dir.path()).constData(), 0755), 0);
    const QString locked = dir.filePath(QStringLiteral("locked"));
    QVERIFY(QDir().mkdir(locked));
    QCOMPARE(chmod(QFile::encodeName(locked).constData(), 0555), 0);
    const QByteArray lockedTarget = QFile::encodeName(locked + QStringLiteral("/crash.dmp"));
    const pid_t child = fork();
    QVERIFY(child >= 0);
    if (child == 0) {
        if (geteuid() == 0) {
            const gid_t nobody = 65534;
            if (setgroups(0, nullptr) != 0 || setresgid(nobody, nobody, nobody) != 0
                || setresuid(nobody, nobody, nobody) != 0)
                _exit(2);
        }
        const bool ok = WriteLinuxMinidump(lockedTarget.constData(), SIGSEGV, nullptr, nullptr,
                                           pid_t(syscall(SYS_gettid)));
        _exit(ok ? 1 : 0);
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 0);
    QVERIFY(QDir(locked).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden).isEmpty());
    chmod(QFile::encodeName(locked).constData(), 0755);

    QCOMPARE(QDir(dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
             QStringList{QStringLiteral("locked")});
}

QTEST_GUILESS_MAIN(TestMinidumpLinux)

#include "tst_minidump_linux.moc"
