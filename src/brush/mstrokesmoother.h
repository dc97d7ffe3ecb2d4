#pragma once

#include "app/mevent.h"
#include "brush/minputfilter.h"
#include "brush/mstrokeinterpolator.h"
#include "brush/mstrokemeter.h"

#include <QList>

// The way from raw pen samples to the events a stroke is drawn from, shared by
// the view and by replays of recorded strokes: each sample is measured
// (distance, time, speed), drags are low-pass filtered on chosen inputs, and
// the path through them is subdivided along a Catmull-Rom curve. Samples come
// in canvas coordinates with the time since the previous kept one.
class MStrokeSmoother
{
public:
    MStrokeSmoother() = default;
    virtual ~MStrokeSmoother() = default;

    bool interpolate() const { return m_interpolate; }
    void setInterpolate(bool interpolate) { m_interpolate = interpolate; }
    MStrokeMeter& meter() { return m_meter; }
    MInputFilter& inputFilter() { return m_inputFilter; }
    const MStrokeInterpolator& interpolator() const { return m_interpolator; }

    // Starts a stroke at the press: the events to send on, the press alone.
    QList<MEvent> press(MEvent& event);
    // A drag: false when it is too short to be kept (nothing changes then);
    // otherwise out holds the events to send on, possibly none while the
    // curve waits for samples on either side of a span.
    bool move(MEvent& event, double ms, double accumulatorDistance, QList<MEvent>& out);
    // A move without a button: measured only.
    bool hover(MEvent& event, double ms, double accumulatorDistance);
    // The end of the stroke: the release alone goes on. The span between the
    // last two samples is never subdivided.
    QList<MEvent> release(MEvent& event, double ms);

private:
    MStrokeMeter m_meter;
    MInputFilter m_inputFilter;
    MStrokeInterpolator m_interpolator;
    bool m_interpolate = true;
};
