// Who owns the layered shadows when a process has several core windows: each window its
// own, the newest remaining window's is the process-wide one, and no window reaches a
// shadow another window has deleted, whatever the order of opening and closing.
#include <ZVCore/private/ShadowRegistry>

#include <QtTest/QtTest>

#include <algorithm>
#include <memory>
#include <vector>

using ZVUIFramework::ShadowRegistry;

namespace {

// A shadow that counts the live ones, so that a double delete or a leak shows.
struct Shadow
{
    static int& alive()
    {
        static int count = 0;
        return count;
    }
    explicit Shadow(int owner) : owner(owner) { ++alive(); }
    ~Shadow() { --alive(); }
    int owner;
};

} // namespace

class tst_ShadowRegistry : public QObject
{
    Q_OBJECT

private slots:
    void init() { Shadow::alive() = 0; }

    void oneWindow()
    {
        // A process with one window: its shadow is the process-wide one until it goes.
        ShadowRegistry<Shadow> registry;
        int window = 0;
        QCOMPARE(registry.Current(), nullptr);
        auto* shadow = new Shadow(1);
        registry.Add(&window, shadow);
        QCOMPARE(registry.Current(), shadow);
        QCOMPARE(registry.Of(&window), shadow);
        QCOMPARE(registry.Remove(&window), shadow);
        delete shadow;
        QCOMPARE(registry.Current(), nullptr);
        QCOMPARE(registry.Of(&window), nullptr);
        QCOMPARE(Shadow::alive(), 0);
    }

    void windowWithoutShadowDeletesNothing()
    {
        // A window with the painted shadow built none: its going leaves the other's.
        ShadowRegistry<Shadow> registry;
        int layered = 0;
        int painted = 0;
        auto* shadow = new Shadow(1);
        registry.Add(&layered, shadow);
        QCOMPARE(registry.Remove(&painted), nullptr);
        QCOMPARE(registry.Current(), shadow);
        QCOMPARE(registry.Of(&painted), nullptr);
        delete registry.Remove(&layered);
        QCOMPARE(Shadow::alive(), 0);
    }

    void anyOrder_data()
    {
        QTest::addColumn<QVector<int>>("closing");
        QTest::newRow("first built goes first") << QVector<int>{0, 1, 2};
        QTest::newRow("last built goes first") << QVector<int>{2, 1, 0};
        QTest::newRow("middle first") << QVector<int>{1, 0, 2};
        QTest::newRow("middle last") << QVector<int>{0, 2, 1};
    }

    void anyOrder()
    {
        QFETCH(QVector<int>, closing);
        ShadowRegistry<Shadow> registry;
        int windows[3] = {};
        for (int i = 0; i < 3; ++i) {
            registry.Add(&windows[i], new Shadow(i));
            // The newest window's shadow is the process-wide one.
            QCOMPARE(registry.Current()->owner, i);
        }
        std::vector<int> open{0, 1, 2};
        for (int leaving : closing) {
            // Every window still open reaches its own shadow, alive.
            for (int w : open)
                QCOMPARE(registry.Of(&windows[w])->owner, w);
            Shadow* own = registry.Remove(&windows[leaving]);
            QVERIFY(own);
            QCOMPARE(own->owner, leaving);
            delete own;
            open.erase(std::find(open.begin(), open.end(), leaving));
            QCOMPARE(Shadow::alive(), int(open.size()));
            QCOMPARE(registry.Count(), open.size());
            if (open.empty())
                QCOMPARE(registry.Current(), nullptr);
            else
                QCOMPARE(registry.Current()->owner, *std::max_element(open.begin(), open.end()));
            // A second removal of the same window finds nothing to delete.
            QCOMPARE(registry.Remove(&windows[leaving]), nullptr);
        }
    }

    void nullsAreIgnored()
    {
        ShadowRegistry<Shadow> registry;
        int window = 0;
        registry.Add(nullptr, nullptr);
        registry.Add(&window, nullptr);
        QCOMPARE(registry.Count(), std::size_t(0));
        QCOMPARE(registry.Current(), nullptr);
    }
};

QTEST_APPLESS_MAIN(tst_ShadowRegistry)
#include "tst_shadowregistry.moc"
