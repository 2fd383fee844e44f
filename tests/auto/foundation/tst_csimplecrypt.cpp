#include <ZVFoundation/CSimpleCrypt>

#include "csimplecrypt_p.h"
#include "siphash_p.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/QVector>
#include <QtTest/QtTest>

#include <cstring>

namespace Format = ZVFoundationPrivate::SimpleCryptFormat;
using ZVFoundationPrivate::sipHash24;

namespace {

constexpr quint32 Seed = 20261121;
constexpr quint64 Key = Q_UINT64_C(0x0c2ad4a4acb9f023);

// A string of random length 0..maxLength mixing ASCII, Latin, CJK, Arabic, emoji as
// surrogate pairs and raw 16-bit code units, the latter giving unpaired surrogates too.
QString randomString(QRandomGenerator& random, int minLength, int maxLength)
{
    const int length = random.bounded(minLength, maxLength + 1);
    QString s;
    while (s.size() < length) {
        switch (random.bounded(6)) {
        case 0:
            s.append(QChar(ushort(random.bounded(0x20, 0x7f))));
            break;
        case 1:
            s.append(QChar(ushort(random.bounded(0xa0, 0x250))));
            break;
        case 2:
            s.append(QChar(ushort(random.bounded(0x4e00, 0xa000))));
            break;
        case 3:
            s.append(QChar(ushort(random.bounded(0x600, 0x700))));
            break;
        case 4:
            if (s.size() + 2 <= length) {
                const uint emoji = uint(random.bounded(0x1f300, 0x1fb00));
                s.append(QChar(QChar::highSurrogate(emoji)));
                s.append(QChar(QChar::lowSurrogate(emoji)));
            }
            break;
        default:
            s.append(QChar(ushort(random.bounded(0x10000))));
            break;
        }
    }
    return s;
}

QVector<QString> randomStrings(quint32 seed, int count, int minLength, int maxLength)
{
    QRandomGenerator random(seed);
    QVector<QString> strings;
    strings.reserve(count);
    for (int i = 0; i < count; ++i)
        strings.append(randomString(random, minLength, maxLength));
    return strings;
}

QByteArray le64(quint64 v)
{
    QByteArray bytes(8, '\0');
    for (int i = 0; i < 8; ++i)
        bytes[i] = char(v >> (8 * i));
    return bytes;
}

QByteArray utf16le(const QString& s)
{
    QByteArray bytes;
    for (const QChar c : s) {
        bytes.append(char(c.unicode() & 0xff));
        bytes.append(char(c.unicode() >> 8));
    }
    return bytes;
}

// The enciphered form rebuilt from the format's definition, independently of the
// library's own code, with a free choice of version byte and payload.
QString buildCipherText(quint64 key, unsigned char version, const QByteArray& payload)
{
    const QByteArray message = char(version) + payload;
    const quint64 tag = sipHash24(key, Format::TagKeyHigh, message.constData(), std::size_t(message.size()));
    QByteArray body = payload;
    for (int offset = 0; offset < body.size(); offset += 8) {
        const QByteArray block = le64(tag) + le64(quint64(offset / 8));
        const quint64 stream = sipHash24(key, Format::StreamKeyHigh, block.constData(), 16);
        for (int i = 0; i < 8 && offset + i < body.size(); ++i)
            body[offset + i] = char(body[offset + i] ^ char(stream >> (8 * i)));
    }
    return QString::fromLatin1((char(version) + le64(tag) + body).toBase64());
}

bool isBase64Char(QChar c)
{
    const ushort u = c.unicode();
    return (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') || (u >= '0' && u <= '9') || u == '+'
        || u == '/' || u == '=';
}

int expectedCipherLength(int plainUnits)
{
    return 4 * ((9 + 2 * plainUnits + 2) / 3);
}

const QString Replacements = QStringLiteral("AZaz09+/= \t\n-_.<\"") + QChar(0xe9) + QChar(0x20ac)
    + QChar(0) + QChar(0xd800);

} // namespace

class tst_CSimpleCrypt : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void sipHashReferenceVectors_data();
    void sipHashReferenceVectors();

