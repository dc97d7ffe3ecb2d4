#include "support/testenvironment.h"

#include "app/menum.h"
#include "app/mevent.h"
#include "brush/minputfilter.h"
#include "brush/mlowpass.h"
#include "brush/msmoothfilter.h"
#include "brush/msplinepath.h"
#include "brush/mstrokeinterpolator.h"
#include "brush/mstrokemeter.h"

#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double pi = 3.14159265358979323846;

// The adaptive filter written out plainly, from the textbook form: a coefficient
// from the time constant and the sampling period.
class ReferenceFilter
{
public:
    ReferenceFilter(double minimumCutoff, double beta, double derivativeCutoff)
        : m_minimumCutoff(minimumCutoff), m_beta(beta), m_derivativeCutoff(derivativeCutoff)
    {
    }

    double operator()(double x, double t)
    {
        if (m_started && t - m_previousTime > 0.0)
            m_period = t - m_previousTime;
        m_previousTime = t;
        if (!m_started) {
            m_started = true;
            m_previousX = x;
            m_x = x;
            m_dx = 0.0;
            return x;
        }
        const double rawDerivative = (x - m_previousX) / m_period;
        m_dx += coefficient(m_derivativeCutoff) * (rawDerivative - m_dx);
        const double cutoff = m_minimumCutoff + m_beta * std::fabs(m_dx);
        m_x += coefficient(cutoff) * (x - m_x);
        m_previousX = x;
        return m_x;
    }

private:
    double coefficient(double cutoff) const
    {
        const double timeConstant = 1.0 / (2.0 * pi * cutoff);
        return m_period / (m_period + timeConstant);
    }

    double m_minimumCutoff;
    double m_beta;
    double m_derivativeCutoff;
    bool m_started = false;
    double m_period = 1.0;
    double m_previousTime = 0.0;
    double m_previousX = 0.0;
    double m_x = 0.0;
    double m_dx = 0.0;
};

// Uniform Catmull-Rom in its matrix form, between p1 and p2.
QPointF catmullRom(const QPointF& p0, const QPointF& p1, const QPointF& p2, const QPointF& p3, double t)
{
    const double t2 = t * t;
    const double t3 = t2 * t;
    return 0.5 * ((2.0 * p1) + (p2 - p0) * t + (2.0 * p0 - 5.0 * p1 + 4.0 * p2 - p3) * t2 +
                  (3.0 * p1 - p0 - 3.0 * p2 + p3) * t3);
}

MEvent eventAt(double x, double y, double pressure = 1.0)
{
    MEvent event;
    event.positionX = x;
    event.positionY = y;
    event.pressure = pressure;
    event.type = 2;
    return event;
}

QPointF position(const MEvent& event)
{
    return QPointF(event.positionX, event.positionY);
}

bool near(const QPointF& a, const QPointF& b, double tolerance = 1e-9)
{
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance;
}

bool finite(const QPainterPath& path)
{
    for (int i = 0; i < path.elementCount(); ++i) {
        if (!std::isfinite(path.elementAt(i).x) || !std::isfinite(path.elementAt(i).y))
            return false;
    }
    return true;
}

// A quadratic from the current point as the cubic that QPainterPath stores.
void expectQuadratic(const QPainterPath& path, int index, const QPointF& from, const QPointF& control,
                     const QPointF& to)
{
    const QPointF c1 = from + 2.0 / 3.0 * (control - from);
    const QPointF c2 = to + 2.0 / 3.0 * (control - to);
    QVERIFY2(path.elementAt(index).type == QPainterPath::CurveToElement, qPrintable(QString::number(index)));
    QVERIFY2(near(path.elementAt(index), c1), qPrintable(QString::number(index)));
    QVERIFY2(near(path.elementAt(index + 1), c2), qPrintable(QString::number(index)));
    QVERIFY2(near(path.elementAt(index + 2), to), qPrintable(QString::number(index)));
}

} // namespace

class TestStrokeSmoothing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lowPassStepAndReset();
    void lowPassRejectsCoefficientsOutOfRange();
    void smoothFilterFirstSamplesByHand();
    void smoothFilterFollowsTheReference();
    void smoothFilterCutoffRisesWithSpeed();
    void smoothFilterSurvivesDegenerateTimes();
    void inputFilterSmoothsChosenInputs();
    void interpolatorMirrorsThePress();
    void interpolatorFollowsCatmullRom();
    void interpolatorPassesShortSpansThrough();
    void interpolatorDegenerateInput();
    void splinePathOnKnownPolygons();
    void splinePathDegenerateInput();
    void strokeMeterMeasuresSamples();
    void strokeMeterDropsShortMoves();
};

