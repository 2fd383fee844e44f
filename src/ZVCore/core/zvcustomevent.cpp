#include "zvcustomevent.h"

ZVCustomEvent::ZVCustomEvent(QEvent::Type id, int value)
    : QEvent(id)
    , value(value)
{
}

ZVCustomEvent::~ZVCustomEvent() = default;
