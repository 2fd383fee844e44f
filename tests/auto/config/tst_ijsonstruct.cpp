#include <ZVCore/private/IJSONStruct>
#include <ZVCore/private/MCLanguageInfo>
#include <ZVCore/private/MCLanguageInfoJSONStruct>

#include <rapidjson/document.h>

#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include <memory>
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

// The smallest structure: it exposes the filter test and writes the keys it is given,
// each with the value 1, so that the filter can be seen at work on a real object.
class ProbeStruct final : public IJSONStruct
{
public:
    explicit ProbeStruct(JsonAllocatorHandle allocator, QStringList keys = {})
        : IJSONStruct(std::move(allocator))
        , m_keys(keys)
    {
    }

    using IJSONStruct::keyAllowed;

    void read(const rapidjson::Value& value) override { m_readIsObject = value.IsObject(); }

    rapidjson::Value write() override
    {
        rapidjson::Value object(rapidjson::kObjectType);
        for (const QString& key : qAsConst(m_keys)) {
            const QByteArray utf8 = key.toUtf8();
            if (!keyAllowed(utf8.constData()))
                continue;
            rapidjson::Value name(utf8.constData(), rapidjson::SizeType(utf8.size()), *allocator());
            rapidjson::Value one(1);
            object.AddMember(name, one, *allocator());
        }
        return object;
    }

    bool m_readIsObject = false;

private:
    QStringList m_keys;
};

std::unordered_set<std::string> keySet(const QStringList& keys)
{
    std::unordered_set<std::string> set;
    for (const QString& key : keys)
        set.insert(key.toStdString());
    return set;
}

QStringList memberNames(const rapidjson::Value& object)
{
    QStringList names;
    for (auto it = object.MemberBegin(); it != object.MemberEnd(); ++it)
        names << QString::fromUtf8(it->name.GetString(), int(it->name.GetStringLength()));
    return names;
}

} // namespace

class tst_IJSONStruct : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void setFilter();
    void keyAllowed_data();
    void keyAllowed();
    void filterShapesWrite_data();
    void filterShapesWrite();
    void filterDoesNotAffectRead();
    void nullHandleGetsOwnPool();
    void makeJsonAllocatorGivesDistinctPools();
    void sharedPool();
    void poolOutlivesDocument();
};

void tst_IJSONStruct::defaults()
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    const ProbeStruct probe(pool);
    QCOMPARE(probe.filterMode(), 0);
    QVERIFY(probe.filterKeys().empty());
    QCOMPARE(probe.allocator().get(), pool.get());
    // Mode 0 with an empty set writes every key.
    QVERIFY(probe.keyAllowed("Name"));
    QVERIFY(probe.keyAllowed("LanguageInfoArray"));
    QVERIFY(probe.keyAllowed(""));
}

void tst_IJSONStruct::setFilter()
{
    ProbeStruct probe(MakeJsonAllocator());
    probe.setFilter(1, {"Name", "Show"});
    QCOMPARE(probe.filterMode(), 1);
    QCOMPARE(probe.filterKeys(), (std::unordered_set<std::string>{"Name", "Show"}));

    // A second call replaces both, it does not merge the sets.
    probe.setFilter(-7, {"LocaleName"});
    QCOMPARE(probe.filterMode(), -7);
    QCOMPARE(probe.filterKeys(), (std::unordered_set<std::string>{"LocaleName"}));

    probe.setFilter(0, {});
    QCOMPARE(probe.filterMode(), 0);
    QVERIFY(probe.filterKeys().empty());
}