void TestStrokeSmoothing::lowPassStepAndReset()
{
    MLowPass lowPass(0.25);
    QVERIFY(lowPass.first);
    QCOMPARE(lowPass.alpha, 0.25);
    // The first input passes through; then each step goes a quarter of the way.
    QCOMPARE(lowPass.filter(4.0), 4.0);
    QVERIFY(!lowPass.first);
    QCOMPARE(lowPass.filter(8.0), 5.0);
    QCOMPARE(lowPass.input, 8.0);
    QCOMPARE(lowPass.filter(0.0), 3.75);
    QCOMPARE(lowPass.value, 3.75);
    QCOMPARE(lowPass.input, 0.0);

    lowPass.reset();
    QVERIFY(lowPass.first);
    QCOMPARE(lowPass.alpha, 0.25);
    QCOMPARE(lowPass.filter(-10.0), -10.0);
    QCOMPARE(lowPass.filter(-6.0), -9.0);

    // Alpha 1 is a pass-through.
    MLowPass through(1.0);
    through.filter(3.0);
    QCOMPARE(through.filter(7.0), 7.0);
}

void TestStrokeSmoothing::lowPassRejectsCoefficientsOutOfRange()
{
    MLowPass lowPass(0.5);
    const double rejected[] = {0.0,
                               -0.5,
                               1.0000001,
                               2.0,
                               std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity()};
    for (double a : rejected) {
        lowPass.setAlpha(a);
        QCOMPARE(lowPass.alpha, 0.5);
    }
    lowPass.setAlpha(1.0);
    QCOMPARE(lowPass.alpha, 1.0);
    lowPass.setAlpha(1e-9);
    QCOMPARE(lowPass.alpha, 1e-9);

    // The constructor follows the same rule: the coefficient stays at 1.
    MLowPass bad(0.0);
    QCOMPARE(bad.alpha, 1.0);
    QVERIFY(bad.first);
    MLowPass negative(-3.0);
    QCOMPARE(negative.alpha, 1.0);
}

void TestStrokeSmoothing::smoothFilterFirstSamplesByHand()
{
    MSmoothFilter filter(1.0, 0.007, 1.0);
    QCOMPARE(filter.frequency(), 1.0);
    QCOMPARE(filter.lastTime(), -1.0);
    // At 1 Hz and a cutoff of 1 Hz: 1 / (1 + 1 / (2 pi)).
    QVERIFY(qFuzzyCompare(filter.alpha(1.0), 1.0 / (1.0 + 1.0 / (2.0 * pi))));

    // The first sample passes through, whatever it is.
    QCOMPARE(filter.filter(3.5, 0.0), 3.5);
    QCOMPARE(filter.lastTime(), 0.0);
    QCOMPARE(filter.frequency(), 1.0);

    // Second sample 10 ms later and 1 higher: rate 100 Hz, raw derivative 100.
    const double out = filter.filter(4.5, 0.01);
    QVERIFY(qFuzzyCompare(filter.frequency(), 100.0));
    const double derivativeAlpha = 1.0 / (1.0 + (1.0 / (2.0 * pi)) / 0.01);
    const double derivative = derivativeAlpha * 100.0;
    const double cutoff = 1.0 + 0.007 * derivative;
    const double signalAlpha = 1.0 / (1.0 + (1.0 / (2.0 * pi * cutoff)) / 0.01);
    QVERIFY(qFuzzyCompare(filter.derivativeFilter().value, derivative));
    QVERIFY(qFuzzyCompare(filter.signalFilter().alpha, signalAlpha));
    QVERIFY(qFuzzyCompare(out, 3.5 + signalAlpha * 1.0));

    // A reset makes the next sample pass through again, at any time.
    filter.reset();
    QCOMPARE(filter.lastTime(), -1.0);
    QVERIFY(filter.signalFilter().first);
    QVERIFY(filter.derivativeFilter().first);
    QCOMPARE(filter.filter(-20.0, 7.0), -20.0);
}

void TestStrokeSmoothing::smoothFilterFollowsTheReference()
{
    MSmoothFilter filter(1.0, 0.007, 1.0);
    ReferenceFilter reference(1.0, 0.007, 1.0);
    // An irregular sample rate and a wobbly signal.
    double t = 0.0;
    for (int i = 0; i < 400; ++i) {
        t += 0.004 + 0.003 * ((i * 7) % 5);
        const double x = 50.0 * std::sin(t * 3.0) + 2.0 * ((i * 13) % 3) + i * 0.5;
        const double actual = filter.filter(x, t);
        const double expected = reference(x, t);
        if (std::abs(actual - expected) > 1e-9 * std::max(1.0, std::abs(expected)))
            QFAIL(qPrintable(QStringLiteral("sample %1: %2 against %3").arg(i).arg(actual).arg(expected)));
    }
}

