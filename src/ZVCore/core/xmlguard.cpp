#include "xmlguard.h"

#include <QtCore/QBuffer>
#include <QtCore/QString>
#include <QtXml/QDomDocument>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QtCore/QXmlStreamReader>
#else
#include <QtXml/QXmlInputSource>
#endif

#include <cstring>
#include <type_traits>

namespace ZVUIFramework {
namespace XmlGuard {

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)

namespace {

// Walks the markup of a document's text. Comments, CDATA sections, processing
// instructions and quoted attribute values hide what they hold; an element opens with '<' and a name and closes with "</" or
// "/>". No well-formedness is checked, that is the DOM parser's part; the walk only
// has to see at least as deep as the parser will go, and it does: it never counts a
// level less than the document has.
template <typename Unit>
class Scanner
{
public:
    Scanner(const Unit* text, size_t size) : m_text(text), m_size(size) {}

    bool withinLimits()
    {
        int depth = 0;
        size_t i = 0;
        while (i < m_size) {
            if (m_text[i] != '<') {
                ++i;
                continue;
            }
            if (startsWith(i, "<!--")) {
                i = after(i + 4, "-->");
            } else if (startsWith(i, "<![CDATA[")) {
                i = after(i + 9, "]]>");
            } else if (startsWith(i, "<?")) {
                i = after(i + 2, "?>");
            } else if (startsWith(i, "<!ENTITY")) {
                // Only a document type declaration holds these; the product files need
                // none, and expansion attacks are built from them.
                return false;
            } else if (startsWith(i, "<!DOCTYPE")) {
                // Its internal subset, if any, is walked like the rest, so that the
                // declarations in it are seen one by one.
                i = pastTag(i + 9, true);
            } else if (startsWith(i, "<!")) {
                i = pastTag(i + 2, false);
            } else if (startsWith(i, "</")) {
                if (depth > 0)
                    --depth;
                i = pastTag(i + 2, false);
            } else if (i + 1 < m_size && isNameStart(m_text[i + 1])) {
                const size_t end = pastTag(i + 1, false);
                const bool empty = end >= 2 && end <= m_size && m_text[end - 1] == '>' && m_text[end - 2] == '/';
                if (!empty && ++depth > MaxDepth)
                    return false;
                i = end;
            } else {
                ++i;
            }
        }
        return true;
    }

private:
    static bool isNameStart(Unit c)
    {
        const auto u = static_cast<unsigned>(static_cast<typename std::make_unsigned<Unit>::type>(c));
        return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || u == '_' || u == ':' || u >= 0x80;
    }

    bool startsWith(size_t at, const char* literal) const
    {
        const size_t n = std::strlen(literal);
        if (at + n > m_size)
            return false;
        for (size_t k = 0; k < n; ++k) {
            if (m_text[at + k] != Unit(literal[k]))
                return false;
        }
        return true;
    }

    // Just past the next \a literal at or after \a from; the end when there is none.
    size_t after(size_t from, const char* literal) const
    {
        const size_t n = std::strlen(literal);
        for (size_t i = from; i + n <= m_size; ++i) {
            if (startsWith(i, literal))
                return i + n;
        }
        return m_size;
    }

    // Just past the '>' that ends a tag, skipping quoted values; with \a subset, also
    // just past a '[' that opens an internal subset.
    size_t pastTag(size_t from, bool subset) const
    {
        Unit quote = 0;
        for (size_t i = from; i < m_size; ++i) {
            const Unit c = m_text[i];
            if (quote) {
                if (c == quote)
                    quote = 0;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '>' || (subset && c == '[')) {
                return i + 1;
            }
        }
        return m_size;
    }

    const Unit* m_text;
    size_t m_size;
};

// The document's text exactly as QDomDocument::setContent(QByteArray) reads it in Qt 5:
// through a QXmlInputSource over a buffer, which decodes by the byte order mark or by
// the encoding that the XML declaration names, with any codec Qt has. Markup need not
// be ASCII bytes then: in UTF-7, for one, "+ADw-" is a '<'. The parser ends the
// document at the source's end marker (U+FFFF) and asks for more data at the other
// (U+FFFE), so those are taken the same way here.
QString parserText(const QByteArray& bytes)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QByteArray data = bytes;
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QXmlInputSource source(&buffer);
    QString text;
    text.reserve(bytes.size());
    for (;;) {
        const QChar c = source.next();
        if (c.unicode() == QXmlInputSource::EndOfDocument)
            break;
        if (c.unicode() != QXmlInputSource::EndOfData)
            text += c;
    }
    QT_WARNING_POP
    return text;
}

} // namespace

bool IsWithinLimits(const QByteArray& bytes)
{
    const QString text = parserText(bytes);
    return Scanner<char16_t>(reinterpret_cast<const char16_t*>(text.utf16()), size_t(text.size())).withinLimits();
}

#else

// Qt 6's QDomDocument::setContent(QByteArray) reads through a QXmlStreamReader without
// namespace processing: it decodes by the byte order mark or the declared encoding and
// stops at the first error. The same reader, walked here without building anything,
// meets exactly the elements and declarations the DOM parser will meet; it keeps no
// stack of its own per level beyond the names it checks, and runs in linear time.
bool IsWithinLimits(const QByteArray& bytes)
{
    QXmlStreamReader reader(bytes);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (++depth > MaxDepth) {
                // An empty element (<b/>) adds no level: the reader reports its end at
                // once, at the same offset, where <b></b> ends further on.
                const qint64 at = reader.characterOffset();
                if (reader.readNext() != QXmlStreamReader::EndElement || reader.characterOffset() != at)
                    return false;
                --depth;
            }
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::DTD:
            // Parameter entities are not listed among the declarations; the text of
            // the document type declaration shows them too.
            if (!reader.entityDeclarations().isEmpty()
                || reader.text().contains(QLatin1String("<!ENTITY")))
                return false;
            break;
        default:
            break;
        }
    }
    return true;
}

#endif

bool Parse(QDomDocument& document, const QByteArray& bytes)
{
    if (!IsWithinLimits(bytes))
        return false;
    return document.setContent(bytes, false);
}

} // namespace XmlGuard
} // namespace ZVUIFramework
