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

bool appendToSpool(const char* nativePath, const char* data, std::size_t size) noexcept
{
    const DWORD savedError = ::GetLastError();

    if (size > MAXDWORD) {
        ::SetLastError(savedError);
        return false;
    }

    // With FILE_APPEND_DATA as the only right, every WriteFile goes to the end of the
    // file as one piece, so lines from other threads and processes cannot land inside
    // one another. Sharing lets the uploader read and rename the spool meanwhile.
    const HANDLE file = ::CreateFileW(reinterpret_cast<const wchar_t*>(nativePath), FILE_APPEND_DATA,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        ::SetLastError(savedError);
        return false;
    }

    DWORD written = 0;
    bool ok = ::WriteFile(file, data, DWORD(size), &written, nullptr) && written == size;
    if (!::FlushFileBuffers(file))
        ok = false;
    ::CloseHandle(file);

    ::SetLastError(savedError);
    return ok;
}

} // namespace AnalyticsSpool
} // namespace ZVFoundationPrivate