void TestStrokeSmoothing::smoothFilterCutoffRisesWithSpeed()
{
    // Ramps at 1 and at 1000 units per second, sampled at 100 Hz: the lag, in
    // seconds, of the fast ramp is far smaller, while a fixed low-pass at the
    // minimum cutoff lags the same time at any speed.
    const auto lagSeconds = [](double slope, bool adaptive) {
        MSmoothFilter filter(1.0, 0.007, 1.0);
        MLowPass fixed(1.0 / (1.0 + (1.0 / (2.0 * pi)) / 0.01));
        double out = 0.0;
        double t = 0.0;
        for (int i = 0; i <= 200; ++i) {
            t = i * 0.01;
            out = adaptive ? filter.filter(slope * t, t) : fixed.filter(slope * t);
        }
        return (slope * t - out) / slope;
    };
    const double slowLag = lagSeconds(1.0, true);
    const double fastLag = lagSeconds(1000.0, true);
    const double fixedLag = lagSeconds(1000.0, false);
    QVERIFY2(fastLag > 0.0 && slowLag > 0.0, qPrintable(QStringLiteral("%1 %2").arg(fastLag).arg(slowLag)));
    QVERIFY2(fastLag < slowLag / 3.0, qPrintable(QStringLiteral("%1 %2").arg(fastLag).arg(slowLag)));
    QVERIFY(std::abs(slowLag - fixedLag) < 0.01);
    QVERIFY(std::abs(lagSeconds(1.0, false) - fixedLag) < 1e-9);

    // The cutoff itself: after the fast ramp, 1 + 0.007 * (about 1000).
    MSmoothFilter filter(1.0, 0.007, 1.0);
    for (int i = 0; i <= 200; ++i)
        filter.filter(1000.0 * i * 0.01, i * 0.01);
    QVERIFY(std::abs(filter.derivativeFilter().value - 1000.0) < 1.0);
    const double expectedAlpha = 1.0 / (1.0 + (1.0 / (2.0 * pi * (1.0 + 0.007 * 1000.0))) / 0.01);
    QVERIFY(std::abs(filter.signalFilter().alpha - expectedAlpha) < 1e-3);
}

void TestStrokeSmoothing::smoothFilterSurvivesDegenerateTimes()
{
    // Two samples at the same instant keep the rate already measured, and the
    // filter goes on as if the repeated instant had a normal step.
    MSmoothFilter filter(1.0, 0.007, 1.0);
    QCOMPARE(filter.filter(0.0, 0.0), 0.0);
    filter.filter(2.0, 0.01);
    QVERIFY(qFuzzyCompare(filter.frequency(), 100.0));
    const double same = filter.filter(5.0, 0.01);
    QVERIFY(std::isfinite(same));
    QVERIFY(qFuzzyCompare(filter.frequency(), 100.0));
    QVERIFY(std::isfinite(filter.derivativeFilter().value));
    QVERIFY(same > 0.0 && same < 5.0);
    // Time running backwards, and unknown times, change nothing in the rate.
    const double back = filter.filter(6.0, 0.005);
    QVERIFY(std::isfinite(back));
    QVERIFY(qFuzzyCompare(filter.frequency(), 100.0));
    QVERIFY(std::isfinite(filter.filter(7.0, -1.0)));
    QVERIFY(qFuzzyCompare(filter.frequency(), 100.0));
    // A step so small that its rate overflows.
    QVERIFY(std::isfinite(filter.filter(7.0, 1e-310)));
    QVERIFY(std::isfinite(filter.filter(8.0, 2e-310)));
    QVERIFY(qFuzzyCompare(filter.frequency(), 100.0));
    for (int i = 0; i < 50; ++i) {
        const double v = filter.filter(8.0, 0.5 + i * 0.01);
        QVERIFY(std::isfinite(v));
    }
    QVERIFY(std::abs(filter.filter(8.0, 1.0) - 8.0) < 0.5);

    // All samples at one instant from the start.
    MSmoothFilter frozen(1.0, 0.007, 1.0);
    for (int i = 0; i < 10; ++i)
        QVERIFY(std::isfinite(frozen.filter(i, 3.0)));
    QCOMPARE(frozen.frequency(), 1.0);
}