    void key();
    void roundTripRandom();
    void roundTripUnusual_data();
    void roundTripUnusual();
    void cipherTextIsXmlSafeAscii();
    void binaryFormat_data();
    void binaryFormat();
    void storedTextStaysReadable();
    void emptyText();
    void wrongKey();
    void deterministic();
    void surroundingWhitespace_data();
    void surroundingWhitespace();

    void singleCharacterChange_data() { damageData(); }
    void singleCharacterChange();
    void singleCharacterInsertion_data() { damageData(); }
    void singleCharacterInsertion();
    void singleCharacterDeletion_data() { damageData(); }
    void singleCharacterDeletion();
    void truncation_data() { damageData(); }
    void truncation();
    void garbage_data();
    void garbage();

private:
    static void damageData();
};

void tst_CSimpleCrypt::initTestCase()
{
    qInfo("random seed: %u", Seed);
}

void tst_CSimpleCrypt::sipHashReferenceVectors_data()
{
    // Reference outputs for key 00 01 .. 0f and the messages 00, 00 01, ... of
    // 0 to 63 bytes, as the eight output bytes.
    static const unsigned char expected[64][8] = {
        {0x31, 0x0e, 0x0e, 0xdd, 0x47, 0xdb, 0x6f, 0x72}, {0xfd, 0x67, 0xdc, 0x93, 0xc5, 0x39, 0xf8, 0x74},
        {0x5a, 0x4f, 0xa9, 0xd9, 0x09, 0x80, 0x6c, 0x0d}, {0x2d, 0x7e, 0xfb, 0xd7, 0x96, 0x66, 0x67, 0x85},
        {0xb7, 0x87, 0x71, 0x27, 0xe0, 0x94, 0x27, 0xcf}, {0x8d, 0xa6, 0x99, 0xcd, 0x64, 0x55, 0x76, 0x18},
        {0xce, 0xe3, 0xfe, 0x58, 0x6e, 0x46, 0xc9, 0xcb}, {0x37, 0xd1, 0x01, 0x8b, 0xf5, 0x00, 0x02, 0xab},
        {0x62, 0x24, 0x93, 0x9a, 0x79, 0xf5, 0xf5, 0x93}, {0xb0, 0xe4, 0xa9, 0x0b, 0xdf, 0x82, 0x00, 0x9e},
        {0xf3, 0xb9, 0xdd, 0x94, 0xc5, 0xbb, 0x5d, 0x7a}, {0xa7, 0xad, 0x6b, 0x22, 0x46, 0x2f, 0xb3, 0xf4},
        {0xfb, 0xe5, 0x0e, 0x86, 0xbc, 0x8f, 0x1e, 0x75}, {0x90, 0x3d, 0x84, 0xc0, 0x27, 0x56, 0xea, 0x14},
        {0xee, 0xf2, 0x7a, 0x8e, 0x90, 0xca, 0x23, 0xf7}, {0xe5, 0x45, 0xbe, 0x49, 0x61, 0xca, 0x29, 0xa1},
        {0xdb, 0x9b, 0xc2, 0x57, 0x7f, 0xcc, 0x2a, 0x3f}, {0x94, 0x47, 0xbe, 0x2c, 0xf5, 0xe9, 0x9a, 0x69},
        {0x9c, 0xd3, 0x8d, 0x96, 0xf0, 0xb3, 0xc1, 0x4b}, {0xbd, 0x61, 0x79, 0xa7, 0x1d, 0xc9, 0x6d, 0xbb},
        {0x98, 0xee, 0xa2, 0x1a, 0xf2, 0x5c, 0xd6, 0xbe}, {0xc7, 0x67, 0x3b, 0x2e, 0xb0, 0xcb, 0xf2, 0xd0},
        {0x88, 0x3e, 0xa3, 0xe3, 0x95, 0x67, 0x53, 0x93}, {0xc8, 0xce, 0x5c, 0xcd, 0x8c, 0x03, 0x0c, 0xa8},
        {0x94, 0xaf, 0x49, 0xf6, 0xc6, 0x50, 0xad, 0xb8}, {0xea, 0xb8, 0x85, 0x8a, 0xde, 0x92, 0xe1, 0xbc},
        {0xf3, 0x15, 0xbb, 0x5b, 0xb8, 0x35, 0xd8, 0x17}, {0xad, 0xcf, 0x6b, 0x07, 0x63, 0x61, 0x2e, 0x2f},
        {0xa5, 0xc9, 0x1d, 0xa7, 0xac, 0xaa, 0x4d, 0xde}, {0x71, 0x65, 0x95, 0x87, 0x66, 0x50, 0xa2, 0xa6},
        {0x28, 0xef, 0x49, 0x5c, 0x53, 0xa3, 0x87, 0xad}, {0x42, 0xc3, 0x41, 0xd8, 0xfa, 0x92, 0xd8, 0x32},
        {0xce, 0x7c, 0xf2, 0x72, 0x2f, 0x51, 0x27, 0x71}, {0xe3, 0x78, 0x59, 0xf9, 0x46, 0x23, 0xf3, 0xa7},
        {0x38, 0x12, 0x05, 0xbb, 0x1a, 0xb0, 0xe0, 0x12}, {0xae, 0x97, 0xa1, 0x0f, 0xd4, 0x34, 0xe0, 0x15},
        {0xb4, 0xa3, 0x15, 0x08, 0xbe, 0xff, 0x4d, 0x31}, {0x81, 0x39, 0x62, 0x29, 0xf0, 0x90, 0x79, 0x02},
        {0x4d, 0x0c, 0xf4, 0x9e, 0xe5, 0xd4, 0xdc, 0xca}, {0x5c, 0x73, 0x33, 0x6a, 0x76, 0xd8, 0xbf, 0x9a},
        {0xd0, 0xa7, 0x04, 0x53, 0x6b, 0xa9, 0x3e, 0x0e}, {0x92, 0x59, 0x58, 0xfc, 0xd6, 0x42, 0x0c, 0xad},
        {0xa9, 0x15, 0xc2, 0x9b, 0xc8, 0x06, 0x73, 0x18}, {0x95, 0x2b, 0x79, 0xf3, 0xbc, 0x0a, 0xa6, 0xd4},
        {0xf2, 0x1d, 0xf2, 0xe4, 0x1d, 0x45, 0x35, 0xf9}, {0x87, 0x57, 0x75, 0x19, 0x04, 0x8f, 0x53, 0xa9},
        {0x10, 0xa5, 0x6c, 0xf5, 0xdf, 0xcd, 0x9a, 0xdb}, {0xeb, 0x75, 0x09, 0x5c, 0xcd, 0x98, 0x6c, 0xd0},
        {0x51, 0xa9, 0xcb, 0x9e, 0xcb, 0xa3, 0x12, 0xe6}, {0x96, 0xaf, 0xad, 0xfc, 0x2c, 0xe6, 0x66, 0xc7},
        {0x72, 0xfe, 0x52, 0x97, 0x5a, 0x43, 0x64, 0xee}, {0x5a, 0x16, 0x45, 0xb2, 0x76, 0xd5, 0x92, 0xa1},
        {0xb2, 0x74, 0xcb, 0x8e, 0xbf, 0x87, 0x87, 0x0a}, {0x6f, 0x9b, 0xb4, 0x20, 0x3d, 0xe7, 0xb3, 0x81},
        {0xea, 0xec, 0xb2, 0xa3, 0x0b, 0x22, 0xa8, 0x7f}, {0x99, 0x24, 0xa4, 0x3c, 0xc1, 0x31, 0x57, 0x24},
        {0xbd, 0x83, 0x8d, 0x3a, 0xaf, 0xbf, 0x8d, 0xb7}, {0x0b, 0x1a, 0x2a, 0x32, 0x65, 0xd5, 0x1a, 0xea},
        {0x13, 0x50, 0x79, 0xa3, 0x23, 0x1c, 0xe6, 0x60}, {0x93, 0x2b, 0x28, 0x46, 0xe4, 0xd7, 0x06, 0x66},
        {0xe1, 0x91, 0x5f, 0x5c, 0xb1, 0xec, 0xa4, 0x6c}, {0xf3, 0x25, 0x96, 0x5c, 0xa1, 0x6d, 0x62, 0x9f},
        {0x57, 0x5f, 0xf2, 0x8e, 0x60, 0x38, 0x1b, 0xe5}, {0x72, 0x45, 0x06, 0xeb, 0x4c, 0x32, 0x8a, 0x95},
    };

    QTest::addColumn<int>("length");
    QTest::addColumn<quint64>("expected");
    for (int length = 0; length < 64; ++length) {
        quint64 value = 0;
        for (int i = 7; i >= 0; --i)
            value = (value << 8) | expected[length][i];
        QTest::addRow("%d bytes", length) << length << value;
    }
}

