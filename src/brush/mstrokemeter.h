#pragma once

#include "brush/msmoothfilter.h"

#include <QPointF>

class MEvent;

// Measures the stroke inputs of the view's events: direction, time and distance
// to the previous kept sample, their running totals, and speed. Distance and
// speed go through adaptive filters, so that jitter of the hand doesn't show as
// jumps in speed-driven brush settings. The caller brings the elapsed time,
// the meter keeps everything else between samples.
class MStrokeMeter
{
public:
    // Moves shorter than this, in canvas pixels, are dropped.
    static constexpr double minimumDistance = 0.2;

    MStrokeMeter();
    virtual ~MStrokeMeter() = default;

    // Starts a stroke at the event's position: no time, no distance, no
    // direction, speed 2.
    void press(MEvent* event);
    // ms since the last kept sample. False, and nothing kept, for a move under
    // minimumDistance, or under accumulatorDistance when that isn't 0: the last
    // position stays, so that short moves add up until one is long enough.
    bool move(MEvent* event, double ms, double accumulatorDistance = 0.0);
    // The last sample: measured like a move, never dropped; the time total
    // starts over afterwards.
    void release(MEvent* event, double ms);

    QPointF lastPosition() const { return m_lastPosition; }
    double timeAccumulator() const { return m_timeAccumulator; }
    double distanceAccumulator() const { return m_distanceAccumulator; }

private:
    // Direction, time, distance and speed of the event from the last position.
    void measure(MEvent* event, double ms);

    MSmoothFilter m_distanceFilter;
    MSmoothFilter m_speedFilter;
    QPointF m_lastPosition;
    double m_timeAccumulator = 0.0;
    double m_distanceAccumulator = 0.0;
    double m_speed = 2.0;
};