void TestStrokeSmoothing::inputFilterSmoothsChosenInputs()
{
    MInputFilter filter;
    QCOMPARE(filter.inputs(), (QList<int>{MEnum::biPressure, MEnum::biPositionX, MEnum::biPositionY,
                                          MEnum::biDirectionX, MEnum::biDirectionY}));
    QCOMPARE(filter.alpha(MEnum::biPositionX), 0.5);
    QCOMPARE(filter.alpha(MEnum::biPositionY), 0.5);
    QCOMPARE(filter.alpha(MEnum::biDirectionX), 0.15);
    QCOMPARE(filter.alpha(MEnum::biDirectionY), 0.15);
    QCOMPARE(filter.alpha(MEnum::biPressure), 0.15);
    QCOMPARE(filter.alpha(MEnum::biSpeed), 0.0);

    MEvent first = eventAt(10.0, 20.0, 0.2);
    first.directionX = 1.0;
    first.speed = 3.0;
    filter.filter(&first);
    QCOMPARE(position(first), QPointF(10.0, 20.0));
    QCOMPARE(first.pressure, 0.2);
    QCOMPARE(first.directionX, 1.0);

    MEvent second = eventAt(20.0, 40.0, 1.2);
    second.directionX = 0.0;
    second.directionY = 1.0;
    second.speed = 9.0;
    second.tangentialPressure = 0.7;
    filter.filter(&second);
    QCOMPARE(position(second), QPointF(15.0, 30.0));
    QVERIFY(qFuzzyCompare(second.pressure, 0.85 * 0.2 + 0.15 * 1.2));
    QVERIFY(qFuzzyCompare(second.directionX, 0.85));
    QVERIFY(qFuzzyCompare(second.directionY, 0.15));
    // Unfiltered inputs pass untouched.
    QCOMPARE(second.speed, 9.0);
    QCOMPARE(second.tangentialPressure, 0.7);

    // A new stroke starts afresh.
    filter.reset();
    MEvent next = eventAt(100.0, 0.0, 0.5);
    filter.filter(&next);
    QCOMPARE(position(next), QPointF(100.0, 0.0));
    QCOMPARE(next.pressure, 0.5);

    // Changing the table.
    QVERIFY(filter.setFilter(MEnum::biSpeed, 0.5));
    QVERIFY(filter.setFilter(MEnum::biPositionX, 1.0));
    QVERIFY(!filter.setFilter(MEnum::biCount, 0.5));
    QVERIFY(!filter.setFilter(-1, 0.5));
    QVERIFY(!filter.setFilter(MEnum::biPressure, 0.0));
    QCOMPARE(filter.alpha(MEnum::biPressure), 0.15);
    filter.removeFilter(MEnum::biPositionY);
    QVERIFY(!filter.hasFilter(MEnum::biPositionY));
    // Speed is new and passes through first; x now has alpha 1 and follows at once.
    MEvent speedy = eventAt(40.0, 30.0, 0.5);
    speedy.speed = 4.0;
    filter.filter(&speedy);
    QCOMPARE(speedy.speed, 4.0);
    QCOMPARE(position(speedy), QPointF(40.0, 30.0));
    MEvent faster = eventAt(0.0, 70.0, 0.5);
    faster.speed = 8.0;
    filter.filter(&faster);
    QCOMPARE(faster.speed, 6.0);
    QCOMPARE(position(faster), QPointF(0.0, 70.0));

    filter.clear();
    QVERIFY(filter.inputs().isEmpty());
    MEvent plain = eventAt(1.0, 2.0, 0.3);
    filter.filter(&plain);
    QCOMPARE(position(plain), QPointF(1.0, 2.0));
    filter.filter(nullptr);
}

void TestStrokeSmoothing::interpolatorMirrorsThePress()
{
    MStrokeInterpolator interpolator;
    MEvent press = eventAt(10.0, 10.0, 0.4);
    press.type = 0;
    interpolator.start(press);
    QCOMPARE(interpolator.history().size(), 1);
    QVERIFY(interpolator.interpolatedEvents().isEmpty());

    const MEvent move = eventAt(13.0, 14.0);
    QVERIFY(interpolator.mirrorPress(move));
    QCOMPARE(interpolator.history().size(), 2);
    const MEvent& mirror = interpolator.history().at(0);
    QCOMPARE(position(mirror), QPointF(7.0, 6.0));
    QCOMPARE(mirror.type, 0);
    QCOMPARE(mirror.pressure, 0.4);
    QCOMPARE(interpolator.history().at(1).type, 2);
    QCOMPARE(position(interpolator.history().at(1)), QPointF(10.0, 10.0));
    // Only the first move of a stroke.
    QVERIFY(!interpolator.mirrorPress(eventAt(50.0, 50.0)));
    QCOMPARE(interpolator.history().size(), 2);

    // Mirror, press, one move: still nothing to draw.
    QVERIFY(interpolator.append(move).isEmpty());
    QCOMPARE(interpolator.history().size(), 3);

    // A new press starts over.
    interpolator.start(eventAt(0.0, 0.0));
    QCOMPARE(interpolator.history().size(), 1);
    interpolator.clear();
    QVERIFY(interpolator.history().isEmpty());
    QVERIFY(!interpolator.mirrorPress(move));
}

