#include <ZVCore/ZVCustomEvent>
#include <ZVCore/ZVCustomEventSendObj>

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtTest/QtTest>

#include <functional>

namespace {

struct Delivery
{
    QObject* receiver = nullptr;
    ZVCustomEvent* event = nullptr; // valid only while delivered, unless kept on purpose
    int type = 0;
    int value = 0;
    QString source;
    QString name;
    int triggerType = 0;
    bool spontaneous = true;
};

// Every delivery in order, across all receivers of a test.
QList<Delivery> g_deliveries;

class Receiver : public QObject
{
public:
    std::function<void(ZVCustomEvent*)> onEvent;

protected:
    void customEvent(QEvent* event) override
    {
        auto* e = static_cast<ZVCustomEvent*>(event);
        g_deliveries.append({this, e, int(e->type()), e->value, e->source, e->name,
                             e->triggerType, e->spontaneous()});
        if (onEvent)
            onEvent(e);
    }
};

// An event that reports its own destruction, to see who deletes what.
class TrackedEvent : public ZVCustomEvent
{
public:
    TrackedEvent(int id, int value, bool* destroyed)
        : ZVCustomEvent(QEvent::Type(id), value)
        , m_destroyed(destroyed)
    {
    }
    ~TrackedEvent() override { *m_destroyed = true; }

private:
    bool* m_destroyed;
};

// Ids from the user range that the library itself never uses.
constexpr int kId = 4101;
constexpr int kOtherId = 4102;

} // namespace

class tst_ZVCustomEventSendObj : public QObject
{
    Q_OBJECT

private:
    ZVCustomEventSendObj* bus() const { return ZVCustomEventSendObj::GetInstance(); }

private slots:
    void init()
    {
        g_deliveries.clear();
        for (int id : {kId, kOtherId, 1000, 1002, 5000})
            bus()->Detach(id);
    }

    void customEventFields()
    {
        ZVCustomEvent e(QEvent::Type(1003), 7);
        QCOMPARE(int(e.type()), 1003);
        QCOMPARE(e.value, 7);
        QVERIFY(e.source.isEmpty());
        QVERIFY(e.name.isEmpty());
        QVERIFY(!e.spontaneous());
    }

    void instanceIsSingleAndOwnedByApplication()
    {
        ZVCustomEventSendObj* first = ZVCustomEventSendObj::GetInstance();
        QVERIFY(first);
        QCOMPARE(ZVCustomEventSendObj::GetInstance(), first);
        QCOMPARE(first->parent(), QCoreApplication::instance());
    }

    void attachingTwiceDeliversOnce()
    {
        Receiver r;
        bus()->Attach(kId, &r);
        bus()->Attach(kId, &r);

        bus()->PostEvent(kId, 1);
        QCoreApplication::processEvents();
        QCOMPARE(g_deliveries.size(), 1);

        g_deliveries.clear();
        bus()->SendEvent(kId, 1);
        QCOMPARE(g_deliveries.size(), 1);
        delete g_deliveries.first().event; // SendEvent leaves its events to the receiver
    }

    void sameReceiverUnderTwoIds()
    {
        Receiver r;
        bus()->Attach(kId, &r);
        bus()->Attach(kOtherId, &r);
        bus()->PostEvent(kOtherId, 9);
        QCoreApplication::processEvents();
        QCOMPARE(g_deliveries.size(), 1);
        QCOMPARE(g_deliveries.first().type, kOtherId);
        QCOMPARE(g_deliveries.first().value, 9);
    }

