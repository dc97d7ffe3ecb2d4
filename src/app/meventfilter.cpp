#include "app/meventfilter.h"

#include <QEvent>

bool MEventFilter::isSwallowed(int eventType)
{
    switch (eventType) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
        return true;
    default:
        return false;
    }
}

bool MEventFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (isSwallowed(event->type()))
        return true;
    return QObject::eventFilter(watched, event);
}
