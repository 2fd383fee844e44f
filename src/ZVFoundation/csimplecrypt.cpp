#include <ZVFoundation/CSimpleCrypt>

#include "csimplecrypt_p.h"
#include "siphash_p.h"

#include <QtCore/QByteArray>

#include <algorithm>

namespace Format = ZVFoundationPrivate::SimpleCryptFormat;
using ZVFoundationPrivate::sipHash24;

namespace {

// Longest plain text, in UTF-16 code units, whose base64 form still fits a QString.
constexpr int MaxPlainUnits = 256 * 1024 * 1024;

inline void storeLe64(unsigned char* out, quint64 v)
{
    for (int i = 0; i < 8; ++i)
        out[i] = static_cast<unsigned char>(v >> (8 * i));
}

inline quint64 loadLe64(const unsigned char* in)
{
    quint64 v = 0;
    for (int i = 7; i >= 0; --i)
        v = (v << 8) | in[i];
    return v;
}

quint64 computeTag(quint64 key, const QByteArray& versionAndPlain)
{
    return sipHash24(key, Format::TagKeyHigh, versionAndPlain.constData(),
                     std::size_t(versionAndPlain.size()));
}

// XORs the key stream selected by (key, tag) into data. Applying it twice restores data.
void applyKeyStream(quint64 key, quint64 tag, unsigned char* data, std::size_t size)
{
    unsigned char block[16];
    storeLe64(block, tag);
    for (std::size_t offset = 0, index = 0; offset < size; offset += 8, ++index) {
        storeLe64(block + 8, index);
        const quint64 stream = sipHash24(key, Format::StreamKeyHigh, block, sizeof block);
        const std::size_t n = qMin<std::size_t>(8, size - offset);
        for (std::size_t i = 0; i < n; ++i)
            data[offset + i] ^= static_cast<unsigned char>(stream >> (8 * i));
    }
}

inline bool isAsciiSpace(ushort c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

inline bool isBase64Digit(ushort c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')
        || c == '+' || c == '/';
}

} // namespace

CSimpleCrypt::CSimpleCrypt() = default;

CSimpleCrypt::CSimpleCrypt(quint64 key)
    : m_key(key)
{
}

void CSimpleCrypt::setKey(quint64 key)
{
    m_key = key;
}

quint64 CSimpleCrypt::key() const
{
    return m_key;
}

QString CSimpleCrypt::encryptToString(const QString& plain) const
{
    const int units = plain.size();
    if (units > MaxPlainUnits)
        return QString();
    const std::size_t plainBytes = std::size_t(units) * 2;

    // The tag covers the version byte too, so a text cannot be passed off as another
    // format version.
    QByteArray message(int(1 + plainBytes), Qt::Uninitialized);
    auto* m = reinterpret_cast<unsigned char*>(message.data());
    m[0] = Format::Version;
    const ushort* u = plain.utf16();
    for (int i = 0; i < units; ++i) {
        m[1 + 2 * i] = static_cast<unsigned char>(u[i]);
        m[2 + 2 * i] = static_cast<unsigned char>(u[i] >> 8);
    }
    const quint64 tag = computeTag(m_key, message);

    QByteArray binary(int(Format::HeaderSize + plainBytes), Qt::Uninitialized);
    auto* b = reinterpret_cast<unsigned char*>(binary.data());
    b[0] = Format::Version;
    storeLe64(b + 1, tag);
    std::copy(m + 1, m + 1 + plainBytes, b + Format::HeaderSize);
    applyKeyStream(m_key, tag, b + Format::HeaderSize, plainBytes);

    return QString::fromLatin1(binary.toBase64());
}

QString CSimpleCrypt::decryptToString(const QString& cipher) const
{
    int begin = 0;
    int end = cipher.size();
    while (begin < end && isAsciiSpace(cipher.at(begin).unicode()))
        ++begin;
    while (end > begin && isAsciiSpace(cipher.at(end - 1).unicode()))
        --end;
    const int length = end - begin;
    if (length == 0 || length % 4 != 0)
        return QString();

    QByteArray text(length, Qt::Uninitialized);
    for (int i = 0; i < length; ++i) {
        const ushort c = cipher.at(begin + i).unicode();
        if (!isBase64Digit(c) && c != '=')
            return QString();
        text[i] = char(c);
    }

    // Only the canonical encoding is accepted: a base64 text that decodes to the same
    // bytes but differs in its padding bits or padding is damage too.
    const QByteArray binary = QByteArray::fromBase64(text);
    if (binary.toBase64() != text)
        return QString();
    if (std::size_t(binary.size()) < Format::HeaderSize)
        return QString();
    const auto* b = reinterpret_cast<const unsigned char*>(binary.constData());
    if (b[0] != Format::Version)
        return QString();
    const std::size_t plainBytes = std::size_t(binary.size()) - Format::HeaderSize;
    if (plainBytes % 2 != 0)
        return QString();

    const quint64 tag = loadLe64(b + 1);
    QByteArray message(int(1 + plainBytes), Qt::Uninitialized);
    auto* m = reinterpret_cast<unsigned char*>(message.data());
    m[0] = Format::Version;
    std::copy(b + Format::HeaderSize, b + Format::HeaderSize + plainBytes, m + 1);
    applyKeyStream(m_key, tag, m + 1, plainBytes);

    // One comparison of the whole tag, so the time taken does not tell how many of its
    // leading bytes were right.
    if ((computeTag(m_key, message) ^ tag) != 0)
        return QString();

    const int units = int(plainBytes / 2);
    QString plain(units, Qt::Uninitialized);
    QChar* out = plain.data();
    for (int i = 0; i < units; ++i)
        out[i] = QChar(ushort(m[1 + 2 * i] | (m[2 + 2 * i] << 8)));
    return plain;
}
