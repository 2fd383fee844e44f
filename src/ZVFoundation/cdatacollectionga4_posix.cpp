#include "cdatacollectionga4_p.h"

#include <QtCore/QFile>

#include <cerrno>

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

namespace ZVFoundationPrivate {
namespace AnalyticsSpool {

namespace {

int flushData(int fd) noexcept
{
#if defined(__APPLE__)
    // fsync alone leaves the data in the drive's cache on these systems.
    if (::fcntl(fd, F_FULLFSYNC) == 0)
        return 0;
    return ::fsync(fd);
#else
    return ::fdatasync(fd);
#endif
}

} // namespace

void currentUtcTime(std::int64_t* seconds, int* milliseconds) noexcept
{
    struct timespec now = {};
    if (::clock_gettime(CLOCK_REALTIME, &now) != 0) {
        *seconds = 0;
        *milliseconds = 0;
        return;
    }
    *seconds = std::int64_t(now.tv_sec);
    *milliseconds = int(now.tv_nsec / 1000000);
}

QByteArray nativeSpoolPath(const QString& path)
{
    return QFile::encodeName(path);
}

bool appendToSpool(const char* nativePath, const char* data, std::size_t size) noexcept
{
    // The code a crash handler interrupted may still look at errno afterwards.
    const int savedErrno = errno;

    int fd;
    do {
        fd = ::open(nativePath, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        errno = savedErrno;
        return false;
    }

    // A single write with O_APPEND puts the whole line at the end of the file at once,
    // so lines from other threads and processes cannot land inside it. A short write
    // (disk full) is not continued, as the rest could no longer be kept together.
    ssize_t written;
    do {
        written = ::write(fd, data, size);
    } while (written < 0 && errno == EINTR);
    bool ok = written >= 0 && std::size_t(written) == size;
    if (flushData(fd) != 0)
        ok = false;
    ::close(fd);

    errno = savedErrno;
    return ok;
}

} // namespace AnalyticsSpool
} // namespace ZVFoundationPrivate
