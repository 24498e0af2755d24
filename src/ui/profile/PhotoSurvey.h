#pragma once

#include "model/PhotoText.h"
#include "ui/profile/DecodingLimits.h"

#include <QList>
#include <QSize>
#include <vector>

namespace ambrel {

/// A text in a list of photos that is none.
struct BrokenPhoto
{
    qsizetype position = 0;
    std::size_t hash = 0; ///< of the text, to know it again
};

/// Goes on looking for texts in `photos` that are no photos. `known` are those found before, in order of position,
/// maybe in an older list: each is looked at again if its text is another one. Then looks on from `from`, to the first
/// photo. All broken ones, in order; fewer when the time is up. `frame` is the size to decode for, in device pixels.
/// Any thread.
std::vector<BrokenPhoto> brokenPhotos(const QList<PhotoText> &photos, const std::vector<BrokenPhoto> &known,
                                      qsizetype from, QSize frame, const DecodingLimits &limits);

} // namespace ambrel