void TestStrokeSmoothing::interpolatorFollowsCatmullRom()
{
    MStrokeInterpolator interpolator;
    MEvent press = eventAt(0.0, 0.0, 0.2);
    press.type = 0;
    interpolator.start(press);
    const QPointF p[] = {QPointF(-30.0, 5.0), QPointF(0.0, 0.0), QPointF(40.0, 10.0), QPointF(60.0, 50.0)};
    interpolator.mirrorPress(eventAt(30.0, -5.0));
    QCOMPARE(position(interpolator.history().at(0)), p[0]);
    QVERIFY(interpolator.append(eventAt(p[2].x(), p[2].y(), 0.8)).isEmpty());
    const QList<MEvent> events = interpolator.append(eventAt(p[3].x(), p[3].y(), 1.0));
    QCOMPARE(events.size(), 4);
    QCOMPARE(interpolator.history().size(), 4);
    for (int k = 0; k < 4; ++k) {
        const double t = k / 3.0;
        QVERIFY2(near(position(events.at(k)), catmullRom(p[0], p[1], p[2], p[3], t)),
                 qPrintable(QString::number(k)));
        QCOMPARE(events.at(k).type, 2);
        // Inputs other than the position are linear between the span's ends.
        QVERIFY(std::abs(events.at(k).pressure - (0.2 + 0.6 * t)) < 1e-12);
    }
    // The curve passes through its control points.
    QCOMPARE(position(events.first()), p[1]);
    QVERIFY(near(position(events.last()), p[2]));

    // The next sample moves the span on by one; the end of one span is the
    // start of the next.
    const QPointF p4(70.0, 100.0);
    const QList<MEvent> next = interpolator.append(eventAt(p4.x(), p4.y()));
    QCOMPARE(next.size(), 4);
    QVERIFY(near(position(next.first()), p[2]));
    QVERIFY(near(position(next.last()), p[3]));
    QVERIFY(near(position(next.at(1)), catmullRom(p[1], p[2], p[3], p4, 1.0 / 3.0)));
    QVERIFY(near(position(next.at(2)), catmullRom(p[1], p[2], p[3], p4, 2.0 / 3.0)));

    // Evenly spaced points on a line stay on it, at the thirds.
    MStrokeInterpolator line;
    line.start(eventAt(0.0, 0.0));
    line.mirrorPress(eventAt(12.0, 9.0));
    line.append(eventAt(12.0, 9.0));
    const QList<MEvent> straight = line.append(eventAt(24.0, 18.0));
    QCOMPARE(straight.size(), 4);
    for (int k = 0; k < 4; ++k)
        QVERIFY(near(position(straight.at(k)), QPointF(4.0 * k, 3.0 * k)));
}

void TestStrokeSmoothing::interpolatorPassesShortSpansThrough()
{
    // The span from A to B decides, whatever the neighbours.
    const auto spanOf = [](double length) {
        MStrokeInterpolator interpolator;
        interpolator.start(eventAt(0.0, 0.0, 0.3));
        interpolator.mirrorPress(eventAt(length, 0.0));
        interpolator.append(eventAt(length, 0.0, 0.6));
        return interpolator.append(eventAt(length + 100.0, 80.0));
    };
    const QList<MEvent> shortSpan = spanOf(9.999);
    QCOMPARE(shortSpan.size(), 2);
    QCOMPARE(position(shortSpan.at(0)), QPointF(0.0, 0.0));
    QCOMPARE(position(shortSpan.at(1)), QPointF(9.999, 0.0));
    QCOMPARE(shortSpan.at(0).pressure, 0.3);
    QCOMPARE(shortSpan.at(1).pressure, 0.6);
    QCOMPARE(spanOf(10.0).size(), 4);
    QCOMPARE(spanOf(0.0).size(), 2);
    // The 3-4-5 triangle: 6 by 8 is exactly 10.
    MStrokeInterpolator diagonal;
    diagonal.start(eventAt(0.0, 0.0));
    diagonal.mirrorPress(eventAt(6.0, 8.0));
    diagonal.append(eventAt(6.0, 8.0));
    QCOMPARE(diagonal.append(eventAt(6.0, 8.0)).size(), 4);
}

