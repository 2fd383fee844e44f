#include "linkfile.h"

#include <ZVCore/private/zvcoreconfig_p.h>
#include <ZVFoundation/CSimpleCrypt>

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

#include <limits>

namespace {

constexpr quint64 DefaultKey = ZVCORE_LINK_CIPHER_KEY;

struct Outcome
{
    bool finished = false;
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
    qint64 milliseconds = 0;
};

Outcome runTool(const QStringList& arguments, const QByteArray& input = QByteArray())
{
    Outcome outcome;
    QProcess process;
    process.setProgram(QStringLiteral(ZVCRYPT_PROGRAM));
    process.setArguments(arguments);
    QElapsedTimer timer;
    timer.start();
    process.start();
    if (!process.waitForStarted(30000))
        return outcome;
    if (!input.isEmpty())
        process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        return outcome;
    }
    outcome.milliseconds = timer.elapsed();
    outcome.finished = process.exitStatus() == QProcess::NormalExit;
    outcome.exitCode = process.exitCode();
    outcome.out = process.readAllStandardOutput();
    outcome.err = process.readAllStandardError();
    return outcome;
}

QStringList outputLines(const QByteArray& out)
{
    QStringList lines = QString::fromUtf8(out).split(QLatin1Char('\n'));
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

bool writeFile(const QString& path, const QByteArray& contents)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

// A document as a list of its items, with adjacent text merged (how the text was split
// into CDATA sections or around references does not matter) and the text of every url
// taken out into urls, where each url has exactly one entry.
struct Walk
{
    QStringList structure;
    QStringList urls;
    QString error;
};

Walk walk(const QByteArray& document)
{
    Walk walk;
    QXmlStreamReader reader(document);
    QString text;
    bool inUrl = false;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::Characters) {
            text += reader.text();
            continue;
        }
        if (inUrl) {
            walk.urls.append(text);
            walk.structure.append(QStringLiteral("url text"));
        } else if (!text.isEmpty()) {
            walk.structure.append(QStringLiteral("text ") + text);
        }
        text.clear();

        switch (token) {
        case QXmlStreamReader::StartDocument:
            walk.structure.append(QStringLiteral("declaration ") + reader.documentVersion().toString()
                                  + (reader.isStandaloneDocument() ? QStringLiteral(" standalone") : QString()));
            break;
        case QXmlStreamReader::StartElement: {
            QStringList attributes;
            for (const QXmlStreamAttribute& attribute : reader.attributes())
                attributes.append(attribute.qualifiedName().toString() + QLatin1Char('=') + attribute.value().toString());
            attributes.sort();
            walk.structure.append(QStringLiteral("start ") + reader.qualifiedName().toString()
                                  + QLatin1Char(' ') + attributes.join(QLatin1Char(' ')));
            inUrl = reader.name() == QLatin1String("url");
            break;
        }
        case QXmlStreamReader::EndElement:
            walk.structure.append(QStringLiteral("end ") + reader.qualifiedName().toString());
            inUrl = false;
            break;
        case QXmlStreamReader::Comment:
            walk.structure.append(QStringLiteral("comment ") + reader.text().toString());
            break;
        case QXmlStreamReader::ProcessingInstruction:
            walk.structure.append(QStringLiteral("instruction ") + reader.processingInstructionTarget().toString()
                                  + QLatin1Char(' ') + reader.processingInstructionData().toString());
            break;
        case QXmlStreamReader::EndDocument:
            walk.structure.append(QStringLiteral("end of document"));
            break;
        default:
            walk.structure.append(QStringLiteral("other ") + reader.tokenString());
            break;
        }
    }
    if (reader.hasError())
        walk.error = reader.errorString();
    return walk;
}

// A plain link file as a product keeps it in its sources. The first url is on line 7.
const char PlainLinkFile[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!-- Links of the English menu -->\n"
    "<root>\n"
    "  <menu>\n"
    "    <childMenu>\n"
    "      <menuName>Home</menuName>\n"
    "      <url>https://www.example.com/?key=home</url>\n"
    "      <isShow>1</isShow>\n"
    "      <index>1</index>\n"
    "    </childMenu>\n"
    "    <childMenu><menuName>separator</menuName></childMenu>\n"
    "    <childMenu>\n"
    "      <menuName>Hilfe &amp; Kontakt \xC3\x9C</menuName>\n"
    "      <url type=\"help\">\n"
    "        https://www.example.com/help?a=1&amp;b=2\n"
    "      </url>\n"
    "      <isShow>0</isShow>\n"
    "    </childMenu>\n"
    "    <childMenu>\n"
    "      <menuName>\xE4\xBA\xA7\xE5\x93\x81</menuName>\n"
    "      <url><![CDATA[https://www.example.com/\xE4\xBA\xA7\xE5\x93\x81?q=<x>]]></url>\n"
    "    </childMenu>\n"
    "    <childMenu><menuName>Empty</menuName><url/></childMenu>\n"
    "    <childMenu><menuName>Blank</menuName><url>   </url></childMenu>\n"
    "    <?editor keep=\"yes\"?>\n"
    "  </menu>\n"
    "  <AboutHome>About <b>us</b> &lt;here&gt;<!-- inner --></AboutHome>\n"
    "  <AboutHome><url>https://www.example.com/about</url></AboutHome>\n"
    "</root>\n";

// The urls of PlainLinkFile as the library reads them back: trimmed, blanks untouched.
QStringList expectedUrls()
{
    return {
        QStringLiteral("https://www.example.com/?key=home"),
        QStringLiteral("https://www.example.com/help?a=1&b=2"),
        QString::fromUtf8("https://www.example.com/\xE4\xBA\xA7\xE5\x93\x81?q=<x>"),
        QString(),
        QStringLiteral("   "),
        QStringLiteral("https://www.example.com/about"),
    };
}

// Nine levels of ten references each: a billion copies once expanded.
QByteArray billionLaughs()
{
    QByteArray document = "<?xml version=\"1.0\"?>\n<!DOCTYPE lolz [\n  <!ENTITY lol0 \"lol\">\n";
    for (int level = 1; level <= 9; ++level) {
        const QByteArray reference = "&lol" + QByteArray::number(level - 1) + ';';
        document += "  <!ENTITY lol" + QByteArray::number(level) + " \"" + reference.repeated(10) + "\">\n";
    }
    document += "]>\n<root><menu><childMenu><url>&lol9;</url></childMenu></menu></root>\n";
    return document;
}

} // namespace

