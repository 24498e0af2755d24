#include "local-server/Walk.h"

#include <QRandomGenerator>
#include <cmath>
#include <numbers>

namespace ambrel::local {

namespace {

constexpr double fullTurn = 2 * std::numbers::pi;

double between(QRandomGenerator &random, double low, double high)
{
    return low + random.generateDouble() * (high - low);
}

double startPhase(int index)
{
    constexpr double justBeforeTheClosestPoint = 0.92;
    constexpr double farEnd = 0.5;
    if (index == 0)
        return justBeforeTheClosestPoint;
    // The golden ratio spreads any number of starts evenly over the way.
    return std::fmod(farEnd + (index - 1) / std::numbers::phi, 1.0);
}

} // namespace

Coordinates Walk::positionAfter(const Coordinates &centre, double turns) const
{
    const double angle = fullTurn * (phase + turns);
    // The distance swings on a logarithmic scale, so that each tier lasts about as long as the next.
    const double outwards = (1 - std::cos(angle)) / 2;
    const double meters = nearestMeters * std::pow(farthestMeters / nearestMeters, outwards);
    constexpr double sideways = 0.5;
    return placeAt(centre, bearing + sideways * std::sin(angle / 3), meters);
}

Walk walkOf(int index, quint32 seed)
{
    QRandomGenerator random(seed + quint32(index));
    Walk walk;
    walk.nearestMeters = between(random, 18, 60);
    walk.farthestMeters = between(random, 950, 1500);
    walk.period = std::chrono::milliseconds(qint64(between(random, 85'000, 115'000)));
    walk.phase = startPhase(index);
    walk.bearing = between(random, 0, fullTurn);
    return walk;
}

} // namespace ambrel::local