void tst_IJSONStruct::keyAllowed_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("allowed");

    const QStringList none;
    const QStringList nameShow{QStringLiteral("Name"), QStringLiteral("Show")};

    // Mode 0: everything except the set.
    QTest::newRow("0, empty set") << 0 << none << QStringLiteral("Name") << true;
    QTest::newRow("0, key in set") << 0 << nameShow << QStringLiteral("Name") << false;
    QTest::newRow("0, other key in set") << 0 << nameShow << QStringLiteral("Show") << false;
    QTest::newRow("0, key not in set") << 0 << nameShow << QStringLiteral("LocaleName") << true;
    QTest::newRow("0, case differs") << 0 << nameShow << QStringLiteral("name") << true;
    QTest::newRow("0, prefix of a key") << 0 << nameShow << QStringLiteral("Nam") << true;
    QTest::newRow("0, empty key in set") << 0 << QStringList{QString()} << QString() << false;
    QTest::newRow("0, array key in set")
        << 0 << QStringList{QStringLiteral("LanguageInfoArray")} << QStringLiteral("LanguageInfoArray") << false;

    // Mode 1: only the set.
    QTest::newRow("1, empty set") << 1 << none << QStringLiteral("Name") << false;
    QTest::newRow("1, empty set, empty key") << 1 << none << QString() << false;
    QTest::newRow("1, key in set") << 1 << nameShow << QStringLiteral("Name") << true;
    QTest::newRow("1, other key in set") << 1 << nameShow << QStringLiteral("Show") << true;
    QTest::newRow("1, key not in set") << 1 << nameShow << QStringLiteral("UrlFileName") << false;
    QTest::newRow("1, case differs") << 1 << nameShow << QStringLiteral("SHOW") << false;
    QTest::newRow("1, array key not in set") << 1 << nameShow << QStringLiteral("LanguageInfoArray") << false;

    // Any other mode: everything, whatever the set holds.
    QTest::newRow("2, empty set") << 2 << none << QStringLiteral("Name") << true;
    QTest::newRow("2, key in set") << 2 << nameShow << QStringLiteral("Name") << true;
    QTest::newRow("2, key not in set") << 2 << nameShow << QStringLiteral("AppleLanguage") << true;
    QTest::newRow("-1, empty set") << -1 << none << QStringLiteral("Name") << true;
    QTest::newRow("-1, key in set") << -1 << nameShow << QStringLiteral("Show") << true;
    QTest::newRow("-1, key not in set") << -1 << nameShow << QStringLiteral("LocaleLanguage") << true;
    QTest::newRow("int max, key in set") << int(0x7fffffff) << nameShow << QStringLiteral("Name") << true;
    QTest::newRow("int min, key not in set") << int(0x80000000) << nameShow << QStringLiteral("x") << true;
}

void tst_IJSONStruct::keyAllowed()
{
    QFETCH(int, mode);
    QFETCH(QStringList, keys);
    QFETCH(QString, key);
    QFETCH(bool, allowed);

    ProbeStruct probe(MakeJsonAllocator());
    probe.setFilter(mode, keySet(keys));
    QCOMPARE(probe.keyAllowed(key.toUtf8().constData()), allowed);
}

void tst_IJSONStruct::filterShapesWrite_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QStringList>("written");

    const QStringList all{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    QTest::newRow("0, empty set") << 0 << QStringList() << all;
    QTest::newRow("0, b") << 0 << QStringList{QStringLiteral("b")}
                          << QStringList{QStringLiteral("a"), QStringLiteral("c")};
    QTest::newRow("0, all") << 0 << all << QStringList();
    QTest::newRow("1, empty set") << 1 << QStringList() << QStringList();
    // The order written is the structure's, not the set's.
    QTest::newRow("1, c and a") << 1 << QStringList{QStringLiteral("c"), QStringLiteral("a")}
                                << QStringList{QStringLiteral("a"), QStringLiteral("c")};
    QTest::newRow("1, unknown key") << 1 << QStringList{QStringLiteral("z")} << QStringList();
    QTest::newRow("2, b") << 2 << QStringList{QStringLiteral("b")} << all;
    QTest::newRow("-1, b") << -1 << QStringList{QStringLiteral("b")} << all;
}

