#pragma once

#include "support/DrawnPhoto.h"
#include "support/Noise.h"

namespace ambrel {

/// A JPEG of a drawing with noise as a sensor makes it; a smooth drawing alone would be no photo.
inline QByteArray noisyPhotoFile(QSize size, int person = 0)
{
    QImage drawn = drawnPortrait(size, person);
    Noise noise;
    for (int y = 0; y < drawn.height(); ++y) {
        auto *const line = reinterpret_cast<quint32 *>(drawn.scanLine(y));
        for (int x = 0; x < drawn.width(); ++x)
            line[x] ^= noise.next(5) * 0x010101U & 0x0f0f0f;
    }
    return fileOf(drawn);
}

/// A reply with `matchCount` people, each with the photo texts given; `variant` moves them a little.
inline QByteArray checkReply(int matchCount, const QList<QByteArray> &photos = {}, int variant = 0)
{
    QByteArray list;
    for (const QByteArray &photo : photos)
        list += (list.isEmpty() ? "\"" : ",\"") + photo + '"';
    QByteArray matches;
    matches.reserve(matchCount * (list.size() + 300));
    for (int i = 0; i < matchCount; ++i) {
        matches += (i ? ",{" : "{") + QByteArray("\"userId\":\"user-") + QByteArray::number(i) +
                   "\",\"displayName\":\"Person " + QByteArray::number(i) +
                   "\",\"distanceMeters\":" + QByteArray::number(12.5 + variant) +
                   ",\"aToB\":72.5,\"bToA\":64,\"heatLevel\":\"VERY_HOT\","
                   "\"profileBio\":\"Likes long walks, short films and caf\xC3\xA9s.\",\"profilePhotos\":[" +
                   list + "],\"updatedAt\":\"2026-01-01T00:00:00Z\"}";
    }
    return "{\"active\":true,\"thresholdPercent\":70,\"matches\":[" + matches + "],\"seeMeMessages\":[]}";
}

} // namespace ambrel
