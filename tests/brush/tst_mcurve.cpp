#include "support/testenvironment.h"

#include "app/menum.h"
#include "brush/mbrushinputinfolist.h"
#include "brush/mcurve.h"

#include <QRandomGenerator>

#include <cmath>
#include <vector>

namespace {

// A natural cubic spline solved the textbook way: the second derivatives M from
// the full linear system by Gaussian elimination with partial pivoting, then
// the symmetric form of each piece.
class ReferenceSpline
{
public:
    explicit ReferenceSpline(const std::vector<QPointF>& knots) : m_knots(knots)
    {
        const size_t n = knots.size();
        std::vector<std::vector<double>> a(n, std::vector<double>(n + 1, 0.0));
        a[0][0] = 1.0;
        a[n - 1][n - 1] = 1.0;
        for (size_t i = 1; i + 1 < n; ++i) {
            const double h0 = x(i) - x(i - 1);
            const double h1 = x(i + 1) - x(i);
            a[i][i - 1] = h0;
            a[i][i] = 2.0 * (h0 + h1);
            a[i][i + 1] = h1;
            a[i][n] = 6.0 * ((y(i + 1) - y(i)) / h1 - (y(i) - y(i - 1)) / h0);
        }
        for (size_t column = 0; column < n; ++column) {
            size_t pivot = column;
            for (size_t row = column + 1; row < n; ++row) {
                if (std::abs(a[row][column]) > std::abs(a[pivot][column]))
                    pivot = row;
            }
            std::swap(a[column], a[pivot]);
            for (size_t row = 0; row < n; ++row) {
                const double factor = row == column ? 0.0 : a[row][column] / a[column][column];
                for (size_t k = column; k <= n; ++k)
                    a[row][k] -= factor * a[column][k];
            }
        }
        for (size_t i = 0; i < n; ++i)
            m_second.push_back(a[i][n] / a[i][i]);
    }

    // Unclamped; beyond the last knot the last value holds.
    double at(double t) const
    {
        const size_t n = m_knots.size();
        if (t >= x(n - 1))
            return y(n - 1);
        size_t i = 0;
        while (i + 2 < n && t >= x(i + 1))
            ++i;
        // The piece in powers of the distance from its left knot.
        const double h = x(i + 1) - x(i);
        const double u = t - x(i);
        const double m0 = m_second[i];
        const double m1 = m_second[i + 1];
        const double slope = (y(i + 1) - y(i)) / h - h * (2.0 * m0 + m1) / 6.0;
        return y(i) + slope * u + m0 / 2.0 * u * u + (m1 - m0) / (6.0 * h) * u * u * u;
    }

    // The knots of a curve: its points between the two far sentinels, cut to
    // the first 11.
    static std::vector<QPointF> knotsOf(const QVector<QPointF>& points)
    {
        std::vector<QPointF> knots{QPointF(points.first().x() - 100000.0, points.first().y())};
        knots.insert(knots.end(), points.begin(), points.end());
        knots.emplace_back(points.last().x() + 100000.0, points.last().y());
        knots.resize(std::min<size_t>(knots.size(), 11));
        return knots;
    }

private:
    double x(size_t i) const { return m_knots[i].x(); }
    double y(size_t i) const { return m_knots[i].y(); }

    std::vector<QPointF> m_knots;
    std::vector<double> m_second;
};

double clamped(double v)
{
    return std::max(0.0, std::min(1.0, v));
}

// Empty when actual, taken at t, is within 1e-9 of expected; else both.
QString offAt(double t, double actual, double expected)
{
    return std::abs(actual - expected) < 1e-9
               ? QString()
               : QString::asprintf("at %g: %.12g, expected %.12g", t, actual, expected);
}

QVector<QPointF> randomPoints(QRandomGenerator& random, int count)
{
    QVector<QPointF> points;
    while (points.size() < count) {
        const QPointF p(random.bounded(1000) / 1000.0, random.generateDouble());
        bool distinct = true;
        for (const QPointF& q : qAsConst(points))
            distinct = distinct && q.x() != p.x();
        if (distinct)
            points.append(p);
    }
    std::sort(points.begin(), points.end(), [](const QPointF& a, const QPointF& b) { return a.x() < b.x(); });
    return points;
}

MCurve* curveThrough(const QVector<QPointF>& points, QObject* parent)
{
    auto* curve = new MCurve(MCurve::Multiply, parent);
    curve->setRange(0.0, 1.0, 0.0, 1.0);
    for (const QPointF& p : points)
        curve->addPoint(p);
    return curve;
}

} // namespace

