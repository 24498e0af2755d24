#pragma once

#include <QString>

namespace ambrel::local {

/// A place on the globe, in degrees; north and east are positive.
struct Coordinates
{
    double latitude = 0;
    double longitude = 0;
};

/// How near two people are; every tier includes its outer edge.
enum class HeatTier { VeryHot, Hot, Ambrel, Warm, OutOfReach };

inline constexpr double metersPerMile = 1609.34;
/// Whoever is farther away than this is no match.
inline constexpr double reachMeters = metersPerMile;

/// Great-circle distance in metres.
double distanceMeters(const Coordinates &from, const Coordinates &to);
/// The place `meters` away from `origin` on the great circle that starts at `bearing` (radians clockwise from north).
Coordinates placeAt(const Coordinates &origin, double bearing, double meters);
/// The tier of a distance in metres.
HeatTier heatTier(double meters);
/// The word for a tier on the wire; empty when out of reach.
QString heatLevel(HeatTier tier);

} // namespace ambrel::local