void tst_IJSONStruct::filterShapesWrite()
{
    QFETCH(int, mode);
    QFETCH(QStringList, keys);
    QFETCH(QStringList, written);

    ProbeStruct probe(MakeJsonAllocator(), {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    probe.setFilter(mode, keySet(keys));
    const rapidjson::Value object = probe.write();
    QVERIFY(object.IsObject());
    QCOMPARE(memberNames(object), written);
}

void tst_IJSONStruct::filterDoesNotAffectRead()
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    Document doc(pool.get(), 1024);
    doc.Parse(R"({"Name":"German","Show":"Deutsch"})");
    QVERIFY(!doc.HasParseError());

    MCLanguageInfo record;
    MCLanguageInfoJSONStruct json(&record, pool);
    json.setFilter(1, {}); // would write nothing
    json.read(doc);
    QCOMPARE(record.name, std::string("German"));
    QCOMPARE(record.show, std::string("Deutsch"));

    MCLanguageInfo other;
    MCLanguageInfoJSONStruct excluding(&other, pool);
    excluding.setFilter(0, {"Name", "Show"});
    excluding.read(doc);
    QCOMPARE(other.name, std::string("German"));
    QCOMPARE(other.show, std::string("Deutsch"));
}

void tst_IJSONStruct::nullHandleGetsOwnPool()
{
    ProbeStruct probe(nullptr, {QStringLiteral("a")});
    QVERIFY(probe.allocator() != nullptr);
    QCOMPARE(probe.allocator().use_count(), 1L);
    const rapidjson::Value object = probe.write();
    QCOMPARE(memberNames(object), QStringList{QStringLiteral("a")});
}

void tst_IJSONStruct::makeJsonAllocatorGivesDistinctPools()
{
    const JsonAllocatorHandle a = MakeJsonAllocator();
    const JsonAllocatorHandle b = MakeJsonAllocator();
    QVERIFY(a != nullptr);
    QVERIFY(b != nullptr);
    QVERIFY(a.get() != b.get());
    QCOMPARE(a.use_count(), 1L);
    QCOMPARE(a->Size(), size_t(0));
}

void tst_IJSONStruct::sharedPool()
{
    JsonAllocatorHandle pool = MakeJsonAllocator();
    const std::weak_ptr<JsonAllocator> watch = pool;
    QCOMPARE(pool.use_count(), 1L);

    {
        // The document borrows the pool and adds no reference.
        Document doc(pool.get(), 1024);
        QCOMPARE(pool.use_count(), 1L);
        QCOMPARE(&doc.GetAllocator(), pool.get());

        MCLanguageInfo first;
        first.name = "English";
        MCLanguageInfo second;
        second.name = "German";
        MCLanguageInfoJSONStruct a(&first, pool);
        QCOMPARE(pool.use_count(), 2L);
        MCLanguageInfoJSONStruct b(&second, pool);
        QCOMPARE(pool.use_count(), 3L);
        QCOMPARE(a.allocator().get(), pool.get());
        QCOMPARE(b.allocator().get(), pool.get());

        {
            // Copying a structure adds a reference; destroying the copy drops it.
            MCLanguageInfoJSONStruct copy = a;
            QCOMPARE(pool.use_count(), 4L);
            QCOMPARE(copy.allocator().get(), pool.get());
            QCOMPARE(copy.record(), &first);
        }
        QCOMPARE(pool.use_count(), 3L);

        // Values of both structures live in the document's pool, so they can be moved
        // into the document without copying.
        const size_t before = pool->Size();
        doc.SetArray();
        rapidjson::Value one = a.write();
        rapidjson::Value two = b.write();
        QVERIFY(pool->Size() > before);
        doc.PushBack(one, doc.GetAllocator());
        doc.PushBack(two, doc.GetAllocator());
        QCOMPARE(doc.Size(), 2u);
        QCOMPARE(std::string(doc[0]["Name"].GetString()), std::string("English"));
        QCOMPARE(std::string(doc[1]["Name"].GetString()), std::string("German"));
    }

    QCOMPARE(pool.use_count(), 1L);
    pool.reset();
    QVERIFY(watch.expired());
}

void tst_IJSONStruct::poolOutlivesDocument()
{
    JsonAllocatorHandle pool = MakeJsonAllocator();
    const std::weak_ptr<JsonAllocator> watch = pool;

    MCLanguageInfo record;
    auto holder = std::make_unique<MCLanguageInfoJSONStruct>(&record, pool);
    auto second = std::make_unique<MCLanguageInfoJSONStruct>(&record, pool);
    QCOMPARE(pool.use_count(), 3L);

    {
        auto doc = std::make_unique<Document>(pool.get(), 1024);
        doc->Parse(R"({"Name":"French","Show":"Fran\u00e7ais"})");
        QVERIFY(!doc->HasParseError());
        holder->read(*doc);
        // The caller lets go of its handle while the document still lives.
        pool.reset();
        QCOMPARE(watch.use_count(), 2L);
        doc.reset();
    }

    // The document is gone; the pool is not, and still serves the structures.
    QVERIFY(!watch.expired());
    QCOMPARE(record.name, std::string("French"));
    QCOMPARE(record.show, std::string("Fran\xc3\xa7" "ais"));
    {
        const rapidjson::Value object = holder->write();
        QVERIFY(object.IsObject());
        QCOMPARE(std::string(object["Show"].GetString()), std::string("Fran\xc3\xa7" "ais"));
    }

    holder.reset();
    QVERIFY(!watch.expired());
    QCOMPARE(watch.use_count(), 1L);
    second.reset(); // the last holder frees the pool
    QVERIFY(watch.expired());
}

QTEST_GUILESS_MAIN(tst_IJSONStruct)
#include "tst_ijsonstruct.moc"