void TestStrokeSmoothing::interpolatorDegenerateInput()
{
    // All samples on one spot: pairs, no NaN.
    MStrokeInterpolator still;
    still.start(eventAt(5.0, 5.0));
    still.mirrorPress(eventAt(5.0, 5.0));
    for (int i = 0; i < 10; ++i) {
        const QList<MEvent> events = still.append(eventAt(5.0, 5.0));
        for (const MEvent& e : events)
            QCOMPARE(position(e), QPointF(5.0, 5.0));
        QCOMPARE(events.size(), i == 0 ? 0 : 2);
    }

    // A long span whose outer neighbours repeat its ends: tangents are half the
    // span, and every point is finite and on the segment.
    MStrokeInterpolator repeated;
    repeated.start(eventAt(0.0, 0.0));
    repeated.mirrorPress(eventAt(0.0, 0.0));
    repeated.append(eventAt(30.0, 0.0));
    const QList<MEvent> events = repeated.append(eventAt(30.0, 0.0));
    QCOMPARE(events.size(), 4);
    for (int k = 0; k < 4; ++k) {
        QVERIFY(std::isfinite(events.at(k).positionX) && std::isfinite(events.at(k).positionY));
        QVERIFY(near(position(events.at(k)),
                     catmullRom(QPointF(0, 0), QPointF(0, 0), QPointF(30, 0), QPointF(30, 0), k / 3.0)));
    }

    // Appending without a press still waits for four samples.
    MStrokeInterpolator headless;
    QVERIFY(headless.append(eventAt(0.0, 0.0)).isEmpty());
    QVERIFY(headless.append(eventAt(20.0, 0.0)).isEmpty());
    QVERIFY(headless.append(eventAt(40.0, 0.0)).isEmpty());
    QCOMPARE(headless.append(eventAt(60.0, 0.0)).size(), 4);
}

void TestStrokeSmoothing::splinePathOnKnownPolygons()
{
    const QVector<QPointF> square = {QPointF(0, 0), QPointF(10, 0), QPointF(10, 10), QPointF(0, 10)};
    MSplinePath spline;
    QVERIFY(!spline.closed());
    spline.setPoints(square);
    QCOMPARE(spline.points(), square);

    // Open: from the first point straight to the middle of the first side,
    // curves round the inner corners, straight to the last point.
    QPainterPath open = spline.path();
    QCOMPARE(open.elementCount(), 9);
    QVERIFY(open.elementAt(0).isMoveTo());
    QCOMPARE(QPointF(open.elementAt(0)), QPointF(0, 0));
    QVERIFY(open.elementAt(1).isLineTo());
    QCOMPARE(QPointF(open.elementAt(1)), QPointF(5, 0));
    expectQuadratic(open, 2, QPointF(5, 0), QPointF(10, 0), QPointF(10, 5));
    expectQuadratic(open, 5, QPointF(10, 5), QPointF(10, 10), QPointF(5, 10));
    QVERIFY(open.elementAt(8).isLineTo());
    QCOMPARE(QPointF(open.elementAt(8)), QPointF(0, 10));

    // Closed: round every corner, from and back to the first side's middle.
    spline.setClosed(true);
    QVERIFY(spline.closed());
    QPainterPath closed = spline.path();
    QCOMPARE(closed.elementCount(), 13);
    QCOMPARE(QPointF(closed.elementAt(0)), QPointF(5, 0));
    expectQuadratic(closed, 1, QPointF(5, 0), QPointF(10, 0), QPointF(10, 5));
    expectQuadratic(closed, 4, QPointF(10, 5), QPointF(10, 10), QPointF(5, 10));
    expectQuadratic(closed, 7, QPointF(5, 10), QPointF(0, 10), QPointF(0, 5));
    expectQuadratic(closed, 10, QPointF(0, 5), QPointF(0, 0), QPointF(5, 0));
    // The quadratic's middle, 1/4 from + 1/2 corner + 1/4 to, lies on the path.
    QVERIFY(near(closed.pointAtPercent(0.125), QPointF(8.75, 1.25), 0.05));
    QCOMPARE(closed.boundingRect(), QRectF(0, 0, 10, 10));

    // Two points are a line, open or closed.
    spline.setPoints({QPointF(1, 2), QPointF(7, 9)});
    QPainterPath line = spline.path();
    QCOMPARE(line.elementCount(), 2);
    QVERIFY(line.elementAt(0).isMoveTo());
    QVERIFY(line.elementAt(1).isLineTo());
    QCOMPARE(QPointF(line.elementAt(1)), QPointF(7, 9));
    spline.setClosed(false);
    QCOMPARE(spline.path().elementCount(), 2);

    // Closing again rebuilds from the kept points.
    spline.setPoints({QPointF(0, 0), QPointF(20, 0), QPointF(10, 20)});
    QCOMPARE(spline.path().elementCount(), 1 + 1 + 3 + 1);
    spline.setClosed(true);
    QCOMPARE(spline.path().elementCount(), 1 + 3 * 3);
    QCOMPARE(QPointF(spline.path().elementAt(0)), QPointF(10, 0));
}

