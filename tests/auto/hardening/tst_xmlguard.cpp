// The limits every DOM parse of a product file goes through: nesting depth and entity
// declarations, in linear time, whatever the encoding.
#include <ZVCore/private/XmlGuard>

#include <QtCore/QElapsedTimer>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QtCore/QStringEncoder>
#else
#include <QtCore/QTextCodec>
#endif
#include <QtTest/QtTest>
#include <QtXml/QDomDocument>
#include <QtXml/QDomElement>

using namespace ZVUIFramework;

namespace {

QByteArray nested(int levels, const QByteArray& inner = QByteArray())
{
    return QByteArray("<a>").repeated(levels) + inner + QByteArray("</a>").repeated(levels);
}

// The classic expansion attack: ten levels of ten references each.
QByteArray billionLaughs()
{
    QByteArray b = "<?xml version=\"1.0\"?><!DOCTYPE lolz [<!ENTITY lol \"lol\">";
    for (int i = 1; i <= 9; ++i) {
        b += "<!ENTITY lol" + QByteArray::number(i) + " \"";
        for (int k = 0; k < 10; ++k)
            b += "&lol" + (i > 1 ? QByteArray::number(i - 1) : QByteArray()) + ";";
        b += "\">";
    }
    return b + "]><lolz>&lol9;</lolz>";
}

} // namespace

class tst_XmlGuard : public QObject
{
    Q_OBJECT

private slots:
    void limits_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<bool>("within");

