#include "brush/mcurve.h"

#include "app/menum.h"
#include "brush/mbrushinputinfolist.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace {

bool lessX(const QPointF& a, const QPointF& b)
{
    return a.x() < b.x();
}

} // namespace

MCurve::MCurve(int setting, int input, int interpolationType, QObject* parent)
    : QObject(parent), m_setting(setting), m_input(input), m_interpolationType(interpolationType)
{
    const MBrushInputInfo& info = MBrushInputInfoList::instance()->info(input);
    if (info.input >= 0) {
        m_xMin = info.minimum;
        m_xMax = info.maximum;
    }
    const bool additive =
        setting == MEnum::bsAngle || setting == MEnum::bsOffsetX || setting == MEnum::bsOffsetY;
    m_interpolationType = additive ? Add : Multiply;
    setPreset(LineAscending4);
    rebuild();
}

MCurve::MCurve(int interpolationType, QObject* parent)
    : QObject(parent), m_interpolationType(interpolationType)
{
    setPreset(LineAscending4);
    rebuild();
}

void MCurve::rebuild()
{
    m_segmentCount = 0;
    m_spline.fill(Segment());
    if (m_points.size() < 2)
        return;

    // The knots: the points between two far sentinels, cut to the first maxKnots.
    const int knotCount = std::min(m_points.size() + 2, maxKnots);
    auto knot = [this](int index) {
        if (index == 0)
            return QPointF(m_points.first().x() - sentinelDistance, m_points.first().y());
        if (index <= m_points.size())
            return m_points.at(index - 1);
        return QPointF(m_points.last().x() + sentinelDistance, m_points.last().y());
    };
    std::array<Segment, maxKnots> records{};
    for (int i = 0; i < knotCount; ++i) {
        const QPointF p = knot(i);
        records[size_t(i)].a = p.y();
        records[size_t(i)].x = p.x();
    }
    std::stable_sort(records.begin(), records.begin() + knotCount,
                     [](const Segment& l, const Segment& r) { return l.x < r.x; });
    // Knots of one x would divide by zero: the first of them stands.
    int count = 0;
    for (int i = 0; i < knotCount; ++i) {
        if (count > 0 && !(records[size_t(i)].x > records[size_t(count - 1)].x))
            continue;
        records[size_t(count++)] = records[size_t(i)];
    }
    const int n = count - 1;
    if (n < 1)
        return;

    std::array<double, maxKnots> h{}, alpha{}, l{}, mu{}, z{};
    auto at = [&records](int i) -> Segment& { return records[size_t(i)]; };
    for (int i = 0; i < n; ++i)
        h[size_t(i)] = at(i + 1).x - at(i).x;
    for (int i = 1; i < n; ++i)
        alpha[size_t(i)] =
            3.0 / h[size_t(i)] * (at(i + 1).a - at(i).a) - 3.0 / h[size_t(i - 1)] * (at(i).a - at(i - 1).a);
    l[0] = 1.0;
    mu[0] = 0.0;
    z[0] = 0.0;
    for (int i = 1; i < n; ++i) {
        l[size_t(i)] = 2.0 * (at(i + 1).x - at(i - 1).x) - h[size_t(i - 1)] * mu[size_t(i - 1)];
        mu[size_t(i)] = h[size_t(i)] / l[size_t(i)];
        z[size_t(i)] = (alpha[size_t(i)] - h[size_t(i - 1)] * z[size_t(i - 1)]) / l[size_t(i)];
    }
    at(n).c = 0.0;
    z[size_t(n)] = 0.0;
    for (int j = n - 1; j >= 0; --j) {
        Segment& s = at(j);
        s.c = z[size_t(j)] - mu[size_t(j)] * at(j + 1).c;
        s.b = (at(j + 1).a - s.a) / h[size_t(j)] - h[size_t(j)] * (at(j + 1).c + 2.0 * s.c) / 3.0;
        s.d = (at(j + 1).c - s.c) / (3.0 * h[size_t(j)]);
    }
    m_spline = records;
    m_segmentCount = n;
}

double MCurve::normalized(double t) const
{
    if (m_points.size() < 2 || m_segmentCount < 1)
        return t;
    const int n = m_segmentCount;
    int i = n;
    for (int k = 0; k < n; ++k) {
        if (t < m_spline[size_t(k + 1)].x) {
            i = k;
            break;
        }
    }
    const Segment& s = m_spline[size_t(i)];
    const double u = t - s.x;
    const double y = ((s.d * u + s.c) * u + s.b) * u + s.a;
    // An overshooting spline stays inside the square.
    return std::max(0.0, std::min(1.0, y));
}

double MCurve::value(double x) const
{
    if (m_points.size() < 2)
        return x;
    const double width = m_xMax - m_xMin;
    // Ranges read from elsewhere than the setters may be empty or crossed.
    const double clamped = std::max(std::min(x, std::max(m_xMin, m_xMax)), std::min(m_xMin, m_xMax));
    const double t = width != 0.0 ? (clamped - m_xMin) / width : 0.0;
    return m_yMin + (m_yMax - m_yMin) * normalized(t);
}

