#ifndef ZVFOUNDATION_CDATACOLLECTIONGA4_P_H
#define ZVFOUNDATION_CDATACOLLECTIONGA4_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVFoundation API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVFoundation/zvfoundation_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <cstdint>

// Pieces of the analytics spool writer. Except for nativeSpoolPath(), they use neither
// Qt nor the C library's locale or time functions, take no locks and do not allocate,
// so they are safe in a crash handler.
namespace ZVFoundationPrivate {
namespace AnalyticsSpool {

// Length of "YYYY-MM-DDTHH:MM:SS.mmmZ".
constexpr std::size_t TimestampSize = 24;

// Writes the UTC time that lies seconds and milliseconds after 1970-01-01T00:00:00Z as
// "YYYY-MM-DDTHH:MM:SS.mmmZ" into out, which has room for TimestampSize characters (no
// terminating zero is written). Years 0000 to 9999 of the proleptic Gregorian
// calendar are supported; outside them, or when milliseconds is not 0..999, nothing
// is written and the result is false.
ZVFOUNDATION_AUTOTEST_EXPORT bool formatUtcTimestamp(std::int64_t seconds, int milliseconds,
                                                     char* out) noexcept;

// The contents of a JSON string literal (without the quotes) for the text, in UTF-8:
// '"' and '\' are escaped with a backslash, the control characters U+0000..U+001F and
// U+007F as \u00xx, everything else is plain UTF-8. Text that is not well-formed
// (an unpaired surrogate, an invalid UTF-8 sequence) becomes U+FFFD, one per code
// unit, so the result is always valid UTF-8. Writes to out unless it is null and
// returns the number of bytes in either case, at most 6 per input code unit.
ZVFOUNDATION_AUTOTEST_EXPORT std::size_t escapeJsonUtf16(const std::uint16_t* text,
                                                         std::size_t length, char* out) noexcept;
ZVFOUNDATION_AUTOTEST_EXPORT std::size_t escapeJsonUtf8(const char* text, std::size_t length,
                                                        char* out) noexcept;

// The current UTC time as seconds and milliseconds since 1970-01-01T00:00:00Z, read
// from the system clock without the C library's time conversion.
void currentUtcTime(std::int64_t* seconds, int* milliseconds) noexcept;

// path encoded for appendToSpool(): the locally encoded bytes on POSIX systems, zero
// terminated UTF-16 with native separators on Windows. Empty for an empty path.
ZVFOUNDATION_AUTOTEST_EXPORT QByteArray nativeSpoolPath(const QString& path);

// Appends data, one or more whole lines, to the regular file at nativePath (from
// nativeSpoolPath()), creating it (on POSIX systems readable and writable by its owner
// only), and flushes it to disk. The writers take turns through a lock on the file, and
// a partial last line left by a killed writer is cut off first; anything but a regular
// file at that path (a FIFO, a folder) fails without waiting. Keeps errno (POSIX) or the
// last error (Windows) as it was. False on any failure.
ZVFOUNDATION_AUTOTEST_EXPORT bool appendToSpool(const char* nativePath, const char* data,
                                                std::size_t size) noexcept;

} // namespace AnalyticsSpool
} // namespace ZVFoundationPrivate

#endif // ZVFOUNDATION_CDATACOLLECTIONGA4_P_H
