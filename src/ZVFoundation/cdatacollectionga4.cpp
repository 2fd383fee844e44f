#include <ZVFoundation/CDataCollectionGA4>

#include "cdatacollectionga4_p.h"

#include <QtCore/QDir>
#include <QtCore/QStandardPaths>

#include <cstring>
#include <limits>
#include <memory>
#include <new>

namespace ZVFoundationPrivate {
namespace AnalyticsSpool {

namespace {

constexpr char HexDigits[] = "0123456789abcdef";

// Byte sink of the escaping functions: counts always, stores only when given a buffer,
// so that one routine serves both to measure and to write.
class Sink
{
public:
    explicit Sink(char* out) noexcept : m_out(out) {}

    void put(char c) noexcept
    {
        if (m_out)
            m_out[m_size] = c;
        ++m_size;
    }

    void putCodePoint(char32_t cp) noexcept
    {
        if (cp == '"' || cp == '\\') {
            put('\\');
            put(char(cp));
        } else if (cp < 0x20 || cp == 0x7f) {
            put('\\');
            put('u');
            put('0');
            put('0');
            put(HexDigits[cp >> 4]);
            put(HexDigits[cp & 0xf]);
        } else if (cp < 0x80) {
            put(char(cp));
        } else if (cp < 0x800) {
            put(char(0xc0 | (cp >> 6)));
            put(char(0x80 | (cp & 0x3f)));
        } else if (cp < 0x10000) {
            put(char(0xe0 | (cp >> 12)));
            put(char(0x80 | ((cp >> 6) & 0x3f)));
            put(char(0x80 | (cp & 0x3f)));
        } else {
            put(char(0xf0 | (cp >> 18)));
            put(char(0x80 | ((cp >> 12) & 0x3f)));
            put(char(0x80 | ((cp >> 6) & 0x3f)));
            put(char(0x80 | (cp & 0x3f)));
        }
    }

    std::size_t size() const noexcept { return m_size; }

private:
    char* m_out;
    std::size_t m_size = 0;
};

constexpr char32_t ReplacementCharacter = 0xfffd;

inline void putDigits(char* out, unsigned value, int count) noexcept
{
    for (int i = count - 1; i >= 0; --i) {
        out[i] = char('0' + value % 10);
        value /= 10;
    }
}

} // namespace

bool formatUtcTimestamp(std::int64_t seconds, int milliseconds, char* out) noexcept
{
    constexpr std::int64_t FirstSecond = -62167219200LL; // 0000-01-01T00:00:00Z
    constexpr std::int64_t LastSecond = 253402300799LL;  // 9999-12-31T23:59:59Z
    if (seconds < FirstSecond || seconds > LastSecond || milliseconds < 0 || milliseconds > 999)
        return false;

    std::int64_t days = seconds / 86400;
    std::int64_t secondOfDay = seconds % 86400;
    if (secondOfDay < 0) {
        secondOfDay += 86400;
        --days;
    }

    // Days to a civil date. Counting years from 1 March puts the leap day at the end
    // of the year, so that month lengths follow a fixed pattern, and the Gregorian
    // calendar repeats every 400 years (146097 days), so the date within an era
    // needs no loop.
    const std::int64_t shifted = days + 719468; // days from 0000-03-01
    const std::int64_t era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
    const std::int64_t dayOfEra = shifted - era * 146097;                                  // [0, 146096]
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;         // [0, 399]
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100); // [0, 365]
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;                         // [0, 11]
    const std::int64_t day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;               // [1, 31]
    const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const std::int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);

    putDigits(out, unsigned(year), 4);
    out[4] = '-';
    putDigits(out + 5, unsigned(month), 2);
    out[7] = '-';
    putDigits(out + 8, unsigned(day), 2);
    out[10] = 'T';
    putDigits(out + 11, unsigned(secondOfDay / 3600), 2);
    out[13] = ':';
    putDigits(out + 14, unsigned(secondOfDay / 60 % 60), 2);
    out[16] = ':';
    putDigits(out + 17, unsigned(secondOfDay % 60), 2);
    out[19] = '.';
    putDigits(out + 20, unsigned(milliseconds), 3);
    out[23] = 'Z';
    return true;
}

std::size_t escapeJsonUtf16(const std::uint16_t* text, std::size_t length, char* out) noexcept
{
    Sink sink(out);
    for (std::size_t i = 0; i < length; ++i) {
        char32_t cp = text[i];
        if (cp >= 0xd800 && cp <= 0xdfff) {
            if (cp <= 0xdbff && i + 1 < length && text[i + 1] >= 0xdc00 && text[i + 1] <= 0xdfff) {
                cp = 0x10000 + ((cp - 0xd800) << 10) + (text[i + 1] - 0xdc00);
                ++i;
            } else {
                cp = ReplacementCharacter;
            }
        }
        sink.putCodePoint(cp);
    }
    return sink.size();
}

