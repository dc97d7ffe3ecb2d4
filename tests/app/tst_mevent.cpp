#include "support/testenvironment.h"

#include "app/menum.h"
#include "app/mevent.h"

class TestEvent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewEventIsAMouseAtFullPressure();
    void inputsAreTheFieldsInEnumOrder();
    void interpolationBlendsTheInputs();
    void modifiers();
};

void TestEvent::aNewEventIsAMouseAtFullPressure()
{
    MEvent event;
    QCOMPARE(event.type, 0);
    QCOMPARE(event.device, 1);
    QCOMPARE(event.pointerType, 1);
    QCOMPARE(event.buttons, 0);
    QCOMPARE(event.button, 0);
    QCOMPARE(event.pressure, 1.0);
    QCOMPARE(event.widgetPosition, QPointF());
    QVERIFY(event.random >= 0.0 && event.random <= 1.0);
    for (int input = 0; input < MEnum::biCount; ++input) {
        if (input != MEnum::biPressure && input != MEnum::biRandom)
            QCOMPARE(event.input(input), 0.0);
    }

    event.type = 3;
    event.device = 4;
    event.buttons = 3;
    event.pressure = 0.2;
    event.speed = 9.0;
    event.widgetPosition = QPointF(3, 4);
    event.modifiers = Qt::ShiftModifier;
    const MEvent copy(event);
    QCOMPARE(copy.speed, 9.0);
    QCOMPARE(copy.widgetPosition, QPointF(3, 4));
    event.reset();
    QCOMPARE(event.type, 0);
    QCOMPARE(event.device, 1);
    QCOMPARE(event.buttons, 0);
    QCOMPARE(event.pressure, 1.0);
    QCOMPARE(event.speed, 0.0);
    QCOMPARE(event.modifiers, Qt::KeyboardModifiers());
    QCOMPARE(event.widgetPosition, QPointF());

    // Random inputs span 0 to 1 and differ from event to event.
    MEvent::seedRandom(7);
    QSet<double> seen;
    double low = 1.0;
    double high = 0.0;
    for (int i = 0; i < 2000; ++i) {
        const double r = MEvent().random;
        QVERIFY(r >= 0.0 && r <= 1.0);
        low = qMin(low, r);
        high = qMax(high, r);
        seen.insert(r);
    }
    QVERIFY(low < 0.01 && high > 0.99);
    QVERIFY(seen.size() > 1900);
    MEvent::seedRandom(7);
    const double first = MEvent::randomInput();
    MEvent::seedRandom(7);
    QCOMPARE(MEvent::randomInput(), first);
}

void TestEvent::inputsAreTheFieldsInEnumOrder()
{
    MEvent event;
    for (int input = 0; input < MEnum::biCount; ++input)
        event.setInput(input, 100.0 + input);
    QCOMPARE(event.pressure, 100.0);
    QCOMPARE(event.tangentialPressure, 101.0);
    QCOMPARE(event.xTilt, 102.0);
    QCOMPARE(event.yTilt, 103.0);
    QCOMPARE(event.positionX, 104.0);
    QCOMPARE(event.positionY, 105.0);
    QCOMPARE(event.directionX, 106.0);
    QCOMPARE(event.directionY, 107.0);
    QCOMPARE(event.speed, 108.0);
    QCOMPARE(event.timeToPrevious, 109.0);
    QCOMPARE(event.totalTime, 110.0);
    QCOMPARE(event.distanceToPrevious, 111.0);
    QCOMPARE(event.totalDistance, 112.0);
    QCOMPARE(event.random, 113.0);
    event.totalTime = -4.5;
    QCOMPARE(event.input(MEnum::biTotalTime), -4.5);

    // Out of range reads 0 and writes nothing.
    event.setInput(MEnum::biCount, 5.0);
    event.setInput(-1, 5.0);
    QCOMPARE(event.input(MEnum::biCount), 0.0);
    QCOMPARE(event.input(-1), 0.0);
    QCOMPARE(event.type, 0);
    QCOMPARE(event.random, 113.0);
}

void TestEvent::interpolationBlendsTheInputs()
{
    MEvent a;
    MEvent b;
    a.type = 0;
    a.buttons = 1;
    a.device = 2;
    a.widgetPosition = QPointF(10, 20);
    b.type = 3;
    b.buttons = 0;
    b.widgetPosition = QPointF(50, 60);
    for (int input = 0; input < MEnum::biCount; ++input) {
        a.setInput(input, input);
        b.setInput(input, 10.0 * input + 4.0);
    }
    MEvent::seedRandom(11);
    const MEvent middle = MEvent::interpolated(a, b, 0.25);
    QCOMPARE(middle.type, 2);
    QCOMPARE(middle.buttons, 1);
    QCOMPARE(middle.device, 2);
    QCOMPARE(middle.widgetPosition, QPointF(10, 20));
    for (int input = 0; input < MEnum::biRandom; ++input)
        QCOMPARE(middle.input(input), input * 0.75 + (10.0 * input + 4.0) * 0.25);
    // The random input is drawn anew, not blended.
    MEvent::seedRandom(11);
    QCOMPARE(middle.random, MEvent::randomInput());
    QCOMPARE(MEvent::interpolated(a, b, 1.0).positionX, b.positionX);
}

void TestEvent::modifiers()
{
    MEvent event;
    QVERIFY(!event.isControl());
    QVERIFY(!event.isAlt());
    event.modifiers = Qt::ControlModifier | Qt::ShiftModifier;
    QVERIFY(event.isControl());
    QVERIFY(!event.isAlt());
    event.modifiers = Qt::AltModifier;
    QVERIFY(!event.isControl());
    QVERIFY(event.isAlt());
}

QUILLMERE_TEST_MAIN(TestEvent)
#include "tst_mevent.moc"
