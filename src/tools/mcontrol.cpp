#include "tools/mcontrol.h"

#include "app/mevent.h"

MControl::MControl(QObject* parent) : QObject(parent) {}

bool MControl::handleEvent(MEvent* event)
{
    if (!event)
        return false;
    switch (event->type) {
    case 0:
        return mousePress(event);
    case 1:
        return hoverMove(event);
    case 2:
        return mouseMove(event);
    case 3:
        return mouseRelease(event);
    default:
        return false;
    }
}

QRectF MControl::boundingRect()
{
    return QRectF();
}

void MControl::render() {}

void MControl::paint(QPainter* painter)
{
    Q_UNUSED(painter)
}

void MControl::refresh() {}

bool MControl::mousePress(MEvent* event)
{
    Q_UNUSED(event)
    return false;
}

bool MControl::mouseMove(MEvent* event)
{
    Q_UNUSED(event)
    return false;
}

bool MControl::mouseRelease(MEvent* event)
{
    Q_UNUSED(event)
    return false;
}

bool MControl::hoverMove(MEvent* event)
{
    Q_UNUSED(event)
    return false;
}

bool MControl::wheel(MEvent* event)
{
    Q_UNUSED(event)
    return false;
}

bool MControl::keyPress(MEvent* event)
{
    Q_UNUSED(event)
    return false;
}

void MControl::set_enabled(bool value)
{
    if (value == m_enabled)
        return;
    m_enabled = value;
    Q_EMIT enabledChanged(value);
}

void MControl::set_visible(bool value)
{
    if (value == m_visible)
        return;
    m_visible = value;
    Q_EMIT visibleChanged(value);
}