void tst_CSimpleCrypt::sipHashReferenceVectors()
{
    QFETCH(int, length);
    QFETCH(quint64, expected);

    unsigned char message[64];
    for (int i = 0; i < 64; ++i)
        message[i] = static_cast<unsigned char>(i);
    const quint64 k0 = Q_UINT64_C(0x0706050403020100);
    const quint64 k1 = Q_UINT64_C(0x0f0e0d0c0b0a0908);

    QCOMPARE(sipHash24(k0, k1, message, std::size_t(length)), expected);
    if (length == 0)
        QCOMPARE(expected, Q_UINT64_C(0x726fdb47dd0e0e31));
}

void tst_CSimpleCrypt::key()
{
    QCOMPARE(CSimpleCrypt().key(), quint64(0));
    QCOMPARE(CSimpleCrypt(Key).key(), Key);

    CSimpleCrypt crypt;
    crypt.setKey(Q_UINT64_C(0xffffffffffffffff));
    QCOMPARE(crypt.key(), Q_UINT64_C(0xffffffffffffffff));

    // The default key is 0, the same as an explicit 0.
    const QString plain = QStringLiteral("default key");
    QCOMPARE(CSimpleCrypt(0).decryptToString(CSimpleCrypt().encryptToString(plain)), plain);
}

