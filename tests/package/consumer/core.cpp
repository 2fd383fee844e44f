// A host's view of the event bus: two receivers under 1002, one under 5000.
#include <ZVCore/ZVCoreVersion>
#include <ZVCore/ZVCustomEvent>
#include <ZVCore/ZVCustomEventSendObj>
#include <ZVControl/ZVStyleWidget>
#include <ZVFoundation/CSimpleCrypt>

#include <QtWidgets/QApplication>

#include <cstdio>
#include <vector>

namespace {

struct Seen
{
    QObject* receiver;
    ZVCustomEvent* event;
    int type;
    int value;
};
std::vector<Seen> g_seen;

class Receiver : public QObject
{
protected:
    void customEvent(QEvent* e) override
    {
        auto* ce = static_cast<ZVCustomEvent*>(e);
        g_seen.push_back({this, ce, int(ce->type()), ce->value});
    }
};

int fail(const char* what)
{
    std::fprintf(stderr, "consumer_core: %s\n", what);
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (ZVUIFramework::ZVCoreVersion() != QStringLiteral(ZVCORE_VERSION_STRING))
        return fail("runtime and compile-time versions differ");

    Receiver first;
    Receiver second;
    ZVCustomEventSendObj* bus = ZVCustomEventSendObj::GetInstance();
    bus->Attach(1002, &first);
    bus->Attach(1002, &second);
    bus->PostEvent(1002, 1);
    if (!g_seen.empty())
        return fail("PostEvent delivered before the event loop ran");
    QCoreApplication::processEvents();
    if (g_seen.size() != 2)
        return fail("PostEvent(1002, 1) did not reach both receivers");
    if (g_seen[0].receiver != &second || g_seen[1].receiver != &first)
        return fail("the later-attached receiver was not served first");
    if (g_seen[0].event == g_seen[1].event)
        return fail("the receivers shared one event");
    for (const Seen& s : g_seen) {
        if (s.type != 1002 || s.value != 1)
            return fail("wrong type or value for 1002");
    }

    g_seen.clear();
    Receiver third;
    bus->Attach(5000, &third);
    bus->SendEvent(5000, 3);
    if (g_seen.size() != 1 || g_seen[0].receiver != &third || g_seen[0].type != 5000 || g_seen[0].value != 3)
        return fail("SendEvent(5000, 3) was not delivered before returning");
    delete g_seen[0].event;

    // The other two libraries come along with ZVCore::ZVCore.
    ZVStyleWidget widget;
    widget.setEnabledMouseDrag(&widget, true);
    CSimpleCrypt crypt(0x1234);
    if (crypt.decryptToString(crypt.encryptToString(QStringLiteral("ok"))) != QStringLiteral("ok"))
        return fail("CSimpleCrypt round trip failed");

    std::printf("consumer_core: ZVCore %s works\n", qPrintable(ZVUIFramework::ZVCoreVersion()));
    return 0;
}
