#include "linkfile.h"

#include <ZVFoundation/CSimpleCrypt>
#include <ZVFoundation/private/ZVQtCompat>

#include <QtCore/QPair>
#include <QtCore/QVector>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <limits>

namespace ZVCrypt {

namespace {

int digitValue(QChar c, int base)
{
    const ushort u = c.unicode();
    int value = -1;
    // QChar::isDigit would also take other scripts' digits; a key is ASCII only.
    if (u >= '0' && u <= '9')
        value = u - '0';
    else if (u >= 'a' && u <= 'f')
        value = u - 'a' + 10;
    else if (u >= 'A' && u <= 'F')
        value = u - 'A' + 10;
    return value < base ? value : -1;
}

// Whether XML 1.0 can carry every character of text. A deciphered value may come from
// anywhere, and a writer given a character outside this set produces a file no reader
// accepts.
bool isXmlText(const QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        const ushort c = text.at(i).unicode();
        if (QChar::isHighSurrogate(c)) {
            if (i + 1 < text.size() && QChar::isLowSurrogate(text.at(i + 1).unicode())) {
                ++i;
                continue;
            }
            return false;
        }
        if (QChar::isLowSurrogate(c))
            return false;
        if (c < 0x20 && c != 0x9 && c != 0xA && c != 0xD)
            return false;
        if (c == 0xFFFE || c == 0xFFFF)
            return false;
    }
    return true;
}

// A carriage return written as itself is read back as a line feed; only a character
// reference keeps it.
void writeText(QXmlStreamWriter& writer, const QString& text)
{
    int start = 0;
    for (int cr = text.indexOf(QLatin1Char('\r')); cr >= 0; cr = text.indexOf(QLatin1Char('\r'), start)) {
        if (cr > start)
            writer.writeCharacters(text.mid(start, cr - start));
        writer.writeEntityReference(QStringLiteral("#13"));
        start = cr + 1;
    }
    if (start < text.size())
        writer.writeCharacters(text.mid(start));
}

class LinkFileRewriter
{
public:
    LinkFileRewriter(const QByteArray& document, const CSimpleCrypt& crypt, Direction direction)
        : m_reader(document)
        , m_writer(&m_output)
        , m_crypt(crypt)
        , m_direction(direction)
    {
        // Prefixes are copied as written. With namespace processing the writer would
        // invent prefixes of its own for every namespaced element.
        m_reader.setNamespaceProcessing(false);
    }

    LinkFileResult run();

private:
    bool copyUrl();
    void copyStartElement();
    void separateTopLevel();
    LinkFileResult failure() const;

    QXmlStreamReader m_reader;
    QByteArray m_output;
    QXmlStreamWriter m_writer;
    const CSimpleCrypt& m_crypt;
    const Direction m_direction;
    QString m_error;
    int m_depth = 0;
    bool m_topLevelWritten = false;
};

LinkFileResult LinkFileRewriter::run()
{
    while (!m_reader.atEnd()) {
        switch (m_reader.readNext()) {
        case QXmlStreamReader::Invalid:
            break;
        case QXmlStreamReader::StartDocument: {
            // The writer would put a declaration on a document that had none; keep
            // the original's presence. The output is UTF-8 whatever the input was,
            // and the declaration says so.
            const QString version = m_reader.documentVersion().toString();
            if (!version.isEmpty()) {
                if (m_reader.isStandaloneDocument())
                    m_writer.writeStartDocument(version, true);
                else
                    m_writer.writeStartDocument(version);
                m_topLevelWritten = true;
            }
            break;
        }
        case QXmlStreamReader::DTD:
            // Refused before any entity is used: declared entities can nest into an
            // expansion that exhausts memory, and a link file has no need for them.
            m_error = QStringLiteral("document type declarations are refused (found one ending "
                                     "at line %1); a link file needs no DTD or entities")
                          .arg(m_reader.lineNumber());
            return failure();
        case QXmlStreamReader::StartElement:
            separateTopLevel();
            if (m_reader.name() == QLatin1String("url")) {
                if (!copyUrl())
                    return failure();
            } else {
                copyStartElement();
                ++m_depth;
            }
            break;
        case QXmlStreamReader::EndElement:
            m_writer.writeEndElement();
            --m_depth;
            break;
        case QXmlStreamReader::Characters:
            // The reader reports no whitespace outside the root; this only guards
            // against writing text where XML has none.
            if (m_depth == 0)
                break;
            if (m_reader.isCDATA())
                m_writer.writeCDATA(m_reader.text().toString());
            else
                writeText(m_writer, m_reader.text().toString());
            break;
        case QXmlStreamReader::Comment:
        case QXmlStreamReader::ProcessingInstruction:
            separateTopLevel();
            m_writer.writeCurrentToken(m_reader);
            break;
        case QXmlStreamReader::EndDocument:
            m_writer.writeEndDocument();
            break;
        default:
            m_writer.writeCurrentToken(m_reader);
            break;
        }
    }
    if (m_reader.hasError())
        return failure();
    if (m_writer.hasError()) {
        m_error = QStringLiteral("the rewritten document could not be encoded");
        return failure();
    }

    LinkFileResult result;
    result.ok = true;
    result.document = m_output;
    return result;
}

// Called on the start tag of a url; consumes the element through its end tag.
bool LinkFileRewriter::copyUrl()
{
    const qint64 line = m_reader.lineNumber();
    const QString where = QStringLiteral("url at line %1").arg(line);
    copyStartElement();

    QString text;
    QVector<QPair<QString, bool>> pieces; // as read, with whether each was CDATA
    bool ended = false;
    while (!ended) {
        switch (m_reader.readNext()) {
        case QXmlStreamReader::Characters:
            text += m_reader.text();
            pieces.append(qMakePair(m_reader.text().toString(), m_reader.isCDATA()));
            break;
        case QXmlStreamReader::EndElement:
            ended = true;
            break;
        case QXmlStreamReader::Invalid:
            return false; // the reader's own error is reported
        case QXmlStreamReader::StartElement:
            m_error = where + QStringLiteral(" contains the element <")
                      + m_reader.qualifiedName().toString()
                      + QStringLiteral(">; a url holds text only");
            return false;
        case QXmlStreamReader::Comment:
            m_error = where + QStringLiteral(" contains a comment; a url holds text only");
            return false;
        case QXmlStreamReader::ProcessingInstruction:
            m_error = where + QStringLiteral(" contains a processing instruction; a url holds text only");
            return false;
        default:
            m_error = where + QStringLiteral(" contains something other than text");
            return false;
        }
    }

    const QString value = text.trimmed();
    if (value.isEmpty()) {
        // Nothing to protect: an unset address stays exactly as it was written.
        for (const auto& piece : qAsConst(pieces)) {
            if (piece.second)
                m_writer.writeCDATA(piece.first);
            else
                writeText(m_writer, piece.first);
        }
    } else if (m_direction == Direction::Encipher) {
        // Enciphering twice would leave an address the library deciphers to cipher text.
        if (!m_crypt.decryptToString(value).isEmpty()) {
            m_error = where + QStringLiteral(" is already enciphered");
            return false;
        }
        m_writer.writeCharacters(m_crypt.encryptToString(value));
    } else {
        const QString plain = m_crypt.decryptToString(value);
        if (plain.isEmpty()) {
            m_error = where + QStringLiteral(" does not decode with this key");
            return false;
        }
        if (!isXmlText(plain)) {
            m_error = where + QStringLiteral(" deciphers to characters that XML cannot hold");
            return false;
        }
        writeText(m_writer, plain);
    }
    m_writer.writeEndElement();
    return true;
}

// writeCurrentToken() would drop prefixes read without namespace processing, so the
// qualified names go out as they came in. Namespace declarations are plain attributes
// here and are copied with the rest.
void LinkFileRewriter::copyStartElement()
{
    m_writer.writeStartElement(m_reader.qualifiedName().toString());
    m_writer.writeAttributes(m_reader.attributes());
}

// The reader reports no whitespace between the items outside the root element; a line
// break between them keeps the declaration, leading comments and the root apart.
void LinkFileRewriter::separateTopLevel()
{
    if (m_depth != 0)
        return;
    if (m_topLevelWritten)
        m_writer.writeCharacters(QStringLiteral("\n"));
    m_topLevelWritten = true;
}

LinkFileResult LinkFileRewriter::failure() const
{
    LinkFileResult result;
    if (!m_error.isEmpty()) {
        result.error = m_error;
    } else {
        result.error = QStringLiteral("not well-formed XML at line %1, column %2: %3")
                           .arg(m_reader.lineNumber())
                           .arg(m_reader.columnNumber())
                           .arg(m_reader.errorString());
    }
    return result;
}

} // namespace