class tst_ZVCrypt : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    // The transformations, in process.
    void parseKeyAccepts_data();
    void parseKeyAccepts();
    void parseKeyRejects_data();
    void parseKeyRejects();
    void splitLines_data();
    void splitLines();
    void decodeUtf8();
    void transformTextsKeepsEmptyValues();
    void transformTextsStopsAtFirstFailure();
    void linkFileKeepsPrefixesAndCarriageReturns();
    void linkFileKeepsDeclaration_data();
    void linkFileKeepsDeclaration();
    void linkFileRefusesUrlWithContent_data();
    void linkFileRefusesUrlWithContent();
    void linkFileRefusesCharactersXmlCannotHold();

    // The program.
    void help();
    void noArguments();
    void usageErrors_data();
    void usageErrors();
    void invalidKey_data();
    void invalidKey();
    void roundTripArguments();
    void encryptUsesLibraryKey();
    void keyForms();
    void otherKeyDoesNotDecodeWithDefault();
    void standardInputLines();
    void standardInputNotUtf8();
    void decryptGarbageArgument();
    void decryptGarbageLine();
    void decryptLineBreak();
    void linkFileRoundTrip();
    void linkFileFromStandardInput();
    void encryptLinksRefusesEncipheredFile();
    void decryptLinksRefusesPlainFile();
    void linkFileNotXml_data();
    void linkFileNotXml();
    void linkFileMissing();
    void linkFileDirectory();
    void linkFileUnreadable();
    void linkFileUrlWithChildElement();
    void billionLaughsRefusedQuickly();
    void externalDtdRefused();

private:
    QTemporaryDir m_dir;
};

void tst_ZVCrypt::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QVERIFY2(QFileInfo(QStringLiteral(ZVCRYPT_PROGRAM)).isExecutable(), ZVCRYPT_PROGRAM);
}

void tst_ZVCrypt::parseKeyAccepts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint64>("key");
    QTest::newRow("zero") << QStringLiteral("0") << quint64(0);
    QTest::newRow("decimal") << QStringLiteral("42") << quint64(42);
    QTest::newRow("leading zeros") << QStringLiteral("0042") << quint64(42);
    QTest::newRow("hex") << QStringLiteral("0x2A") << quint64(42);
    QTest::newRow("hex upper prefix, lower digits") << QStringLiteral("0X2a") << quint64(42);
    QTest::newRow("largest decimal") << QStringLiteral("18446744073709551615") << std::numeric_limits<quint64>::max();
    QTest::newRow("largest hex") << QStringLiteral("0xFFFFFFFFFFFFFFFF") << std::numeric_limits<quint64>::max();
    QTest::newRow("library default form") << QStringLiteral("0x7C3E91A45D2B06F8") << Q_UINT64_C(0x7C3E91A45D2B06F8);
}

void tst_ZVCrypt::parseKeyAccepts()
{
    QFETCH(QString, text);
    QFETCH(quint64, key);
    quint64 parsed = 1;
    QVERIFY(ZVCrypt::parseKey(text, &parsed));
    QCOMPARE(parsed, key);
}

void tst_ZVCrypt::parseKeyRejects_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("word") << QStringLiteral("abc");
    QTest::newRow("hex digits without prefix") << QStringLiteral("2A");
    QTest::newRow("prefix only") << QStringLiteral("0x");
    QTest::newRow("negative") << QStringLiteral("-1");
    QTest::newRow("plus") << QStringLiteral("+42");
    QTest::newRow("leading blank") << QStringLiteral(" 42");
    QTest::newRow("trailing blank") << QStringLiteral("42 ");
    QTest::newRow("exponent") << QStringLiteral("1e3");
    QTest::newRow("decimal beyond 64 bits") << QStringLiteral("18446744073709551616");
    QTest::newRow("17 hex digits") << QStringLiteral("0x1FFFFFFFFFFFFFFFF");
    QTest::newRow("17 hex digits, leading zero") << QStringLiteral("0x00000000000000001");
    QTest::newRow("hex sign") << QStringLiteral("0x-1");
    QTest::newRow("fullwidth digits") << QString::fromUtf8("\xEF\xBC\x94\xEF\xBC\x92");
}

