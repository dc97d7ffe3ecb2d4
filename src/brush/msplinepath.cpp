#include "brush/msplinepath.h"

void MSplinePath::setPoints(const QVector<QPointF>& points)
{
    if (points.size() < 2)
        m_points.clear();
    else
        m_points = points;
    rebuild();
}

void MSplinePath::setClosed(bool closed)
{
    if (closed == m_closed)
        return;
    m_closed = closed;
    rebuild();
}

QPointF MSplinePath::middle(int i) const
{
    const int n = m_points.size();
    return (m_points.at(i) + m_points.at((i + 1) % n)) / 2.0;
}

void MSplinePath::rebuild()
{
    m_path = QPainterPath();
    const int n = m_points.size();
    if (n == 0)
        return;
    if (n == 2) {
        m_path.moveTo(m_points.at(0));
        m_path.lineTo(m_points.at(1));
        return;
    }
    if (m_closed) {
        m_path.moveTo(middle(0));
        for (int i = 1; i < n; ++i)
            m_path.quadTo(m_points.at(i), middle(i));
        m_path.quadTo(m_points.at(0), middle(0));
        return;
    }
    m_path.moveTo(m_points.at(0));
    m_path.lineTo(middle(0));
    for (int i = 1; i < n - 1; ++i)
        m_path.quadTo(m_points.at(i), middle(i));
    m_path.lineTo(m_points.at(n - 1));
}
