#ifndef ZVCORE_ZVCUSTOMEVENTSENDOBJ_P_H
#define ZVCORE_ZVCUSTOMEVENTSENDOBJ_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <QtCore/QMultiMap>
#include <QtCore/QObject>
#include <QtCore/QPointer>

class ZVCustomEventSendObjPrivate
{
public:
    // Receivers by event id. Equal keys keep the most recently attached first, which is
    // the delivery order. Guarded pointers turn a receiver that died without detaching
    // into a null entry, which delivery skips.
    QMultiMap<int, QPointer<QObject>> receivers;

    QList<QPointer<QObject>> receiversOf(int id) const { return receivers.values(id); }
};

#endif // ZVCORE_ZVCUSTOMEVENTSENDOBJ_P_H