void tst_ZVCrypt::parseKeyRejects()
{
    QFETCH(QString, text);
    quint64 parsed = 7;
    QVERIFY(!ZVCrypt::parseKey(text, &parsed));
    QCOMPARE(parsed, quint64(7));
}

void tst_ZVCrypt::splitLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("nothing") << QString() << QStringList();
    QTest::newRow("one line, no break") << QStringLiteral("a") << QStringList{QStringLiteral("a")};
    QTest::newRow("one line") << QStringLiteral("a\n") << QStringList{QStringLiteral("a")};
    QTest::newRow("one empty line") << QStringLiteral("\n") << QStringList{QString()};
    QTest::newRow("crlf") << QStringLiteral("a\r\nb\r\n") << QStringList{QStringLiteral("a"), QStringLiteral("b")};
    QTest::newRow("blank in between") << QStringLiteral("a\n\nb") << QStringList{QStringLiteral("a"), QString(), QStringLiteral("b")};
    QTest::newRow("only the last cr goes") << QStringLiteral("a\r\r\n") << QStringList{QStringLiteral("a\r")};
    QTest::newRow("inner cr stays") << QStringLiteral("a\rb\n") << QStringList{QStringLiteral("a\rb")};
}

void tst_ZVCrypt::splitLines()
{
    QFETCH(QString, text);
    QFETCH(QStringList, lines);
    QCOMPARE(ZVCrypt::splitLines(text), lines);
}

void tst_ZVCrypt::decodeUtf8()
{
    QString text;
    QVERIFY(ZVCrypt::decodeUtf8(QByteArray("\xC3\xA9t\xC3\xA9"), &text));
    QCOMPARE(text, QString::fromUtf8("\xC3\xA9t\xC3\xA9"));
    QVERIFY(ZVCrypt::decodeUtf8(QByteArray("\xEF\xBB\xBF" "a"), &text));
    QCOMPARE(text, QStringLiteral("a"));
    QVERIFY(ZVCrypt::decodeUtf8(QByteArray(), &text));
    QCOMPARE(text, QString());
    QVERIFY(!ZVCrypt::decodeUtf8(QByteArray("caf\xE9"), &text));
    QVERIFY(!ZVCrypt::decodeUtf8(QByteArray("cut \xC3"), &text));
}

void tst_ZVCrypt::transformTextsKeepsEmptyValues()
{
    const CSimpleCrypt crypt(DefaultKey);
    const QStringList plain{QStringLiteral("one"), QString(), QStringLiteral(" two ")};
    const ZVCrypt::TextResult enciphered = ZVCrypt::transformTexts(plain, crypt, ZVCrypt::Direction::Encipher);
    QVERIFY(enciphered.ok());
    QCOMPARE(enciphered.values, (QStringList{crypt.encryptToString(QStringLiteral("one")), QString(),
                                             crypt.encryptToString(QStringLiteral(" two "))}));
    const ZVCrypt::TextResult deciphered = ZVCrypt::transformTexts(enciphered.values, crypt, ZVCrypt::Direction::Decipher);
    QVERIFY(deciphered.ok());
    QCOMPARE(deciphered.values, plain);
}

void tst_ZVCrypt::transformTextsStopsAtFirstFailure()
{
    const CSimpleCrypt crypt(DefaultKey);
    const QStringList inputs{crypt.encryptToString(QStringLiteral("fine")), QStringLiteral("garbage"),
                             QStringLiteral("more garbage")};
    const ZVCrypt::TextResult result = ZVCrypt::transformTexts(inputs, crypt, ZVCrypt::Direction::Decipher);
    QVERIFY(!result.ok());
    QCOMPARE(result.failedIndex, 1);
    QCOMPARE(result.reason, QStringLiteral("does not decode with this key"));
    QVERIFY(result.values.isEmpty());
}

void tst_ZVCrypt::linkFileKeepsPrefixesAndCarriageReturns()
{
    const CSimpleCrypt crypt(DefaultKey);
    const QByteArray input = "<r:root xmlns:r=\"urn:x\" xmlns=\"urn:d\"><r:url a=\"1\"> https://x/ </r:url>"
                             "<t>a&#13;b</t></r:root>";
    const ZVCrypt::LinkFileResult result = ZVCrypt::transformLinkFile(input, crypt, ZVCrypt::Direction::Encipher);
    QVERIFY2(result.ok, qPrintable(result.error));
    // No declaration was there, so none is added.
    const QByteArray expected = "<r:root xmlns:r=\"urn:x\" xmlns=\"urn:d\"><r:url a=\"1\">"
        + crypt.encryptToString(QStringLiteral("https://x/")).toUtf8()
        + "</r:url><t>a&#13;b</t></r:root>\n";
    QCOMPARE(result.document, expected);
}