void TestStrokeSmoothing::splinePathDegenerateInput()
{
    MSplinePath spline;
    QVERIFY(spline.path().isEmpty());
    spline.setPoints({QPointF(0, 0), QPointF(10, 0), QPointF(10, 10)});
    QVERIFY(!spline.path().isEmpty());
    // Fewer than two points empty points and path, closed or not.
    spline.setPoints({QPointF(3, 3)});
    QVERIFY(spline.points().isEmpty());
    QVERIFY(spline.path().isEmpty());
    spline.setClosed(true);
    QVERIFY(spline.path().isEmpty());
    spline.setPoints({});
    QVERIFY(spline.path().isEmpty());

    // Repeated points: nothing breaks and everything stays on the points' hull.
    const QVector<QVector<QPointF>> cases = {
        {QPointF(4, 4), QPointF(4, 4)},
        {QPointF(4, 4), QPointF(4, 4), QPointF(4, 4)},
        {QPointF(0, 0), QPointF(0, 0), QPointF(8, 0), QPointF(8, 0), QPointF(8, 6)},
    };
    for (bool closedPath : {false, true}) {
        spline.setClosed(closedPath);
        for (const QVector<QPointF>& points : cases) {
            spline.setPoints(points);
            const QPainterPath path = spline.path();
            QVERIFY(finite(path));
            double left = points.first().x(), right = left, top = points.first().y(), bottom = top;
            for (const QPointF& point : points) {
                left = std::min(left, point.x());
                right = std::max(right, point.x());
                top = std::min(top, point.y());
                bottom = std::max(bottom, point.y());
            }
            QVERIFY(path.elementCount() >= 1);
            for (int i = 0; i < path.elementCount(); ++i) {
                const QPointF point = path.elementAt(i);
                QVERIFY(point.x() >= left && point.x() <= right);
                QVERIFY(point.y() >= top && point.y() <= bottom);
            }
        }
    }
}

