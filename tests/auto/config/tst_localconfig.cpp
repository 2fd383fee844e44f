#include <ZVCore/private/IJSONStruct>
#include <ZVCore/private/LocalConfig>
#include <ZVCore/private/MCLanguageInfo>
#include <ZVCore/private/MCLocalConfigInfoJSONStruct>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cstring>
#include <string>
#include <vector>

#if defined(Q_OS_UNIX)
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>
#endif
#if defined(Q_OS_LINUX)
#include <linux/capability.h>
#include <sys/syscall.h>
#endif

using namespace ZVUIFramework;

using Catalogue = std::vector<MCLanguageInfo>;
Q_DECLARE_METATYPE(Catalogue)

namespace QTest {
template <>
inline char* toString(const std::string& s)
{
    return toString(QByteArray::fromStdString(s));
}
} // namespace QTest

namespace {

using Document = rapidjson::GenericDocument<rapidjson::UTF8<>, JsonAllocator>;

// Bad files must fail fast, whatever their size or depth.
constexpr qint64 BadFileBudgetMs = 5000;
constexpr int Deep = 1000000;

std::string utf8(const char16_t* text)
{
    return QString::fromUtf16(text).toStdString();
}

const std::string TraditionalChinese = utf8(u"\u4e2d\u6587(\u7e41\u9ad4)");
const std::string Arabic = utf8(u"\u0627\u0644\u0639\u0631\u0628\u064a\u0629");

MCLanguageInfo language(const std::string& name, const std::string& show = {},
                        const std::string& urlFileName = {}, const std::string& localeLanguage = {},
                        const std::string& localeName = {}, const std::string& appleLanguage = {})
{
    MCLanguageInfo record;
    record.name = name;
    record.show = show;
    record.urlFileName = urlFileName;
    record.localeLanguage = localeLanguage;
    record.localeName = localeName;
    record.appleLanguage = appleLanguage;
    return record;
}

// A catalogue that a test can tell apart from anything a file gives.
Catalogue previous()
{
    return {language("Previous", "previous"), language("Other")};
}

const QByteArray ThreeLanguages =
    "{\"LanguageInfoArray\":["
    "{\"Name\":\"English\",\"Show\":\"English\",\"UrlFileName\":\"url_en.ini\","
    "\"LocaleLanguage\":\"English\",\"LocaleName\":\"\",\"AppleLanguage\":\"en\"},"
    "{\"Name\":\"ChineseTraditional\",\"Show\":\"" + QByteArray::fromStdString(TraditionalChinese) + "\","
    "\"UrlFileName\":\"url_zh_TW.ini\",\"LocaleLanguage\":\"Chinese\",\"LocaleName\":\"zh_TW,zh_HK\","
    "\"AppleLanguage\":\"zh-Hant\"},"
    "{\"Name\":\"Arabic\",\"Show\":\"" + QByteArray::fromStdString(Arabic) + "\",\"LocaleLanguage\":\"Arabic\"}"
    "]}";

Catalogue threeLanguages()
{
    return {language("English", "English", "url_en.ini", "English", "", "en"),
            language("ChineseTraditional", TraditionalChinese, "url_zh_TW.ini", "Chinese", "zh_TW,zh_HK", "zh-Hant"),
            language("Arabic", Arabic, "", "Arabic")};
}

QByteArray repeated(char c, int count)
{
    return QByteArray(count, c);
}

// [[[ ... ]]] with depth levels.
QByteArray deepArray(int depth)
{
    return repeated('[', depth) + repeated(']', depth);
}

// {"a":{"a": ... {} ... }} with depth objects.
QByteArray deepObject(int depth)
{
    QByteArray text;
    text.reserve(depth * 6);
    for (int i = 1; i < depth; ++i)
        text += "{\"a\":";
    text += "{}";
    text += repeated('}', depth - 1);
    return text;
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

Catalogue readWithStruct(const QByteArray& json, Catalogue records = {})
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse<rapidjson::kParseIterativeFlag>(json.constData());
    if (doc.HasParseError())
        return {language("parse error")};
    MCLocalConfigInfoJSONStruct(&records, pool).read(doc);
    return records;
}

std::string serialise(const rapidjson::Value& value)
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return std::string(buffer.GetString(), buffer.GetSize());
}