void tst_ZVCrypt::linkFileKeepsDeclaration_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("plain") << QByteArray("<?xml version=\"1.0\"?><root/>")
                           << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root/>\n");
    QTest::newRow("standalone") << QByteArray("<?xml version=\"1.0\" standalone=\"yes\"?><root/>")
                                << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<root/>\n");
    // Read as Latin-1, written as UTF-8, and the declaration follows the bytes.
    QTest::newRow("latin-1") << QByteArray("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><root>\xE9</root>")
                             << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root>\xC3\xA9</root>\n");
    QTest::newRow("comments around the root")
        << QByteArray("<?xml version=\"1.0\"?>\n<!--a-->\n<root/>\n<?b c?>\n")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--a-->\n<root/>\n<?b c?>\n");
    QTest::newRow("no declaration") << QByteArray("<root/>") << QByteArray("<root/>\n");
}

void tst_ZVCrypt::linkFileKeepsDeclaration()
{
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, output);
    const CSimpleCrypt crypt(DefaultKey);
    const ZVCrypt::LinkFileResult result = ZVCrypt::transformLinkFile(input, crypt, ZVCrypt::Direction::Encipher);
    QVERIFY2(result.ok, qPrintable(result.error));
    QCOMPARE(result.document, output);
}

void tst_ZVCrypt::linkFileRefusesUrlWithContent_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QString>("error");
    QTest::newRow("element") << QByteArray("<root>\n<url>https://x/<b>y</b></url></root>")
                             << QStringLiteral("url at line 2 contains the element <b>; a url holds text only");
    QTest::newRow("nested url") << QByteArray("<root>\n<url><url>https://x/</url></url></root>")
                                << QStringLiteral("url at line 2 contains the element <url>; a url holds text only");
    QTest::newRow("comment") << QByteArray("<root>\n<url>https://x/<!-- c --></url></root>")
                             << QStringLiteral("url at line 2 contains a comment; a url holds text only");
    QTest::newRow("instruction") << QByteArray("<root>\n<url>https://x/<?p?></url></root>")
                                 << QStringLiteral("url at line 2 contains a processing instruction; a url holds text only");
}

void tst_ZVCrypt::linkFileRefusesUrlWithContent()
{
    QFETCH(QByteArray, input);
    QFETCH(QString, error);
    const CSimpleCrypt crypt(DefaultKey);
    for (const ZVCrypt::Direction direction : {ZVCrypt::Direction::Encipher, ZVCrypt::Direction::Decipher}) {
        const ZVCrypt::LinkFileResult result = ZVCrypt::transformLinkFile(input, crypt, direction);
        QVERIFY(!result.ok);
        QCOMPARE(result.error, error);
        QVERIFY(result.document.isEmpty());
    }
}

void tst_ZVCrypt::linkFileRefusesCharactersXmlCannotHold()
{
    const CSimpleCrypt crypt(DefaultKey);
    const QByteArray input = "<root><url>" + crypt.encryptToString(QStringLiteral("a\x01z")).toUtf8() + "</url></root>";
    const ZVCrypt::LinkFileResult result = ZVCrypt::transformLinkFile(input, crypt, ZVCrypt::Direction::Decipher);
    QVERIFY(!result.ok);
    QCOMPARE(result.error, QStringLiteral("url at line 1 deciphers to characters that XML cannot hold"));
}

void tst_ZVCrypt::help()
{
    for (const QStringList& arguments : {QStringList{QStringLiteral("--help")}, QStringList{QStringLiteral("-h")},
                                         QStringList{QStringLiteral("encrypt"), QStringLiteral("--help")}}) {
        const Outcome outcome = runTool(arguments);
        QVERIFY(outcome.finished);
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY(outcome.err.isEmpty());
        QVERIFY(outcome.out.startsWith("Usage:\n"));
        QVERIFY(outcome.out.contains("  zvcrypt encrypt [--key KEY] [TEXT...]      encipher each TEXT, or each line of standard input\n"));
        QVERIFY(outcome.out.contains("  zvcrypt decrypt [--key KEY] [TEXT...]      decipher each TEXT, or each line of standard input\n"));
        QVERIFY(outcome.out.contains("  zvcrypt encrypt-links [--key KEY] [FILE]   encipher the text of every <url> element of a plain link file\n"));
        QVERIFY(outcome.out.contains("  zvcrypt decrypt-links [--key KEY] [FILE]   the reverse\n"));
    }
}

void tst_ZVCrypt::noArguments()
{
    const Outcome outcome = runTool({});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 2);
    QVERIFY(outcome.out.isEmpty());
    QVERIFY(outcome.err.startsWith("zvcrypt: no command given\n"));
    QVERIFY(outcome.err.contains("Usage:\n  zvcrypt encrypt [--key KEY] [TEXT...]"));
}