Q_DECLARE_METATYPE(QVector<QPointF>)

class TestCurve : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splineMatchesTheReference_data();
    void splineMatchesTheReference();
    void onlyElevenKnotsShapeTheCurve();
    void presetsAndTheirShapes();
    void rangesScaleInputAndOutput();
    void rangeSettersKeepTheRangeOpen();
    void combiningModes();
    void pointEditing();
    void pointsOfOneXStayFinite();
    void assignCopiesEverything();
    void aBrushCurveTakesItsInputsRange();
};

void TestCurve::splineMatchesTheReference_data()
{
    QTest::addColumn<QVector<QPointF>>("points");
    const QMetaEnum presets = QMetaEnum::fromType<MCurve::InitType>();
    for (int i = 0; i < presets.keyCount(); ++i) {
        MCurve curve;
        curve.setInitType(presets.value(i));
        QTest::newRow(presets.key(i)) << curve.points();
    }
    QRandomGenerator random(4711);
    for (int count = 2; count <= 12; ++count) {
        for (int round = 0; round < 3; ++round)
            QTest::addRow("random %d points #%d", count, round) << randomPoints(random, count);
    }
}

void TestCurve::splineMatchesTheReference()
{
    QFETCH(QVector<QPointF>, points);
    QObject owner;
    MCurve* curve = curveThrough(points, &owner);
    QCOMPARE(curve->points(), points);
    const ReferenceSpline reference(ReferenceSpline::knotsOf(points));
    QCOMPARE(curve->segmentCount(), int(ReferenceSpline::knotsOf(points).size()) - 1);

    // At the knots inside the spline the curve passes through the points.
    for (int i = 0; i < std::min(int(points.size()), 10); ++i)
        QCOMPARE(offAt(points.at(i).x(), curve->normalized(points.at(i).x()), points.at(i).y()), QString());
    // Between them, and a little outside the unit square.
    for (int step = -20; step <= 420; ++step) {
        const double t = step / 400.0;
        QCOMPARE(offAt(t, curve->normalized(t), clamped(reference.at(t))), QString());
        QCOMPARE(curve->value(t), curve->normalized(qBound(0.0, t, 1.0)));
    }
}

void TestCurve::onlyElevenKnotsShapeTheCurve()
{
    // Nine points fill the eleven knots with both sentinels; from the tenth on
    // the points push the far sentinel out and are themselves cut off.
    QRandomGenerator random(99);
    const QVector<QPointF> points = randomPoints(random, 12);
    QObject owner;
    MCurve* full = curveThrough(points, &owner);
    QVector<QPointF> changed = points;
    changed[10].setY(1.0 - changed[10].y());
    changed[11].setY(1.0 - changed[11].y());
    MCurve* other = curveThrough(changed, &owner);
    QCOMPARE(full->segmentCount(), 10);
    for (int step = 0; step <= 100; ++step)
        QCOMPARE(other->normalized(step / 100.0), full->normalized(step / 100.0));
    // Beyond the last knot kept, the curve holds that knot's value.
    const double lastKept = points.at(9).y();
    for (double t = points.at(9).x() + 1e-6; t <= 1.0; t += 0.01)
        QCOMPARE(full->normalized(t), lastKept);

    // The tenth point still counts.
    changed = points;
    changed[9].setY(1.0 - changed[9].y());
    MCurve* tenth = curveThrough(changed, &owner);
    QVERIFY(std::abs(tenth->normalized(changed[9].x()) - full->normalized(changed[9].x())) > 1e-6);
}

