#include "zvprocess.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

#include <cerrno>
#include <csignal>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace ZVBench {

bool Child::start(const QString& program, const QStringList& arguments, const QString& errorFile)
{
    int pipeFds[2];
    if (::pipe2(pipeFds, O_CLOEXEC) != 0)
        return false;
    QList<QByteArray> args{QFile::encodeName(program)};
    for (const QString& a : arguments)
        args.append(a.toLocal8Bit());
    std::vector<char*> argv;
    for (QByteArray& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    const QByteArray err = errorFile.isEmpty() ? QByteArray("/dev/null") : QFile::encodeName(errorFile);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    const int rc = ::posix_spawn(&m_pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeFds[1]);
    if (rc != 0) {
        ::close(pipeFds[0]);
        m_pid = -1;
        return false;
    }
    m_out = pipeFds[0];
    return true;
}

Child::~Child()
{
    if (m_pid > 0)
        kill();
    if (m_out >= 0)
        ::close(m_out);
}

QByteArray Child::readLine(const QByteArray& prefix, int timeoutMs)
{
    if (m_out < 0)
        return QByteArray();
    for (;;) {
        int newline;
        while ((newline = m_buffer.indexOf('\n')) >= 0) {
            const QByteArray line = m_buffer.left(newline);
            m_buffer.remove(0, newline + 1);
            if (line.startsWith(prefix))
                return line.mid(prefix.size());
        }
        pollfd pfd{m_out, POLLIN, 0};
        const int ready = ::poll(&pfd, 1, timeoutMs);
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return QByteArray();
        char chunk[4096];
        const ssize_t n = ::read(m_out, chunk, sizeof chunk);
        if (n <= 0)
            return QByteArray();
        m_buffer.append(chunk, int(n));
    }
}

int Child::wait()
{
    if (m_pid <= 0)
        return -1;
    int status = 0;
    while (::waitpid(m_pid, &status, 0) < 0) {
        if (errno != EINTR) {
            status = -1;
            break;
        }
    }
    m_pid = -1;
    return status;
}

void Child::kill()
{
    if (m_pid <= 0)
        return;
    ::kill(m_pid, SIGKILL);
    wait();
}

QString programFolder()
{
    return QFileInfo(QFile::decodeName(QByteArray("/proc/self/exe"))).canonicalPath();
}

QString valgrindProgram()
{
    return QStandardPaths::findExecutable(QStringLiteral("valgrind"));
}

QString callgrindFolder()
{
    return qEnvironmentVariable("ZVBENCH_CALLGRIND_DIR");
}

} // namespace ZVBench
