#include <ZVCore/private/IJSONStruct>
#include <ZVCore/private/MCLanguageInfo>
#include <ZVCore/private/MCLanguageInfoJSONStruct>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include <string>
#include <unordered_set>

using namespace ZVUIFramework;

namespace QTest {
template <>
inline char* toString(const std::string& s)
{
    return toString(QByteArray::fromStdString(s));
}
} // namespace QTest

namespace {

using Document = rapidjson::GenericDocument<rapidjson::UTF8<>, JsonAllocator>;

// The keys in the order the record lists them, and each key's field.
const char* const Keys[] = {"Name", "Show", "UrlFileName", "LocaleLanguage", "LocaleName", "AppleLanguage"};

std::string& field(MCLanguageInfo& record, int index)
{
    switch (index) {
    case 0: return record.name;
    case 1: return record.show;
    case 2: return record.urlFileName;
    case 3: return record.localeLanguage;
    case 4: return record.localeName;
    default: return record.appleLanguage;
    }
}

// UTF-8 of a UTF-16 literal, so that the source stays ASCII whatever its compiler's
// idea of the source character set.
std::string utf8(const char16_t* text)
{
    return QString::fromUtf16(text).toStdString();
}

// Text that a language catalogue really holds: CJK with ASCII brackets, right-to-left
// script, Latin with diacritics, and a character outside the BMP.
const std::string TraditionalChinese = utf8(u"\u4e2d\u6587(\u7e41\u9ad4)");
const std::string Arabic = utf8(u"\u0627\u0644\u0639\u0631\u0628\u064a\u0629");
const std::string Spanish = utf8(u"Espa\u00f1ol");
const std::string Emoji = utf8(u"\U0001F600");

MCLanguageInfo filled(const std::string& value)
{
    MCLanguageInfo record;
    for (int i = 0; i < 6; ++i)
        field(record, i) = value + "-" + Keys[i];
    return record;
}

std::string serialise(const rapidjson::Value& value)
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return std::string(buffer.GetString(), buffer.GetSize());
}

QStringList memberNames(const rapidjson::Value& object)
{
    QStringList names;
    for (auto it = object.MemberBegin(); it != object.MemberEnd(); ++it)
        names << QString::fromUtf8(it->name.GetString(), int(it->name.GetStringLength()));
    return names;
}

std::unordered_set<std::string> keySet(const QStringList& keys)
{
    std::unordered_set<std::string> set;
    for (const QString& key : keys)
        set.insert(key.toStdString());
    return set;
}

} // namespace

class tst_MCLanguageInfoJSONStruct : public QObject
{
    Q_OBJECT

private slots:
    void readField_data();
    void readField();
    void readEscapes_data();
    void readEscapes();
    void readNonObject_data();
    void readNonObject();
    void readAllFields();
    void readIgnoresUnknownKeys();
    void nullRecord();
    void writeOrder();
    void writeFilter_data();
    void writeFilter();
    void writeCopiesText();
    void writeEscapes();
    void roundTrip_data();
    void roundTrip();
};

void tst_MCLanguageInfoJSONStruct::readField_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("expected");

    // Each field starts as "old"; only a string replaces it.
    for (int i = 0; i < 6; ++i) {
        const QByteArray key = Keys[i];
        const auto row = [&](const char* kind, const QByteArray& value, const QByteArray& expected) {
            QTest::addRow("%s %s", Keys[i], kind)
                << i << QByteArray("{\"" + key + "\":" + value + "}") << expected;
        };
        row("string", "\"German\"", "German");
        row("empty string", "\"\"", "");
        row("integer", "7", "old");
        row("negative", "-1", "old");
        row("double", "1.5e3", "old");
        row("null", "null", "old");
        row("object", "{\"x\":\"German\"}", "old");
        row("empty object", "{}", "old");
        row("array", "[\"German\"]", "old");
        row("empty array", "[]", "old");
        row("true", "true", "old");
        row("false", "false", "old");
        QTest::addRow("%s missing", Keys[i]) << i << QByteArray("{}") << QByteArray("old");
        QTest::addRow("%s other case", Keys[i])
            << i << QByteArray("{\"" + key.toLower() + "\":\"German\"}") << QByteArray("old");
    }
}

