#include "app/mevent.h"

#include "app/menum.h"

#include <QRandomGenerator>

namespace {

// The inputs in MEnum::BrushInput order.
double MEvent::*const inputMembers[MEnum::biCount] = {
    &MEvent::pressure,      &MEvent::tangentialPressure,
    &MEvent::xTilt,         &MEvent::yTilt,
    &MEvent::positionX,     &MEvent::positionY,
    &MEvent::directionX,    &MEvent::directionY,
    &MEvent::speed,         &MEvent::timeToPrevious,
    &MEvent::totalTime,     &MEvent::distanceToPrevious,
    &MEvent::totalDistance, &MEvent::random,
};

QRandomGenerator& randomGenerator()
{
    static QRandomGenerator generator(QRandomGenerator::global()->generate());
    return generator;
}

} // namespace

MEvent::MEvent()
{
    random = randomInput();
}

void MEvent::reset()
{
    *this = MEvent();
}

double MEvent::input(int brushInput) const
{
    if (brushInput < 0 || brushInput >= MEnum::biCount)
        return 0.0;
    return this->*inputMembers[brushInput];
}

void MEvent::setInput(int brushInput, double value)
{
    if (brushInput < 0 || brushInput >= MEnum::biCount)
        return;
    this->*inputMembers[brushInput] = value;
}

MEvent MEvent::interpolated(const MEvent& a, const MEvent& b, double t)
{
    MEvent event(a);
    event.type = 2;
    for (double MEvent::*member : inputMembers)
        event.*member = a.*member * (1.0 - t) + b.*member * t;
    event.random = randomInput();
    return event;
}

double MEvent::randomInput()
{
    // The divisor is fixed whatever the platform's RAND_MAX: brushes were tuned
    // against a range of 0 to 32767.
    return double(randomGenerator().bounded(32768)) / 32767.0;
}

void MEvent::seedRandom(quint32 seed)
{
    randomGenerator().seed(seed);
}