void tst_ZVCrypt::usageErrors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("unknown command") << QStringList{QStringLiteral("scramble")}
                                     << QByteArray("zvcrypt: unknown command \"scramble\"\n");
    QTest::newRow("unknown option") << QStringList{QStringLiteral("encrypt"), QStringLiteral("--verbose"), QStringLiteral("x")}
                                    << QByteArray("zvcrypt: unknown option \"--verbose\"\n");
    QTest::newRow("key without value") << QStringList{QStringLiteral("encrypt"), QStringLiteral("--key")}
                                       << QByteArray("zvcrypt: --key needs a value\n");
    QTest::newRow("two keys") << QStringList{QStringLiteral("decrypt"), QStringLiteral("--key"), QStringLiteral("1"),
                                             QStringLiteral("--key=2"), QStringLiteral("x")}
                              << QByteArray("zvcrypt: --key given more than once\n");
    QTest::newRow("two files") << QStringList{QStringLiteral("encrypt-links"), QStringLiteral("a.xml"), QStringLiteral("b.xml")}
                               << QByteArray("zvcrypt: encrypt-links takes at most one FILE\n");
}

void tst_ZVCrypt::usageErrors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    const Outcome outcome = runTool(arguments);
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 2);
    QVERIFY(outcome.out.isEmpty());
    QVERIFY2(outcome.err.startsWith(message), outcome.err.constData());
    QVERIFY(outcome.err.contains("\nUsage:\n"));
}

void tst_ZVCrypt::invalidKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("word") << QStringLiteral("secret");
    QTest::newRow("empty") << QString();
    QTest::newRow("prefix only") << QStringLiteral("0x");
    QTest::newRow("negative") << QStringLiteral("-5");
    QTest::newRow("beyond 64 bits") << QStringLiteral("18446744073709551616");
    QTest::newRow("17 hex digits") << QStringLiteral("0x10000000000000000");
}

void tst_ZVCrypt::invalidKey()
{
    QFETCH(QString, key);
    const Outcome outcome = runTool({QStringLiteral("encrypt"), QStringLiteral("--key"), key, QStringLiteral("value")});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 2);
    QVERIFY(outcome.out.isEmpty());
    const QByteArray start = "zvcrypt: invalid key \"" + key.toUtf8() + "\"";
    QVERIFY2(outcome.err.startsWith(start), outcome.err.constData());
}

void tst_ZVCrypt::roundTripArguments()
{
    const QStringList values{
        QStringLiteral("https://www.example.com/?key=home&lang=en"),
        QString::fromUtf8("Gr\xC3\xBC\xC3\x9F" "e aus K\xC3\xB6ln"),
        QString::fromUtf8("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE3\x83\xAA\xE3\x83\xB3\xE3\x82\xAF"),
        QString::fromUtf8("\xF0\x9F\x98\x80 \xD8\xB9\xD8\xB1\xD8\xA8\xD9\x8A"),
        QStringLiteral("  spaced  "),
        QString(),
        QStringLiteral("-dash"),
    };
    QStringList arguments{QStringLiteral("encrypt"), QStringLiteral("--")};
    arguments += values;
    const Outcome encrypted = runTool(arguments);
    QVERIFY(encrypted.finished);
    QCOMPARE(encrypted.exitCode, 0);
    QVERIFY(encrypted.err.isEmpty());
    const QStringList ciphers = outputLines(encrypted.out);
    QCOMPARE(ciphers.size(), values.size());
    QVERIFY(ciphers.at(5).isEmpty());
    for (int i = 0; i < values.size(); ++i)
        QVERIFY(ciphers.at(i) != values.at(i) || values.at(i).isEmpty());

    QStringList back{QStringLiteral("decrypt")};
    back += ciphers;
    const Outcome decrypted = runTool(back);
    QVERIFY(decrypted.finished);
    QCOMPARE(decrypted.exitCode, 0);
    QVERIFY(decrypted.err.isEmpty());
    QCOMPARE(outputLines(decrypted.out), values);
}

void tst_ZVCrypt::encryptUsesLibraryKey()
{
    const QStringList values{QStringLiteral("https://www.example.com/?key=buy"),
                             QString::fromUtf8("\xC3\xA9l\xC3\xA8ve \xE2\x82\xAC")};
    const Outcome outcome = runTool(QStringList{QStringLiteral("encrypt")} + values);
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 0);
    const CSimpleCrypt library(DefaultKey);
    const QStringList ciphers = outputLines(outcome.out);
    QCOMPARE(ciphers.size(), 2);
    for (int i = 0; i < values.size(); ++i) {
        QCOMPARE(library.decryptToString(ciphers.at(i)), values.at(i));
        QCOMPARE(ciphers.at(i), library.encryptToString(values.at(i)));
    }
    QCOMPARE(outcome.out, (ciphers.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8());
}

void tst_ZVCrypt::keyForms()
{
    const QByteArray expected = CSimpleCrypt(42).encryptToString(QStringLiteral("secret")).toUtf8() + '\n';
    const QList<QStringList> forms{
        {QStringLiteral("--key"), QStringLiteral("42")},
        {QStringLiteral("--key=42")},
        {QStringLiteral("--key"), QStringLiteral("0x2A")},
        {QStringLiteral("--key=0X2a")},
    };
    for (const QStringList& form : forms) {
        const Outcome outcome = runTool(QStringList{QStringLiteral("encrypt")} + form + QStringList{QStringLiteral("secret")});
        QVERIFY(outcome.finished);
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.out, expected);
    }
    // Options may follow the values too.
    const Outcome after = runTool({QStringLiteral("encrypt"), QStringLiteral("secret"), QStringLiteral("--key"), QStringLiteral("42")});
    QCOMPARE(after.exitCode, 0);
    QCOMPARE(after.out, expected);
}

