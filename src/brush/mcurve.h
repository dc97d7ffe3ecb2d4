#pragma once

#include <QObject>
#include <QPointF>
#include <QVector>

#include <array>

// Maps one stroke input to a contribution to one brush setting: a natural
// cubic spline through control points on the unit square, scaled to an input
// range and an output range, combined with the running value of the setting.
class MCurve : public QObject
{
    Q_OBJECT

public:
    enum InterpolationType
    {
        Add = 0,
        Multiply = 1,
        Sinus = 2
    };
    Q_ENUM(InterpolationType)

    // Presets of control points; the digit is the number of points.
    enum InitType
    {
        LineAscending2 = 0,
        LineDescending2 = 1,
        LineAscending3 = 2,
        LineDescending3 = 3,
        LineAscending4 = 4,
        LineDescending4 = 5,
        CurveAscending3 = 6,
        CurveDescending3 = 7,
        CurveAscending4 = 8,
        CurveDescending4 = 9,
        GaussianCurve = 10
    };
    Q_ENUM(InitType)

    // The spline holds at most this many knots, the two far sentinels included.
    static constexpr int maxKnots = 11;
    // How far outside the points the sentinels lie, so that the curve holds its
    // end values beyond them.
    static constexpr double sentinelDistance = 100000.0;

    // One spline record: y = ((d u + c) u + b) u + a with u = t - x.
    struct Segment
    {
        double a = 0.0;
        double b = 0.0;
        double c = 0.0;
        double d = 0.0;
        double x = 0.0;
    };

    // A curve of a brush: the x range comes from the input, and the way of
    // combining is Add for angle and offsets, Multiply for every other setting,
    // whatever interpolationType says.
    MCurve(int setting, int input, int interpolationType, QObject* parent = nullptr);
    explicit MCurve(int interpolationType = Multiply, QObject* parent = nullptr);

    // yMin + (yMax - yMin) * the spline at x normalised into the x range; the
    // identity while fewer than 2 points exist.
    virtual double value(double x) const;
    // Rebuilds the spline from the points.
    virtual void rebuild();

    // The spline at t in the unit square, clamped to 0..1.
    double normalized(double t) const;
    // Combines the contribution at x with the running value of the setting.
    double apply(double x, double running) const;

    int setting() const { return m_setting; }
    int input() const { return m_input; }
    int interpolationType() const { return m_interpolationType; }
    void setInterpolationType(int type) { m_interpolationType = type; }
    double modulo() const { return m_modulo; }
    void setModulo(double modulo) { m_modulo = modulo; }

    double xMin() const { return m_xMin; }
    double xMax() const { return m_xMax; }
    double yMin() const { return m_yMin; }
    double yMax() const { return m_yMax; }
    // Each keeps the range open and ordered: equal bounds become 0.01 apart,
    // crossed bounds swap.
    void setXMin(double value);
    void setXMax(double value);
    void setYMin(double value);
    void setYMax(double value);
    // Clears the points and takes the four bounds as they are.
    void setRange(double xMin, double xMax, double yMin, double yMax);

    const QVector<QPointF>& points() const { return m_points; }
    int pointCount() const { return m_points.size(); }
    QPointF pointAt(int index) const;
    int segmentCount() const { return m_segmentCount; }
    const Segment& segment(int index) const { return m_spline[size_t(qBound(0, index, maxKnots - 1))]; }

    // A point in the units of the ranges, clamped into them.
    void addDataPoint(double x, double y);
    // A point in the unit square, clamped into it; the points stay sorted.
    void addPoint(QPointF point);
    // Moves a point as given, unclamped; without sortNow it may pass its neighbours.
    void movePoint(int index, QPointF point, bool sortNow);
    // Refused when it would leave fewer than 2 points.
    void removePoint(int index);
    void sort();
    // The preset's points; an unknown preset gives LineAscending4.
    void setInitType(int initType);
    void assign(const MCurve& other);
    void invertX();
    void invertY();

private:
    void setPreset(int initType);
    void fixXRange();
    void fixYRange();

    int m_setting = 0;
    int m_input = 0;
    int m_interpolationType = Multiply;
    double m_modulo = 0.0;
    double m_xMin = 0.0;
    double m_xMax = 1.0;
    double m_yMin = 0.0;
    double m_yMax = 1.0;
    QVector<QPointF> m_points;
    int m_segmentCount = 0;
    std::array<Segment, maxKnots> m_spline{};
};
