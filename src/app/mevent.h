#pragma once

#include <QPointF>
#include <Qt>

// One pen or mouse sample, as tools and brushes see it. The fourteen doubles
// from pressure to random are the brush inputs, indexed by MEnum::BrushInput.
class MEvent
{
public:
    MEvent();
    MEvent(const MEvent& other) = default;
    MEvent& operator=(const MEvent& other) = default;
    virtual ~MEvent() = default;

    // Back to the state of a new event: a mouse at full pressure, with a new random input.
    void reset();

    bool isControl() const { return (int(modifiers) & (1 << 26)) != 0; }
    bool isAlt() const { return (int(modifiers) & (1 << 27)) != 0; }

    // The input of that MEnum::BrushInput value; an index out of range reads
    // 0.0 and writes nothing.
    double input(int brushInput) const;
    void setInput(int brushInput, double value);

    // The drag move at t between a and b: every input blended linearly, with a
    // random input of its own.
    static MEvent interpolated(const MEvent& a, const MEvent& b, double t);

    // A random input: an integer of 0 to 32767 over 32767.0, so 0 to 1.
    static double randomInput();
    // Makes the random inputs repeatable, for tests and measurements.
    static void seedRandom(quint32 seed);

    int type = 0;
    int device = 1;
    int pointerType = 1;
    Qt::KeyboardModifiers modifiers;
    int buttons = 0;
    int button = 0;
    double pressure = 1.0;
    double tangentialPressure = 0.0;
    double xTilt = 0.0;
    double yTilt = 0.0;
    double positionX = 0.0;
    double positionY = 0.0;
    double directionX = 0.0;
    double directionY = 0.0;
    double speed = 0.0;
    double timeToPrevious = 0.0;
    double totalTime = 0.0;
    double distanceToPrevious = 0.0;
    double totalDistance = 0.0;
    double random = 0.0;
    QPointF widgetPosition;
};
