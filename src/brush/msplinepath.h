#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QVector>

// A smooth outline through the middles of a polygon's sides, each corner
// becoming the control point of a quadratic curve. An open outline starts and
// ends at its end points.
class MSplinePath
{
public:
    MSplinePath() = default;
    virtual ~MSplinePath() = default;

    // Fewer than two points empty the outline.
    void setPoints(const QVector<QPointF>& points);
    void setClosed(bool closed);

    QPainterPath path() const { return m_path; }
    QVector<QPointF> points() const { return m_points; }
    bool closed() const { return m_closed; }

private:
    void rebuild();
    QPointF middle(int i) const;

    QPainterPath m_path;
    bool m_closed = false;
    QVector<QPointF> m_points;
};
