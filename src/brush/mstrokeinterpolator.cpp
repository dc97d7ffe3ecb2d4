#include "brush/mstrokeinterpolator.h"

#include <cmath>

void MStrokeInterpolator::start(const MEvent& press)
{
    m_history.clear();
    m_history.append(press);
}

bool MStrokeInterpolator::mirrorPress(const MEvent& move)
{
    if (m_history.size() != 1)
        return false;
    MEvent mirror = m_history.first();
    mirror.positionX = 2.0 * mirror.positionX - move.positionX;
    mirror.positionY = 2.0 * mirror.positionY - move.positionY;
    mirror.type = 0;
    m_history.first().type = 2;
    m_history.prepend(mirror);
    return true;
}

QList<MEvent> MStrokeInterpolator::append(const MEvent& event)
{
    m_history.append(event);
    return interpolatedEvents();
}

QList<MEvent> MStrokeInterpolator::interpolatedEvents() const
{
    const int n = m_history.size();
    if (n < 4)
        return {};
    const MEvent& before = m_history.at(n - 4);
    const MEvent& a = m_history.at(n - 3);
    const MEvent& b = m_history.at(n - 2);
    const MEvent& after = m_history.at(n - 1);
    if (std::hypot(b.positionX - a.positionX, b.positionY - a.positionY) < minimumSpan)
        return {a, b};

    // Hermite segment from a to b with Catmull-Rom tangents.
    const double m0x = (b.positionX - before.positionX) / 2.0;
    const double m0y = (b.positionY - before.positionY) / 2.0;
    const double m1x = (after.positionX - a.positionX) / 2.0;
    const double m1y = (after.positionY - a.positionY) / 2.0;
    QList<MEvent> events;
    for (int k = 0; k < stepCount; ++k) {
        const double t = double(k) / double(stepCount - 1);
        const double t2 = t * t;
        const double t3 = t2 * t;
        const double h00 = 2.0 * t3 - 3.0 * t2 + 1.0;
        const double h01 = 3.0 * t2 - 2.0 * t3;
        const double h10 = t3 - 2.0 * t2 + t;
        const double h11 = t3 - t2;
        MEvent e = MEvent::interpolated(a, b, t);
        e.positionX = a.positionX * h00 + b.positionX * h01 + m0x * h10 + m1x * h11;
        e.positionY = a.positionY * h00 + b.positionY * h01 + m0y * h10 + m1y * h11;
        events.append(e);
    }
    return events;
}
