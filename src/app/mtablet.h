#pragma once

#include "app/msingleton.h"

#include <QObject>

// The state of the stylus, as the last tablet event left it. Installed as an
// event filter on the application (and on the view); it only observes, and the
// view reads it when the mouse event made from a tablet event arrives.
class MTablet : public QObject, public MSingleton<MTablet>
{
    Q_OBJECT
    Q_PROPERTY(int pointerType READ pointerType WRITE set_pointerType NOTIFY pointerTypeChanged)
    Q_PROPERTY(int device READ device WRITE set_device NOTIFY deviceChanged)
    Q_PROPERTY(
        int proximityDevice READ proximityDevice WRITE set_proximityDevice NOTIFY proximityDeviceChanged)
    Q_PROPERTY(double pressure READ pressure WRITE set_pressure NOTIFY pressureChanged)
    Q_PROPERTY(double tangentialPressure READ tangentialPressure WRITE set_tangentialPressure NOTIFY
                   tangentialPressureChanged)
    Q_PROPERTY(int xTilt READ xTilt WRITE set_xTilt NOTIFY xTiltChanged)
    Q_PROPERTY(int yTilt READ yTilt WRITE set_yTilt NOTIFY yTiltChanged)
    Q_PROPERTY(bool on READ on WRITE set_on NOTIFY onChanged)

public:
    MTablet() = default;

    int pointerType() const { return m_pointerType; }
    int device() const { return m_device; }
    int proximityDevice() const { return m_proximityDevice; }
    double pressure() const { return m_pressure; }
    double tangentialPressure() const { return m_tangentialPressure; }
    int xTilt() const { return m_xTilt; }
    int yTilt() const { return m_yTilt; }
    bool on() const { return m_on; }

    // Records press, move and release of the stylus; never consumes an event.
    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    void set_pointerType(int value);
    void set_device(int value);
    void set_proximityDevice(int value);
    void set_pressure(double value);
    // Emits pressureChanged, as listeners of the pressure expect both.
    void set_tangentialPressure(double value);
    void set_xTilt(int value);
    void set_yTilt(int value);
    void set_on(bool value);

Q_SIGNALS:
    void pointerTypeChanged(int value);
    void deviceChanged(int value);
    void proximityDeviceChanged(int value);
    void pressureChanged(double value);
    // Never sent: the tangential pressure's changes go out as pressureChanged.
    void tangentialPressureChanged(double value);
    void xTiltChanged(int value);
    void yTiltChanged(int value);
    void onChanged(bool value);

private:
    int m_pointerType = 0;
    int m_device = 0;
    int m_proximityDevice = 0;
    double m_pressure = 0.0;
    double m_tangentialPressure = 0.0;
    int m_xTilt = 0;
    int m_yTilt = 0;
    bool m_on = false;
};