void tst_ZVCrypt::otherKeyDoesNotDecodeWithDefault()
{
    const Outcome encrypted = runTool({QStringLiteral("encrypt"), QStringLiteral("--key"), QStringLiteral("42"),
                                       QStringLiteral("https://www.example.com/")});
    QVERIFY(encrypted.finished);
    QCOMPARE(encrypted.exitCode, 0);
    const QStringList ciphers = outputLines(encrypted.out);
    QCOMPARE(ciphers.size(), 1);
    QCOMPARE(CSimpleCrypt(DefaultKey).decryptToString(ciphers.first()), QString());
    QCOMPARE(CSimpleCrypt(42).decryptToString(ciphers.first()), QStringLiteral("https://www.example.com/"));

    const Outcome withDefault = runTool({QStringLiteral("decrypt"), ciphers.first()});
    QCOMPARE(withDefault.exitCode, 1);
    QVERIFY(withDefault.out.isEmpty());
    QCOMPARE(withDefault.err, QByteArray("zvcrypt: argument 1 does not decode with this key\n"));

    const Outcome withKey = runTool({QStringLiteral("decrypt"), QStringLiteral("--key=42"), ciphers.first()});
    QCOMPARE(withKey.exitCode, 0);
    QCOMPARE(withKey.out, QByteArray("https://www.example.com/\n"));
}

void tst_ZVCrypt::standardInputLines()
{
    const CSimpleCrypt library(DefaultKey);
    const Outcome encrypted = runTool({QStringLiteral("encrypt")},
                                      "alpha\r\n\n\xC3\xA9t\xC3\xA9\nlast without break");
    QVERIFY(encrypted.finished);
    QCOMPARE(encrypted.exitCode, 0);
    QVERIFY(encrypted.err.isEmpty());
    const QStringList ciphers = outputLines(encrypted.out);
    QCOMPARE(ciphers.size(), 4);
    QCOMPARE(library.decryptToString(ciphers.at(0)), QStringLiteral("alpha"));
    QCOMPARE(ciphers.at(1), QString());
    QCOMPARE(library.decryptToString(ciphers.at(2)), QString::fromUtf8("\xC3\xA9t\xC3\xA9"));
    QCOMPARE(library.decryptToString(ciphers.at(3)), QStringLiteral("last without break"));

    const Outcome decrypted = runTool({QStringLiteral("decrypt")}, encrypted.out);
    QCOMPARE(decrypted.exitCode, 0);
    QCOMPARE(decrypted.out, QByteArray("alpha\n\n\xC3\xA9t\xC3\xA9\nlast without break\n"));

    const Outcome nothing = runTool({QStringLiteral("decrypt")});
    QCOMPARE(nothing.exitCode, 0);
    QVERIFY(nothing.out.isEmpty());
}

void tst_ZVCrypt::standardInputNotUtf8()
{
    const Outcome outcome = runTool({QStringLiteral("encrypt")}, "caf\xE9\n");
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QCOMPARE(outcome.err, QByteArray("zvcrypt: standard input is not UTF-8 text\n"));
}

void tst_ZVCrypt::decryptGarbageArgument()
{
    const QString good = CSimpleCrypt(DefaultKey).encryptToString(QStringLiteral("ok"));
    const Outcome outcome = runTool({QStringLiteral("decrypt"), good, QStringLiteral("bm90IGEgY2lwaGVy"), good});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QCOMPARE(outcome.err, QByteArray("zvcrypt: argument 2 does not decode with this key\n"));
}

void tst_ZVCrypt::decryptGarbageLine()
{
    const CSimpleCrypt library(DefaultKey);
    const QByteArray input = library.encryptToString(QStringLiteral("one")).toUtf8() + "\n\n"
        + "garbage!\n" + library.encryptToString(QStringLiteral("four")).toUtf8() + "\n";
    const Outcome outcome = runTool({QStringLiteral("decrypt")}, input);
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QCOMPARE(outcome.err, QByteArray("zvcrypt: line 3 does not decode with this key\n"));
}

void tst_ZVCrypt::decryptLineBreak()
{
    const QString cipher = CSimpleCrypt(DefaultKey).encryptToString(QStringLiteral("two\nlines"));
    const Outcome outcome = runTool({QStringLiteral("decrypt"), cipher});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QCOMPARE(outcome.err, QByteArray("zvcrypt: argument 1 deciphers to text with a line break, "
                                     "which cannot be printed as one line\n"));
}

