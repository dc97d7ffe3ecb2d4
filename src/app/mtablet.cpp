#include "app/mtablet.h"

#include <QEvent>
#include <QTabletEvent>

namespace {

// Pressures live in 0..1, where a relative comparison would call 0 and 1e-9
// different: the comparison is made on 1 + value.
bool fuzzyEqual(double a, double b)
{
    return qFuzzyCompare(1.0 + a, 1.0 + b);
}

} // namespace

bool MTablet::eventFilter(QObject* watched, QEvent* event)
{
    Q_UNUSED(watched)
    const QEvent::Type type = event->type();
    if (type != QEvent::TabletPress && type != QEvent::TabletMove && type != QEvent::TabletRelease)
        return false;
    const auto* tablet = static_cast<QTabletEvent*>(event);
    set_pressure(tablet->pressure());
    set_pointerType(int(tablet->pointerType()));
    set_device(int(tablet->deviceType()));
    set_tangentialPressure(tablet->tangentialPressure());
    set_xTilt(tablet->xTilt());
    set_yTilt(tablet->yTilt());
    if (type == QEvent::TabletPress)
        set_on(true);
    else if (type == QEvent::TabletRelease)
        set_on(false);
    return false;
}

void MTablet::set_pointerType(int value)
{
    if (value == m_pointerType)
        return;
    m_pointerType = value;
    Q_EMIT pointerTypeChanged(value);
}

void MTablet::set_device(int value)
{
    if (value == m_device)
        return;
    m_device = value;
    Q_EMIT deviceChanged(value);
}

void MTablet::set_proximityDevice(int value)
{
    if (value == m_proximityDevice)
        return;
    m_proximityDevice = value;
    Q_EMIT proximityDeviceChanged(value);
}

void MTablet::set_pressure(double value)
{
    if (fuzzyEqual(value, m_pressure))
        return;
    m_pressure = value;
    Q_EMIT pressureChanged(value);
}

void MTablet::set_tangentialPressure(double value)
{
    if (fuzzyEqual(value, m_tangentialPressure))
        return;
    m_tangentialPressure = value;
    Q_EMIT pressureChanged(value);
}

void MTablet::set_xTilt(int value)
{
    if (value == m_xTilt)
        return;
    m_xTilt = value;
    Q_EMIT xTiltChanged(value);
}

void MTablet::set_yTilt(int value)
{
    if (value == m_yTilt)
        return;
    m_yTilt = value;
    Q_EMIT yTiltChanged(value);
}

void MTablet::set_on(bool value)
{
    if (value == m_on)
        return;
    m_on = value;
    Q_EMIT onChanged(value);
}
