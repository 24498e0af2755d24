#include "local-server/Encounter.h"

#include <QCryptographicHash>
#include <algorithm>

namespace ambrel::local {

double score(const QString &from, const QString &to)
{
    // A hash of our own choice: qHash may differ from one run to the next.
    const QByteArray pair = from.toUtf8() + '\0' + to.toUtf8();
    const auto byte = static_cast<unsigned char>(QCryptographicHash::hash(pair, QCryptographicHash::Md5).at(0));
    constexpr double best = 98;
    return leastScore + (best - leastScore) * byte / 255.0;
}

qsizetype photosShown(qsizetype available, HeatTier tier)
{
    // Whoever may not see a photo yet does not get it either: nothing leaves the server before the tier unlocks it.
    switch (tier) {
    case HeatTier::VeryHot:
        return available;
    case HeatTier::Hot:
    case HeatTier::Ambrel:
        return std::min<qsizetype>(available, 1);
    case HeatTier::Warm:
    case HeatTier::OutOfReach:
        break;
    }
    return 0;
}

} // namespace ambrel::local
