#ifndef ZVCORE_ZVCUSTOMEVENTSENDOBJ_H
#define ZVCORE_ZVCUSTOMEVENTSENDOBJ_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QObject>
#include <QtCore/QScopedPointer>

class ZVCustomEvent;
class ZVCustomEventSendObjPrivate;

/*!
 * The in-process event bus. Receivers attach under an integer id; posting or sending an
 * id delivers a ZVCustomEvent whose type is that id to every receiver of the id, the most
 * recently attached first. Receivers handle the events in their \c customEvent.
 *
 * \code
 * ZVCustomEventSendObj::GetInstance()->Attach(1002, myWindow);   // language changed
 * ZVCustomEventSendObj::GetInstance()->PostEvent(1002, 1);        // queued
 * ZVCustomEventSendObj::GetInstance()->SendEvent(5000, 3);        // delivered at once
 * \endcode
 *
 * The bus is meant for the GUI thread only and takes no locks.
 */
class ZVCORE_EXPORT ZVCustomEventSendObj : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(ZVCustomEventSendObj)

public:
    explicit ZVCustomEventSendObj(QObject* parent);
    ~ZVCustomEventSendObj() override;

    /// The process-wide bus, created on first call as a child of the application object.
    static ZVCustomEventSendObj* GetInstance();

    /// Adds (id, receiver) unless that exact pair is attached already.
    void Attach(const int& id, QObject* receiver);
    /// Removes every receiver of the id.
    void Detach(const int& id);
    /// Whether a receiver that is still alive is attached under the id, i.e. whether
    /// PostEvent(ZVCustomEvent*) would hand an event of that type to Qt.
    bool HasReceiver(const int& id) const;

    /// Queues a new event (id, value) for each receiver; Qt's queue owns each one.
    void PostEvent(const int& id, int value);
    /// Queues the caller's event for the receivers of its type. Once queued, Qt owns it;
    /// with no receiver it stays the caller's.
    void PostEvent(ZVCustomEvent* event);

    /// Delivers a new event (id, value) to each receiver before returning.
    void SendEvent(const int& id, int value);
    /// Delivers the caller's event to each receiver of its type; the caller keeps it.
    void SendEvent(ZVCustomEvent* event);

private:
    QScopedPointer<ZVCustomEventSendObjPrivate> d_ptr;
};

#endif // ZVCORE_ZVCUSTOMEVENTSENDOBJ_H
