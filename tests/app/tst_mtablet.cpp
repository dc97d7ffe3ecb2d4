// The stylus observer: what each tablet event changes and signals, and that it
// never takes an event away from its receiver.

#include "support/testenvironment.h"

#include "app/mtablet.h"

#include <QMouseEvent>
#include <QSignalSpy>
#include <QTabletEvent>
#include <QWidget>

namespace {

QTabletEvent tabletEvent(QEvent::Type type, double pressure, int xTilt = 0, int yTilt = 0,
                         double tangential = 0.0, QTabletEvent::PointerType pointer = QTabletEvent::Pen)
{
    const Qt::MouseButton button = type == QEvent::TabletMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons buttons = type == QEvent::TabletPress ? Qt::LeftButton : Qt::NoButton;
    return QTabletEvent(type, QPointF(10, 10), QPointF(110, 110), QTabletEvent::Stylus, pointer, pressure,
                        xTilt, yTilt, tangential, 0.0, 0, Qt::NoModifier, 77, button, buttons);
}

// Widgets that take every tablet event, to show that the filter lets them through.
class Receiver : public QWidget
{
public:
    int received = 0;

protected:
    void tabletEvent(QTabletEvent* event) override
    {
        ++received;
        event->accept();
    }
};

} // namespace

class TestMTablet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pressMoveRelease();
    void hoverKeepsOnFalse();
    void tangentialPressureGoesOutAsPressure();
    void onlyTabletEventsCount();
    void applicationWideObserver();
};

void TestMTablet::pressMoveRelease()
{
    MTablet tablet;
    QSignalSpy pressure(&tablet, &MTablet::pressureChanged);
    QSignalSpy pointer(&tablet, &MTablet::pointerTypeChanged);
    QSignalSpy device(&tablet, &MTablet::deviceChanged);
    QSignalSpy xTilt(&tablet, &MTablet::xTiltChanged);
    QSignalSpy yTilt(&tablet, &MTablet::yTiltChanged);
    QSignalSpy on(&tablet, &MTablet::onChanged);

    QTabletEvent press = tabletEvent(QEvent::TabletPress, 0.5, 12, -7);
    QVERIFY(!tablet.eventFilter(nullptr, &press));
    QCOMPARE(tablet.pressure(), 0.5);
    QCOMPARE(tablet.pointerType(), int(QTabletEvent::Pen));
    QCOMPARE(tablet.device(), int(QTabletEvent::Stylus));
    QCOMPARE(tablet.xTilt(), 12);
    QCOMPARE(tablet.yTilt(), -7);
    QVERIFY(tablet.on());
    QCOMPARE(pressure.size(), 1);
    QCOMPARE(pressure.at(0).at(0).toDouble(), 0.5);
    QCOMPARE(pointer.size(), 1);
    QCOMPARE(device.size(), 1);
    QCOMPARE(xTilt.size(), 1);
    QCOMPARE(yTilt.size(), 1);
    QCOMPARE(on.size(), 1);
    QCOMPARE(on.at(0).at(0).toBool(), true);

    // The same values again change nothing and signal nothing, nor does a
    // difference below the fuzzy comparison.
    QTabletEvent same = tabletEvent(QEvent::TabletMove, 0.5 + 1e-15, 12, -7);
    QVERIFY(!tablet.eventFilter(nullptr, &same));
    QCOMPARE(pressure.size(), 1);
    QCOMPARE(pointer.size(), 1);
    QCOMPARE(device.size(), 1);
    QCOMPARE(xTilt.size(), 1);
    QCOMPARE(on.size(), 1);
    QVERIFY(tablet.on());

    // A drag changes only what differs.
    QTabletEvent drag = tabletEvent(QEvent::TabletMove, 0.75, 12, 3);
    tablet.eventFilter(nullptr, &drag);
    QCOMPARE(pressure.size(), 2);
    QCOMPARE(xTilt.size(), 1);
    QCOMPARE(yTilt.size(), 2);
    QCOMPARE(tablet.yTilt(), 3);
    QVERIFY(tablet.on());

    // Pressure near zero is still told apart from zero.
    QTabletEvent light = tabletEvent(QEvent::TabletMove, 0.001, 12, 3);
    tablet.eventFilter(nullptr, &light);
    QCOMPARE(tablet.pressure(), 0.001);
    QCOMPARE(pressure.size(), 3);

    QTabletEvent release = tabletEvent(QEvent::TabletRelease, 0.0, 12, 3);
    QVERIFY(!tablet.eventFilter(nullptr, &release));
    QVERIFY(!tablet.on());
    QCOMPARE(on.size(), 2);
    QCOMPARE(on.at(1).at(0).toBool(), false);
    QCOMPARE(tablet.pressure(), 0.0);

    // The eraser end changes the pointer type.
    QTabletEvent eraser = tabletEvent(QEvent::TabletPress, 0.2, 12, 3, 0.0, QTabletEvent::Eraser);
    tablet.eventFilter(nullptr, &eraser);
    QCOMPARE(tablet.pointerType(), int(QTabletEvent::Eraser));
    QCOMPARE(pointer.size(), 2);
}

