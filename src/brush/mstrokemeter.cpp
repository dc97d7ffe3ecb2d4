#include "brush/mstrokemeter.h"

#include "app/mevent.h"

#include <algorithm>
#include <cmath>

MStrokeMeter::MStrokeMeter() : m_distanceFilter(1.0, 0.007, 1.0), m_speedFilter(1.0, 0.007, 1.0) {}

void MStrokeMeter::press(MEvent* event)
{
    if (!event)
        return;
    m_timeAccumulator = 0.0;
    m_distanceAccumulator = 0.0;
    m_lastPosition = QPointF(event->positionX, event->positionY);
    event->timeToPrevious = 0.0;
    event->totalTime = 0.0;
    event->distanceToPrevious = 0.0;
    event->totalDistance = 0.0;
    event->directionX = 0.0;
    event->directionY = 0.0;
    m_speed = 2.0;
    event->speed = m_speed;
    m_distanceFilter.reset();
}

bool MStrokeMeter::move(MEvent* event, double ms, double accumulatorDistance)
{
    if (!event)
        return false;
    const double distance =
        std::hypot(event->positionX - m_lastPosition.x(), event->positionY - m_lastPosition.y());
    if (!(distance >= minimumDistance) || (accumulatorDistance != 0.0 && distance < accumulatorDistance))
        return false;
    measure(event, std::max(ms, 0.0));
    m_lastPosition = QPointF(event->positionX, event->positionY);
    return true;
}

void MStrokeMeter::release(MEvent* event, double ms)
{
    if (!event)
        return;
    measure(event, ms);
    m_timeAccumulator = 0.0;
}

void MStrokeMeter::measure(MEvent* event, double ms)
{
    const double vx = event->positionX - m_lastPosition.x();
    const double vy = event->positionY - m_lastPosition.y();
    const double distance = std::hypot(vx, vy);
    event->directionX = distance > 0.0 ? vx / distance : 0.0;
    event->directionY = distance > 0.0 ? vy / distance : 0.0;
    event->timeToPrevious = ms;
    m_timeAccumulator += ms;
    event->totalTime = m_timeAccumulator;
    const double filtered = m_distanceFilter.filter(distance, m_timeAccumulator / 1000.0);
    event->distanceToPrevious = filtered;
    m_distanceAccumulator += filtered;
    event->totalDistance = m_distanceAccumulator;
    // Two samples in the same millisecond keep the speed they had.
    if (ms != 0.0)
        m_speed = m_speedFilter.filter(filtered / ms, m_timeAccumulator / 1000.0);
    event->speed = m_speed;
}