#if defined(Q_OS_LINUX)
// While alive, this thread can no longer bypass file permissions: a process running as
// root keeps its identity but loses the capabilities that let it read a mode 000 file.
class WithoutPermissionOverride
{
public:
    WithoutPermissionOverride()
    {
        m_header.version = _LINUX_CAPABILITY_VERSION_3;
        m_header.pid = 0;
        if (syscall(SYS_capget, &m_header, m_saved) != 0)
            return;
        __user_cap_data_struct reduced[2];
        std::memcpy(reduced, m_saved, sizeof reduced);
        reduced[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
        m_active = syscall(SYS_capset, &m_header, reduced) == 0;
    }
    ~WithoutPermissionOverride()
    {
        if (m_active)
            syscall(SYS_capset, &m_header, m_saved);
    }
    WithoutPermissionOverride(const WithoutPermissionOverride&) = delete;
    WithoutPermissionOverride& operator=(const WithoutPermissionOverride&) = delete;

private:
    __user_cap_header_struct m_header{};
    __user_cap_data_struct m_saved[2]{};
    bool m_active = false;
};
#else
class WithoutPermissionOverride
{
};
#endif

} // namespace

class tst_LocalConfig : public QObject
{
    Q_OBJECT

private slots:
    // MCLocalConfigInfoJSONStruct
    void readCatalogue_data();
    void readCatalogue();
    void readAppends();
    void readTwiceDoubles();
    void nullList();
    void write_data();
    void write();
    void writeEmptyList();
    void writeUsesSharedPool();

    // WriteLocalConfig
    void writeLocalConfig_data();
    void writeLocalConfig();
    void writeLocalConfigIsReadBack();

    // LoadLocalConfigFile
    void loadsCatalogue();
    void missingFileKeepsCatalogue_data();
    void missingFileKeepsCatalogue();
    void badFile_data();
    void badFile();
    void goodFile_data();
    void goodFile();
    void notRegularFile_data();
    void notRegularFile();
    void unreadableFile();
    void largeFile();

private:
    QTemporaryDir m_dir;
};

void tst_LocalConfig::readCatalogue_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<Catalogue>("expected");

    QTest::newRow("array is an object") << QByteArray(R"({"LanguageInfoArray":{"Name":"English"}})") << Catalogue();
    QTest::newRow("array is a string") << QByteArray(R"({"LanguageInfoArray":"English"})") << Catalogue();
    QTest::newRow("array is a number") << QByteArray(R"({"LanguageInfoArray":3})") << Catalogue();
    QTest::newRow("array is null") << QByteArray(R"({"LanguageInfoArray":null})") << Catalogue();
    QTest::newRow("array is true") << QByteArray(R"({"LanguageInfoArray":true})") << Catalogue();
    QTest::newRow("array missing") << QByteArray(R"({"Languages":[{"Name":"English"}]})") << Catalogue();
    QTest::newRow("key in other case") << QByteArray(R"({"languageinfoarray":[{"Name":"English"}]})")
                                       << Catalogue();
    QTest::newRow("empty array") << QByteArray(R"({"LanguageInfoArray":[]})") << Catalogue();
    QTest::newRow("empty object") << QByteArray("{}") << Catalogue();
    QTest::newRow("root is an array") << QByteArray(R"([{"LanguageInfoArray":[{"Name":"English"}]}])")
                                      << Catalogue();
    QTest::newRow("root is a string") << QByteArray(R"("LanguageInfoArray")") << Catalogue();
    QTest::newRow("root is null") << QByteArray("null") << Catalogue();
    QTest::newRow("nested one level down")
        << QByteArray(R"({"Config":{"LanguageInfoArray":[{"Name":"English"}]}})") << Catalogue();
    QTest::newRow("one language") << QByteArray(R"({"LanguageInfoArray":[{"Name":"English","Show":"English"}]})")
                                  << Catalogue{language("English", "English")};
    QTest::newRow("three languages") << ThreeLanguages << threeLanguages();
    QTest::newRow("file order kept")
        << QByteArray(R"({"LanguageInfoArray":[{"Name":"B"},{"Name":"A"},{"Name":"C"}]})")
        << Catalogue{language("B"), language("A"), language("C")};
    // An element that is not an object still gives a record, of empty strings.
    QTest::newRow("non-object elements")
        << QByteArray(R"({"LanguageInfoArray":[{"Name":"A"},5,"B",null,[{"Name":"C"}],{"Name":"D"}]})")
        << Catalogue{language("A"), language(""), language(""), language(""), language(""), language("D")};
    QTest::newRow("other members ignored")
        << QByteArray(R"({"Version":2,"LanguageInfoArray":[{"Name":"A"}],"Theme":"dark"})")
        << Catalogue{language("A")};
}