void TestMTablet::hoverKeepsOnFalse()
{
    MTablet tablet;
    QSignalSpy on(&tablet, &MTablet::onChanged);
    QSignalSpy pressure(&tablet, &MTablet::pressureChanged);
    for (double value : {0.1, 0.3, 0.0, 0.6}) {
        QTabletEvent hover = tabletEvent(QEvent::TabletMove, value);
        tablet.eventFilter(nullptr, &hover);
        QCOMPARE(tablet.pressure(), value);
        QVERIFY(!tablet.on());
    }
    QCOMPARE(on.size(), 0);
    QCOMPARE(pressure.size(), 4);
}

void TestMTablet::tangentialPressureGoesOutAsPressure()
{
    MTablet tablet;
    QSignalSpy pressure(&tablet, &MTablet::pressureChanged);
    QSignalSpy tangential(&tablet, &MTablet::tangentialPressureChanged);

    // Through the filter: pressure and tangential pressure each signal once, on
    // the same signal, in that order.
    QTabletEvent event = tabletEvent(QEvent::TabletMove, 0.4, 0, 0, -0.25);
    tablet.eventFilter(nullptr, &event);
    QCOMPARE(tablet.tangentialPressure(), -0.25);
    QCOMPARE(pressure.size(), 2);
    QCOMPARE(pressure.at(0).at(0).toDouble(), 0.4);
    QCOMPARE(pressure.at(1).at(0).toDouble(), -0.25);

    // Through the setter, with its change test.
    tablet.set_tangentialPressure(-0.25);
    QCOMPARE(pressure.size(), 2);
    tablet.set_tangentialPressure(0.5);
    QCOMPARE(pressure.size(), 3);
    QCOMPARE(pressure.at(2).at(0).toDouble(), 0.5);
    QCOMPARE(tablet.pressure(), 0.4);
    QCOMPARE(tangential.size(), 0);

    // The proximity device is written from outside; its setter signals changes only.
    QSignalSpy proximity(&tablet, &MTablet::proximityDeviceChanged);
    tablet.set_proximityDevice(int(QTabletEvent::Pen));
    tablet.set_proximityDevice(int(QTabletEvent::Pen));
    QCOMPARE(proximity.size(), 1);
    QCOMPARE(tablet.proximityDevice(), int(QTabletEvent::Pen));
}

void TestMTablet::onlyTabletEventsCount()
{
    MTablet tablet;
    QSignalSpy pressure(&tablet, &MTablet::pressureChanged);
    QSignalSpy on(&tablet, &MTablet::onChanged);
    QMouseEvent mouse(QEvent::MouseButtonPress, QPointF(1, 1), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QVERIFY(!tablet.eventFilter(nullptr, &mouse));
    QTabletEvent proximity(QEvent::TabletEnterProximity, QPointF(), QPointF(), QTabletEvent::Stylus,
                           QTabletEvent::Pen, 0.9, 0, 0, 0.0, 0.0, 0, Qt::NoModifier, 77, Qt::NoButton,
                           Qt::NoButton);
    QVERIFY(!tablet.eventFilter(nullptr, &proximity));
    QCOMPARE(pressure.size(), 0);
    QCOMPARE(on.size(), 0);
    QCOMPARE(tablet.pressure(), 0.0);
}

void TestMTablet::applicationWideObserver()
{
    MTablet tablet;
    qApp->installEventFilter(&tablet);
    Receiver receiver;
    // Moves without a button reach a widget only with tablet tracking.
    receiver.setAttribute(Qt::WA_TabletTracking);
    QTabletEvent press = tabletEvent(QEvent::TabletPress, 0.35);
    QApplication::sendEvent(&receiver, &press);
    QTabletEvent move = tabletEvent(QEvent::TabletMove, 0.65);
    QApplication::sendEvent(&receiver, &move);
    qApp->removeEventFilter(&tablet);

    // Both reached the widget, and the observer kept the last state.
    QCOMPARE(receiver.received, 2);
    QVERIFY(press.isAccepted());
    QCOMPARE(tablet.pressure(), 0.65);
    QVERIFY(tablet.on());
}

QUILLMERE_TEST_MAIN(TestMTablet)
#include "tst_mtablet.moc"
