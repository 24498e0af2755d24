#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

namespace ambrel {

/// The relative luminance of a colour, 0 for black to 1 for white.
inline double luminance(const QColor &color)
{
    const auto linear = [](double component) {
        return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// 1 for none to 21 for black on white.
inline double contrast(const QColor &a, const QColor &b)
{
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)}); // a list: the pair holds values
    return (light + 0.05) / (dark + 0.05);
}

} // namespace ambrel