void tst_LocalConfig::readCatalogue()
{
    QFETCH(QByteArray, json);
    QFETCH(Catalogue, expected);
    QCOMPARE(readWithStruct(json), expected);
}

void tst_LocalConfig::readAppends()
{
    const Catalogue records = readWithStruct(R"({"LanguageInfoArray":[{"Name":"A"},{"Name":"B"}]})",
                                             {language("Kept", "kept")});
    QCOMPARE(records, (Catalogue{language("Kept", "kept"), language("A"), language("B")}));

    // A catalogue that is not there appends nothing and removes nothing.
    QCOMPARE(readWithStruct(R"({"LanguageInfoArray":7})", {language("Kept")}), Catalogue{language("Kept")});
}

void tst_LocalConfig::readTwiceDoubles()
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse<rapidjson::kParseIterativeFlag>(ThreeLanguages.constData());
    QVERIFY(!doc.HasParseError());

    Catalogue records;
    MCLocalConfigInfoJSONStruct json(&records, pool);
    json.read(doc);
    QCOMPARE(records.size(), size_t(3));
    json.read(doc);
    QCOMPARE(records.size(), size_t(6));

    Catalogue expected = threeLanguages();
    const Catalogue again = threeLanguages();
    expected.insert(expected.end(), again.begin(), again.end());
    QCOMPARE(records, expected);
}

void tst_LocalConfig::nullList()
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse<rapidjson::kParseIterativeFlag>(ThreeLanguages.constData());
    QVERIFY(!doc.HasParseError());

    MCLocalConfigInfoJSONStruct json(nullptr, pool);
    QCOMPARE(json.records(), static_cast<Catalogue*>(nullptr));
    json.read(doc);
    // Without a list the structure writes an empty one.
    QCOMPARE(serialise(json.write()), std::string(R"({"LanguageInfoArray":[]})"));
}

void tst_LocalConfig::write_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray full =
        R"({"LanguageInfoArray":[)"
        R"({"Name":"English","Show":"English","UrlFileName":"url_en.ini","LocaleLanguage":"English","LocaleName":"","AppleLanguage":"en"},)"
        R"({"Name":"German","Show":"Deutsch","UrlFileName":"","LocaleLanguage":"German","LocaleName":"de_DE,de_AT","AppleLanguage":""})"
        R"(]})";

    QTest::newRow("0, empty set") << 0 << QStringList() << full;
    QTest::newRow("1, empty set") << 1 << QStringList() << QByteArray("{}");
    QTest::newRow("0, LanguageInfoArray") << 0 << QStringList{QStringLiteral("LanguageInfoArray")} << QByteArray("{}");
    QTest::newRow("1, LanguageInfoArray") << 1 << QStringList{QStringLiteral("LanguageInfoArray")} << full;
    // The filter is this structure's only: the records are written whole.
    QTest::newRow("0, Name") << 0 << QStringList{QStringLiteral("Name")} << full;
    QTest::newRow("1, Name") << 1 << QStringList{QStringLiteral("Name")} << QByteArray("{}");
    QTest::newRow("2, LanguageInfoArray") << 2 << QStringList{QStringLiteral("LanguageInfoArray")} << full;
    QTest::newRow("-1, LanguageInfoArray") << -1 << QStringList{QStringLiteral("LanguageInfoArray")} << full;
}