void tst_MCLanguageInfoJSONStruct::readField()
{
    QFETCH(int, index);
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, expected);

    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse<rapidjson::kParseIterativeFlag>(json.constData());
    QVERIFY(!doc.HasParseError());

    MCLanguageInfo record = filled("old");
    field(record, index) = "old";
    MCLanguageInfoJSONStruct json2(&record, pool);
    json2.read(doc);

    QCOMPARE(field(record, index), expected.toStdString());
    // The other five fields are not touched.
    for (int i = 0; i < 6; ++i) {
        if (i != index)
            QCOMPARE(field(record, i), std::string("old-") + Keys[i]);
    }
}

void tst_MCLanguageInfoJSONStruct::readEscapes_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("NUL escape") << QByteArray(R"({"Name":"a\u0000b"})") << QByteArray("a\0b", 3);
    QTest::newRow("only NUL") << QByteArray(R"({"Name":"\u0000"})") << QByteArray("\0", 1);
    QTest::newRow("quote and backslash") << QByteArray(R"({"Name":"a\"b\\c"})") << QByteArray("a\"b\\c");
    QTest::newRow("control escapes") << QByteArray(R"({"Name":"\t\n\r\b\f\/"})") << QByteArray("\t\n\r\b\f/");
    QTest::newRow("BMP escape") << QByteArray(R"({"Name":"\u4e2d\u6587"})")
                                << QByteArray::fromStdString(utf8(u"\u4e2d\u6587"));
    QTest::newRow("surrogate pair") << QByteArray(R"({"Name":"\ud83d\ude00"})")
                                    << QByteArray::fromStdString(Emoji);
    QTest::newRow("raw UTF-8") << QByteArray::fromStdString("{\"Name\":\"" + TraditionalChinese + "\"}")
                               << QByteArray::fromStdString(TraditionalChinese);
}

void tst_MCLanguageInfoJSONStruct::readEscapes()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, expected);

    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse<rapidjson::kParseIterativeFlag>(json.constData());
    QVERIFY(!doc.HasParseError());

    MCLanguageInfo record;
    MCLanguageInfoJSONStruct(&record, pool).read(doc);
    QCOMPARE(record.name.size(), size_t(expected.size()));
    QCOMPARE(record.name, expected.toStdString());
}

void tst_MCLanguageInfoJSONStruct::readNonObject_data()
{
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("array of the object") << QByteArray(R"([{"Name":"German"}])");
    QTest::newRow("string") << QByteArray(R"("German")");
    QTest::newRow("number") << QByteArray("42");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("true") << QByteArray("true");
    QTest::newRow("empty array") << QByteArray("[]");
}

void tst_MCLanguageInfoJSONStruct::readNonObject()
{
    QFETCH(QByteArray, json);

    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse<rapidjson::kParseIterativeFlag>(json.constData());
    QVERIFY(!doc.HasParseError());

    MCLanguageInfo record = filled("old");
    MCLanguageInfoJSONStruct(&record, pool).read(doc);
    QCOMPARE(record, filled("old"));
}

void tst_MCLanguageInfoJSONStruct::readAllFields()
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    const std::string json = "{\"AppleLanguage\":\"zh-Hant\",\"LocaleName\":\"zh_TW,zh_HK\","
                             "\"LocaleLanguage\":\"Chinese\",\"UrlFileName\":\"url_zh_TW.ini\","
                             "\"Show\":\"" + TraditionalChinese + "\",\"Name\":\"ChineseTraditional\"}";
    doc.Parse<rapidjson::kParseIterativeFlag>(json.c_str());
    QVERIFY(!doc.HasParseError());

    MCLanguageInfo record;
    MCLanguageInfoJSONStruct(&record, pool).read(doc);
    QCOMPARE(record.name, std::string("ChineseTraditional"));
    QCOMPARE(record.show, TraditionalChinese);
    QCOMPARE(record.urlFileName, std::string("url_zh_TW.ini"));
    QCOMPARE(record.localeLanguage, std::string("Chinese"));
    QCOMPARE(record.localeName, std::string("zh_TW,zh_HK"));
    QCOMPARE(record.appleLanguage, std::string("zh-Hant"));
}

