#include "state/MatchProximity.h"

#include "state/RoundedInteger.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace ambrel {

namespace {

/// What the server's heat level unlocks.
struct Tier
{
    QLatin1String heatLevel; ///< as on the wire
    QLatin1String label;     ///< the distance band
    bool isPhotoVisible;
    bool canOpenPhoto;
    bool showsEveryPhoto;
    bool canSeeMe;
};

// clang-format off
constexpr std::array tiers{
    Tier{QLatin1String("VERY_HOT"), QLatin1String("100 m"),  true, true,  true,  true},
    Tier{QLatin1String("HOT"),      QLatin1String("200 m"),  true, true,  false, false},
    Tier{QLatin1String("AMBREL"),   QLatin1String("1/2 mi"), true, false, false, false},
};
constexpr Tier outermostTier{QLatin1String(), QLatin1String("1 mi"), false, false, false, false};
// clang-format on

const Tier &tierOf(const MatchResult &match)
{
    const auto *const tier = std::find_if(
        tiers.begin(), tiers.end(), [&match](const Tier &candidate) { return candidate.heatLevel == match.heatLevel; });
    return tier == tiers.end() ? outermostTier : *tier;
}

QList<PhotoText> photoList(const MatchResult &match)
{
    if (match.profilePhotos.isEmpty() && match.profilePhoto)
        return {*match.profilePhoto};
    return match.profilePhotos;
}

/// As C prints "%.1f", but with a decimal point in every locale.
QString withOneDecimal(double value)
{
    std::array<char, std::numeric_limits<double>::max_exponent10 + 8> text;
    const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, 1).ptr;
    return QString::fromLatin1(text.data(), end - text.data());
}

} // namespace

bool isPhotoVisible(const MatchResult &match)
{
    return tierOf(match).isPhotoVisible;
}

bool canOpenPhoto(const MatchResult &match)
{
    return tierOf(match).canOpenPhoto && !visiblePhotos(match).isEmpty();
}

QList<PhotoText> visiblePhotos(const MatchResult &match)
{
    const QList<PhotoText> photos = photoList(match);
    return tierOf(match).showsEveryPhoto ? photos : photos.mid(0, 1);
}

bool canSeeMe(const MatchResult &match)
{
    return tierOf(match).canSeeMe;
}

QString heatLabel(const MatchResult &match)
{
    return tierOf(match).label;
}

QString friendlyDistance(const MatchResult &match)
{
    constexpr double metresPerMile = 1609.34;
    if (match.distanceMeters < 1000.0)
        return QString::number(roundedInteger(match.distanceMeters)) + QStringLiteral(" m");
    return withOneDecimal(match.distanceMeters / metresPerMile) + QStringLiteral(" mi");
}

} // namespace ambrel