void tst_LocalConfig::write()
{
    QFETCH(int, mode);
    QFETCH(QStringList, keys);
    QFETCH(QByteArray, expected);

    Catalogue records{language("English", "English", "url_en.ini", "English", "", "en"),
                      language("German", "Deutsch", "", "German", "de_DE,de_AT", "")};
    std::unordered_set<std::string> set;
    for (const QString& key : qAsConst(keys))
        set.insert(key.toStdString());

    MCLocalConfigInfoJSONStruct json(&records, MakeJsonAllocator());
    json.setFilter(mode, set);
    const rapidjson::Value object = json.write();
    QVERIFY(object.IsObject());
    QCOMPARE(serialise(object), expected.toStdString());
    QCOMPARE(WriteLocalConfig(records, mode, set), expected.toStdString());
    QCOMPARE(records.size(), size_t(2)); // writing leaves the list alone
}

void tst_LocalConfig::writeEmptyList()
{
    Catalogue records;
    MCLocalConfigInfoJSONStruct json(&records, MakeJsonAllocator());
    QCOMPARE(serialise(json.write()), std::string(R"({"LanguageInfoArray":[]})"));
    QCOMPARE(WriteLocalConfig({}), std::string(R"({"LanguageInfoArray":[]})"));
}

void tst_LocalConfig::writeUsesSharedPool()
{
    JsonAllocatorHandle pool = MakeJsonAllocator();
    Catalogue records = threeLanguages();
    MCLocalConfigInfoJSONStruct json(&records, pool);
    QCOMPARE(pool.use_count(), 2L);
    const size_t before = pool->Size();
    {
        const rapidjson::Value object = json.write();
        QVERIFY(pool->Size() > before);
        QCOMPARE(object["LanguageInfoArray"].Size(), 3u);
    }
    // The element structures made while writing have let go of the pool again.
    QCOMPARE(pool.use_count(), 2L);
}

void tst_LocalConfig::writeLocalConfig_data()
{
    QTest::addColumn<Catalogue>("catalogue");

    QTest::newRow("empty") << Catalogue();
    QTest::newRow("three languages") << threeLanguages();
    QTest::newRow("escapes and NUL")
        << Catalogue{language(std::string("a\0b", 3), "\"quoted\" \\ /", "\t\n", std::string(1, '\0'), ",", Arabic)};
}

void tst_LocalConfig::writeLocalConfig()
{
    QFETCH(Catalogue, catalogue);

    const std::string text = WriteLocalConfig(catalogue);

    // An independent parser sees the same catalogue, as one compact line.
    QVERIFY(text.find('\n') == std::string::npos);
    QJsonParseError error;
    const QJsonDocument oracle = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    const QJsonArray array = oracle.object().value(QLatin1String("LanguageInfoArray")).toArray();
    QCOMPARE(oracle.object().size(), 1);
    QCOMPARE(size_t(array.size()), catalogue.size());
    for (int i = 0; i < array.size(); ++i) {
        const QJsonObject object = array.at(i).toObject();
        const MCLanguageInfo& record = catalogue[size_t(i)];
        QCOMPARE(object.size(), 6);
        const auto qs = [](const std::string& s) { return QString::fromUtf8(s.data(), int(s.size())); };
        QCOMPARE(object.value(QLatin1String("Name")).toString(), qs(record.name));
        QCOMPARE(object.value(QLatin1String("Show")).toString(), qs(record.show));
        QCOMPARE(object.value(QLatin1String("UrlFileName")).toString(), qs(record.urlFileName));
        QCOMPARE(object.value(QLatin1String("LocaleLanguage")).toString(), qs(record.localeLanguage));
        QCOMPARE(object.value(QLatin1String("LocaleName")).toString(), qs(record.localeName));
        QCOMPARE(object.value(QLatin1String("AppleLanguage")).toString(), qs(record.appleLanguage));
    }
}

