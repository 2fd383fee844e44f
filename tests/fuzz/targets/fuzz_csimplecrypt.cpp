// CSimpleCrypt::decryptToString on any text, as link files hand it their addresses; and
// the promises of the format: every text round-trips, a damaged one deciphers to nothing.
#include "fuzzsupport.h"

#include <ZVCore/private/zvcoreconfig_p.h>
#include <ZVFoundation/CSimpleCrypt>

#include <QtCore/QHash>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray input = ZVFuzz::Bytes(data, size);
    const CSimpleCrypt links(ZVCORE_LINK_CIPHER_KEY);

    // The input as the text of a link file's <url> element, in the readings a file
    // can give it.
    links.decryptToString(QString::fromUtf8(input));
    links.decryptToString(QString::fromLatin1(input));
    const QString utf16 = QString::fromUtf16(reinterpret_cast<const char16_t*>(input.constData()), input.size() / 2);
    links.decryptToString(utf16);

    // Any text, unpaired surrogates included, comes back from its enciphered form, with
    // blanks around it or not, and with any key.
    const quint64 key = quint64(qHash(input)) * Q_UINT64_C(0x9E3779B97F4A7C15);
    for (const CSimpleCrypt& crypt : {links, CSimpleCrypt(key)}) {
        const QString cipher = crypt.encryptToString(utf16);
        ZVFUZZ_CHECK(!cipher.isEmpty());
        ZVFUZZ_CHECK(crypt.decryptToString(cipher) == utf16);
        ZVFUZZ_CHECK(crypt.decryptToString(QStringLiteral(" \t") + cipher + QStringLiteral("\r\n")) == utf16);

        // One character changed: nothing.
        QString damaged = cipher;
        const int at = int(quint32(qHash(input, 7)) % quint32(cipher.size()));
        const QChar was = damaged.at(at);
        damaged[at] = was == QLatin1Char('A') ? QLatin1Char('B') : QLatin1Char('A');
        ZVFUZZ_CHECK(crypt.decryptToString(damaged).isEmpty());
    }
    return 0;
}