    void postQueuesOneEventPerReceiverLaterAttachedFirst()
    {
        Receiver earlier;
        Receiver later;
        bus()->Attach(1002, &earlier);
        bus()->Attach(1002, &later);

        QList<ZVCustomEvent*> seen;
        earlier.onEvent = later.onEvent = [&seen](ZVCustomEvent* e) { seen.append(e); };

        bus()->PostEvent(1002, 1);
        QVERIFY2(g_deliveries.isEmpty(), "a posted event is queued, not delivered at once");
        QCoreApplication::processEvents();

        QCOMPARE(g_deliveries.size(), 2);
        QCOMPARE(g_deliveries.at(0).receiver, &later);
        QCOMPARE(g_deliveries.at(1).receiver, &earlier);
        for (const Delivery& d : qAsConst(g_deliveries)) {
            QCOMPARE(d.type, 1002);
            QCOMPARE(d.value, 1);
            QVERIFY(d.source.isEmpty());
            QVERIFY(d.name.isEmpty());
            QVERIFY(!d.spontaneous);
        }
        QCOMPARE(seen.size(), 2);
        QVERIFY2(seen.at(0) != seen.at(1), "each receiver gets its own event");
    }

    void postUsesNormalPriority()
    {
        Receiver r;
        bus()->Attach(kId, &r);
        QCoreApplication::postEvent(&r, new ZVCustomEvent(QEvent::Type(kOtherId), 1), Qt::LowEventPriority);
        bus()->PostEvent(kId, 2);
        QCoreApplication::postEvent(&r, new ZVCustomEvent(QEvent::Type(kOtherId), 3), Qt::HighEventPriority);
        QCoreApplication::processEvents();

        QCOMPARE(g_deliveries.size(), 3);
        QCOMPARE(g_deliveries.at(0).value, 3); // high
        QCOMPARE(g_deliveries.at(1).value, 2); // the bus: normal
        QCOMPARE(g_deliveries.at(2).value, 1); // low
    }

    void detachRemovesEveryReceiverOfTheId()
    {
        Receiver window;
        Receiver title;
        Receiver elsewhere;
        bus()->Attach(1000, &window);
        bus()->Attach(1000, &title);
        bus()->Attach(kId, &elsewhere);

        bus()->Detach(1000);
        bus()->PostEvent(1000, 1);
        bus()->PostEvent(kId, 1);
        QCoreApplication::processEvents();

        QCOMPARE(g_deliveries.size(), 1);
        QCOMPARE(g_deliveries.first().receiver, &elsewhere);
    }

    void detachOfUnknownIdIsHarmless()
    {
        Receiver r;
        bus()->Attach(kId, &r);
        bus()->Detach(kOtherId);
        bus()->PostEvent(kId, 1);
        QCoreApplication::processEvents();
        QCOMPARE(g_deliveries.size(), 1);
    }

    void sendDeliversBeforeReturning()
    {
        Receiver r;
        bus()->Attach(5000, &r);

        bus()->SendEvent(5000, 3);
        QCOMPARE(g_deliveries.size(), 1);
        const Delivery d = g_deliveries.first();
        QCOMPARE(d.receiver, &r);
        QCOMPARE(d.type, 5000);
        QCOMPARE(d.value, 3);
        QVERIFY(!d.spontaneous);

        // The event outlives the call: a receiver may keep the pointer it was given.
        QCOMPARE(int(d.event->type()), 5000);
        QCOMPARE(d.event->value, 3);
        delete d.event;
    }

    void sendCreatesOneEventPerReceiver()
    {
        Receiver a;
        Receiver b;
        bus()->Attach(kId, &a);
        bus()->Attach(kId, &b);
        bus()->SendEvent(kId, 4);
        QCOMPARE(g_deliveries.size(), 2);
        QCOMPARE(g_deliveries.at(0).receiver, &b);
        QCOMPARE(g_deliveries.at(1).receiver, &a);
        QVERIFY(g_deliveries.at(0).event != g_deliveries.at(1).event);
        delete g_deliveries.at(0).event;
        delete g_deliveries.at(1).event;
    }

    void unknownIdDoesNothing()
    {
        Receiver r;
        bus()->Attach(kId, &r);
        bus()->PostEvent(kOtherId, 1);
        bus()->SendEvent(kOtherId, 1);
        QCoreApplication::processEvents();
        QVERIFY(g_deliveries.isEmpty());
    }