void TestCurve::presetsAndTheirShapes()
{
    const QVector<QVector<QPointF>> expected = {
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
    MCurve curve;
    QCOMPARE(curve.points(), expected.at(MCurve::LineAscending4));
    // Unknown presets fall back to the default.
    for (int preset = -1; preset <= expected.size(); ++preset) {
        curve.setInitType(preset);
        QCOMPARE(curve.points(), expected.value(preset, expected.at(MCurve::LineAscending4)));
    }

    // The default points are the diagonal, bent a little by the far sentinels.
    curve.setInitType(MCurve::LineAscending4);
    for (int step = 0; step <= 50; ++step)
        QVERIFY(std::abs(curve.normalized(step / 50.0) - step / 50.0) < 1e-6);

    curve.setInitType(MCurve::GaussianCurve);
    QVERIFY(std::abs(curve.normalized(0.5) - 1.0) < 1e-12);
    QVERIFY(std::abs(curve.normalized(0.0)) < 1e-12);
    QVERIFY(std::abs(curve.normalized(1.0)) < 1e-12);

    // A spline that leaves the square on both sides is clamped into it.
    QObject owner;
    MCurve* steep = curveThrough({{0, 0}, {0.1, 0}, {0.2, 1}, {1, 1}}, &owner);
    const ReferenceSpline reference(ReferenceSpline::knotsOf(steep->points()));
    int below = 0;
    int above = 0;
    for (int step = 0; step <= 200; ++step) {
        const double t = step / 200.0;
        const double unclamped = reference.at(t);
        if (unclamped < -1e-6) {
            ++below;
            QCOMPARE(steep->normalized(t), 0.0);
        } else if (unclamped > 1.0 + 1e-6) {
            ++above;
            QCOMPARE(steep->normalized(t), 1.0);
        } else {
            QVERIFY(std::abs(steep->normalized(t) - clamped(unclamped)) < 1e-9);
        }
    }
    QVERIFY(below > 0);
    QVERIFY(above > 0);
}

void TestCurve::rangesScaleInputAndOutput()
{
    QObject owner;
    MCurve* curve = curveThrough({{0, 0.2}, {0.4, 0.9}, {1, 0.5}}, &owner);
    const ReferenceSpline reference(ReferenceSpline::knotsOf(curve->points()));
    curve->setXMin(-60.0);
    curve->setXMax(60.0);
    curve->setYMax(10.0);
    curve->setYMin(2.0);
    QCOMPARE(curve->points().size(), 3);
    for (double x = -60.0; x <= 60.0; x += 7.5) {
        const double expected = 2.0 + 8.0 * clamped(reference.at((x + 60.0) / 120.0));
        QVERIFY(std::abs(curve->value(x) - expected) < 1e-9);
    }
    // The input is clamped to its range.
    QCOMPARE(curve->value(500.0), curve->value(60.0));
    QCOMPARE(curve->value(-500.0), curve->value(-60.0));
    QVERIFY(std::abs(curve->value(-60.0) - (2.0 + 8.0 * 0.2)) < 1e-9);

    // A data point lands in the unit square, clamped to the ranges.
    curve->addDataPoint(0.0, 6.0);
    QVERIFY(curve->points().contains(QPointF(0.5, 0.5)));
    curve->addDataPoint(1000.0, -1000.0);
    QCOMPARE(curve->points().last(), QPointF(1.0, 0.0));
    QCOMPARE(curve->points().size(), 5);

    // setRange takes the bounds as they are and drops the points: the identity.
    curve->setRange(5.0, 5.0, 3.0, 1.0);
    QCOMPARE(curve->xMin(), 5.0);
    QCOMPARE(curve->xMax(), 5.0);
    QCOMPARE(curve->yMin(), 3.0);
    QCOMPARE(curve->yMax(), 1.0);
    QCOMPARE(curve->pointCount(), 0);
    QCOMPARE(curve->value(42.5), 42.5);
    QCOMPARE(curve->normalized(0.3), 0.3);
    // An empty x range, which only this path can make, reads as its start.
    curve->addPoint(QPointF(0, 0.25));
    curve->addPoint(QPointF(1, 0.75));
    QVERIFY(std::isfinite(curve->value(5.0)));
    QVERIFY(std::abs(curve->value(5.0) - (3.0 - 2.0 * 0.25)) < 1e-9);
}

void TestCurve::rangeSettersKeepTheRangeOpen()
{
    MCurve curve;
    curve.setYMax(4.0);
    curve.setYMin(4.0);
    QCOMPARE(curve.yMin(), 4.0);
    QCOMPARE(curve.yMax(), 4.01);
    curve.setYMin(9.0);
    QCOMPARE(curve.yMin(), 4.01);
    QCOMPARE(curve.yMax(), 9.0);
    curve.setYMax(-3.0);
    QCOMPARE(curve.yMin(), -3.0);
    QCOMPARE(curve.yMax(), 4.01);

    curve.setXMin(1.0);
    QCOMPARE(curve.xMin(), 1.0);
    QCOMPARE(curve.xMax(), 1.01);
    curve.setXMax(-2.0);
    QCOMPARE(curve.xMin(), -2.0);
    QCOMPARE(curve.xMax(), 1.0);
}

void TestCurve::combiningModes()
{
    MCurve curve(MCurve::Multiply);
    curve.setXMax(20.0);
    curve.setXMin(10.0);
    curve.setYMax(3.0);
    curve.setYMin(1.0);
    curve.setInitType(MCurve::CurveAscending3);
    const double contribution = curve.value(14.0);
    QVERIFY(contribution > 1.0 && contribution < 3.0);

    QCOMPARE(curve.apply(14.0, 2.5), contribution * 2.5);
    curve.setInterpolationType(MCurve::Add);
    QCOMPARE(curve.apply(14.0, 2.5), contribution + 2.5);
    curve.setInterpolationType(7);
    QCOMPARE(curve.apply(14.0, 2.5), 2.5);

    // The sine ignores the points and the clamp of x.
    curve.setInterpolationType(MCurve::Sinus);
    const QPointF sine[] = {{10.0, 1.0}, {12.5, 3.0}, {15.0, 1.0}, {17.5, -1.0}, {32.5, 3.0}};
    for (const QPointF& s : sine)
        QCOMPARE(offAt(s.x(), curve.apply(s.x(), 2.0), s.y() * 2.0), QString());
    curve.setInitType(MCurve::GaussianCurve);
    QVERIFY(std::abs(curve.apply(12.5, -1.5) - 3.0 * -1.5) < 1e-12);
}

void TestCurve::pointEditing()
{
    MCurve curve;
    curve.setInitType(MCurve::LineAscending2);
    curve.removePoint(0);
    QCOMPARE(curve.pointCount(), 2);

    curve.addPoint(QPointF(1.5, -0.5));
    curve.addPoint(QPointF(0.4, 0.7));
    // Points of one x keep the order in which they came.
    QCOMPARE(curve.points(), (QVector<QPointF>{{0, 0}, {0.4, 0.7}, {1, 1}, {1, 0}}));
    QCOMPARE(curve.normalized(0.4), 0.7);

    curve.removePoint(4);
    curve.removePoint(-1);
    QCOMPARE(curve.pointCount(), 4);
    curve.removePoint(2);
    QCOMPARE(curve.points(), (QVector<QPointF>{{0, 0}, {0.4, 0.7}, {1, 0}}));

    // Without sorting a moved point keeps its index, also past a neighbour,
    // and it is not clamped.
    curve.movePoint(1, QPointF(1.2, 0.3), false);
    QCOMPARE(curve.points(), (QVector<QPointF>{{0, 0}, {1.2, 0.3}, {1, 0}}));
    // The spline itself runs through its knots in x order.
    QCOMPARE(curve.normalized(1.0), 0.0);
    QCOMPARE(curve.normalized(1.2), 0.3);
    curve.movePoint(7, QPointF(0.5, 0.5), true);
    QCOMPARE(curve.pointAt(7), QPointF());
    curve.movePoint(0, QPointF(0.2, 0.1), true);
    QCOMPARE(curve.points(), (QVector<QPointF>{{0.2, 0.1}, {1, 0}, {1.2, 0.3}}));

    curve.setInitType(MCurve::CurveAscending4);
    curve.invertY();
    QCOMPARE(curve.points(), (QVector<QPointF>{{0, 1}, {0.25, 0.875}, {0.75, 0.125}, {1, 0}}));
    curve.invertX();
    QCOMPARE(curve.points(), (QVector<QPointF>{{0, 0}, {0.25, 0.125}, {0.75, 0.875}, {1, 1}}));
    const ReferenceSpline reference(ReferenceSpline::knotsOf(curve.points()));
    QVERIFY(std::abs(curve.normalized(0.6) - clamped(reference.at(0.6))) < 1e-9);

    // A single point, or none, leaves the identity.
    curve.setRange(0.0, 2.0, 0.0, 1.0);
    curve.addPoint(QPointF(0.5, 0.9));
    QCOMPARE(curve.value(1.7), 1.7);
    QCOMPARE(curve.segmentCount(), 0);
}

void TestCurve::pointsOfOneXStayFinite()
{
    MCurve curve;
    curve.setInitType(MCurve::LineAscending2);
    curve.addPoint(QPointF(1.0, 0.4));
    curve.addPoint(QPointF(0.5, 0.2));
    curve.addPoint(QPointF(0.5, 0.6));
    for (int step = 0; step <= 100; ++step) {
        const double y = curve.normalized(step / 100.0);
        QVERIFY(std::isfinite(y));
        QVERIFY(y >= 0.0 && y <= 1.0);
    }
    // The first of the points of one x is the one the curve passes through.
    QVERIFY(std::abs(curve.normalized(0.5) - 0.2) < 1e-9);
}

void TestCurve::assignCopiesEverything()
{
    MCurve source(MEnum::bsAngle, MEnum::biXTilt, MCurve::Multiply);
    source.setYMin(-2.0);
    source.setYMax(5.0);
    source.setModulo(7.5);
    source.setInitType(MCurve::GaussianCurve);
    source.movePoint(0, QPointF(0.6, 0.3), false);

    MCurve copy;
    copy.assign(source);
    QCOMPARE(copy.setting(), int(MEnum::bsAngle));
    QCOMPARE(copy.input(), int(MEnum::biXTilt));
    QCOMPARE(copy.interpolationType(), int(MCurve::Add));
    QCOMPARE(copy.modulo(), 7.5);
    QCOMPARE(copy.xMin(), -60.0);
    QCOMPARE(copy.xMax(), 60.0);
    QCOMPARE(copy.yMin(), -2.0);
    QCOMPARE(copy.yMax(), 5.0);
    // The copy is sorted and rebuilt.
    QCOMPARE(copy.points(), (QVector<QPointF>{{0.25, 0.25}, {0.5, 1}, {0.6, 0.3}, {0.75, 0.25}, {1, 0}}));
    QVERIFY(std::abs(copy.normalized(0.6) - 0.3) < 1e-9);
    source.setInitType(MCurve::LineAscending2);
    QCOMPARE(copy.pointCount(), 5);
}

void TestCurve::aBrushCurveTakesItsInputsRange()
{
    const MBrushInputInfoList* inputs = MBrushInputInfoList::instance();
    for (int input = 0; input < MEnum::biCount; ++input) {
        for (int setting = 0; setting < MEnum::bsCount; ++setting) {
            // The type given is overridden by the setting.
            const MCurve curve(setting, input, MCurve::Sinus);
            QCOMPARE(curve.xMin(), inputs->info(input).minimum);
            QCOMPARE(curve.xMax(), inputs->info(input).maximum);
            QCOMPARE(curve.yMin(), 0.0);
            QCOMPARE(curve.yMax(), 1.0);
            QCOMPARE(curve.modulo(), 0.0);
            const bool additive =
                setting == MEnum::bsAngle || setting == MEnum::bsOffsetX || setting == MEnum::bsOffsetY;
            QCOMPARE(curve.interpolationType(), int(additive ? MCurve::Add : MCurve::Multiply));
            QCOMPARE(curve.pointCount(), 4);
        }
    }
    const MCurve plain(MCurve::Sinus);
    QCOMPARE(plain.interpolationType(), int(MCurve::Sinus));
    QCOMPARE(plain.xMax(), 1.0);
}

QUILLMERE_TEST_MAIN(TestCurve)
#include "tst_mcurve.moc"
