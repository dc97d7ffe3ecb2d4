#pragma once

#include "app/mevent.h"

#include <QList>
#include <QVector>

// The events of one stroke so far, and the Catmull-Rom subdivision of the
// path through them. Output lags one segment behind the stylus: the segment
// between the third and second last samples is the one known with a sample on
// either side.
class MStrokeInterpolator
{
public:
    // Spans shorter than this pass through without subdivision.
    static constexpr double minimumSpan = 10.0;
    // Events produced for a subdivided span, its two ends included.
    static constexpr int stepCount = 4;

    MStrokeInterpolator() = default;
    virtual ~MStrokeInterpolator() = default;

    // Starts a stroke: the history is the press alone.
    void start(const MEvent& press);
    // Before the first move of a stroke is kept, gives the spline a control
    // point in front of the press: the press mirrored through itself away from
    // the move, as type 0, and the press itself becomes a drag (type 2). False
    // and nothing changes unless the history holds exactly one event.
    bool mirrorPress(const MEvent& move);
    // Keeps the event and returns the subdivided span it completes.
    QList<MEvent> append(const MEvent& event);
    // The span between the third and second last events: empty with fewer than
    // four events; those two alone when they are closer than minimumSpan;
    // otherwise stepCount events along the Catmull-Rom curve from one to the other.
    QList<MEvent> interpolatedEvents() const;

    void clear() { m_history.clear(); }
    const QVector<MEvent>& history() const { return m_history; }

private:
    QVector<MEvent> m_history;
};