    void nullReceiversAreSkipped()
    {
        Receiver r;
        bus()->Attach(kId, nullptr);
        bus()->Attach(kId, &r);
        bus()->Attach(kId, nullptr);

        bus()->PostEvent(kId, 1);
        QCoreApplication::processEvents();
        QCOMPARE(g_deliveries.size(), 1);

        g_deliveries.clear();
        bus()->SendEvent(kId, 2);
        QCOMPARE(g_deliveries.size(), 1);
        QCOMPARE(g_deliveries.first().value, 2);
        delete g_deliveries.first().event;

        g_deliveries.clear();
        bool destroyed = false;
        auto* event = new TrackedEvent(kId, 5, &destroyed);
        bus()->SendEvent(event);
        QCOMPARE(g_deliveries.size(), 1);
        QCOMPARE(g_deliveries.first().event, event);
        QVERIFY(!destroyed);
        delete event;
    }

    void destroyedReceiverIsSkipped()
    {
        Receiver survivor;
        auto* doomed = new Receiver;
        bus()->Attach(kId, &survivor);
        bus()->Attach(kId, doomed);
        delete doomed; // never detached

        bus()->PostEvent(kId, 1);
        bus()->SendEvent(kId, 2);
        QCoreApplication::processEvents();
        QCOMPARE(g_deliveries.size(), 2);
        QCOMPARE(g_deliveries.at(0).receiver, &survivor);
        QCOMPARE(g_deliveries.at(1).receiver, &survivor);
        delete g_deliveries.at(0).event; // the sent one, delivered first
    }

    void deliveryUsesTheListTakenBeforehand()
    {
        Receiver first;  // attached later, so delivered first
        Receiver second;
        Receiver newcomer;
        bus()->Attach(kId, &second);
        bus()->Attach(kId, &first);

        first.onEvent = [this, &newcomer](ZVCustomEvent*) {
            bus()->Attach(kId, &newcomer);
            bus()->Detach(kId);
            bus()->Attach(kId, &newcomer);
        };
        bus()->SendEvent(kId, 1);

        QCOMPARE(g_deliveries.size(), 2);
        QCOMPARE(g_deliveries.at(0).receiver, &first);
        QCOMPARE(g_deliveries.at(1).receiver, &second);
        delete g_deliveries.at(0).event;
        delete g_deliveries.at(1).event;

        // The change made during delivery holds for the next one.
        g_deliveries.clear();
        first.onEvent = nullptr;
        bus()->SendEvent(kId, 2);
        QCOMPARE(g_deliveries.size(), 1);
        QCOMPARE(g_deliveries.first().receiver, &newcomer);
        delete g_deliveries.first().event;
    }

    void postingTheCallersEventHandsItToQt()
    {
        Receiver r;
        bus()->Attach(1003, &r);
        bool destroyed = false;
        auto* event = new TrackedEvent(1003, 0, &destroyed);
        event->source = QStringLiteral("ZVMainWindowTitle");
        event->name = QStringLiteral("btn_min");
        event->triggerType = 3;

        bus()->PostEvent(event);
        QVERIFY(g_deliveries.isEmpty());
        QCoreApplication::processEvents();

        QCOMPARE(g_deliveries.size(), 1);
        const Delivery& d = g_deliveries.first();
        QCOMPARE(d.event, static_cast<ZVCustomEvent*>(event)); // the same object, no copy
        QCOMPARE(d.type, 1003);
        QCOMPARE(d.source, QStringLiteral("ZVMainWindowTitle"));
        QCOMPARE(d.name, QStringLiteral("btn_min"));
        QCOMPARE(d.triggerType, 3);
        QCOMPARE(d.value, 0);
        QVERIFY2(destroyed, "Qt's queue deletes the event it delivered");
    }

    void postingTheCallersEventWithoutReceiverLeavesItToTheCaller()
    {
        bool destroyed = false;
        auto* event = new TrackedEvent(kOtherId, 0, &destroyed);
        bus()->PostEvent(event);
        QCoreApplication::processEvents();
        QVERIFY(g_deliveries.isEmpty());
        QVERIFY(!destroyed);
        delete event;
        QVERIFY(destroyed);
    }

