#include "brush/mstrokesmoother.h"

QList<MEvent> MStrokeSmoother::press(MEvent& event)
{
    event.type = 0;
    m_meter.press(&event);
    m_interpolator.start(event);
    m_inputFilter.reset();
    return {event};
}

bool MStrokeSmoother::move(MEvent& event, double ms, double accumulatorDistance, QList<MEvent>& out)
{
    out.clear();
    event.type = 2;
    if (!m_meter.move(&event, ms, accumulatorDistance))
        return false;
    // A control point in front of the press, so the curve has one before its first span.
    m_interpolator.mirrorPress(event);
    m_inputFilter.filter(&event);
    if (!m_interpolate) {
        out.append(event);
        return true;
    }
    out = m_interpolator.append(event);
    return true;
}

bool MStrokeSmoother::hover(MEvent& event, double ms, double accumulatorDistance)
{
    event.type = 1;
    return m_meter.move(&event, ms, accumulatorDistance);
}

QList<MEvent> MStrokeSmoother::release(MEvent& event, double ms)
{
    event.type = 3;
    m_meter.release(&event, ms);
    return {event};
}
