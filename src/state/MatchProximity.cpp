#include "state/MatchProximity.h"

#include "state/RoundedInteger.h"

#include <array>
#include <charconv>
#include <limits>

namespace ambrel {

namespace {

enum class Tier { Outermost, Third, Second, Nearest };

Tier tierOf(const MatchResult &match)
{
    if (match.heatLevel == QLatin1String("VERY_HOT"))
        return Tier::Nearest;
    if (match.heatLevel == QLatin1String("HOT"))
        return Tier::Second;
    if (match.heatLevel == QLatin1String("AMBREL"))
        return Tier::Third;
    return Tier::Outermost;
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
    return tierOf(match) >= Tier::Third;
}

bool canOpenPhoto(const MatchResult &match)
{
    return tierOf(match) >= Tier::Second && !visiblePhotos(match).isEmpty();
}

QList<PhotoText> visiblePhotos(const MatchResult &match)
{
    const QList<PhotoText> photos = photoList(match);
    return tierOf(match) == Tier::Nearest ? photos : photos.mid(0, 1);
}

bool canSeeMe(const MatchResult &match)
{
    return tierOf(match) == Tier::Nearest;
}

QString heatLabel(const MatchResult &match)
{
    switch (tierOf(match)) {
    case Tier::Nearest:
        return QStringLiteral("100 m");
    case Tier::Second:
        return QStringLiteral("200 m");
    case Tier::Third:
        return QStringLiteral("1/2 mi");
    case Tier::Outermost:
        break;
    }
    return QStringLiteral("1 mi");
}

QString unlockNote(const MatchResult &match)
{
    switch (tierOf(match)) {
    case Tier::Nearest:
        return QStringLiteral("All available photos are unlocked.");
    case Tier::Second:
        return QStringLiteral("More photos unlock within 100 m.");
    case Tier::Third:
        return QStringLiteral("Photo opens within 200 m.");
    case Tier::Outermost:
        break;
    }
    return QStringLiteral("Profile photo unlocks within 1/2 mile.");
}

QString friendlyDistance(const MatchResult &match)
{
    constexpr double metresPerMile = 1609.34;
    if (match.distanceMeters < 1000.0)
        return QString::number(roundedInteger(match.distanceMeters)) + QStringLiteral(" m");
    return withOneDecimal(match.distanceMeters / metresPerMile) + QStringLiteral(" mi");
}

} // namespace ambrel
