// Hostile versions of every file the frame reads from the product folder, each read by a
// probe process of its own: the frame ends with the values a bad file gives (empty or
// default values, or what the file says where it is readable), does not crash, is done
// within a time budget, and its peak memory stays within a budget proportional to the
// file. Big files are made here, at run time.
//
// Already covered elsewhere and not repeated here: localconfig.json with NUL bytes,
// invalid UTF-8, a FIFO, a folder, /dev/zero or no read permission (config/
// tst_localconfig); productInfo.xml as a FIFO, a folder or unreadable (core/
// tst_zvapplicationinfo); the link file as a FIFO or unreadable for the title menu
// (menu/tst_cmenuview); a style sheet that is a FIFO (config/tst_cstylesheetmanager).
#include "probe.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QJsonArray>
#include <QtTest/QtTest>

#include <functional>

#include <sys/stat.h>

namespace {

constexpr qint64 MB = 1024 * 1024;

// A literal with the NUL bytes inside it.
template <size_t N>
QByteArray bytes(const char (&text)[N])
{
    return QByteArray(text, int(N - 1));
}

// What the probe shows for a string longer than kLong characters (command longstrings).
constexpr int kLong = 256;
QString summary(const QString& s)
{
    if (s.size() <= kLong)
        return s;
    return QStringLiteral("#%1:%2").arg(s.size()).arg(
        QString::fromLatin1(QCryptographicHash::hash(s.toUtf8(), QCryptographicHash::Sha1).toHex()));
}

const QString kSeparatorRule = QStringLiteral("QLabel#separator_line{background-color: #e1e1e1;}");

struct Check
{
    QString cmd;
    QString key;
    QJsonValue expected;
};

struct Case
{
    // Writes the hostile file(s); returns the bytes written, which the memory budget
    // is measured against.
    std::function<qint64(const ProbeFolder&)> setUp;
    QStringList commands;
    QList<Check> checks;
    // Peak memory allowed: 96 MB for the process, plus this many times the input.
    double memoryFactor = 4;
    qint64 timeBudgetMs = 5000;
    bool honourPermissions = false;
    // Checked on the product folder after the run.
    std::function<void(const ProbeFolder&)> after;
    // The data folder (XDG_DATA_HOME) inside the product folder, for the analytics spool.
    bool dataInProduct = false;
};

bool writeFile(const ProbeFolder& product, const QString& relative, const QByteArray& bytes)
{
    return product.write(relative, bytes);
}

// Writes \a head, \a count units, then \a tail, in large writes; returns the size.
qint64 writeRepeated(const ProbeFolder& product, const QString& relative, const QByteArray& head,
                     const std::function<QByteArray(int)>& unit, const QByteArray& tail, int count)
{
    const QString path = product.file(relative);
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return -1;
    qint64 total = f.write(head);
    QByteArray chunk;
    for (int i = 0; i < count; ++i) {
        chunk += unit(i);
        if (chunk.size() > 4 * MB) {
            total += f.write(chunk);
            chunk.clear();
        }
    }
    total += f.write(chunk);
    total += f.write(tail);
    return total;
}

QByteArray billionLaughs(const QByteArray& root, const QByteArray& inner)
{
    QByteArray b = "<?xml version=\"1.0\"?><!DOCTYPE " + root + " [<!ENTITY lol \"lol\">";
    for (int i = 1; i <= 9; ++i) {
        b += "<!ENTITY lol" + QByteArray::number(i) + " \"";
        for (int k = 0; k < 10; ++k)
            b += "&lol" + (i > 1 ? QByteArray::number(i - 1) : QByteArray()) + ";";
        b += "\">";
    }
    return b + "]><" + root + ">" + inner + "</" + root + ">";
}

// One entity of 4,000 characters referenced 75,000 times: 300 KB that a parser without
// a bound on expansion turns into 300 million characters.
QByteArray quadraticBlowup(const QByteArray& root, const QByteArray& open, const QByteArray& close)
{
    return "<?xml version=\"1.0\"?><!DOCTYPE " + root + " [<!ENTITY a \"" + QByteArray(4000, 'a') + "\">]><" + root + ">"
        + open + QByteArray("&a;").repeated(75000) + close + "</" + root + ">";
}

QByteArray deepXml(const QByteArray& root, const QByteArray& before, int levels)
{
    return "<" + root + ">" + before + QByteArray("<x>").repeated(levels) + QByteArray("</x>").repeated(levels) + "</"
        + root + ">";
}

const QByteArray kLinkEntry = "<childMenu><menuName>About</menuName><displayName>About us</displayName>"
                              "<isShow>1</isShow></childMenu>";

QByteArray linkFile(const QByteArray& entries)
{
    return "<root><menu>" + entries + "</menu></root>";
}

// The language report of a saved-language file holding \a name after the run.
QList<Check> languageChecks(const QString& current, const QByteArray& saved)
{
    return {{QStringLiteral("language"), QStringLiteral("current"), summary(current)},
            {QStringLiteral("language"), QStringLiteral("savedHex"), summary(QString::fromLatin1(saved.toHex()))}};
}

QList<Check> contextChecks(const QString& pid, const QString& appName)
{
    return {{QStringLiteral("context"), QStringLiteral("pid"), pid},
            {QStringLiteral("context"), QStringLiteral("appName"), appName}};
}

QList<Check> untouchedLink()
{
    // The look-up leaves its outputs alone; a key that is not found counts as shown.
    return {{QStringLiteral("link"), QStringLiteral("isShow"), -7},
            {QStringLiteral("link"), QStringLiteral("url"), QStringLiteral("untouched")},
            {QStringLiteral("link"), QStringLiteral("shown"), true},
            {QStringLiteral("menusummary"), QStringLiteral("entries"), 0}};
}

QList<Check> sheetChecks(const QString& sheet)
{
    return {{QStringLiteral("skin"), QStringLiteral("styleSheet"), summary(sheet)}};
}

QList<Check> channelChecks(const QString& value, bool hasCustom)
{
    return {{QStringLiteral("channel"), QStringLiteral("value"), summary(value)},
            {QStringLiteral("channel"), QStringLiteral("custom"), summary(value)},
            {QStringLiteral("channel"), QStringLiteral("hasCustom"), hasCustom}};
}

std::function<qint64(const ProbeFolder&)> unreadable(const QString& relative, const QByteArray& bytes)
{
    return [relative, bytes](const ProbeFolder& p) {
        if (!writeFile(p, relative, bytes) || !QFile::setPermissions(p.file(relative), QFileDevice::Permissions()))
            return qint64(-1);
        return qint64(bytes.size());
    };
}

std::function<qint64(const ProbeFolder&)> folder(const QString& relative)
{
    return [relative](const ProbeFolder& p) { return QDir().mkpath(p.file(relative) + QStringLiteral("/inside")) ? 0 : -1; };
}

#ifndef Q_OS_WIN
// Windows has no FIFOs in the file system: its rows are left out there.
std::function<qint64(const ProbeFolder&)> fifo(const QString& relative)
{
    return [relative](const ProbeFolder& p) {
        QDir().mkpath(QFileInfo(p.file(relative)).path());
        return ::mkfifo(QFile::encodeName(p.file(relative)).constData(), 0600) == 0 ? 0 : -1;
    };
}
#endif

std::function<qint64(const ProbeFolder&)> bytesAt(const QString& relative, const QByteArray& bytes)
{
    return [relative, bytes](const ProbeFolder& p) { return writeFile(p, relative, bytes) ? qint64(bytes.size()) : -1; };
}

// A style sheet of rules with pictures to rewrite, and what the frame makes of it.
QByteArray styleRule(int i)
{
    return QByteArrayLiteral("QLabel#l") + QByteArray::number(i) + " { color: #"
        + QByteArray::number(i % 0xffffff, 16).rightJustified(6, '0') + "; background-image: url(:/img"
        + QByteArray::number(i) + ".png); }\n";
}

} // namespace