void tst_CSimpleCrypt::roundTripRandom()
{
    const QVector<QString> strings = randomStrings(Seed, 1000, 0, 200);
    QRandomGenerator keys(Seed + 1);
    for (int i = 0; i < strings.size(); ++i) {
        const CSimpleCrypt crypt(keys.generate64());
        const QString cipher = crypt.encryptToString(strings.at(i));
        QVERIFY2(!cipher.isEmpty(), qPrintable(QString::number(i)));
        const QString back = crypt.decryptToString(cipher);
        QVERIFY2(back.size() == strings.at(i).size() && back == strings.at(i),
                 qPrintable(QStringLiteral("string %1 of length %2").arg(i).arg(strings.at(i).size())));
    }
}

void tst_CSimpleCrypt::roundTripUnusual_data()
{
    QTest::addColumn<QString>("plain");
    QTest::newRow("ascii") << QStringLiteral("Hello, world");
    QTest::newRow("xml markup") << QStringLiteral("<a href=\"x\">'&amp;'</a>");
    QTest::newRow("nul") << QString(3, QChar(0));
    QTest::newRow("lone high surrogate") << QString(QChar(0xd83d));
    QTest::newRow("lone low surrogate") << QString(QChar(0xde00));
    QTest::newRow("reversed pair") << (QString(QChar(0xde00)) + QChar(0xd83d));
    QTest::newRow("noncharacters") << (QString(QChar(0xffff)) + QChar(0xfffe));
    QTest::newRow("emoji") << QString::fromUtf8("\xf0\x9f\x98\x80\xf0\x9f\x91\x8d");
    QTest::newRow("whitespace only") << QStringLiteral(" \t\r\n ");
    QTest::newRow("long") << QString(100000, QChar(0x4e2d));
}

void tst_CSimpleCrypt::roundTripUnusual()
{
    QFETCH(QString, plain);
    const CSimpleCrypt crypt(Key);
    const QString cipher = crypt.encryptToString(plain);
    QCOMPARE(cipher.size(), expectedCipherLength(plain.size()));
    QCOMPARE(crypt.decryptToString(cipher), plain);
}