void tst_ZVCrypt::linkFileRoundTrip()
{
    const QString plainPath = m_dir.filePath(QStringLiteral("links_plain.xml"));
    const QString cipheredPath = m_dir.filePath(QStringLiteral("links.xml"));
    QVERIFY(writeFile(plainPath, PlainLinkFile));

    const Walk plain = walk(PlainLinkFile);
    QVERIFY2(plain.error.isEmpty(), qPrintable(plain.error));
    QCOMPARE(plain.urls.size(), 6);

    const Outcome encrypted = runTool({QStringLiteral("encrypt-links"), plainPath});
    QVERIFY(encrypted.finished);
    QCOMPARE(encrypted.exitCode, 0);
    QVERIFY(encrypted.err.isEmpty());
    QVERIFY(encrypted.out.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- Links of the English menu -->\n<root>\n"));

    const Walk ciphered = walk(encrypted.out);
    QVERIFY2(ciphered.error.isEmpty(), qPrintable(ciphered.error));
    QCOMPARE(ciphered.structure, plain.structure);
    QCOMPARE(ciphered.urls.size(), 6);
    const CSimpleCrypt library(DefaultKey);
    const QStringList expected = expectedUrls();
    for (int i : {0, 1, 2, 5}) {
        QVERIFY(!ciphered.urls.at(i).contains(QLatin1String("example")));
        QCOMPARE(ciphered.urls.at(i), library.encryptToString(expected.at(i)));
    }
    QCOMPARE(ciphered.urls.at(3), QString());
    QCOMPARE(ciphered.urls.at(4), QStringLiteral("   "));
    // Untouched elsewhere, down to the text of the other elements and the comments.
    QVERIFY(encrypted.out.contains("<AboutHome>About <b>us</b> &lt;here&gt;<!-- inner --></AboutHome>"));
    QVERIFY(encrypted.out.contains("<menuName>Hilfe &amp; Kontakt \xC3\x9C</menuName>"));
    QVERIFY(encrypted.out.contains("<?editor keep=\"yes\"?>"));
    QVERIFY(encrypted.out.contains("<url type=\"help\">"));

    QVERIFY(writeFile(cipheredPath, encrypted.out));
    const Outcome decrypted = runTool({QStringLiteral("decrypt-links"), cipheredPath});
    QVERIFY(decrypted.finished);
    QCOMPARE(decrypted.exitCode, 0);
    QVERIFY(decrypted.err.isEmpty());
    const Walk back = walk(decrypted.out);
    QVERIFY2(back.error.isEmpty(), qPrintable(back.error));
    QCOMPARE(back.structure, plain.structure);
    QCOMPARE(back.urls, expected);

    // A second round from the deciphered file gives the same bytes: the output is stable.
    const QString backPath = m_dir.filePath(QStringLiteral("links_back.xml"));
    QVERIFY(writeFile(backPath, decrypted.out));
    const Outcome again = runTool({QStringLiteral("encrypt-links"), backPath});
    QCOMPARE(again.exitCode, 0);
    QCOMPARE(again.out, encrypted.out);
}

void tst_ZVCrypt::linkFileFromStandardInput()
{
    const QString path = m_dir.filePath(QStringLiteral("stdin_links.xml"));
    QVERIFY(writeFile(path, PlainLinkFile));
    const Outcome fromFile = runTool({QStringLiteral("encrypt-links"), path});
    QCOMPARE(fromFile.exitCode, 0);
    QVERIFY(!fromFile.out.isEmpty());

    const Outcome fromStdin = runTool({QStringLiteral("encrypt-links")}, PlainLinkFile);
    QCOMPARE(fromStdin.exitCode, 0);
    QCOMPARE(fromStdin.out, fromFile.out);

    const Outcome fromDash = runTool({QStringLiteral("encrypt-links"), QStringLiteral("-")}, PlainLinkFile);
    QCOMPARE(fromDash.exitCode, 0);
    QCOMPARE(fromDash.out, fromFile.out);

    const Outcome emptyStdin = runTool({QStringLiteral("decrypt-links")});
    QCOMPARE(emptyStdin.exitCode, 1);
    QVERIFY(emptyStdin.out.isEmpty());
    QCOMPARE(emptyStdin.err, QByteArray("zvcrypt: standard input: empty, not a link file\n"));
}

void tst_ZVCrypt::encryptLinksRefusesEncipheredFile()
{
    const CSimpleCrypt library(DefaultKey);
    const ZVCrypt::LinkFileResult ciphered =
        ZVCrypt::transformLinkFile(PlainLinkFile, library, ZVCrypt::Direction::Encipher);
    QVERIFY(ciphered.ok);
    const QString path = m_dir.filePath(QStringLiteral("already.xml"));
    QVERIFY(writeFile(path, ciphered.document));

    const Outcome outcome = runTool({QStringLiteral("encrypt-links"), path});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QCOMPARE(QString::fromUtf8(outcome.err),
             QStringLiteral("zvcrypt: ") + path + QStringLiteral(": url at line 7 is already enciphered\n"));

    // Under another key the same file is just text and may be enciphered again.
    const Outcome otherKey = runTool({QStringLiteral("encrypt-links"), QStringLiteral("--key=42"), path});
    QCOMPARE(otherKey.exitCode, 0);
}

void tst_ZVCrypt::decryptLinksRefusesPlainFile()
{
    const QString path = m_dir.filePath(QStringLiteral("plain.xml"));
    QVERIFY(writeFile(path, PlainLinkFile));
    const Outcome outcome = runTool({QStringLiteral("decrypt-links"), path});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QCOMPARE(QString::fromUtf8(outcome.err),
             QStringLiteral("zvcrypt: ") + path + QStringLiteral(": url at line 7 does not decode with this key\n"));
}

void tst_ZVCrypt::linkFileNotXml_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("reason");
    QTest::newRow("text") << QByteArray("just some words\n") << QStringLiteral(": not well-formed XML at line 1");
    QTest::newRow("cut short") << QByteArray("<?xml version=\"1.0\"?>\n<root><menu>\n")
                               << QStringLiteral(": not well-formed XML at line 3");
    QTest::newRow("mismatched tags") << QByteArray("<root>\n<menu></root>\n") << QStringLiteral(": not well-formed XML at line 2");
    QTest::newRow("two roots") << QByteArray("<a/><b/>") << QStringLiteral(": not well-formed XML at line 1");
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11) << QStringLiteral(": not well-formed XML at line");
    QTest::newRow("empty") << QByteArray() << QStringLiteral(": empty, not a link file");
    QTest::newRow("blank") << QByteArray(" \n\t\n") << QStringLiteral(": empty, not a link file");
}