void tst_MCLanguageInfoJSONStruct::readIgnoresUnknownKeys()
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse<rapidjson::kParseIterativeFlag>(
        R"({"Id":3,"Name":"German","Extra":{"Show":"nested"},"Flags":["Show"]})");
    QVERIFY(!doc.HasParseError());

    MCLanguageInfo record;
    MCLanguageInfoJSONStruct(&record, pool).read(doc);
    MCLanguageInfo expected;
    expected.name = "German";
    QCOMPARE(record, expected);
}

void tst_MCLanguageInfoJSONStruct::nullRecord()
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse(R"({"Name":"German"})");
    QVERIFY(!doc.HasParseError());

    MCLanguageInfoJSONStruct json(nullptr, pool);
    QCOMPARE(json.record(), static_cast<MCLanguageInfo*>(nullptr));
    json.read(doc); // nothing to fill, and no crash

    // Without a record the structure writes an empty one.
    const rapidjson::Value object = json.write();
    QCOMPARE(serialise(object),
             std::string(R"({"Name":"","Show":"","UrlFileName":"","LocaleLanguage":"","LocaleName":"","AppleLanguage":""})"));
}

void tst_MCLanguageInfoJSONStruct::writeOrder()
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    MCLanguageInfo record;
    record.name = "German";
    record.show = "Deutsch";
    record.urlFileName = "url_de.ini";
    record.localeLanguage = "German";
    record.localeName = "";
    record.appleLanguage = "de";

    MCLanguageInfoJSONStruct json(&record, pool);
    const rapidjson::Value object = json.write();
    QVERIFY(object.IsObject());
    QCOMPARE(memberNames(object),
             (QStringList{QStringLiteral("Name"), QStringLiteral("Show"), QStringLiteral("UrlFileName"),
                          QStringLiteral("LocaleLanguage"), QStringLiteral("LocaleName"),
                          QStringLiteral("AppleLanguage")}));
    for (auto it = object.MemberBegin(); it != object.MemberEnd(); ++it)
        QVERIFY(it->value.IsString()); // empty fields too are written as strings
    QCOMPARE(serialise(object),
             std::string(R"({"Name":"German","Show":"Deutsch","UrlFileName":"url_de.ini",)"
                         R"("LocaleLanguage":"German","LocaleName":"","AppleLanguage":"de"})"));
}

void tst_MCLanguageInfoJSONStruct::writeFilter_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray all = R"({"Name":"n","Show":"s","UrlFileName":"u","LocaleLanguage":"l",)"
                           R"("LocaleName":"m","AppleLanguage":"a"})";
    QTest::newRow("0, empty set") << 0 << QStringList() << all;
    QTest::newRow("0, Show and AppleLanguage")
        << 0 << QStringList{QStringLiteral("Show"), QStringLiteral("AppleLanguage")}
        << QByteArray(R"({"Name":"n","UrlFileName":"u","LocaleLanguage":"l","LocaleName":"m"})");
    QTest::newRow("0, unknown key") << 0 << QStringList{QStringLiteral("LanguageInfoArray")} << all;
    QTest::newRow("0, every key")
        << 0
        << QStringList{QStringLiteral("Name"), QStringLiteral("Show"), QStringLiteral("UrlFileName"),
                       QStringLiteral("LocaleLanguage"), QStringLiteral("LocaleName"),
                       QStringLiteral("AppleLanguage")}
        << QByteArray("{}");
    QTest::newRow("1, empty set") << 1 << QStringList() << QByteArray("{}");
    QTest::newRow("1, LocaleName and Name")
        << 1 << QStringList{QStringLiteral("LocaleName"), QStringLiteral("Name")}
        << QByteArray(R"({"Name":"n","LocaleName":"m"})");
    QTest::newRow("1, lower-case name") << 1 << QStringList{QStringLiteral("name")} << QByteArray("{}");
    QTest::newRow("2, Name") << 2 << QStringList{QStringLiteral("Name")} << all;
    QTest::newRow("-1, Name") << -1 << QStringList{QStringLiteral("Name")} << all;
}