void tst_LocalConfig::writeLocalConfigIsReadBack()
{
    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(QStringLiteral("roundtrip.json"));
    Catalogue original = threeLanguages();
    original.push_back(language(std::string("nul\0inside", 10), "\"\\", "", "", "zh", ""));
    const std::string text = WriteLocalConfig(original);
    QVERIFY(writeFile(path, QByteArray::fromStdString(text)));

    Catalogue loaded = previous();
    LoadLocalConfigFile(path, loaded);
    QCOMPARE(loaded, original);
}

void tst_LocalConfig::loadsCatalogue()
{
    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(QStringLiteral("localconfig.json"));
    QVERIFY(writeFile(path, ThreeLanguages));

    // The file's catalogue replaces what was there; it is not appended.
    Catalogue catalogue = previous();
    LoadLocalConfigFile(path, catalogue);
    QCOMPARE(catalogue, threeLanguages());

    // Loading again gives the same, not twice as much.
    LoadLocalConfigFile(path, catalogue);
    QCOMPARE(catalogue, threeLanguages());

    // Native separators, as the store builds the path.
    Catalogue native;
    LoadLocalConfigFile(QDir::toNativeSeparators(path), native);
    QCOMPARE(native, threeLanguages());
}

void tst_LocalConfig::missingFileKeepsCatalogue_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<Catalogue>("catalogue");

    QVERIFY(m_dir.isValid());
    QTest::newRow("missing file") << m_dir.filePath(QStringLiteral("absent.json")) << previous();
    QTest::newRow("missing file, empty catalogue") << m_dir.filePath(QStringLiteral("absent.json")) << Catalogue();
    QTest::newRow("missing folder") << m_dir.filePath(QStringLiteral("language/main/localconfig.json"))
                                    << previous();
    QTest::newRow("empty path") << QString() << previous();
#if defined(Q_OS_UNIX)
    const QString dangling = m_dir.filePath(QStringLiteral("dangling.json"));
    QFile::remove(dangling);
    QVERIFY(QFile::link(m_dir.filePath(QStringLiteral("nowhere.json")), dangling));
    QTest::newRow("dangling link") << dangling << previous();
#endif
}

void tst_LocalConfig::missingFileKeepsCatalogue()
{
    QFETCH(QString, path);
    QFETCH(Catalogue, catalogue);

    const Catalogue before = catalogue;
    LoadLocalConfigFile(path, catalogue);
    QCOMPARE(catalogue, before);
}

