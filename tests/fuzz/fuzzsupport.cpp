#include "fuzzsupport.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QtGlobal>
#include <QtWidgets/QApplication>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ZVFuzz {

namespace {

// Names the process that owns the folder it runs from; a process started from the copy
// by other means (libFuzzer's workers) has another pid and makes a folder of its own.
constexpr char kOwnerVariable[] = "ZVFUZZ_FOLDER_OWNER";

volatile sig_atomic_t g_child = 0;

void forwardSignal(int sig)
{
    if (g_child > 0)
        ::kill(pid_t(g_child), sig);
}

bool copyFile(const char* from, const char* to)
{
    const int in = ::open(from, O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return false;
    const int out = ::open(to, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0700);
    if (out < 0) {
        ::close(in);
        return false;
    }
    bool ok = true;
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = ::read(in, buffer, sizeof buffer);
        if (n == 0)
            break;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            ok = false;
            break;
        }
        for (ssize_t done = 0; done < n;) {
            const ssize_t w = ::write(out, buffer + done, size_t(n - done));
            if (w < 0 && errno == EINTR)
                continue;
            if (w <= 0) {
                ok = false;
                break;
            }
            done += w;
        }
        if (!ok)
            break;
    }
    ::close(in);
    return ::close(out) == 0 && ok;
}

void quiet(QtMsgType, const QMessageLogContext&, const QString&)
{
}

} // namespace

void RunFromPrivateFolder(int* argc, char*** argv)
{
    Q_UNUSED(argc);
    const char* owner = ::getenv(kOwnerVariable);
    if (owner && std::strtol(owner, nullptr, 10) == long(::getpid()))
        return;

    const char* tmp = ::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/zvfuzz-XXXXXX";
    std::vector<char> folder(pattern.begin(), pattern.end());
    folder.push_back('\0');
    if (!::mkdtemp(folder.data())) {
        std::perror("zvfuzz: mkdtemp");
        std::_Exit(1);
    }

    char self[PATH_MAX + 1] = {};
    const ssize_t length = ::readlink("/proc/self/exe", self, PATH_MAX);
    if (length <= 0) {
        std::perror("zvfuzz: /proc/self/exe");
        std::_Exit(1);
    }
    const char* slash = std::strrchr(self, '/');
    const std::string copy = std::string(folder.data()) + "/" + (slash ? slash + 1 : self);
    if (!copyFile(self, copy.c_str())) {
        std::perror("zvfuzz: copying the executable");
        std::_Exit(1);
    }

    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child < 0) {
        std::perror("zvfuzz: fork");
        std::_Exit(1);
    }
    if (child == 0) {
        // Killed outright (a test's timeout), this process takes the copy with it.
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() != parent)
            std::_Exit(1);
        ::setenv(kOwnerVariable, std::to_string(long(::getpid())).c_str(), 1);
        ::execv(copy.c_str(), *argv);
        std::perror("zvfuzz: exec");
        std::_Exit(127);
    }

    // An interrupted run (^C, a timeout's SIGTERM) ends the copy too, which then saves
    // what it has, as libFuzzer does.
    g_child = child;
    for (int sig : {SIGINT, SIGTERM, SIGHUP})
        ::signal(sig, forwardSignal);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    QDir(QString::fromLocal8Bit(folder.data())).removeRecursively();

    // _Exit: this process ran nothing that needs cleaning up, and a sanitizer's exit
    // checks have nothing to say about it.
    if (WIFEXITED(status))
        std::_Exit(WEXITSTATUS(status));
    const int sig = WIFSIGNALED(status) ? WTERMSIG(status) : SIGABRT;
    ::signal(sig, SIG_DFL);
    ::raise(sig);
    std::_Exit(128 + sig);
}

QString ProductFolder()
{
    static const QString folder = [] {
        char self[PATH_MAX + 1] = {};
        const ssize_t length = ::readlink("/proc/self/exe", self, PATH_MAX);
        const QString path = QFile::decodeName(QByteArray(self, int(length > 0 ? length : 0)));
        return path.left(path.lastIndexOf(QLatin1Char('/')) + 1);
    }();
    return folder;
}

bool WriteProductFile(const QString& relative, const QByteArray& bytes)
{
    const QString path = ProductFolder() + relative;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size()
        && file.flush();
}

void RemoveProductFile(const QString& relative)
{
    QFile::remove(ProductFolder() + relative);
}

QByteArray ReadProductFile(const QString& relative)
{
    QFile file(ProductFolder() + relative);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void StartApplication(int* argc, char*** argv, bool widgets)
{
    // Qt gets arguments of its own: it would take some of libFuzzer's for its own.
    static int qtArgc = 1;
    static char* qtArgv[] = {argc && *argc > 0 ? (*argv)[0] : const_cast<char*>("zvfuzz"), nullptr};
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    qInstallMessageHandler(quiet);
    // Kept to the end of the process, as an application's is.
    if (widgets)
        new QApplication(qtArgc, qtArgv);
    else
        new QCoreApplication(qtArgc, qtArgv);
}

void Fail(const char* what, const char* file, int line)
{
    std::fprintf(stderr, "zvfuzz: %s:%d: check failed: %s\n", file, line, what);
    std::abort();
}

} // namespace ZVFuzz