void tst_CSimpleCrypt::cipherTextIsXmlSafeAscii()
{
    const QVector<QString> strings = randomStrings(Seed, 1000, 0, 200);
    const CSimpleCrypt crypt(Key);
    for (const QString& plain : strings) {
        const QString cipher = crypt.encryptToString(plain);
        QCOMPARE(cipher.size(), expectedCipherLength(plain.size()));
        for (const QChar c : cipher) {
            QVERIFY2(c.unicode() < 0x80 && isBase64Char(c), qPrintable(cipher));
            QVERIFY(c != QLatin1Char('<') && c != QLatin1Char('>') && c != QLatin1Char('&')
                    && c != QLatin1Char('"') && c != QLatin1Char('\''));
        }
        // Standard base64 with padding, of version byte, tag and enciphered units.
        const QByteArray binary = QByteArray::fromBase64(cipher.toLatin1());
        QCOMPARE(binary.toBase64(), cipher.toLatin1());
        QCOMPARE(binary.size(), 1 + 8 + 2 * plain.size());
        QCOMPARE(quint8(binary.at(0)), quint8(0x01));
    }
}

void tst_CSimpleCrypt::binaryFormat_data()
{
    QTest::addColumn<quint64>("key");
    QTest::addColumn<QString>("plain");
    QTest::newRow("empty") << Key << QString();
    QTest::newRow("one unit") << Key << QStringLiteral("a");
    QTest::newRow("one block") << Key << QStringLiteral("abcd");
    QTest::newRow("several blocks") << Q_UINT64_C(1) << QStringLiteral("The quick brown fox jumps");
    QTest::newRow("surrogates") << Q_UINT64_C(0xffffffffffffffff)
                                << QString::fromUtf8("\xe4\xb8\xad\xf0\x9f\x98\x80");
}

void tst_CSimpleCrypt::binaryFormat()
{
    QFETCH(quint64, key);
    QFETCH(QString, plain);
    QCOMPARE(Format::Version, quint8(0x01));
    QVERIFY(Format::TagKeyHigh != Format::StreamKeyHigh);
    QCOMPARE(CSimpleCrypt(key).encryptToString(plain), buildCipherText(key, 0x01, utf16le(plain)));
}

void tst_CSimpleCrypt::storedTextStaysReadable()
{
    // Enciphered with the first release of the format; files written then must stay
    // readable by every later build.
    const QString stored = QStringLiteral("AY9logVb3cSUw/DaDzGhJHJXIpSze2MVkw==");
    QCOMPARE(CSimpleCrypt(Key).decryptToString(stored), QStringLiteral("Password"));
    QCOMPARE(CSimpleCrypt(Key).encryptToString(QStringLiteral("Password")), stored);
}

void tst_CSimpleCrypt::emptyText()
{
    const CSimpleCrypt crypt(Key);
    const QString cipher = crypt.encryptToString(QString());
    QCOMPARE(cipher.size(), 12);
    QCOMPARE(crypt.encryptToString(QStringLiteral("")), cipher);
    QVERIFY(crypt.decryptToString(cipher).isEmpty());
    QVERIFY(crypt.decryptToString(QString()).isEmpty());
    QVERIFY(crypt.decryptToString(QStringLiteral("")).isEmpty());
    QVERIFY(crypt.decryptToString(QStringLiteral(" \t\n")).isEmpty());
}

void tst_CSimpleCrypt::wrongKey()
{
    const QVector<QString> strings = randomStrings(Seed + 2, 200, 1, 200);
    const CSimpleCrypt crypt(Key);
    const quint64 otherKeys[] = {Key ^ 1, Key ^ Q_UINT64_C(0x8000000000000000), Key + 1, ~Key, 0};
    for (const QString& plain : strings) {
        const QString cipher = crypt.encryptToString(plain);
        QCOMPARE(crypt.decryptToString(cipher), plain);
        for (const quint64 other : otherKeys)
            QVERIFY2(CSimpleCrypt(other).decryptToString(cipher).isEmpty(), qPrintable(cipher));
    }
}

