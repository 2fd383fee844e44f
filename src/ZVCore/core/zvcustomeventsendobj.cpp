#include "zvcustomeventsendobj.h"
#include "zvcustomeventsendobj_p.h"

#include <ZVCore/ZVCustomEvent>

#include <QtCore/QCoreApplication>

namespace {
// The instance pointer. It is never replaced while its object lives; it only becomes
// null when the application object, its parent, has deleted it, so that a later call
// builds a new bus instead of handing out a dangling pointer.
QPointer<ZVCustomEventSendObj> ms_pCustomEventSendObj;
} // namespace

ZVCustomEventSendObj::ZVCustomEventSendObj(QObject* parent)
    : QObject(parent)
    , d_ptr(new ZVCustomEventSendObjPrivate)
{
}

ZVCustomEventSendObj::~ZVCustomEventSendObj() = default;

ZVCustomEventSendObj* ZVCustomEventSendObj::GetInstance()
{
    if (!ms_pCustomEventSendObj)
        ms_pCustomEventSendObj = new ZVCustomEventSendObj(QCoreApplication::instance());
    return ms_pCustomEventSendObj.data();
}

void ZVCustomEventSendObj::Attach(const int& id, QObject* receiver)
{
    Q_D(ZVCustomEventSendObj);
    for (auto it = d->receivers.constFind(id); it != d->receivers.cend() && it.key() == id; ++it) {
        if (it.value().data() == receiver)
            return;
    }
    d->receivers.insert(id, receiver);
}

void ZVCustomEventSendObj::Detach(const int& id)
{
    Q_D(ZVCustomEventSendObj);
    d->receivers.remove(id);
}

bool ZVCustomEventSendObj::HasReceiver(const int& id) const
{
    Q_D(const ZVCustomEventSendObj);
    const QList<QPointer<QObject>> targets = d->receiversOf(id);
    for (const QPointer<QObject>& receiver : targets) {
        if (receiver)
            return true;
    }
    return false;
}

void ZVCustomEventSendObj::PostEvent(const int& id, int value)
{
    Q_D(ZVCustomEventSendObj);
    // A copy of the list: receivers attached or detached by a delivery do not change
    // the delivery under way.
    const QList<QPointer<QObject>> targets = d->receiversOf(id);
    for (const QPointer<QObject>& receiver : targets) {
        if (!receiver)
            continue;
        QCoreApplication::postEvent(receiver.data(), new ZVCustomEvent(QEvent::Type(id), value),
                                    Qt::NormalEventPriority);
    }
}

void ZVCustomEventSendObj::PostEvent(ZVCustomEvent* event)
{
    Q_D(ZVCustomEventSendObj);
    if (!event)
        return;
    QList<QObject*> live;
    for (const QPointer<QObject>& receiver : d->receiversOf(int(event->type()))) {
        if (receiver)
            live.append(receiver.data());
    }
    if (live.isEmpty())
        return; // nothing queued: the event stays the caller's

    // Qt's queue deletes every event it delivers, so one object can be queued once only.
    // An id with several receivers gives the later ones copies, made before the original
    // is queued, rather than a double deletion.
    QList<ZVCustomEvent*> events{event};
    for (int i = 1; i < live.size(); ++i)
        events.append(new ZVCustomEvent(*event));
    for (int i = 0; i < live.size(); ++i)
        QCoreApplication::postEvent(live.at(i), events.at(i), Qt::NormalEventPriority);
}

void ZVCustomEventSendObj::SendEvent(const int& id, int value)
{
    Q_D(ZVCustomEventSendObj);
    const QList<QPointer<QObject>> targets = d->receiversOf(id);
    for (const QPointer<QObject>& receiver : targets) {
        if (!receiver)
            continue;
        // A new event is not spontaneous: it comes from the application, not from the
        // window system. It is deliberately not deleted after delivery, so a receiver
        // may keep the pointer it was given.
        auto* event = new ZVCustomEvent(QEvent::Type(id), value);
        QCoreApplication::sendEvent(receiver.data(), event);
    }
}

void ZVCustomEventSendObj::SendEvent(ZVCustomEvent* event)
{
    Q_D(ZVCustomEventSendObj);
    if (!event)
        return;
    const QList<QPointer<QObject>> targets = d->receiversOf(int(event->type()));
    for (const QPointer<QObject>& receiver : targets) {
        if (receiver)
            QCoreApplication::sendEvent(receiver.data(), event);
    }
}