void tst_LocalConfig::badFile_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("whitespace only") << QByteArray(" \r\n\t ");
    QTest::newRow("trailing comma") << QByteArray(R"({"LanguageInfoArray":[{"Name":"English"},]})");
    QTest::newRow("missing colon") << QByteArray(R"({"LanguageInfoArray" [{"Name":"English"}]})");
    QTest::newRow("unquoted key") << QByteArray(R"({LanguageInfoArray:[{"Name":"English"}]})");
    QTest::newRow("single quotes") << QByteArray(R"({'LanguageInfoArray':[{'Name':'English'}]})");
    QTest::newRow("comment") << QByteArray("// languages\n" R"({"LanguageInfoArray":[{"Name":"English"}]})");
    QTest::newRow("truncated") << ThreeLanguages.left(ThreeLanguages.size() / 2);
    QTest::newRow("last brace missing") << ThreeLanguages.chopped(1);
    QTest::newRow("truncated in a string") << QByteArray(R"({"LanguageInfoArray":[{"Name":"Engl)");
    QTest::newRow("raw control character in a string")
        << QByteArray("{\"LanguageInfoArray\":[{\"Name\":\"Eng\tlish\"}]}");
    QTest::newRow("bad escape") << QByteArray(R"({"LanguageInfoArray":[{"Name":"\x41"}]})");
    QTest::newRow("lone surrogate escape") << QByteArray(R"({"LanguageInfoArray":[{"Name":"\ud800"}]})");
    // The parser refuses a number it cannot hold, and with it the whole file.
    QTest::newRow("number out of range")
        << QByteArray(R"({"Version":1e400,"LanguageInfoArray":[{"Name":"English"}]})");
    QTest::newRow("two documents") << ThreeLanguages + ThreeLanguages;
    QTest::newRow("valid then garbage") << ThreeLanguages + "xyz";
    // A NUL ends the text: here nothing comes before it.
    QTest::newRow("NUL first") << QByteArray(1, '\0') + ThreeLanguages;
    QTest::newRow("NUL inside a string")
        << QByteArray("{\"LanguageInfoArray\":[{\"Name\":\"Eng") + QByteArray(1, '\0') + "lish\"}]}";
    // UTF-16 text has a NUL after its first character.
    QTest::newRow("UTF-16") << QByteArray(reinterpret_cast<const char*>(QString::fromLatin1(ThreeLanguages).utf16()),
                                          ThreeLanguages.size() * 2);
    // The parser takes UTF-8 without a byte order mark.
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF") + ThreeLanguages;

    QRandomGenerator random(20260131);
    QByteArray garbage(1 << 16, '\0');
    for (char& c : garbage)
        c = char(random.bounded(1, 256));
    garbage[0] = '\xff';
    QTest::newRow("binary garbage") << garbage;
    QByteArray garbageWithNul = garbage;
    garbageWithNul[100] = '\0';
    QTest::newRow("binary garbage with NUL") << garbageWithNul;

    // Parsed, but without a catalogue.
    QTest::newRow("array is an object") << QByteArray(R"({"LanguageInfoArray":{"Name":"English"}})");
    QTest::newRow("array is a string") << QByteArray(R"({"LanguageInfoArray":"English"})");
    QTest::newRow("array is a number") << QByteArray(R"({"LanguageInfoArray":1})");
    QTest::newRow("empty array") << QByteArray(R"({"LanguageInfoArray":[]})");
    QTest::newRow("root is an array") << QByteArray(R"([{"Name":"English"}])");
    QTest::newRow("object nested a million deep") << deepObject(Deep);
    QTest::newRow("array nested a million deep") << deepArray(Deep);

    // Deep and broken.
    QTest::newRow("a million unclosed brackets") << repeated('[', Deep);
    QTest::newRow("a million brackets, one short") << repeated('[', Deep) + repeated(']', Deep - 1);
    QTest::newRow("deep catalogue, unclosed")
        << QByteArray(R"({"LanguageInfoArray":)") + repeated('[', Deep);
    QTest::newRow("a million unclosed objects") << deepObject(Deep).chopped(1);
}

void tst_LocalConfig::badFile()
{
    QFETCH(QByteArray, bytes);

    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(QStringLiteral("bad.json"));
    QVERIFY(writeFile(path, bytes));

    // Whatever was loaded before is replaced by an empty catalogue.
    Catalogue catalogue = previous();
    QElapsedTimer timer;
    timer.start();
    LoadLocalConfigFile(path, catalogue);
    const qint64 elapsed = timer.elapsed();
    QCOMPARE(catalogue, Catalogue());
    QVERIFY2(elapsed < BadFileBudgetMs, QByteArray::number(elapsed).constData());
}

