#include "cdatacollectionga4_p.h"

#include <QtCore/QDir>

#include <windows.h>

namespace ZVFoundationPrivate {
namespace AnalyticsSpool {

void currentUtcTime(std::int64_t* seconds, int* milliseconds) noexcept
{
    // FILETIME counts 100 ns intervals since 1601-01-01T00:00:00Z.
    constexpr std::uint64_t UnixEpoch = 116444736000000000ULL;
    constexpr std::uint64_t TicksPerSecond = 10000000ULL;
    FILETIME now;
    ::GetSystemTimeAsFileTime(&now);
    const std::uint64_t ticks = (std::uint64_t(now.dwHighDateTime) << 32) | now.dwLowDateTime;
    if (ticks < UnixEpoch) {
        *seconds = 0;
        *milliseconds = 0;
        return;
    }
    const std::uint64_t sinceEpoch = ticks - UnixEpoch;
    *seconds = std::int64_t(sinceEpoch / TicksPerSecond);
    *milliseconds = int(sinceEpoch % TicksPerSecond / 10000);
}

QByteArray nativeSpoolPath(const QString& path)
{
    if (path.isEmpty())
        return QByteArray();
    const QString native = QDir::toNativeSeparators(path);
    // utf16() is zero terminated; the terminator is copied along.
    return QByteArray(reinterpret_cast<const char*>(native.utf16()),
                      (native.size() + 1) * int(sizeof(wchar_t)));
}

namespace {

// Where the last whole line of the file ends (0 when it has none): the offset just past
// its last line feed. -1 when the file cannot be read.
LONGLONG endOfLastLine(HANDLE file, LONGLONG size) noexcept
{
    char buffer[4096];
    LONGLONG end = size;
    while (end > 0) {
        const LONGLONG start = end > LONGLONG(sizeof buffer) ? end - LONGLONG(sizeof buffer) : 0;
        OVERLAPPED at = {};
        at.Offset = DWORD(start & 0xffffffff);
        at.OffsetHigh = DWORD(start >> 32);
        DWORD got = 0;
        if (!::ReadFile(file, buffer, DWORD(end - start), &got, &at) || LONGLONG(got) != end - start)
            return -1;
        for (LONGLONG i = LONGLONG(got) - 1; i >= 0; --i) {
            if (buffer[i] == '\n')
                return start + i + 1;
        }
        end = start;
    }
    return 0;
}

// Cuts the file at offset.
bool truncateAt(HANDLE file, LONGLONG offset) noexcept
{
    LARGE_INTEGER position;
    position.QuadPart = offset;
    return ::SetFilePointerEx(file, position, nullptr, FILE_BEGIN) && ::SetEndOfFile(file);
}

} // namespace

bool appendToSpool(const char* nativePath, const char* data, std::size_t size) noexcept
{
    const DWORD savedError = ::GetLastError();
    const auto fail = [savedError](HANDLE file) {
        if (file != INVALID_HANDLE_VALUE)
            ::CloseHandle(file);
        ::SetLastError(savedError);
        return false;
    };

    if (size > MAXDWORD)
        return fail(INVALID_HANDLE_VALUE);

    // Sharing lets the uploader read and rename the spool meanwhile. A folder at the path
    // does not open (that needs FILE_FLAG_BACKUP_SEMANTICS); anything but a file on a
    // disk (a pipe, a device) is refused below.
    const HANDLE file = ::CreateFileW(reinterpret_cast<const wchar_t*>(nativePath), GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE || ::GetFileType(file) != FILE_TYPE_DISK)
        return fail(file);

    // One writer at a time, across threads and processes: the writers take turns on one
    // byte far beyond any real end of the file, which readers never touch, so the
    // uploader is not held up. Windows drops the lock when the handle is closed, also
    // when the process is killed.
    OVERLAPPED lockByte = {};
    lockByte.OffsetHigh = 0x7fffffff;
    if (!::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &lockByte))
        return fail(file);
    const auto unlockAndFail = [&] {
        ::UnlockFileEx(file, 0, 1, 0, &lockByte);
        return fail(file);
    };

    // A writer killed in the middle of a line leaves it without its line end, and
    // readers take only whole lines; it is cut off here, before a new line could be
    // glued to it.
    LARGE_INTEGER size64;
    if (!::GetFileSizeEx(file, &size64))
        return unlockAndFail();
    LONGLONG before = size64.QuadPart;
    if (before > 0) {
        const LONGLONG whole = endOfLastLine(file, before);
        if (whole < 0)
            return unlockAndFail();
        if (whole != before) {
            if (!truncateAt(file, whole))
                return unlockAndFail();
            before = whole;
        }
    }

    // The line goes to the end; a short write (disk full) is taken back, so that no
    // partial line stays behind.
    LARGE_INTEGER end;
    end.QuadPart = before;
    if (!::SetFilePointerEx(file, end, nullptr, FILE_BEGIN))
        return unlockAndFail();
    std::size_t done = 0;
    while (done < size) {
        DWORD written = 0;
        if (!::WriteFile(file, data + done, DWORD(size - done), &written, nullptr) || written == 0) {
            truncateAt(file, before);
            return unlockAndFail();
        }
        done += written;
    }
    if (!::FlushFileBuffers(file))
        return unlockAndFail();
    ::UnlockFileEx(file, 0, 1, 0, &lockByte);
    ::CloseHandle(file);
    ::SetLastError(savedError);
    return true;
}

} // namespace AnalyticsSpool
} // namespace ZVFoundationPrivate
