// The scenario harness: a fresh folder holding a copy of zvprobe and its fixture files;
// each run is a process of its own.
#ifndef ZVCORE_TESTS_PROBE_H
#define ZVCORE_TESTS_PROBE_H

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QThread>

#include <cerrno>
#include <vector>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>

class ProbeRun
{
public:
    int exitCode = -1;
    bool finished = false;
    qint64 elapsedMs = 0; // from the start to the end (or to the timeout)
    QList<QJsonObject> reports;
    QStringList log; // one Qt message per entry, as the frame wrote it

    QJsonObject report(const QString& cmd) const
    {
        for (const QJsonObject& r : reports) {
            if (r.value(QStringLiteral("cmd")).toString() == cmd)
                return r;
        }
        return QJsonObject();
    }
    bool logged(const QString& line) const { return log.contains(line); }
};

class ProbeFolder
{
public:
    // \a sub names a folder inside the temporary one, so paths with blanks and
    // non-ASCII letters can be tried.
    explicit ProbeFolder(const QString& sub = QStringLiteral("product"))
    {
        m_path = m_tmp.path() + QLatin1Char('/') + sub;
        QDir().mkpath(m_path);
        m_program = m_path + QStringLiteral("/zvprobe") + exeSuffix();
        QFile::copy(QStringLiteral(ZV_PROBE_PATH), m_program);
        QFile::setPermissions(m_program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    // Runs the probe without the capabilities that let root read any file, so that
    // permission tests mean the same for root as for a user. Needs util-linux setpriv.
    void setHonourFilePermissions(bool on) { m_honourPermissions = on; }
    static bool canHonourFilePermissions()
    {
#ifdef Q_OS_WIN
        return false;
#else
        return !QStandardPaths::findExecutable(QStringLiteral("setpriv")).isEmpty();
#endif
    }

    // What the programs' file names end with: ".exe" on Windows.
    static QString exeSuffix()
    {
#ifdef Q_OS_WIN
        return QStringLiteral(".exe");
#else
        return QString();
#endif
    }

    // Copies the stand-in companion program under \a names (e.g. "Feedback",
    // "appAutoUpdate") beside the probe.
    bool installStandIns(const QStringList& names) const
    {
        for (const QString& name : names) {
            const QString target = file(name + exeSuffix());
            if (!QFile::copy(QStringLiteral(ZV_STANDIN_PATH), target)
                || !QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
                return false;
        }
        return true;
    }

    // The argument lists a stand-in received, one per start, waiting up to \a waitMs
    // for at least \a expected starts (stand-ins run detached).
    QList<QStringList> standInStarts(const QString& name, int expected = 1, int waitMs = 10000) const
    {
        QList<QStringList> starts;
        QElapsedTimer timer;
        timer.start();
        for (;;) {
            starts.clear();
            QFile f(file(name + QStringLiteral("-args.jsonl")));
            if (f.open(QIODevice::ReadOnly)) {
                for (const QByteArray& line : f.readAll().split('\n')) {
                    if (line.isEmpty())
                        continue;
                    QStringList arguments;
                    for (const QJsonValue& v : QJsonDocument::fromJson(line).array())
                        arguments.append(v.toString());
                    starts.append(arguments);
                }
            }
            if (starts.size() >= expected || timer.elapsed() > waitMs)
                return starts;
            QThread::msleep(50);
        }
    }

#ifdef Q_OS_WIN
    // Gives the copied probe a version resource (the fixed file information of a
    // VS_VERSIONINFO block) holding \a a.\a b.\a c.\a d, which Windows reads as the
    // program's version.
    bool setFileVersion(quint16 a, quint16 b, quint16 c, quint16 d) const
    {
        QByteArray block;
        const auto word = [&block](quint16 v) { block.append(char(v & 0xff)).append(char(v >> 8)); };
        const auto dword = [&](quint32 v) {
            word(quint16(v & 0xffff));
            word(quint16(v >> 16));
        };
        word(0); // length, set below
        word(52); // the size of VS_FIXEDFILEINFO
        word(0); // binary
        for (const char16_t c : u"VS_VERSION_INFO") // with its terminating zero
            word(c);
        while (block.size() % 4)
            block.append('\0');
        dword(0xFEEF04BD);
        dword(0x00010000);
        dword((quint32(a) << 16) | b);
        dword((quint32(c) << 16) | d);
        dword((quint32(a) << 16) | b);
        dword((quint32(c) << 16) | d);
        dword(0x3f); // flags mask
        dword(0); // flags
        dword(0x40004); // VOS_NT_WINDOWS32
        dword(1); // VFT_APP
        dword(0);
        dword(0);
        dword(0);
        block[0] = char(block.size() & 0xff);
        block[1] = char(block.size() >> 8);
        const HANDLE update = BeginUpdateResourceW(reinterpret_cast<const wchar_t*>(m_program.utf16()), FALSE);
        if (!update)
            return false;
        const bool ok = UpdateResourceW(update, MAKEINTRESOURCEW(16) /* RT_VERSION */, MAKEINTRESOURCEW(1), MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL),
                                        block.data(), DWORD(block.size()));
        return EndUpdateResourceW(update, !ok) && ok;
    }
#endif

#ifdef Q_OS_WIN
    // Windows keeps the analytics spool in the user's application data folder, which every
    // probe of the Wine prefix shares (XDG_DATA_HOME means nothing there): its path, with
    // the spool emptied, for the tests that read it. Those tests hold the ctest resource
    // lock "zv_shared_spool", so that no other test writes to it meanwhile.
    QString freshSharedSpool() const
    {
        const QString path = run({QStringLiteral("spoolpath")}).report(QStringLiteral("spoolpath")).value(QStringLiteral("spool")).toString();
        if (!path.isEmpty())
            QFile::remove(path);
        return path;
    }
#endif

    // The commands that arm the crash handler as a host does: crash mail \a crashMail, user
    // "user@example.com", sender "send@example.com" with password "pwd", and a callback
    // that writes the signal or exception code it gets to callback.txt beside the probe.
    QStringList crashHandlerSetUp(const QString& crashMail) const
    {
        return {QStringLiteral("crashhandle"), QStringLiteral("setcrashmail:") + crashMail,
                QStringLiteral("setuser:user@example.com"), QStringLiteral("setsend:send@example.com|pwd"),
                QStringLiteral("crashcallback:") + file(QStringLiteral("callback.txt"))};
    }

    bool isValid() const { return m_tmp.isValid() && QFileInfo(m_program).isExecutable(); }
    QString path() const { return m_path; }
    QString file(const QString& relative) const { return m_path + QLatin1Char('/') + relative; }

    bool write(const QString& relative, const QByteArray& bytes) const
    {
        const QString target = file(relative);
        QDir().mkpath(QFileInfo(target).path());
        QFile f(target);
        return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
    }

    // How long run() waits before it kills the probe; 60 s unless set.
    void setTimeout(int ms) { m_timeoutMs = ms; }

    // Starts the probe as run() does, without waiting for it.
    void start(QProcess& p, const QStringList& commands, const QString& workingDirectory = QDir::rootPath(),
               const QProcessEnvironment& extra = QProcessEnvironment()) const
    {
        p.setWorkingDirectory(workingDirectory);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("QT_MESSAGE_PATTERN"), QStringLiteral("%{message}"));
        env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.qpa.*=false"));
        for (const QString& key : extra.keys())
            env.insert(key, extra.value(key));
        p.setProcessEnvironment(env);
        if (m_honourPermissions) {
            p.start(QStringLiteral("setpriv"),
                    QStringList{QStringLiteral("--bounding-set"), QStringLiteral("-dac_override,-dac_read_search"),
                                m_program}
                        + commands);
        } else {
            p.start(m_program, commands);
        }
    }

    ProbeRun run(const QStringList& commands, const QString& workingDirectory = QDir::rootPath(),
                 const QProcessEnvironment& extra = QProcessEnvironment()) const
    {
        QProcess p;
        QElapsedTimer timer;
        timer.start();
        start(p, commands, workingDirectory, extra);
        ProbeRun result;
        result.finished = p.waitForFinished(m_timeoutMs);
        result.elapsedMs = timer.elapsed();
        if (!result.finished)
            p.kill();
        p.waitForFinished();
        result.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
        for (const QByteArray& line : p.readAllStandardOutput().split('\n')) {
            if (!line.trimmed().isEmpty())
                result.reports.append(QJsonDocument::fromJson(line).object());
        }
        const QString err = QString::fromUtf8(p.readAllStandardError());
        for (QString line : err.split(QLatin1Char('\n'))) {
#ifdef Q_OS_WIN
            // The C runtime writes a CR before each line feed of a text stream.
            if (line.endsWith(QLatin1Char('\r')))
                line.chop(1);
#endif
            if (!line.isEmpty())
                result.log.append(line);
        }
        return result;
    }

    // Runs the probe and reports how it ended: the signal that killed it (0 when it
    // exited) and its exit code; its output goes to probe.out and probe.err beside it.
    struct Death
    {
        int signal = 0;
        int exitCode = -1;
        qint64 elapsedMs = 0;
    };
#ifdef Q_OS_WIN
    // On Windows "signal" is the exception code a crashed probe ended with.
    Death runUntilDeath(const QStringList& commands) const
    {
        Death death;
        QProcess p;
        p.setWorkingDirectory(QDir::rootPath());
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("QT_MESSAGE_PATTERN"), QStringLiteral("%{message}"));
        p.setProcessEnvironment(env);
        p.setStandardOutputFile(file(QStringLiteral("probe.out")));
        p.setStandardErrorFile(file(QStringLiteral("probe.err")));
        QElapsedTimer timer;
        timer.start();
        p.start(m_program, commands);
        p.waitForFinished(-1);
        death.elapsedMs = timer.elapsed();
        if (p.exitStatus() == QProcess::CrashExit)
            death.signal = p.exitCode() ? p.exitCode() : -1;
        else
            death.exitCode = p.exitCode();
        return death;
    }
#else
    Death runUntilDeath(const QStringList& commands) const
    {
        Death death;
        QList<QByteArray> args{QFile::encodeName(m_program)};
        if (m_honourPermissions) {
            const QByteArray setpriv = QFile::encodeName(QStandardPaths::findExecutable(QStringLiteral("setpriv")));
            args = QList<QByteArray>{setpriv, "--bounding-set", "-dac_override,-dac_read_search"} + args;
        }
        for (const QString& c : commands)
            args.append(c.toUtf8());
        std::vector<char*> argv;
        for (QByteArray& a : args)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        const QByteArray out = QFile::encodeName(file(QStringLiteral("probe.out")));
        const QByteArray err = QFile::encodeName(file(QStringLiteral("probe.err")));
        QElapsedTimer timer;
        timer.start();
        const pid_t child = ::fork();
        if (child == 0) {
            ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
            ::setenv("QT_MESSAGE_PATTERN", "%{message}", 1);
            if (::chdir("/") != 0)
                ::_exit(126);
            const int o = ::open(out.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            const int e = ::open(err.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            ::dup2(o, 1);
            ::dup2(e, 2);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
        int status = 0;
        while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
        }
        death.elapsedMs = timer.elapsed();
        if (WIFSIGNALED(status))
            death.signal = WTERMSIG(status);
        else if (WIFEXITED(status))
            death.exitCode = WEXITSTATUS(status);
        return death;
    }

#endif

private:
    QTemporaryDir m_tmp;
    QString m_path;
    QString m_program;
    bool m_honourPermissions = false;
    int m_timeoutMs = 60000;
};

#endif // ZVCORE_TESTS_PROBE_H
