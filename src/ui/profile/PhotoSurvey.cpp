#include "ui/profile/PhotoSurvey.h"

#include "ui/profile/DataUrlImage.h"

#include <functional>

namespace ambrel {

std::vector<BrokenPhoto> brokenPhotos(const QList<PhotoText> &photos, const std::vector<BrokenPhoto> &known,
                                      qsizetype from, QSize frame, const DecodingLimits &limits)
{
    DecodingWatch watch(limits);
    const auto hashAt = [&photos](qsizetype position) {
        return std::hash<std::string_view>()(photos[position].view());
    };
    const auto isBroken = [&](qsizetype position) {
        return !dataURLImage(photos[position].view(), frame, {.isWanted = limits.isWanted});
    };
    std::vector<BrokenPhoto> before;
    std::vector<BrokenPhoto> behind;
    for (const BrokenPhoto &photo : known) {
        if (photo.position >= photos.size() || watch.isOver())
            break;
        const std::size_t hash = hashAt(photo.position);
        if (hash == photo.hash || isBroken(photo.position))
            (photo.position < from ? before : behind).push_back({photo.position, hash});
    }
    auto next = behind.cbegin();
    std::vector<BrokenPhoto> found;
    for (qsizetype position = from; position < photos.size() && !watch.isOver(); ++position) {
        if (next != behind.cend() && next->position == position)
            found.push_back(*next++);
        else if (position == from || isBroken(position))
            found.push_back({position, hashAt(position)});
        else
            break;
    }
    before.insert(before.end(), found.cbegin(), found.cend());
    before.insert(before.end(), next, behind.cend());
    return before;
}

} // namespace ambrel