void tst_LocalConfig::goodFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Catalogue>("expected");

    QTest::newRow("whitespace around") << QByteArray("\r\n\t ") + ThreeLanguages + "\r\n  " << threeLanguages();
    // Only the bytes before the first NUL are read.
    QTest::newRow("NUL then garbage") << ThreeLanguages + QByteArray(1, '\0') + "garbage{[\"\xff" << threeLanguages();
    QTest::newRow("NUL then another document")
        << ThreeLanguages + QByteArray(1, '\0') + R"({"LanguageInfoArray":[]})" << threeLanguages();

    // The parser does not check the encoding of strings: invalid UTF-8 is kept byte for
    // byte in the record (a later QString::fromUtf8 turns it into replacement characters).
    QTest::newRow("invalid UTF-8 in strings")
        << QByteArray("{\"LanguageInfoArray\":[{\"Name\":\"\xff\xfe\",\"Show\":\"a\xc3\",\"UrlFileName\":\"\xed\xa0\x80\","
                      "\"LocaleLanguage\":\"\xc0\xaf\",\"LocaleName\":\"\x80\"}]}")
        << Catalogue{language("\xff\xfe", "a\xc3", "\xed\xa0\x80", "\xc0\xaf", "\x80")};
    QTest::newRow("invalid UTF-8 in a key")
        << QByteArray("{\"Na\xffme\":\"x\",\"LanguageInfoArray\":[{\"Name\":\"A\",\"\xfe\":\"y\"}]}")
        << Catalogue{language("A")};

    // The catalogue is one element deep, an array: one record of empty strings.
    QTest::newRow("catalogue nested 200 deep")
        << QByteArray(R"({"LanguageInfoArray":)") + deepArray(200) + "}" << Catalogue{MCLanguageInfo()};
    QTest::newRow("catalogue nested a million deep")
        << QByteArray(R"({"LanguageInfoArray":)") + deepArray(Deep) + "}" << Catalogue{MCLanguageInfo()};
    QTest::newRow("deep arrays beside records")
        << QByteArray(R"({"LanguageInfoArray":[{"Name":"A"},)") + deepArray(Deep) + R"(,{"Name":"B"}]})"
        << Catalogue{language("A"), MCLanguageInfo(), language("B")};
    QTest::newRow("field nested a million deep")
        << QByteArray(R"({"LanguageInfoArray":[{"Name":"A","Show":)") + deepObject(Deep) + "}]}"
        << Catalogue{language("A")};
    QTest::newRow("sibling nested a million deep")
        << QByteArray(R"({"Other":)") + deepObject(Deep) + R"(,"LanguageInfoArray":[{"Name":"A"}]})"
        << Catalogue{language("A")};
}

void tst_LocalConfig::goodFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Catalogue, expected);

    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(QStringLiteral("good.json"));
    QVERIFY(writeFile(path, bytes));

    Catalogue catalogue = previous();
    QElapsedTimer timer;
    timer.start();
    LoadLocalConfigFile(path, catalogue);
    const qint64 elapsed = timer.elapsed();
    QCOMPARE(catalogue, expected);
    QVERIFY2(elapsed < BadFileBudgetMs, QByteArray::number(elapsed).constData());
}

void tst_LocalConfig::notRegularFile_data()
{
    QTest::addColumn<QString>("kind");

    QTest::newRow("directory") << QStringLiteral("directory");
#if defined(Q_OS_UNIX)
    // Opening a FIFO for reading would wait for a writer that never comes.
    QTest::newRow("fifo") << QStringLiteral("fifo");
#endif
#if defined(Q_OS_LINUX)
    // A device that never ends.
    QTest::newRow("link to /dev/zero") << QStringLiteral("zero");
#endif
}

void tst_LocalConfig::notRegularFile()
{
    QFETCH(QString, kind);

    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(QStringLiteral("special-") + kind);
    if (kind == QLatin1String("directory")) {
        QVERIFY(QDir().mkpath(path + QStringLiteral("/inside")));
    }
#if defined(Q_OS_UNIX)
    else if (kind == QLatin1String("fifo")) {
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    }
#endif
#if defined(Q_OS_LINUX)
    else if (kind == QLatin1String("zero")) {
        if (!QFile::exists(QStringLiteral("/dev/zero")))
            QSKIP("no /dev/zero here");
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), path));
    }