std::size_t escapeJsonUtf8(const char* text, std::size_t length, char* out) noexcept
{
    const auto* s = reinterpret_cast<const unsigned char*>(text);
    Sink sink(out);
    std::size_t i = 0;
    while (i < length) {
        const unsigned char lead = s[i];
        char32_t cp = 0;
        std::size_t trail = 0;
        char32_t smallest = 0;
        if (lead < 0x80) {
            cp = lead;
        } else if (lead >= 0xc2 && lead <= 0xdf) {
            cp = lead & 0x1f;
            trail = 1;
            smallest = 0x80;
        } else if (lead >= 0xe0 && lead <= 0xef) {
            cp = lead & 0x0f;
            trail = 2;
            smallest = 0x800;
        } else if (lead >= 0xf0 && lead <= 0xf4) {
            cp = lead & 0x07;
            trail = 3;
            smallest = 0x10000;
        } else {
            sink.putCodePoint(ReplacementCharacter);
            ++i;
            continue;
        }

        bool wellFormed = trail < length - i;
        for (std::size_t k = 1; wellFormed && k <= trail; ++k) {
            const unsigned char next = s[i + k];
            wellFormed = (next & 0xc0) == 0x80;
            cp = (cp << 6) | (next & 0x3f);
        }
        // Overlong forms, surrogates and values beyond Unicode are not UTF-8 either.
        if (!wellFormed || cp < smallest || cp > 0x10ffff || (cp >= 0xd800 && cp <= 0xdfff)) {
            sink.putCodePoint(ReplacementCharacter);
            ++i;
            continue;
        }
        sink.putCodePoint(cp);
        i += trail + 1;
    }
    return sink.size();
}

} // namespace AnalyticsSpool
} // namespace ZVFoundationPrivate

namespace Spool = ZVFoundationPrivate::AnalyticsSpool;

CDataCollectionGA4::CDataCollectionGA4()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (folder.isEmpty())
        return;
    // A folder that cannot be made now is not fatal: Send() fails quietly then.
    QDir().mkpath(folder);
    m_spoolPath = folder + QLatin1String("/analytics-spool.jsonl");
    m_nativeSpoolPath = Spool::nativeSpoolPath(m_spoolPath);
}

CDataCollectionGA4::~CDataCollectionGA4() = default;

CDataCollectionGA4* CDataCollectionGA4::GetInstance()
{
    // Never destroyed, because a crash handler may still send while the static objects
    // are being torn down at exit.
    static CDataCollectionGA4* const instance = new CDataCollectionGA4;
    return instance;
}

QString CDataCollectionGA4::SpoolPath() const
{
    return m_spoolPath;
}

void CDataCollectionGA4::Send(const QStringList& strings)
{
    if (m_nativeSpoolPath.isEmpty())
        return;

    // Refuse events whose line could not be measured in a size_t; an escaped code
    // unit takes at most 6 bytes.
    constexpr std::size_t Frame = 64;
    constexpr std::uint64_t Limit = (std::numeric_limits<std::size_t>::max() - Frame) / 8;
    std::uint64_t units = 0;
    for (const QString& s : strings)
        units += std::uint64_t(s.size()) + 3;
    if (units > Limit)
        return;

    std::int64_t seconds = 0;
    int milliseconds = 0;
    Spool::currentUtcTime(&seconds, &milliseconds);
    char stamp[Spool::TimestampSize];
    if (!Spool::formatUtcTimestamp(seconds, milliseconds, stamp))
        Spool::formatUtcTimestamp(0, 0, stamp);

    // One routine measures the line (out == nullptr) and then writes it, so that the
    // common short event is built on the stack without touching the heap.
    const auto build = [&](char* out) {
        std::size_t n = 0;
        const auto raw = [&](const char* bytes, std::size_t size) {
            if (out)
                std::memcpy(out + n, bytes, size);
            n += size;
        };
        raw("{\"time\":\"", 9);
        raw(stamp, sizeof stamp);
        raw("\",\"event\":[", 11);
        bool first = true;
        for (const QString& s : strings) {
            if (!first)
                raw(",", 1);
            first = false;
            raw("\"", 1);
            // constData() rather than utf16(): it never reallocates, not even for a
            // string over raw data.
            const auto* text = reinterpret_cast<const std::uint16_t*>(s.constData());
            n += Spool::escapeJsonUtf16(text, std::size_t(s.size()), out ? out + n : nullptr);
            raw("\"", 1);
        }
        raw("]}\n", 3);
        return n;
    };

    const std::size_t size = build(nullptr);
    char stackBuffer[4096];
    std::unique_ptr<char[]> heapBuffer;
    char* line = stackBuffer;
    if (size > sizeof stackBuffer) {
        heapBuffer.reset(new (std::nothrow) char[size]);
        if (!heapBuffer)
            return;
        line = heapBuffer.get();
    }
    build(line);
    Spool::appendToSpool(m_nativeSpoolPath.constData(), line, size);
}
