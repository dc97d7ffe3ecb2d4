#pragma once

#include <QHash>
#include <QObject>
#include <QPointF>
#include <QVariant>
#include <QVector>

// The values that tools keep per view: numbers by id, and lists of control
// points by id. Each view has its own, so each document keeps its own symmetry
// axis, grid size, ruler and so on while it is open.
class MToolValues : public QObject
{
    Q_OBJECT

public:
    enum ValueId
    {
        SymmetryNumber = 0,
        SymmetryPoints = 1,
        GridShowGrid = 2,
        GridColor = 3,
        GridSize = 4,
        PerspectivePoints = 5,
        LeftVanishingPoint = 6,
        RightVanishingPoint = 7,
        VerticalVanishingPoint = 8,
        LeftDistance = 9,
        RightDistance = 10,
        VerticalDistance = 11,
        LinePoints = 12,
        ShapeWidth = 13,
        ShapeHeight = 14,
        ShapePoints = 15,
        ShapeAngle = 16,
        TextString = 17,
        TextPoints = 18,
        TextAngle = 19,
        ImageWidth = 20,
        ImageHeight = 21,
        ImagePoints = 22,
        ImageAngle = 23,
        SelectionPoints = 24,
        GradientPoints = 25,
        RullerPoints = 26
    };
    Q_ENUM(ValueId)

    // Every id with its default.
    explicit MToolValues(QObject* parent = nullptr);

    // A null value for an id that holds no number.
    QVariant value(int id) const { return m_values.value(id); }
    int intValue(int id) const { return m_values.value(id).toInt(); }
    double doubleValue(int id) const { return m_values.value(id).toDouble(); }
    bool hasValue(int id) const { return m_values.contains(id); }
    bool hasPoints(int id) const { return m_points.contains(id); }

    // The list of that id; for an unknown id the one shared empty list, and no
    // entry is made.
    const QVector<QPointF>& points(int id) const;
    int pointCount(int id) const { return points(id).size(); }
    // A zero point for an unknown id or an index out of range.
    QPointF point(int id, int index) const { return points(id).value(index); }

public Q_SLOTS:
    // Each answers true when something changed. Only setValue signals.
    bool setValue(int id, const QVariant& val);
    bool setPoint(int id, int index, const QPointF& value);
    bool addPoint(int id, const QPointF& value);
    bool removePoint(int id, int index);
    bool removePoint(int id);
    bool clearPoint(int id);
    bool setPoints(int id, const QVector<QPointF>& points);

Q_SIGNALS:
    void valueChanged(int id, const QVariant& val);

private:
    QHash<int, QVariant> m_values;
    QHash<int, QVector<QPointF>> m_points;
    const QVector<QPointF> m_empty;
};
