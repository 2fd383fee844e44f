#ifndef ZVCORE_ZVCUSTOMEVENT_H
#define ZVCORE_ZVCUSTOMEVENT_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QEvent>
#include <QtCore/QString>

/*!
 * An event of the framework's event bus. Its Qt event type is the bus id itself, so a
 * receiver tells events apart by comparing \c type() with the ids it attached to.
 *
 * \code
 * void MyWindow::customEvent(QEvent* event)
 * {
 *     if (event->type() == QEvent::Type(1003)) {
 *         auto* e = static_cast<ZVCustomEvent*>(event);
 *         qDebug() << e->source << e->name << e->triggerType << e->value;
 *     }
 * }
 * \endcode
 */
class ZVCORE_EXPORT ZVCustomEvent : public QEvent
{
public:
    ZVCustomEvent(QEvent::Type id, int value);
    ~ZVCustomEvent() override;

    /// Name of the posting class; empty unless the poster fills it.
    QString source;
    /// Object name concerned; empty unless filled.
    QString name;
    /// Extra integer, for instance the Qt event type that caused the event.
    int triggerType = 0;
    /// The value given to the constructor.
    int value = 0;
};

#endif // ZVCORE_ZVCUSTOMEVENT_H