Q_DECLARE_METATYPE(Case)

class tst_HostileFiles : public QObject
{
    Q_OBJECT

private slots:
    void file_data();
    void file();
};

void tst_HostileFiles::file_data()
{
    QTest::addColumn<Case>("c");
    const QString info = QStringLiteral("productInfo.xml");
    const QString catalogue = QStringLiteral("language/main/localconfig.json");
    const QString saved = QStringLiteral("language/language");
    const QString link = QStringLiteral("language/main/English_URL.xml");
    const QString sheet = QStringLiteral("skin/qss/ZVUIFramework.qss");
    const QString custom = QStringLiteral("custom");

    // --- productInfo.xml: a document the parser refuses, or that is too deep or declares
    // entities, fills no field.
    const QStringList context{QStringLiteral("context")};
    QTest::newRow("productInfo.xml: billion laughs")
        << Case{bytesAt(info, billionLaughs("product", "<ZV_PID>&lol9;</ZV_PID><ZV_APP_NAME>App</ZV_APP_NAME>")), context,
                contextChecks(QString(), QString())};
    QTest::newRow("productInfo.xml: quadratic blowup")
        << Case{bytesAt(info, quadraticBlowup("product", "<ZV_PID>", "</ZV_PID>")), context,
                contextChecks(QString(), QString())};
    QTest::newRow("productInfo.xml: nested a million levels")
        << Case{bytesAt(info, deepXml("product", "<ZV_PID>P1</ZV_PID><ZV_APP_NAME>App</ZV_APP_NAME>", 1000000)), context,
                contextChecks(QString(), QString()), 8};
    QTest::newRow("productInfo.xml: nested 200 levels is still read")
        << Case{bytesAt(info, deepXml("product", "<ZV_PID>P1</ZV_PID><ZV_APP_NAME>App</ZV_APP_NAME>", 200)), context,
                contextChecks(QStringLiteral("P1"), QStringLiteral("App"))};
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    // Qt 5's DOM parser takes a NUL and invalid UTF-8 in text, the latter as U+FFFD.
    QTest::newRow("productInfo.xml: NUL in a value")
        << Case{bytesAt(info, bytes("<product><ZV_PID>P\0" "1</ZV_PID><ZV_APP_NAME>App</ZV_APP_NAME></product>")),
                context, contextChecks(QStringLiteral("P") + QChar(0) + QStringLiteral("1"), QStringLiteral("App"))};
    QTest::newRow("productInfo.xml: invalid UTF-8")
        << Case{bytesAt(info, "<product><ZV_PID>P\xff" "1</ZV_PID><ZV_APP_NAME>App</ZV_APP_NAME></product>"), context,
                contextChecks(QStringLiteral("P\uFFFD1"), QStringLiteral("App"))};
#else
    // Qt 6's parser refuses both as not well-formed: the file yields nothing.
    QTest::newRow("productInfo.xml: NUL in a value")
        << Case{bytesAt(info, bytes("<product><ZV_PID>P\0" "1</ZV_PID><ZV_APP_NAME>App</ZV_APP_NAME></product>")),
                context, contextChecks(QString(), QString())};
    QTest::newRow("productInfo.xml: invalid UTF-8")
        << Case{bytesAt(info, "<product><ZV_PID>P\xff" "1</ZV_PID><ZV_APP_NAME>App</ZV_APP_NAME></product>"), context,
                contextChecks(QString(), QString())};
#endif
    QTest::newRow("productInfo.xml: NUL first")
        << Case{bytesAt(info, bytes("\0<product><ZV_PID>P1</ZV_PID></product>")), context,
                contextChecks(QString(), QString())};

    // --- localconfig.json
    const QStringList summaryOnly{QStringLiteral("cataloguesummary")};
    QTest::newRow("localconfig.json: 100 MB catalogue")
        << Case{[catalogue](const ProbeFolder& p) {
                    return writeRepeated(p, catalogue, "{\"LanguageInfoArray\":[", [](int i) {
                        const QByteArray n = QByteArray::number(i).rightJustified(6, '0');
                        return QByteArray(i ? "," : "") + "{\"Name\":\"Language" + n + "\",\"Show\":\""
                            + QByteArray(110, 'x') + "\",\"UrlFileName\":\"url_" + n
                            + ".xml\",\"LocaleLanguage\":\"Chinese\",\"LocaleName\":\"zh_TW,zh_HK\",\"AppleLanguage\":\"zh-Hant\"}";
                    }, "]}", 420000); // 105 MB
                },
                summaryOnly,
                {{QStringLiteral("cataloguesummary"), QStringLiteral("count"), 420000},
                 {QStringLiteral("cataloguesummary"), QStringLiteral("first"), QStringLiteral("Language000000")},
                 {QStringLiteral("cataloguesummary"), QStringLiteral("last"), QStringLiteral("Language419999")}},
                5};
    QTest::newRow("localconfig.json: 100 MB in a key nobody reads")
        << Case{[catalogue](const ProbeFolder& p) {
                    return writeRepeated(p, catalogue, "{\"LanguageInfoArray\":[{\"Name\":\"Korean\"}],\"Padding\":\"",
                                         [](int) { return QByteArray(64 * 1024, 'p'); }, "\"}", 1600);
                },
                summaryOnly,
                {{QStringLiteral("cataloguesummary"), QStringLiteral("count"), 1},
                 {QStringLiteral("cataloguesummary"), QStringLiteral("first"), QStringLiteral("Korean")}},
                3};
    QTest::newRow("localconfig.json: objects nested a million levels beside the catalogue")
        << Case{bytesAt(catalogue, "{\"Other\":" + QByteArray("{\"a\":").repeated(1000000) + "1"
                                       + QByteArray(1000000, '}') + ",\"LanguageInfoArray\":[{\"Name\":\"Korean\"}]}"),
                summaryOnly,
                {{QStringLiteral("cataloguesummary"), QStringLiteral("count"), 1},
                 {QStringLiteral("cataloguesummary"), QStringLiteral("first"), QStringLiteral("Korean")}},
                16};

    // --- the saved-language file: its whole content is the language, whatever it is, and
    // is written back as UTF-8; an empty or unusable one leaves the choice to the
    // catalogue, here empty, so "English".
    // The report comes after the peak is taken: the language is the frame's, the
    // report's copies of it are not.
    const QStringList language{QStringLiteral("longstrings:256"), QStringLiteral("languagechoice"),
                               QStringLiteral("peakmemory"), QStringLiteral("language")};
    const QByteArray tenMB(10 * int(MB), 'L');
    QTest::newRow("saved language: 10 MB")
        << Case{bytesAt(saved, tenMB), language, languageChecks(QString::fromLatin1(tenMB), tenMB), 16};
    QTest::newRow("saved language: NUL inside")
        << Case{bytesAt(saved, bytes("Korean\0garbage")), language,
                languageChecks(QStringLiteral("Korean"), "Korean")};
    QTest::newRow("saved language: NUL first")
        << Case{bytesAt(saved, bytes("\0Korean")), language, languageChecks(QStringLiteral("English"), "English")};
    QTest::newRow("saved language: invalid UTF-8")
        << Case{bytesAt(saved, "Fr\xff" "nch"), language,
                languageChecks(QStringLiteral("Fr\uFFFDnch"), "Fr\xef\xbf\xbd" "nch")};
    Case savedFolder{folder(saved), language, {{QStringLiteral("language"), QStringLiteral("current"), QStringLiteral("English")}}};
    savedFolder.after = [saved](const ProbeFolder& p) { QVERIFY(QFileInfo(p.file(saved)).isDir()); };
    QTest::newRow("saved language: a folder") << savedFolder;
    // Never opened for reading; the choice then takes its place.
#ifndef Q_OS_WIN
    QTest::newRow("saved language: a FIFO")
        << Case{fifo(saved), language, languageChecks(QStringLiteral("English"), "English")};
#endif
    Case savedUnreadable{unreadable(saved, "Korean"), language,
                         {{QStringLiteral("language"), QStringLiteral("current"), QStringLiteral("English")}}};
    savedUnreadable.honourPermissions = true;
    // Nor is a file overwritten that may not be written.
    savedUnreadable.after = [saved](const ProbeFolder& p) {
        QFile::setPermissions(p.file(saved), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        QFile f(p.file(saved));
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray("Korean"));
    };
    QTest::newRow("saved language: unreadable") << savedUnreadable;

    // --- the link file: the look-up and the title menu.
    const QStringList linkCommands{QStringLiteral("link:About"), QStringLiteral("menusummary:1")};
    Case hundredThousandLookup{[link](const ProbeFolder& p) {
                                   return writeRepeated(p, link, "<root><menu>", [](int i) {
                                       const QByteArray n = QByteArray::number(i).rightJustified(6, '0');
                                       return "<childMenu><menuName>Entry" + n + "</menuName><displayName>Entry " + n
                                           + "</displayName><order>" + QByteArray::number(100000 - i)
                                           + "</order><isShow>" + (i == 99999 ? "0" : "1") + "</isShow></childMenu>";
                                   }, "</menu></root>", 100000);
                               },
                               {QStringLiteral("link:Entry099999")},
                               {{QStringLiteral("link"), QStringLiteral("isShow"), 0},
                                {QStringLiteral("link"), QStringLiteral("shown"), false}},
                               40};
    QTest::newRow("link file: 100,000 entries, look-up of the last") << hundredThousandLookup;
    Case hundredThousandMenu = hundredThousandLookup;
    hundredThousandMenu.commands = QStringList{QStringLiteral("menusummary:1")};
    // The last entry is hidden; the others come in ascending "order", so last first.
    hundredThousandMenu.checks = {
        {QStringLiteral("menusummary"), QStringLiteral("entries"), 99999},
        {QStringLiteral("menusummary"), QStringLiteral("actions"), 99999},
        {QStringLiteral("menusummary"), QStringLiteral("firstKeys"),
         QJsonArray{QStringLiteral("Entry099998"), QStringLiteral("Entry099997"), QStringLiteral("Entry099996")}},
        {QStringLiteral("menusummary"), QStringLiteral("lastKeys"),
         QJsonArray{QStringLiteral("Entry000002"), QStringLiteral("Entry000001"), QStringLiteral("Entry000000")}}};
    // QWidget::insertAction looks for the action among those already there, so filling
    // one menu with n actions takes time in n squared: most of this case's time.
    hundredThousandMenu.timeBudgetMs = 20000;
    QTest::newRow("link file: 100,000 entries in the title menu") << hundredThousandMenu;
    QTest::newRow("link file: billion laughs")
        << Case{bytesAt(link, billionLaughs("root", "<menu>" + kLinkEntry + "<childMenu><menuName>&lol9;</menuName>"
                                                    "<isShow>1</isShow></childMenu></menu>")),
                linkCommands, untouchedLink()};
    QTest::newRow("link file: quadratic blowup")
        << Case{bytesAt(link, quadraticBlowup("root", "<menu>" + kLinkEntry + "<childMenu><menuName>",
                                              "</menuName><isShow>1</isShow></childMenu></menu>")),
                linkCommands, untouchedLink()};
    QTest::newRow("link file: nested a million levels")
        << Case{bytesAt(link, deepXml("root", "<menu>" + kLinkEntry + "</menu>", 1000000)), linkCommands, untouchedLink(), 8};
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTest::newRow("link file: NUL in a caption")
        << Case{bytesAt(link, linkFile(QByteArray(kLinkEntry).replace("About us", bytes("Ab\0ut")))), linkCommands,
                {{QStringLiteral("link"), QStringLiteral("isShow"), 1},
                 {QStringLiteral("menusummary"), QStringLiteral("entries"), 1}}};
    QTest::newRow("link file: invalid UTF-8")
        << Case{bytesAt(link, linkFile(QByteArray(kLinkEntry).replace("About us", "Ab\xff\xfeut"))), linkCommands,
                {{QStringLiteral("link"), QStringLiteral("isShow"), 1},
                 {QStringLiteral("menusummary"), QStringLiteral("entries"), 1},
                 {QStringLiteral("menusummary"), QStringLiteral("firstKeys"), QJsonArray{QStringLiteral("About")}}}};
#else
    // Qt 6's parser refuses a NUL and invalid UTF-8 as not well-formed: the file is
    // taken as missing.
    QTest::newRow("link file: NUL in a caption")
        << Case{bytesAt(link, linkFile(QByteArray(kLinkEntry).replace("About us", bytes("Ab\0ut")))), linkCommands,
                untouchedLink()};
    QTest::newRow("link file: invalid UTF-8")
        << Case{bytesAt(link, linkFile(QByteArray(kLinkEntry).replace("About us", "Ab\xff\xfeut"))), linkCommands,
                untouchedLink()};
#endif
    QTest::newRow("link file: NUL first")
        << Case{bytesAt(link, QByteArray(1, '\0') + linkFile(kLinkEntry)), linkCommands, untouchedLink()};
    QTest::newRow("link file: a folder") << Case{folder(link), linkCommands, untouchedLink()};
#ifndef Q_OS_WIN
    QTest::newRow("link file: a FIFO") << Case{fifo(link), linkCommands, untouchedLink()};
#endif
    Case linkUnreadable{unreadable(link, linkFile(kLinkEntry)), {QStringLiteral("link:About")},
                        untouchedLink().mid(0, 3)};
    linkUnreadable.honourPermissions = true;
    QTest::newRow("link file: unreadable, look-up") << linkUnreadable;

    // --- style sheets: the frame's assembly, then Qt's own parsing when a widget is
    // polished. The probe's locale is UTF-8 (see file()), the text stream's codec.
    const QStringList skin{QStringLiteral("longstrings:256"), QStringLiteral("initskin:1:"), QStringLiteral("peakmemory"),
                           QStringLiteral("skin")};
    {
        // 20 MB of rules with pictures; the frame rewrites every picture into the picture
        // folder and adds the separator rule, which the sheet lacks.
        QByteArray content;
        int rules = 0;
        while (content.size() < 20 * MB)
            content += styleRule(rules++);
        const QString assembled =
            QString::fromLatin1(content).replace(QLatin1String("url(:/"), QLatin1String("url(skin/PictureNormal/"))
            + kSeparatorRule;
        // The file's bytes, the text decoded from them and the sheet built from that
        // may all be alive at once.
        Case bigSheet{bytesAt(sheet, content), skin, sheetChecks(assembled), 8};
        QTest::newRow("style sheet: 20 MB, assembled") << bigSheet;
        Case parsed = bigSheet;
        parsed.commands = QStringList{QStringLiteral("initskin:1:"), QStringLiteral("polish")};
        parsed.checks = {{QStringLiteral("polish"), QStringLiteral("sheetLength"), assembled.size()}};
        // Qt's style-sheet parser keeps some 25 bytes per byte of the sheet.
        parsed.memoryFactor = 40;
        parsed.timeBudgetMs = 15000;
        QTest::newRow("style sheet: 20 MB, parsed by Qt") << parsed;
    }
    QTest::newRow("style sheet: NUL inside")
        << Case{bytesAt(sheet, bytes("QLabel { color: red; }\0QLabel { color: blue; }")), skin,
                sheetChecks(QStringLiteral("QLabel { color: red; }") + QChar(0) + QStringLiteral("QLabel { color: blue; }")
                            + kSeparatorRule)};
#if defined(Q_OS_WIN) && QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    // Qt 5's text stream decodes with the locale's codec, which on Windows is the system's
    // ANSI code page, not UTF-8.
    const QString cafe = QString::fromLocal8Bit("Caf\xe9");
#else
    const QString cafe = QStringLiteral("Caf\uFFFD");
#endif
    QTest::newRow("style sheet: invalid UTF-8")
        << Case{bytesAt(sheet, "QLabel { font-family: \"Caf\xe9\"; }"), skin,
                sheetChecks(QStringLiteral("QLabel { font-family: \"") + cafe + QStringLiteral("\"; }") + kSeparatorRule)};
    QTest::newRow("style sheet: a folder") << Case{folder(sheet), skin, sheetChecks(kSeparatorRule)};
    Case sheetUnreadable{unreadable(sheet, "QLabel { color: red; }"), skin, sheetChecks(kSeparatorRule)};
    sheetUnreadable.honourPermissions = true;
    QTest::newRow("style sheet: unreadable") << sheetUnreadable;

    // --- the channel marker: read whole, line breaks removed.
    const QStringList channel{QStringLiteral("longstrings:256"), QStringLiteral("channel")};
    {
        const QByteArray line = QByteArray(78, 'c') + "\r\n";
        const QByteArray oneMB = line.repeated(int(MB) / line.size());
        Case big{bytesAt(custom, oneMB), channel, channelChecks(QString(), true)};
        big.checks = {{QStringLiteral("channel"), QStringLiteral("value"),
                       summary(QString::fromLatin1(QByteArray(oneMB).replace("\r\n", "")))},
                      {QStringLiteral("channel"), QStringLiteral("custom"), summary(QString::fromLatin1(oneMB))}};
        QTest::newRow("channel marker: 1 MB") << big;
    }
    // Text ends at a NUL, as Qt converts it.
    QTest::newRow("channel marker: NUL inside")
        << Case{bytesAt(custom, bytes("abc\0def")), channel, channelChecks(QStringLiteral("abc"), true)};
    QTest::newRow("channel marker: invalid UTF-8")
        << Case{bytesAt(custom, "a\xff" "b\n"), channel,
                {{QStringLiteral("channel"), QStringLiteral("value"), QStringLiteral("a\uFFFDb")}}};
    QTest::newRow("channel marker: a folder") << Case{folder(custom), channel, channelChecks(QString(), true)};
#ifndef Q_OS_WIN
    QTest::newRow("channel marker: a FIFO") << Case{fifo(custom), channel, channelChecks(QString(), true)};
#endif
    Case markerUnreadable{unreadable(custom, "abc"), channel, channelChecks(QString(), true)};
    markerUnreadable.honourPermissions = true;
    QTest::newRow("channel marker: unreadable") << markerUnreadable;

    // --- the analytics spool, which a crash report writes to: opening a FIFO for writing
    // would wait for a reader.
#ifndef Q_OS_WIN
    Case spoolFifo{fifo(QStringLiteral("data/zvprobe/analytics-spool.jsonl")),
                   {QStringLiteral("prop:CrashDataCollection=string:crash-label"), QStringLiteral("startfeedback:1"),
                    QStringLiteral("properties")},
                   {{QStringLiteral("properties"), QStringLiteral("AppCrashed"), true}}};
    spoolFifo.dataInProduct = true;
    spoolFifo.after = [](const ProbeFolder& p) {
        struct stat info;
        QCOMPARE(::stat(QFile::encodeName(p.file(QStringLiteral("data/zvprobe/analytics-spool.jsonl"))).constData(), &info), 0);
        QVERIFY(S_ISFIFO(info.st_mode));
    };
    QTest::newRow("analytics spool: a FIFO") << spoolFifo;
#endif
}