void tst_ZVCrypt::linkFileNotXml()
{
    QFETCH(QByteArray, contents);
    QFETCH(QString, reason);
    const QString path = m_dir.filePath(QStringLiteral("notxml.xml"));
    QVERIFY(writeFile(path, contents));
    for (const QString& command : {QStringLiteral("encrypt-links"), QStringLiteral("decrypt-links")}) {
        const Outcome outcome = runTool({command, path});
        QVERIFY(outcome.finished);
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY(outcome.out.isEmpty());
        const QString message = QString::fromUtf8(outcome.err);
        QVERIFY2(message.startsWith(QStringLiteral("zvcrypt: ") + path + reason), qPrintable(message));
        QVERIFY(message.endsWith(QLatin1Char('\n')));
    }
}

void tst_ZVCrypt::linkFileMissing()
{
    const QString path = m_dir.filePath(QStringLiteral("does-not-exist.xml"));
    const Outcome outcome = runTool({QStringLiteral("encrypt-links"), path});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QCOMPARE(QString::fromUtf8(outcome.err), QStringLiteral("zvcrypt: ") + path + QStringLiteral(": no such file\n"));
}

void tst_ZVCrypt::linkFileDirectory()
{
    const QString path = m_dir.filePath(QStringLiteral("folder.xml"));
    QVERIFY(QDir().mkpath(path));
    const Outcome outcome = runTool({QStringLiteral("decrypt-links"), path});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QCOMPARE(QString::fromUtf8(outcome.err), QStringLiteral("zvcrypt: ") + path + QStringLiteral(": is a directory\n"));
}

void tst_ZVCrypt::linkFileUnreadable()
{
    const QString path = m_dir.filePath(QStringLiteral("locked.xml"));
    QVERIFY(writeFile(path, PlainLinkFile));
    QVERIFY(QFile::setPermissions(path, QFileDevice::WriteOwner));
    if (QFile(path).open(QIODevice::ReadOnly))
        QSKIP("this account reads files regardless of their permissions");
    const Outcome outcome = runTool({QStringLiteral("encrypt-links"), path});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    const QString message = QString::fromUtf8(outcome.err);
    QVERIFY2(message.startsWith(QStringLiteral("zvcrypt: ") + path + QStringLiteral(": ")), qPrintable(message));
    QVERIFY(message.size() > QStringLiteral("zvcrypt: ").size() + path.size() + 3);
}

void tst_ZVCrypt::linkFileUrlWithChildElement()
{
    const QString path = m_dir.filePath(QStringLiteral("child.xml"));
    QVERIFY(writeFile(path, "<root>\n  <url>https://www.example.com/<i>x</i></url>\n</root>\n"));
    const Outcome outcome = runTool({QStringLiteral("encrypt-links"), path});
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QCOMPARE(QString::fromUtf8(outcome.err),
             QStringLiteral("zvcrypt: ") + path + QStringLiteral(": url at line 2 contains the element <i>; a url holds text only\n"));
}

void tst_ZVCrypt::billionLaughsRefusedQuickly()
{
    const QString path = m_dir.filePath(QStringLiteral("lol.xml"));
    QVERIFY(writeFile(path, billionLaughs()));
    for (const QString& command : {QStringLiteral("encrypt-links"), QStringLiteral("decrypt-links")}) {
        const Outcome outcome = runTool({command, path});
        QVERIFY(outcome.finished);
        QVERIFY2(outcome.milliseconds < 10000, QByteArray::number(outcome.milliseconds).constData());
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY(outcome.out.isEmpty());
        QVERIFY2(outcome.err.startsWith("zvcrypt: " + path.toUtf8() + ": document type declarations are refused"),
                 outcome.err.constData());
    }
}

void tst_ZVCrypt::externalDtdRefused()
{
    const QByteArray document = "<?xml version=\"1.0\"?>\n<!DOCTYPE root SYSTEM \"links.dtd\">\n<root><url>https://x/</url></root>\n";
    const Outcome outcome = runTool({QStringLiteral("encrypt-links")}, document);
    QVERIFY(outcome.finished);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(outcome.out.isEmpty());
    QVERIFY2(outcome.err.startsWith("zvcrypt: standard input: document type declarations are refused (found one ending at line 2)"),
             outcome.err.constData());
}

QTEST_GUILESS_MAIN(tst_ZVCrypt)

#include "tst_zvcrypt.moc"