        QTest::newRow("a product file") << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                      "<product><ZV_PID>P1</ZV_PID><ZV_INFO/></product>")
                                        << true;
        QTest::newRow("256 levels") << nested(256) << true;
        QTest::newRow("257 levels") << nested(257) << false;
        QTest::newRow("a million levels") << nested(1000000) << false;
        QTest::newRow("256 levels and empty elements inside")
            << nested(256, QByteArray("<b/><c x='1'/>").repeated(1000)) << true;
        QTest::newRow("siblings are no deeper") << "<r>" + QByteArray("<a></a>").repeated(100000) + "</r>" << true;
        QTest::newRow("255 levels twice") << "<r>" + nested(255) + nested(255) + "</r>" << true;
        // Markup in comments, CDATA sections, processing instructions and quoted values
        // is text.
        QTest::newRow("tags in a comment") << "<r><!--" + QByteArray("<a>").repeated(1000) + "--></r>" << true;
        QTest::newRow("tags in CDATA") << "<r><![CDATA[" + QByteArray("<a>").repeated(1000) + "]]></r>" << true;
        QTest::newRow("tags in a processing instruction")
            << "<r><?pi " + QByteArray("<a>").repeated(1000) + "?></r>" << true;
        QTest::newRow("'>' and '/>' in quoted values")
            << nested(256, "<b title=\"x/>\" alt='>'>t</b>") << false;
        QTest::newRow("a quoted '/>' does not empty an element")
            << QByteArray("<b v=\"/>\">").repeated(300) + QByteArray("</b>").repeated(300) << false;
        QTest::newRow("unterminated comment") << QByteArray("<r><!-- ") + nested(1000) << true;
        // Closing tags that were never opened do not buy depth. Qt 6's parser stops at
        // the first of them and never reaches the nesting behind (see parse()).
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        QTest::newRow("stray end tags first") << QByteArray("</a>").repeated(1000) + nested(300) << false;
#endif
        // Entities.
        QTest::newRow("billion laughs") << billionLaughs() << false;
        QTest::newRow("one internal entity") << QByteArray("<!DOCTYPE r [<!ENTITY e \"x\">]><r>&e;</r>") << false;
        QTest::newRow("external entity")
            << QByteArray("<!DOCTYPE r [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><r>&e;</r>") << false;
        QTest::newRow("parameter entity") << QByteArray("<!DOCTYPE r [<!ENTITY % p \"x\">]><r/>") << false;
        QTest::newRow("document type without entities")
            << QByteArray("<!DOCTYPE r [<!ELEMENT r (#PCDATA)><!ATTLIST r a CDATA \"d>\">]><r>t</r>") << true;
        QTest::newRow("public document type") << QByteArray("<!DOCTYPE r PUBLIC \"-//x//DTD r//EN\" \"r.dtd\"><r/>")
                                              << true;
        QTest::newRow("entity declaration as text in a comment")
            << QByteArray("<r><!-- <!ENTITY e \"x\"> --></r>") << true;
        QTest::newRow("predefined and character references") << QByteArray("<r>&lt;&amp;&#65;&#x42;</r>") << true;
        // Whatever the bytes, the walk ends.
        QTest::newRow("empty") << QByteArray() << true;
        QTest::newRow("only '<'") << QByteArray(100000, '<') << true;
        QTest::newRow("NUL bytes") << QByteArray("<r>\0<a>\0</a></r>", 16) << true;
        QTest::newRow("invalid UTF-8") << QByteArray("<r>\xff\xfe\xc0</r>") << true;
    }

    void limits()
    {
        QFETCH(QByteArray, document);
        QFETCH(bool, within);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(XmlGuard::IsWithinLimits(document), within);
        QVERIFY2(timer.elapsed() < 2000, QByteArray::number(timer.elapsed()).constData());
    }

    void wideEncodings_data()
    {
        QTest::addColumn<QByteArray>("codec");
        QTest::newRow("UTF-16LE") << QByteArray("UTF-16LE");
        QTest::newRow("UTF-16BE") << QByteArray("UTF-16BE");
        QTest::newRow("UTF-32LE") << QByteArray("UTF-32LE");
    }

    // The text with a byte order mark first, in the named encoding.
    static QByteArray encoded(const QByteArray& codec, const QByteArray& text)
    {
        const QString withMark = QString(QChar(QChar::ByteOrderMark)) + QString::fromLatin1(text);
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        // Qt 6 has no codec objects; its encoders cover the Unicode encodings.
        QStringEncoder encoder(codec.constData());
        return encoder.isValid() ? QByteArray(encoder.encode(withMark)) : QByteArray();
#else
        QTextCodec* c = QTextCodec::codecForName(codec);
        if (!c)
            return QByteArray();
        QTextEncoder* encoder = c->makeEncoder(QTextCodec::DefaultConversion);
        const QByteArray bytes = encoder->fromUnicode(withMark);
        delete encoder;
        return bytes;
#endif
    }

    void wideEncodings()
    {
        // With a byte order mark, as a UTF-16 or UTF-32 file begins.
        QFETCH(QByteArray, codec);
        QVERIFY(!encoded(codec, "<r/>").isEmpty());
        QVERIFY(XmlGuard::IsWithinLimits(encoded(codec, nested(256))));
        QVERIFY(!XmlGuard::IsWithinLimits(encoded(codec, nested(257))));
        QVERIFY(!XmlGuard::IsWithinLimits(encoded(codec, "<!DOCTYPE r [<!ENTITY e \"x\">]><r>&e;</r>")));
    }

    void parse()
    {
        QDomDocument document;
        QVERIFY(XmlGuard::Parse(document, "<product><ZV_PID>P1</ZV_PID></product>"));
        QCOMPARE(document.documentElement().firstChildElement(QStringLiteral("ZV_PID")).text(), QStringLiteral("P1"));

        // Prefixes stay part of the name, as without namespace processing.
        QVERIFY(XmlGuard::Parse(document, "<x:root><x:menu/></x:root>"));
        QCOMPARE(document.documentElement().tagName(), QStringLiteral("x:root"));

        QDomDocument refused;
        QVERIFY(!XmlGuard::Parse(refused, nested(257)));
        QVERIFY(!XmlGuard::Parse(refused, billionLaughs()));
        QVERIFY(!XmlGuard::Parse(refused, "<r>not closed"));
        QVERIFY(!XmlGuard::Parse(refused, QByteArray("</a>").repeated(1000) + nested(300)));
    }
};

QTEST_GUILESS_MAIN(tst_XmlGuard)
#include "tst_xmlguard.moc"