double MCurve::apply(double x, double running) const
{
    switch (m_interpolationType) {
    case Sinus: {
        const double width = m_xMax - m_xMin;
        const double phase = width != 0.0 ? (x - m_xMin) / width : 0.0;
        return (std::sin(2.0 * M_PI * phase) * (m_yMax - m_yMin) + m_yMin) * running;
    }
    case Multiply:
        return value(x) * running;
    case Add:
        return value(x) + running;
    default:
        return running;
    }
}

void MCurve::fixXRange()
{
    if (m_xMin == m_xMax)
        m_xMax = m_xMin + 0.01;
    if (m_xMin > m_xMax)
        std::swap(m_xMin, m_xMax);
}

void MCurve::fixYRange()
{
    if (m_yMin == m_yMax)
        m_yMax = m_yMin + 0.01;
    if (m_yMin > m_yMax)
        std::swap(m_yMin, m_yMax);
}

void MCurve::setXMin(double value)
{
    m_xMin = value;
    fixXRange();
}

void MCurve::setXMax(double value)
{
    m_xMax = value;
    fixXRange();
}

void MCurve::setYMin(double value)
{
    m_yMin = value;
    fixYRange();
}

void MCurve::setYMax(double value)
{
    m_yMax = value;
    fixYRange();
}

void MCurve::setRange(double xMin, double xMax, double yMin, double yMax)
{
    m_points.clear();
    m_xMin = xMin;
    m_xMax = xMax;
    m_yMin = yMin;
    m_yMax = yMax;
}

QPointF MCurve::pointAt(int index) const
{
    return index >= 0 && index < m_points.size() ? m_points.at(index) : QPointF();
}

void MCurve::addDataPoint(double x, double y)
{
    auto unit = [](double v, double low, double high) {
        const double clamped = std::max(std::min(v, std::max(low, high)), std::min(low, high));
        return high != low ? (clamped - low) / (high - low) : 0.0;
    };
    addPoint(QPointF(unit(x, m_xMin, m_xMax), unit(y, m_yMin, m_yMax)));
}

void MCurve::addPoint(QPointF point)
{
    m_points.append(QPointF(qBound(0.0, point.x(), 1.0), qBound(0.0, point.y(), 1.0)));
    std::stable_sort(m_points.begin(), m_points.end(), lessX);
    rebuild();
}

void MCurve::movePoint(int index, QPointF point, bool sortNow)
{
    if (index < 0 || index >= m_points.size())
        return;
    m_points[index] = point;
    if (sortNow)
        sort();
    else
        rebuild();
}

void MCurve::removePoint(int index)
{
    if (m_points.size() <= 2 || index < 0 || index >= m_points.size())
        return;
    m_points.removeAt(index);
    sort();
}

void MCurve::sort()
{
    std::stable_sort(m_points.begin(), m_points.end(), lessX);
    if (!m_points.isEmpty())
        rebuild();
}

void MCurve::setPreset(int initType)
{
    static const QVector<QPointF> presets[] = {
        {{0, 0}, {1, 1}},
        {{0, 1}, {1, 0}},
        {{0, 0}, {0.5, 0.5}, {1, 1}},
        {{0, 1}, {0.5, 0.5}, {1, 0}},
        {{0, 0}, {0.33, 0.33}, {0.66, 0.66}, {1, 1}},
        {{0, 1}, {0.33, 0.66}, {0.66, 0.33}, {1, 0}},
        {{0, 0}, {0.5, 0.25}, {1, 1}},
        {{0, 1}, {0.5, 0.75}, {1, 0}},
        {{0, 0}, {0.25, 0.125}, {0.75, 0.875}, {1, 1}},
        {{0, 1}, {0.25, 0.875}, {0.75, 0.125}, {1, 0}},
        {{0, 0}, {0.25, 0.25}, {0.5, 1}, {0.75, 0.25}, {1, 0}},
    };
    const bool known = initType >= LineAscending2 && initType <= GaussianCurve;
    m_points = presets[known ? initType : int(LineAscending4)];
}

void MCurve::setInitType(int initType)
{
    setPreset(initType);
    rebuild();
}

void MCurve::assign(const MCurve& other)
{
    m_interpolationType = other.m_interpolationType;
    m_input = other.m_input;
    m_setting = other.m_setting;
    m_modulo = other.m_modulo;
    m_xMin = other.m_xMin;
    m_xMax = other.m_xMax;
    m_yMin = other.m_yMin;
    m_yMax = other.m_yMax;
    m_points = other.m_points;
    sort();
    if (m_points.isEmpty())
        rebuild();
}

void MCurve::invertX()
{
    for (QPointF& p : m_points)
        p.setX(1.0 - p.x());
    sort();
}

void MCurve::invertY()
{
    for (QPointF& p : m_points)
        p.setY(1.0 - p.y());
    rebuild();
}
