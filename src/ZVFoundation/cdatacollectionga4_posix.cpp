#include "cdatacollectionga4_p.h"

#include <QtCore/QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
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

// The offset just past the last line end in the file's first \a size bytes, 0 when there
// is none: where a line cut short by a killed writer begins.
off_t endOfLastLine(int fd, off_t size) noexcept
{
    char buffer[4096];
    off_t end = size;
    while (end > 0) {
        const off_t start = end > off_t(sizeof buffer) ? end - off_t(sizeof buffer) : 0;
        ssize_t got;
        do {
            got = ::pread(fd, buffer, size_t(end - start), start);
        } while (got < 0 && errno == EINTR);
        if (got != end - start)
            return -1;
        for (ssize_t i = got - 1; i >= 0; --i) {
            if (buffer[i] == '\n')
                return start + i + 1;
        }
        end = start;
    }
    return 0;
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
    const auto fail = [savedErrno](int fd) {
        if (fd >= 0)
            ::close(fd);
        errno = savedErrno;
        return false;
    };

    // O_NONBLOCK: opening a FIFO put in the spool's place would otherwise wait for a
    // reader; regular files ignore the flag.
    int fd;
    do {
        fd = ::open(nativePath, O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0)
        return fail(fd);
    struct stat info;
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode))
        return fail(fd);

    // One writer at a time, across threads and processes. The lock belongs to this open
    // file, so the kernel drops it when the descriptor is closed, also when the process
    // is killed.
    int locked;
    do {
        locked = ::flock(fd, LOCK_EX);
    } while (locked != 0 && errno == EINTR);
    if (locked != 0)
        return fail(fd);

    // A write that is killed may stop at a page boundary: the kernel checks for a fatal
    // signal between pages. Such a line has no line end yet, and readers take only whole
    // lines; it is cut off here, before a new line could be glued to it.
    if (::fstat(fd, &info) != 0)
        return fail(fd);
    off_t before = info.st_size;
    if (before > 0) {
        const off_t whole = endOfLastLine(fd, before);
        if (whole < 0)
            return fail(fd);
        if (whole != before) {
            if (::ftruncate(fd, whole) != 0)
                return fail(fd);
            before = whole;
        }
    }

    // With O_APPEND the line goes to the end of the file; a short write (disk full) is
    // taken back, so that no partial line stays behind.
    std::size_t done = 0;
    while (done < size) {
        const ssize_t written = ::write(fd, data + done, size - done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            int truncated;
            do {
                truncated = ::ftruncate(fd, before);
            } while (truncated != 0 && errno == EINTR);
            return fail(fd);
        }
        done += std::size_t(written);
    }
    if (flushData(fd) != 0)
        return fail(fd);
    ::close(fd);

    errno = savedErrno;
    return true;
}

} // namespace AnalyticsSpool
} // namespace ZVFoundationPrivate
