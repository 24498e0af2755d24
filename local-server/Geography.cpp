#include "local-server/Geography.h"

#include <QtMath>
#include <algorithm>
#include <array>
#include <cmath>

namespace ambrel::local {

namespace {

constexpr double earthRadiusMeters = 6'371'008.8;

struct Tier
{
    HeatTier tier;
    double outerEdge; // metres, included
    QStringView word;
};

constexpr std::array tiers = {
    Tier{HeatTier::VeryHot, 100, u"VERY_HOT"},
    Tier{HeatTier::Hot, 200, u"HOT"},
    Tier{HeatTier::Ambrel, metersPerMile / 2, u"AMBREL"},
    Tier{HeatTier::Warm, reachMeters, u"WARM"},
};

} // namespace

double distanceMeters(const Coordinates &from, const Coordinates &to)
{
    const double fromLatitude = qDegreesToRadians(from.latitude);
    const double toLatitude = qDegreesToRadians(to.latitude);
    const double northSine = std::sin((toLatitude - fromLatitude) / 2);
    const double eastSine = std::sin(qDegreesToRadians(to.longitude - from.longitude) / 2);
    // Rounding may lift the haversine of opposite points a hair above 1.
    const double haversine =
        std::min(1.0, northSine * northSine + std::cos(fromLatitude) * std::cos(toLatitude) * eastSine * eastSine);
    return 2 * earthRadiusMeters * std::asin(std::sqrt(haversine));
}

Coordinates placeAt(const Coordinates &origin, double bearing, double meters)
{
    const double angle = meters / earthRadiusMeters;
    const double latitude = qDegreesToRadians(origin.latitude);
    const double sine = std::sin(latitude) * std::cos(angle) + std::cos(latitude) * std::sin(angle) * std::cos(bearing);
    const double east = std::atan2(std::sin(bearing) * std::sin(angle) * std::cos(latitude),
                                   std::cos(angle) - std::sin(latitude) * sine);
    return {qRadiansToDegrees(std::asin(std::clamp(sine, -1.0, 1.0))),
            std::remainder(origin.longitude + qRadiansToDegrees(east), 360.0)};
}

HeatTier heatTier(double meters)
{
    const auto found =
        std::find_if(tiers.begin(), tiers.end(), [meters](const Tier &t) { return meters <= t.outerEdge; });
    return found == tiers.end() ? HeatTier::OutOfReach : found->tier;
}

QString heatLevel(HeatTier tier)
{
    const auto found = std::find_if(tiers.begin(), tiers.end(), [tier](const Tier &t) { return t.tier == tier; });
    return found == tiers.end() ? QString() : found->word.toString();
}

} // namespace ambrel::local
