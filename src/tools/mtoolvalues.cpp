#include "tools/mtoolvalues.h"

#include <QColor>

MToolValues::MToolValues(QObject* parent) : QObject(parent)
{
    m_values.insert(SymmetryNumber, 1);
    m_points.insert(SymmetryPoints, {QPointF(0, 0), QPointF(0, -200)});
    m_values.insert(GridShowGrid, false);
    m_values.insert(GridColor, QColor(Qt::black));
    m_values.insert(GridSize, 30);
    m_points.insert(PerspectivePoints,
                    {QPointF(0, 0), QPointF(-2000, 0), QPointF(2000, 0), QPointF(0, 2000)});
    m_values.insert(LeftVanishingPoint, true);
    m_values.insert(RightVanishingPoint, true);
    m_values.insert(VerticalVanishingPoint, false);
    m_values.insert(LeftDistance, 2000.0);
    m_values.insert(RightDistance, 2000.0);
    m_values.insert(VerticalDistance, 100000.0);
    m_points.insert(LinePoints, {});
    m_values.insert(ShapeWidth, 100.0);
    m_values.insert(ShapeHeight, 100.0);
    m_points.insert(ShapePoints, {QPointF(0, 0)});
    m_values.insert(ShapeAngle, 0.0);
    m_values.insert(TextString, tr("Text"));
    m_points.insert(TextPoints, {QPointF(0, 0)});
    m_values.insert(TextAngle, 0.0);
    m_values.insert(ImageWidth, 100.0);
    m_values.insert(ImageHeight, 100.0);
    m_points.insert(ImagePoints, {QPointF(0, 0)});
    m_values.insert(ImageAngle, 0.0);
    m_points.insert(SelectionPoints, {});
    m_points.insert(GradientPoints, {});
    m_points.insert(RullerPoints, {QPointF(0, 0), QPointF(400, 0)});
}

const QVector<QPointF>& MToolValues::points(int id) const
{
    const auto found = m_points.constFind(id);
    return found == m_points.constEnd() ? m_empty : found.value();
}

bool MToolValues::setValue(int id, const QVariant& val)
{
    auto found = m_values.find(id);
    if (found == m_values.end())
        found = m_values.insert(id, QVariant());
    if (found.value() == val)
        return false;
    found.value() = val;
    Q_EMIT valueChanged(id, val);
    return true;
}

bool MToolValues::setPoint(int id, int index, const QPointF& value)
{
    const auto found = m_points.find(id);
    if (found == m_points.end() || index < 0 || index >= found.value().size())
        return false;
    QPointF& stored = found.value()[index];
    if (stored == value)
        return false;
    stored = value;
    return true;
}

bool MToolValues::addPoint(int id, const QPointF& value)
{
    const auto found = m_points.find(id);
    if (found == m_points.end())
        return false;
    found.value().append(value);
    return true;
}

bool MToolValues::removePoint(int id, int index)
{
    const auto found = m_points.find(id);
    if (found == m_points.end() || index < 0 || index >= found.value().size())
        return false;
    found.value().remove(index);
    return true;
}

bool MToolValues::removePoint(int id)
{
    const auto found = m_points.find(id);
    if (found == m_points.end() || found.value().isEmpty())
        return false;
    found.value().removeLast();
    return true;
}

bool MToolValues::clearPoint(int id)
{
    const auto found = m_points.find(id);
    if (found == m_points.end())
        return false;
    found.value().clear();
    return true;
}

bool MToolValues::setPoints(int id, const QVector<QPointF>& points)
{
    const auto found = m_points.find(id);
    if (found == m_points.end())
        return false;
    found.value() = points;
    return true;
}
