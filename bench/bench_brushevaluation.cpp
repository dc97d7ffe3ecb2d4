// The per-stamp evaluation of a brush: all 39 settings from one event through
// their curves, as the stroke runner calls it for every stamp. Run on demand;
// it prints its figures and asserts nothing.

#include "app/mapplication.h"
#include "app/menum.h"
#include "app/mevent.h"
#include "brush/mbrush.h"
#include "brush/mcurve.h"

#include <QElapsedTimer>
#include <QStandardPaths>

#include <cmath>
#include <cstdio>

namespace {

// Events that vary as a stroke's do, so that no curve sees one x only.
QVector<MEvent> strokeEvents(int count)
{
    QVector<MEvent> events;
    MEvent::seedRandom(1234);
    for (int i = 0; i < count; ++i) {
        MEvent event;
        event.type = 2;
        const double t = double(i) / count;
        event.pressure = 0.5 + 0.5 * std::sin(t * 40.0);
        event.tangentialPressure = t;
        event.xTilt = -60.0 + 120.0 * t;
        event.yTilt = 30.0 * std::cos(t * 13.0);
        event.positionX = -100.0 + 200.0 * t;
        event.positionY = 50.0 * std::sin(t * 7.0);
        event.directionX = std::cos(t * 9.0);
        event.directionY = std::sin(t * 9.0);
        event.speed = 100.0 * t;
        event.timeToPrevious = 16.0;
        event.totalTime = 16.0 * i;
        event.distanceToPrevious = 3.0;
        event.totalDistance = 3.0 * i;
        events.append(event);
    }
    return events;
}

// Stamps per second for the brush over the events, best of a few rounds.
void measure(const char* label, const MBrush& brush, const QVector<MEvent>& events)
{
    const MBrush::SettingValues base = brush.baseValues();
    MBrush::SettingValues result{};
    double checksum = 0.0;
    double bestNs = 0.0;
    const int rounds = 5;
    const int passes = 20;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        for (int pass = 0; pass < passes; ++pass) {
            for (const MEvent& event : events) {
                brush.evaluate(base, event, result);
                checksum += result[MEnum::bsRadius];
            }
        }
        const double ns = double(timer.nsecsElapsed());
        if (round == 0 || ns < bestNs)
            bestNs = ns;
    }
    const double stamps = double(events.size()) * passes;
    const double perStamp = bestNs / stamps;
    std::printf("%-44s %10.1f ns/stamp %12.0f stamps/s %14.0f settings/s  (checksum %.3g)\n", label, perStamp,
                1e9 / perStamp, 1e9 / perStamp * MEnum::bsCount, checksum);
}

} // namespace

int main(int argc, char** argv)
{
    // Keeps the settings, data and log of the real user out of reach.
    QStandardPaths::setTestModeEnabled(true);
    MApplication::prepareProcess();
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnbeck"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillmere"));

    const QVector<MEvent> events = strokeEvents(10000);
    std::printf("Evaluation of all %d settings per stamp, %d events, best of 5 rounds of 20 passes.\n",
                int(MEnum::bsCount), int(events.size()));

    MBrush plain;
    measure("no curve", plain, events);

    // One curve on every setting, each on another input, random included.
    MBrush curved;
    for (int setting = 0; setting < MEnum::bsCount; ++setting) {
        MCurve* curve = curved.curve(setting, setting % MEnum::biCount);
        curve->setInitType(setting % (MCurve::GaussianCurve + 1));
    }
    measure("one curve on every setting (random on 2)", curved, events);

    MBrush noRandom;
    for (int setting = 0; setting < MEnum::bsCount; ++setting) {
        MCurve* curve = noRandom.curve(setting, setting % MEnum::biRandom);
        curve->setInitType(setting % (MCurve::GaussianCurve + 1));
    }
    measure("one curve on every setting, none random", noRandom, events);

    MBrush modulo;
    for (int setting = 0; setting < MEnum::bsCount; ++setting) {
        MCurve* curve = modulo.curve(setting, setting % MEnum::biRandom);
        curve->setInitType(MCurve::GaussianCurve);
        curve->setModulo(7.0);
    }
    measure("one curve with modulo on every setting", modulo, events);

    MBrush dense;
    for (int setting = 0; setting < MEnum::bsCount; ++setting) {
        for (int input = 0; input < MEnum::biCount; ++input)
            dense.curve(setting, input)->setInitType(input % (MCurve::GaussianCurve + 1));
    }
    measure("all 14 inputs on every setting (546 curves)", dense, events);
    return 0;
}