bool parseKey(const QString& text, quint64* key)
{
    const bool hex = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    const QString digits = hex ? text.mid(2) : text;
    const int base = hex ? 16 : 10;
    if (digits.isEmpty() || (hex && digits.size() > 16))
        return false;

    quint64 value = 0;
    const quint64 max = std::numeric_limits<quint64>::max();
    for (const QChar c : digits) {
        const int digit = digitValue(c, base);
        if (digit < 0)
            return false;
        if (value > (max - quint64(digit)) / quint64(base))
            return false;
        value = value * quint64(base) + quint64(digit);
    }
    *key = value;
    return true;
}

bool decodeUtf8(const QByteArray& bytes, QString* text)
{
    static const char bom[] = "\xEF\xBB\xBF";
    const int offset = bytes.startsWith(bom) ? 3 : 0;
    // The mark, if any, is already skipped; any later U+FEFF is content.
    return ZVQtCompat::DecodeUtf8(bytes.constData() + offset, bytes.size() - offset, text);
}

QStringList splitLines(const QString& text)
{
    if (text.isEmpty())
        return {};
    QStringList lines = text.split(QLatin1Char('\n'));
    if (text.endsWith(QLatin1Char('\n')))
        lines.removeLast();
    for (QString& line : lines) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    }
    return lines;
}

TextResult transformTexts(const QStringList& inputs, const CSimpleCrypt& crypt, Direction direction)
{
    TextResult result;
    result.values.reserve(inputs.size());
    for (int i = 0; i < inputs.size(); ++i) {
        const QString& input = inputs.at(i);
        // The cipher of an empty text deciphers to the empty string, which cannot be
        // told from a failure; an empty value therefore has no cipher of its own.
        if (input.isEmpty()) {
            result.values.append(QString());
            continue;
        }
        if (direction == Direction::Encipher) {
            result.values.append(crypt.encryptToString(input));
            continue;
        }
        const QString plain = crypt.decryptToString(input);
        if (plain.isEmpty())
            result.reason = QStringLiteral("does not decode with this key");
        else if (plain.contains(QLatin1Char('\n')) || plain.contains(QLatin1Char('\r')))
            result.reason = QStringLiteral("deciphers to text with a line break, which cannot be printed as one line");
        if (!result.reason.isEmpty()) {
            result.failedIndex = i;
            result.values.clear();
            return result;
        }
        result.values.append(plain);
    }
    return result;
}

LinkFileResult transformLinkFile(const QByteArray& document, const CSimpleCrypt& crypt,
                                 Direction direction)
{
    return LinkFileRewriter(document, crypt, direction).run();
}

} // namespace ZVCrypt