void TestStrokeSmoothing::strokeMeterMeasuresSamples()
{
    MStrokeMeter meter;
    MEvent press = eventAt(10.0, 10.0);
    press.speed = 7.0;
    press.directionX = 1.0;
    press.totalTime = 5.0;
    meter.press(&press);
    QCOMPARE(press.speed, 2.0);
    QCOMPARE(press.directionX, 0.0);
    QCOMPARE(press.totalTime, 0.0);
    QCOMPARE(press.totalDistance, 0.0);
    QCOMPARE(meter.lastPosition(), QPointF(10.0, 10.0));

    // First move: 3-4-5 in 10 ms. Both filters pass their first sample.
    MEvent first = eventAt(13.0, 14.0);
    QVERIFY(meter.move(&first, 10.0));
    QCOMPARE(first.directionX, 0.6);
    QCOMPARE(first.directionY, 0.8);
    QCOMPARE(first.timeToPrevious, 10.0);
    QCOMPARE(first.totalTime, 10.0);
    QCOMPARE(first.distanceToPrevious, 5.0);
    QCOMPARE(first.totalDistance, 5.0);
    QCOMPARE(first.speed, 0.5);
    QCOMPARE(meter.lastPosition(), QPointF(13.0, 14.0));

    // Second move: 12 further in 20 ms, through filters fed the same way.
    MSmoothFilter distances(1.0, 0.007, 1.0);
    MSmoothFilter speeds(1.0, 0.007, 1.0);
    distances.filter(5.0, 0.010);
    speeds.filter(0.5, 0.010);
    const double expectedDistance = distances.filter(12.0, 0.030);
    const double expectedSpeed = speeds.filter(expectedDistance / 20.0, 0.030);
    QVERIFY(expectedDistance > 5.0 && expectedDistance < 12.0);
    MEvent second = eventAt(13.0, 26.0);
    QVERIFY(meter.move(&second, 20.0));
    QCOMPARE(second.directionX, 0.0);
    QCOMPARE(second.directionY, 1.0);
    QCOMPARE(second.totalTime, 30.0);
    QCOMPARE(second.distanceToPrevious, expectedDistance);
    QCOMPARE(second.totalDistance, 5.0 + expectedDistance);
    QCOMPARE(second.speed, expectedSpeed);

    // The same millisecond: the speed stays, no NaN; negative time counts as 0.
    MEvent instant = eventAt(13.0, 40.0);
    QVERIFY(meter.move(&instant, 0.0));
    QCOMPARE(instant.speed, expectedSpeed);
    QCOMPARE(instant.timeToPrevious, 0.0);
    QVERIFY(std::isfinite(instant.distanceToPrevious) && instant.distanceToPrevious > 0.0);
    MEvent backwards = eventAt(13.0, 50.0);
    QVERIFY(meter.move(&backwards, -4.0));
    QCOMPARE(backwards.timeToPrevious, 0.0);
    QCOMPARE(backwards.totalTime, 30.0);
    QCOMPARE(backwards.speed, expectedSpeed);

    // Release: measured, and the time total starts over.
    MEvent release = eventAt(13.0, 60.0);
    meter.release(&release, 10.0);
    QCOMPARE(release.totalTime, 40.0);
    QVERIFY(std::isfinite(release.speed) && release.speed != expectedSpeed);
    QCOMPARE(meter.timeAccumulator(), 0.0);
    // A release on the spot of the last sample has no direction.
    MEvent still = eventAt(13.0, 50.0);
    meter.release(&still, 0.0);
    QCOMPARE(still.directionX, 0.0);
    QCOMPARE(still.directionY, 0.0);
    QVERIFY(std::isfinite(still.distanceToPrevious));

    // A new stroke: distance filter and totals start over.
    MEvent again = eventAt(0.0, 0.0);
    meter.press(&again);
    MEvent step = eventAt(0.0, 30.0);
    QVERIFY(meter.move(&step, 5.0));
    QCOMPARE(step.distanceToPrevious, 30.0);
    QCOMPARE(step.totalDistance, 30.0);
    QCOMPARE(step.totalTime, 5.0);
}

void TestStrokeSmoothing::strokeMeterDropsShortMoves()
{
    MStrokeMeter meter;
    MEvent press = eventAt(0.0, 0.0);
    meter.press(&press);
    // Under 0.2 is dropped and the last position stays, so moves add up.
    MEvent tiny = eventAt(0.15, 0.0);
    tiny.speed = 3.0;
    QVERIFY(!meter.move(&tiny, 4.0));
    QCOMPARE(tiny.speed, 3.0);
    QCOMPARE(meter.lastPosition(), QPointF(0.0, 0.0));
    QCOMPARE(meter.timeAccumulator(), 0.0);
    MEvent enough = eventAt(0.3, 0.0);
    QVERIFY(meter.move(&enough, 8.0));
    QCOMPARE(enough.distanceToPrevious, 0.3);
    QCOMPARE(meter.lastPosition(), QPointF(0.3, 0.0));

    // With an accumulator distance of 20, moves count from the last kept one.
    MEvent short1 = eventAt(15.3, 0.0);
    QVERIFY(!meter.move(&short1, 5.0, 20.0));
    MEvent short2 = eventAt(0.3, 19.9);
    QVERIFY(!meter.move(&short2, 5.0, 20.0));
    MEvent far = eventAt(20.3, 0.0);
    QVERIFY(meter.move(&far, 5.0, 20.0));
    QCOMPARE(meter.lastPosition(), QPointF(20.3, 0.0));

    // No movement and NaN positions are dropped too.
    MEvent same = eventAt(20.3, 0.0);
    QVERIFY(!meter.move(&same, 5.0));
    MEvent broken = eventAt(std::numeric_limits<double>::quiet_NaN(), 0.0);
    QVERIFY(!meter.move(&broken, 5.0));
    QCOMPARE(meter.lastPosition(), QPointF(20.3, 0.0));
    QVERIFY(!meter.move(nullptr, 5.0));
    meter.press(nullptr);
    meter.release(nullptr, 1.0);
}

QUILLMERE_TEST_MAIN(TestStrokeSmoothing)
#include "tst_strokesmoothing.moc"