    void postingTheCallersEventToSeveralReceiversDoesNotDoubleDelete()
    {
        Receiver a;
        Receiver b;
        bus()->Attach(kId, &a);
        bus()->Attach(kId, &b);
        bool destroyed = false;
        auto* event = new TrackedEvent(kId, 6, &destroyed);
        event->name = QStringLiteral("n");

        bus()->PostEvent(event);
        QCoreApplication::processEvents();

        QCOMPARE(g_deliveries.size(), 2);
        QCOMPARE(g_deliveries.at(0).receiver, &b);
        QCOMPARE(g_deliveries.at(0).event, static_cast<ZVCustomEvent*>(event));
        QCOMPARE(g_deliveries.at(1).receiver, &a);
        QCOMPARE(g_deliveries.at(1).value, 6);
        QCOMPARE(g_deliveries.at(1).name, QStringLiteral("n"));
        QVERIFY(destroyed);
    }

    void sendingTheCallersEventKeepsItTheCallers()
    {
        Receiver a;
        Receiver b;
        bus()->Attach(kId, &a);
        bus()->Attach(kId, &b);
        bool destroyed = false;
        TrackedEvent event(kId, 8, &destroyed);

        bus()->SendEvent(&event);
        QCOMPARE(g_deliveries.size(), 2);
        QCOMPARE(g_deliveries.at(0).event, static_cast<ZVCustomEvent*>(&event));
        QCOMPARE(g_deliveries.at(1).event, static_cast<ZVCustomEvent*>(&event));
        QCOMPARE(g_deliveries.at(0).receiver, &b);
        QVERIFY(!destroyed);
    }

    void hasReceiver_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<bool>("expected");
        QTest::newRow("nothing attached") << "none" << false;
        QTest::newRow("one receiver") << "live" << true;
        QTest::newRow("only a null receiver") << "null" << false;
        QTest::newRow("only a destroyed receiver") << "destroyed" << false;
        QTest::newRow("a live one among null and destroyed ones") << "mixed" << true;
        QTest::newRow("attached, then detached") << "detached" << false;
        QTest::newRow("attached under another id") << "other" << false;
    }

    void hasReceiver()
    {
        QFETCH(QString, setup);
        QFETCH(bool, expected);
        Receiver live;
        auto* doomed = new Receiver;
        if (setup == QLatin1String("live")) {
            bus()->Attach(kId, &live);
        } else if (setup == QLatin1String("null")) {
            bus()->Attach(kId, nullptr);
        } else if (setup == QLatin1String("destroyed")) {
            bus()->Attach(kId, doomed);
        } else if (setup == QLatin1String("mixed")) {
            bus()->Attach(kId, nullptr);
            bus()->Attach(kId, doomed);
            bus()->Attach(kId, &live);
        } else if (setup == QLatin1String("detached")) {
            bus()->Attach(kId, &live);
            bus()->Detach(kId);
        } else if (setup == QLatin1String("other")) {
            bus()->Attach(kOtherId, &live);
        }
        delete doomed;

        QCOMPARE(bus()->HasReceiver(kId), expected);

        // It answers exactly whether posting the caller's event hands it over.
        bool destroyed = false;
        auto* event = new TrackedEvent(kId, 0, &destroyed);
        bus()->PostEvent(event);
        QCoreApplication::processEvents();
        QCOMPARE(destroyed, expected);
        if (!destroyed)
            delete event;
    }

    void nullEventPointersAreIgnored()
    {
        Receiver r;
        bus()->Attach(kId, &r);
        bus()->PostEvent(static_cast<ZVCustomEvent*>(nullptr));
        bus()->SendEvent(static_cast<ZVCustomEvent*>(nullptr));
        QCoreApplication::processEvents();
        QVERIFY(g_deliveries.isEmpty());
    }

    void separateBusesKeepSeparateTables()
    {
        ZVCustomEventSendObj own(nullptr);
        Receiver r;
        own.Attach(kId, &r);
        bus()->PostEvent(kId, 1);
        QCoreApplication::processEvents();
        QVERIFY(g_deliveries.isEmpty());
        own.PostEvent(kId, 1);
        QCoreApplication::processEvents();
        QCOMPARE(g_deliveries.size(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_ZVCustomEventSendObj)
#include "tst_zvcustomeventsendobj.moc"