void tst_CSimpleCrypt::deterministic()
{
    const QString plain = QStringLiteral("https://www.example.com/download");
    const QString first = CSimpleCrypt(Key).encryptToString(plain);
    QCOMPARE(CSimpleCrypt(Key).encryptToString(plain), first);

    CSimpleCrypt rekeyed;
    rekeyed.setKey(Key);
    QCOMPARE(rekeyed.encryptToString(plain), first);

    QVERIFY(CSimpleCrypt(Key ^ 1).encryptToString(plain) != first);
    QVERIFY(CSimpleCrypt(Key).encryptToString(plain + QLatin1Char('/')) != first);
    QVERIFY(CSimpleCrypt(Key).encryptToString(QString()) != CSimpleCrypt(Key ^ 1).encryptToString(QString()));
}

void tst_CSimpleCrypt::surroundingWhitespace_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("readable");
    QTest::newRow("spaces") << QStringLiteral("  ") << QStringLiteral(" ") << true;
    QTest::newRow("line breaks") << QStringLiteral("\r\n") << QStringLiteral("\n") << true;
    QTest::newRow("tab, vertical tab, form feed") << QStringLiteral("\t\v") << QStringLiteral("\f\t") << true;
    QTest::newRow("no-break space") << QString(QChar(0xa0)) << QString() << false;
    QTest::newRow("ideographic space") << QString() << QString(QChar(0x3000)) << false;
    QTest::newRow("nul") << QString() << QString(QChar(0)) << false;
}

void tst_CSimpleCrypt::surroundingWhitespace()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(bool, readable);
    const QString plain = QStringLiteral("inside");
    const CSimpleCrypt crypt(Key);
    const QString result = crypt.decryptToString(before + crypt.encryptToString(plain) + after);
    QCOMPARE(result, readable ? plain : QString());
}

void tst_CSimpleCrypt::damageData()
{
    // Plain texts of 1, 2 and 3 units give texts ending in "=", "==" and no padding.
    QTest::addColumn<QString>("plain");
    QTest::newRow("1 unit") << QStringLiteral("a");
    QTest::newRow("2 units") << QStringLiteral("ab");
    QTest::newRow("3 units") << QStringLiteral("abc");
    QTest::newRow("ascii") << QStringLiteral("Hello, world");
    QTest::newRow("mixed scripts") << QString::fromUtf8("\xe4\xb8\xad\xe6\x96\x87 \xd8\xb9\xd8\xb1\xd8\xa8\xd9\x8a \xf0\x9f\x98\x80");
}

void tst_CSimpleCrypt::singleCharacterChange()
{
    QFETCH(QString, plain);
    const CSimpleCrypt crypt(Key);
    const QString cipher = crypt.encryptToString(plain);
    QCOMPARE(crypt.decryptToString(cipher), plain);

    int tried = 0;
    for (int i = 0; i < cipher.size(); ++i) {
        for (const QChar c : Replacements) {
            if (c == cipher.at(i))
                continue;
            QString damaged = cipher;
            damaged[i] = c;
            QVERIFY2(crypt.decryptToString(damaged).isEmpty(), qPrintable(damaged));
            ++tried;
        }
    }
    QVERIFY(tried >= cipher.size() * (Replacements.size() - 1));
}

