// Faults the fuzz targets found, fixed in the library: each input kept in
// tests/fuzz/regressions/<target>/ read as its target reads it, with the values the
// library gives for it.
#include "xmlguard.h"
#include "zvapplicationinfo_p.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtXml/QDomDocument>

using namespace ZVUIFramework;

namespace {

QByteArray regression(const char* target, const char* name)
{
    QFile file(QStringLiteral(ZV_FUZZ_REGRESSIONS "/%1/%2").arg(QLatin1String(target), QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The markup of \a text in UTF-7, where '<' and '>' are "+ADw-" and "+AD4-".
QByteArray utf7(QByteArray text)
{
    return text.replace("<", "+ADw-").replace(">", "+AD4-");
}

QByteArray utf7Declaration()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-7\"?>\n";
}

} // namespace

class tst_FuzzRegressions : public QObject
{
    Q_OBJECT

private slots:
    void productInfoInUtf7_data();
    void productInfoInUtf7();

private:
    // The product file \a bytes, read as the context's construction reads it.
    static ZVApplicationInfoPrivate read(const QByteArray& bytes);
};

ZVApplicationInfoPrivate tst_FuzzRegressions::read(const QByteArray& bytes)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("productInfo.xml"));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    file.close();
    ZVApplicationInfoPrivate context;
    context.readProductInfo(path);
    return context;
}

void tst_FuzzRegressions::productInfoInUtf7_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("pid");

    // The DOM parser decodes a product file by the encoding its declaration names. In
    // UTF-7 no '<' of the markup is a '<' byte, and the depth check that keeps the
    // parser's recursion bounded saw none of it: 300 levels got through to the parser,
    // 50,000 overflowed its stack.
    const QByteArray kept = regression("productinfo", "utf7-nested-300.xml");
    QVERIFY(!kept.isEmpty());
    QTest::newRow("regressions/productinfo/utf7-nested-300.xml: refused") << kept << QString();

    QByteArray deep = utf7Declaration() + utf7("<root><ZV_PID>p1</ZV_PID>");
    for (int i = 0; i < 50000; ++i)
        deep += utf7("<a>");
    QTest::newRow("50,000 levels: refused, no crash") << deep << QString();

    // Within the limits, a UTF-7 file is read like any other.
    QTest::newRow("shallow: read") << utf7Declaration() + utf7("<root><ZV_PID>p1</ZV_PID><a><b/></a></root>")
                                   << QStringLiteral("p1");
}

void tst_FuzzRegressions::productInfoInUtf7()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, pid);
    // Qt decodes UTF-7 only where it has a decoder for it (through ICU); a Qt without
    // one, such as the Windows build here, reads no markup in these files at all.
    QDomDocument probe;
    const bool decodable = probe.setContent(utf7Declaration() + utf7("<r/>"))
                           && probe.documentElement().tagName() == QLatin1String("r");
    const ZVApplicationInfoPrivate context = read(bytes);
    if (decodable) {
        QCOMPARE(context.pid, pid);
        QCOMPARE(XmlGuard::IsWithinLimits(bytes), !pid.isEmpty());
    } else {
        QCOMPARE(context.pid, QString());
        // Whatever the guard says, the parser meets no element to nest: it refuses the
        // text at once.
        QDomDocument document;
        QVERIFY(!document.setContent(bytes));
    }
    // Nothing else of the file is read either way.
    QVERIFY(context.appName.isEmpty());
    QVERIFY(context.info.isEmpty());
}

QTEST_GUILESS_MAIN(tst_FuzzRegressions)
#include "tst_fuzzregressions.moc"
