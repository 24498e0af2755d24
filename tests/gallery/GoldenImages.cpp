#include "gallery/GoldenImages.h"

#include <algorithm>
#include <array>

namespace ambrel {

namespace {

constexpr int tolerance = 6; // of 255, in each channel

using Channels = std::array<int, 3>;

Channels channelsOf(QRgb pixel)
{
    return {qRed(pixel), qGreen(pixel), qBlue(pixel)};
}

/// True if the colour of `picture` at a point lies between the colours that `other` has at and around it.
bool fitsInto(const QImage &picture, const QImage &other, int x, int y)
{
    const Channels color = channelsOf(picture.pixel(x, y));
    Channels least{255, 255, 255};
    Channels most{0, 0, 0};
    for (int row = std::max(0, y - 1); row <= std::min(other.height() - 1, y + 1); ++row) {
        for (int column = std::max(0, x - 1); column <= std::min(other.width() - 1, x + 1); ++column) {
            const Channels neighbour = channelsOf(other.pixel(column, row));
            for (std::size_t channel = 0; channel < neighbour.size(); ++channel) {
                least[channel] = std::min(least[channel], neighbour[channel]);
                most[channel] = std::max(most[channel], neighbour[channel]);
            }
        }
    }
    for (std::size_t channel = 0; channel < color.size(); ++channel) {
        if (color[channel] < least[channel] - tolerance || color[channel] > most[channel] + tolerance)
            return false;
    }
    return true;
}

} // namespace

QString difference(const QImage &actual, const QImage &golden)
{
    if (golden.isNull())
        return QStringLiteral("there is no golden image");
    if (actual.size() != golden.size())
        return QStringLiteral("%1 x %2 pixels instead of %3 x %4")
            .arg(actual.width())
            .arg(actual.height())
            .arg(golden.width())
            .arg(golden.height());
    const QImage shown = actual.convertToFormat(QImage::Format_RGB32);
    const QImage wanted = golden.convertToFormat(QImage::Format_RGB32);
    const int allowed = shown.width() * shown.height() / 20'000;
    int outliers = 0;
    QString first;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            if (shown.pixel(x, y) == wanted.pixel(x, y) ||
                (fitsInto(shown, wanted, x, y) && fitsInto(wanted, shown, x, y)))
                continue;
            if (outliers++ == 0)
                first = QStringLiteral("%1,%2").arg(x).arg(y);
        }
    }
    if (outliers <= allowed)
        return {};
    return QStringLiteral("%1 pixels differ, the first at %2").arg(outliers).arg(first);
}

} // namespace ambrel