void tst_CSimpleCrypt::singleCharacterInsertion()
{
    QFETCH(QString, plain);
    const CSimpleCrypt crypt(Key);
    const QString cipher = crypt.encryptToString(plain);

    for (int i = 0; i <= cipher.size(); ++i) {
        for (const QChar c : Replacements) {
            QString damaged = cipher;
            damaged.insert(i, c);
            // ASCII whitespace at either end is not part of the text.
            const bool atEnd = i == 0 || i == cipher.size();
            const bool ignorable = atEnd && (c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n'));
            QCOMPARE(crypt.decryptToString(damaged), ignorable ? plain : QString());
        }
    }
}

void tst_CSimpleCrypt::singleCharacterDeletion()
{
    QFETCH(QString, plain);
    const CSimpleCrypt crypt(Key);
    const QString cipher = crypt.encryptToString(plain);
    for (int i = 0; i < cipher.size(); ++i) {
        QString damaged = cipher;
        damaged.remove(i, 1);
        QVERIFY2(crypt.decryptToString(damaged).isEmpty(), qPrintable(damaged));
    }
}

void tst_CSimpleCrypt::truncation()
{
    QFETCH(QString, plain);
    const CSimpleCrypt crypt(Key);
    const QString cipher = crypt.encryptToString(plain);
    for (int length = 0; length < cipher.size(); ++length)
        QVERIFY2(crypt.decryptToString(cipher.left(length)).isEmpty(), qPrintable(cipher.left(length)));
}

void tst_CSimpleCrypt::garbage_data()
{
    QTest::addColumn<QString>("cipher");

    QTest::newRow("empty") << QString();
    QTest::newRow("padding only") << QStringLiteral("====");
    QTest::newRow("misplaced padding") << QStringLiteral("AQ==AAAAAAAAAAAA");
    QTest::newRow("zero bytes") << QStringLiteral("AAAAAAAAAAAA");
    QTest::newRow("zero tag") << QStringLiteral("AQAAAAAAAAAA");
    QTest::newRow("too short") << QStringLiteral("AQAAAAAAAA==");
    QTest::newRow("plain word") << QStringLiteral("Password");

    // Well-formed in every way but the one checked.
    QTest::newRow("other version") << buildCipherText(Key, 0x02, utf16le(QStringLiteral("text")));
    QTest::newRow("version zero") << buildCipherText(Key, 0x00, utf16le(QStringLiteral("text")));
    QTest::newRow("odd length") << buildCipherText(Key, 0x01, QByteArray("abc"));

    // Only the unused low bits of the last character differ: same bytes, but not the
    // canonical encoding.
    const QString one = CSimpleCrypt(Key).encryptToString(QStringLiteral("a"));
    QVERIFY(one.endsWith(QLatin1Char('=')) && !one.endsWith(QLatin1String("==")));
    QString bits = one;
    static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const int last = bits.size() - 2;
    const int value = int(std::strchr(alphabet, bits.at(last).toLatin1()) - alphabet);
    bits[last] = QLatin1Char(alphabet[value ^ 1]);
    QTest::newRow("padding bits") << bits;

    QRandomGenerator random(Seed + 3);
    for (int i = 0; i < 20; ++i) {
        QString ascii(random.bounded(1, 200), Qt::Uninitialized);
        for (QChar& c : ascii)
            c = QChar(ushort(random.bounded(0x20, 0x7f)));
        QTest::addRow("random ascii %d", i) << ascii;
    }
    for (int i = 0; i < 20; ++i) {
        QString base64(4 * random.bounded(1, 50), Qt::Uninitialized);
        for (QChar& c : base64)
            c = QLatin1Char(alphabet[random.bounded(64)]);
        QTest::addRow("random base64 %d", i) << base64;
    }
    for (int i = 0; i < 20; ++i) {
        QByteArray bytes(random.bounded(1, 200), Qt::Uninitialized);
        for (char& b : bytes)
            b = char(random.bounded(256));
        QTest::addRow("random bytes as latin1 %d", i) << QString::fromLatin1(bytes);
        QTest::addRow("random bytes as utf8 %d", i) << QString::fromUtf8(bytes);
    }

    QTest::newRow("1 MB of A") << QString(1024 * 1024, QLatin1Char('A'));
    QString big(1024 * 1024, Qt::Uninitialized);
    for (QChar& c : big)
        c = QLatin1Char(alphabet[random.bounded(64)]);
    QTest::newRow("1 MB of base64") << big;
    QTest::newRow("1 MB of units") << randomString(random, 1024 * 1024, 1024 * 1024);
}

void tst_CSimpleCrypt::garbage()
{
    QFETCH(QString, cipher);
    QVERIFY(CSimpleCrypt(Key).decryptToString(cipher).isEmpty());
    QVERIFY(CSimpleCrypt().decryptToString(cipher).isEmpty());
}

QTEST_APPLESS_MAIN(tst_CSimpleCrypt)

#include "tst_csimplecrypt.moc"