#endif
    QVERIFY(QFileInfo::exists(path));

    Catalogue catalogue = previous();
    QElapsedTimer timer;
    timer.start();
    LoadLocalConfigFile(path, catalogue);
    const qint64 elapsed = timer.elapsed();
    QCOMPARE(catalogue, Catalogue());
    QVERIFY2(elapsed < BadFileBudgetMs, QByteArray::number(elapsed).constData());
}

void tst_LocalConfig::unreadableFile()
{
#ifdef Q_OS_WIN
    QSKIP("QFile::setPermissions() on Windows only sets the read-only attribute; the file stays readable");
#endif
    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(QStringLiteral("unreadable.json"));
    QVERIFY(writeFile(path, ThreeLanguages));
    QVERIFY(QFile::setPermissions(path, QFileDevice::Permissions()));

    Catalogue catalogue = previous();
    {
        // Root reads any file whatever its mode, unless it gives up that privilege.
        const WithoutPermissionOverride unprivileged;
        QFile probe(path);
        if (probe.open(QIODevice::ReadOnly)) {
            probe.close();
            QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
            QSKIP("This process can read a file of mode 000 (privileged, and unable to drop the privilege).");
        }
        LoadLocalConfigFile(path, catalogue);
    }
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    QCOMPARE(catalogue, Catalogue());

    // The same file, readable again, loads.
    LoadLocalConfigFile(path, catalogue);
    QCOMPARE(catalogue, threeLanguages());
}

void tst_LocalConfig::largeFile()
{
    constexpr int Count = 200000;
    const auto expected = [](int i) {
        const std::string number = QByteArray::number(i).rightJustified(6, '0').toStdString();
        return language("Language" + number,
                        TraditionalChinese + " " + Arabic + " " + number + " " + std::string(64, 'x'),
                        "url_" + number + ".ini", "Chinese", "zh_TW,zh_HK," + number, "zh-Hant");
    };

    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(QStringLiteral("large.json"));
    QElapsedTimer timer;
    timer.start();
    {
        QByteArray bytes;
        bytes.reserve(Count * 260);
        bytes += "{\"LanguageInfoArray\":[\n";
        for (int i = 0; i < Count; ++i) {
            const MCLanguageInfo r = expected(i);
            if (i)
                bytes += ",\n";
            bytes += "  {\"Name\":\"" + QByteArray::fromStdString(r.name) + "\",\"Show\":\""
                + QByteArray::fromStdString(r.show) + "\",\"UrlFileName\":\""
                + QByteArray::fromStdString(r.urlFileName) + "\",\"LocaleLanguage\":\""
                + QByteArray::fromStdString(r.localeLanguage) + "\",\"LocaleName\":\""
                + QByteArray::fromStdString(r.localeName) + "\",\"AppleLanguage\":\""
                + QByteArray::fromStdString(r.appleLanguage) + "\"}";
        }
        bytes += "\n]}\n";
        QVERIFY2(bytes.size() > 48 * 1024 * 1024, QByteArray::number(bytes.size()).constData());
        QVERIFY(writeFile(path, bytes));
    }
    const qint64 generated = timer.restart();

    Catalogue catalogue = previous();
    LoadLocalConfigFile(path, catalogue);
    const qint64 loaded = timer.elapsed();
    qInfo("%lld bytes, written in %lld ms, loaded in %lld ms", QFileInfo(path).size(), generated, loaded);

    QCOMPARE(catalogue.size(), size_t(Count));
    QCOMPARE(catalogue.front(), expected(0));
    QCOMPARE(catalogue[Count / 2], expected(Count / 2));
    QCOMPARE(catalogue.back(), expected(Count - 1));
    QFile::remove(path);
}

QTEST_GUILESS_MAIN(tst_LocalConfig)
#include "tst_localconfig.moc"