void tst_MCLanguageInfoJSONStruct::writeFilter()
{
    QFETCH(int, mode);
    QFETCH(QStringList, keys);
    QFETCH(QByteArray, expected);

    MCLanguageInfo record;
    record.name = "n";
    record.show = "s";
    record.urlFileName = "u";
    record.localeLanguage = "l";
    record.localeName = "m";
    record.appleLanguage = "a";

    MCLanguageInfoJSONStruct json(&record, MakeJsonAllocator());
    json.setFilter(mode, keySet(keys));
    QCOMPARE(serialise(json.write()), expected.toStdString());
}

void tst_MCLanguageInfoJSONStruct::writeCopiesText()
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    MCLanguageInfo record;
    record.name = "German";
    MCLanguageInfoJSONStruct json(&record, pool);
    const rapidjson::Value object = json.write();

    // The value owns its text in the pool; the record may change or go.
    record.name = "French, and long enough not to fit in place";
    QCOMPARE(std::string(object["Name"].GetString(), object["Name"].GetStringLength()),
             std::string("German"));
}

void tst_MCLanguageInfoJSONStruct::writeEscapes()
{
    MCLanguageInfo record;
    record.name = std::string("a\0b", 3);
    record.show = "quote \" backslash \\ tab \t";
    MCLanguageInfoJSONStruct json(&record, MakeJsonAllocator());
    json.setFilter(1, {"Name", "Show"});
    QCOMPARE(serialise(json.write()),
             std::string(R"({"Name":"a\u0000b","Show":"quote \" backslash \\ tab \t"})"));
}

void tst_MCLanguageInfoJSONStruct::roundTrip_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("show");
    QTest::addColumn<QByteArray>("localeName");

    const auto bytes = [](const std::string& s) { return QByteArray::fromStdString(s); };
    QTest::newRow("ASCII") << QByteArray("English") << QByteArray("English") << QByteArray("en");
    QTest::newRow("Chinese (Traditional)")
        << QByteArray("ChineseTraditional") << bytes(TraditionalChinese) << QByteArray("zh_TW,zh_HK");
    QTest::newRow("Arabic") << QByteArray("Arabic") << bytes(Arabic) << QByteArray("ar");
    QTest::newRow("Spanish") << QByteArray("Spanish") << bytes(Spanish) << QByteArray("es");
    QTest::newRow("outside the BMP") << bytes(Emoji) << bytes(Emoji + Arabic) << QByteArray();
    QTest::newRow("embedded NUL") << QByteArray("a\0b", 3) << QByteArray("\0", 1) << QByteArray();
    QTest::newRow("escapes") << QByteArray("\"\\/") << QByteArray("\x01\x1f\n") << QByteArray(",,");
    QTest::newRow("all empty") << QByteArray() << QByteArray() << QByteArray();
}

void tst_MCLanguageInfoJSONStruct::roundTrip()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, show);
    QFETCH(QByteArray, localeName);

    MCLanguageInfo original;
    original.name = name.toStdString();
    original.show = show.toStdString();
    original.urlFileName = "url_" + name.toStdString() + ".ini";
    original.localeLanguage = Arabic;
    original.localeName = localeName.toStdString();
    original.appleLanguage = TraditionalChinese;

    std::string text;
    {
        MCLanguageInfoJSONStruct writer(&original, MakeJsonAllocator());
        text = serialise(writer.write());
    }

    // An independent parser reads the same texts back.
    QJsonParseError error;
    const QJsonDocument oracle = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(oracle.object().value(QLatin1String("Show")).toString(), QString::fromUtf8(show.constData(), show.size()));
    QCOMPARE(oracle.object().value(QLatin1String("AppleLanguage")).toString(),
             QString::fromUtf16(u"\u4e2d\u6587(\u7e41\u9ad4)"));
    QCOMPARE(oracle.object().value(QLatin1String("LocaleLanguage")).toString(),
             QString::fromUtf16(u"\u0627\u0644\u0639\u0631\u0628\u064a\u0629"));
    QCOMPARE(oracle.object().size(), 6);

    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse<rapidjson::kParseIterativeFlag>(text.c_str());
    QVERIFY(!doc.HasParseError());
    MCLanguageInfo copy;
    MCLanguageInfoJSONStruct(&copy, pool).read(doc);
    QCOMPARE(copy, original);
    QCOMPARE(copy.name.size(), size_t(name.size()));
}

QTEST_GUILESS_MAIN(tst_MCLanguageInfoJSONStruct)
#include "tst_mclanguageinfojsonstruct.moc"