void tst_HostileFiles::file()
{
    QFETCH(Case, c);
    if (c.honourPermissions && !ProbeFolder::canHonourFilePermissions())
        QSKIP("setpriv (util-linux) is needed to take root's access to unreadable files away");

    ProbeFolder product;
    QVERIFY(product.isValid());
    const qint64 inputBytes = c.setUp(product);
    QVERIFY(inputBytes >= 0);
    product.setHonourFilePermissions(c.honourPermissions);
    product.setTimeout(60000);

    QProcessEnvironment env;
    // The text stream of the style sheets decodes with the locale's codec.
    env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    if (c.dataInProduct)
        env.insert(QStringLiteral("XDG_DATA_HOME"), product.file(QStringLiteral("data")));
    // Peak memory is taken after the last command unless a case asks for it earlier (so
    // that a big report does not count).
    QStringList commands = c.commands;
    if (!commands.contains(QStringLiteral("peakmemory")))
        commands << QStringLiteral("peakmemory");
    const ProbeRun run = product.run(commands, QDir::rootPath(), env);
    QVERIFY2(run.finished, "still running after 60 s");
    QVERIFY2(run.exitCode == 0, qPrintable(QStringLiteral("exit code %1; log:\n").arg(run.exitCode)
                                           + run.log.join(QLatin1Char('\n')).right(2000)));

    for (const Check& check : c.checks) {
        const QJsonObject report = run.report(check.cmd);
        QVERIFY2(!report.isEmpty(), qPrintable(check.cmd));
        const QJsonValue actual = report.value(check.key);
        const auto text = [](const QJsonValue& v) {
            return QString::fromUtf8(QJsonDocument(QJsonArray{v}).toJson(QJsonDocument::Compact)).left(300);
        };
        QVERIFY2(actual == check.expected, qPrintable(QStringLiteral("%1.%2: %3, expected %4")
                                                          .arg(check.cmd, check.key, text(actual), text(check.expected))));
    }
    if (c.after) {
        c.after(product);
        if (QTest::currentTestFailed())
            return;
    }

    const QJsonObject memory = run.report(QStringLiteral("peakmemory"));
    const QString sanitizer = memory.value(QStringLiteral("sanitizer")).toString();
    // Sanitized builds run several times slower and keep freed memory in quarantine.
    const qint64 timeBudget = sanitizer.isEmpty() ? c.timeBudgetMs : 4 * c.timeBudgetMs;
    QVERIFY2(run.elapsedMs <= timeBudget,
             qPrintable(QStringLiteral("took %1 ms, budget %2 ms").arg(run.elapsedMs).arg(timeBudget)));
    const qint64 peakKb = qint64(memory.value(QStringLiteral("vmHwmKb")).toDouble());
    qint64 baseBytes = 96 * MB;
#ifdef Q_OS_WIN
    // Under Wine a process's working set holds Wine's own libraries as well: the base is
    // what a probe with no bad file at all peaks at here, plus the same headroom.
    static const qint64 idlePeakKb = qint64(ProbeFolder()
                                                .run({QStringLiteral("peakmemory")})
                                                .report(QStringLiteral("peakmemory"))
                                                .value(QStringLiteral("vmHwmKb"))
                                                .toDouble());
    baseBytes = qMax(baseBytes, idlePeakKb * 1024 + 48 * MB);
#endif
    const qint64 budgetKb = (baseBytes + qint64(c.memoryFactor * double(inputBytes))) / 1024;
    qInfo("%lld bytes in, %lld ms, peak %lld kB (budget %lld kB)", inputBytes, run.elapsedMs, peakKb, budgetKb);
    if (!sanitizer.isEmpty())
        return;
    QVERIFY(peakKb > 0);
    QVERIFY2(peakKb <= budgetKb, qPrintable(QStringLiteral("peak %1 kB, budget %2 kB").arg(peakKb).arg(budgetKb)));
}

QTEST_GUILESS_MAIN(tst_HostileFiles)
#include "tst_hostilefiles.moc"
