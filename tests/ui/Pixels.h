#pragma once

#include <QColor>
#include <QImage>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace ambrel {

/// `top` laid over an opaque `bottom`.
inline QColor over(const QColor &top, const QColor &bottom)
{
    const float alpha = top.alphaF();
    return QColor::fromRgbF(top.redF() * alpha + bottom.redF() * (1 - alpha),
                            top.greenF() * alpha + bottom.greenF() * (1 - alpha),
                            top.blueF() * alpha + bottom.blueF() * (1 - alpha));
}

/// The largest difference of any channel, alpha included, in steps of 1/255.
inline int distance(const QColor &a, const QColor &b)
{
    return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue()),
                     std::abs(a.alpha() - b.alpha())});
}

/// The colour `widget` shows at a point in its own coordinates, its children and its window's background included.
inline QColor shownAt(const QWidget &widget, const QPoint &point)
{
    auto &window = *widget.window();
    const QImage image = window.grab().toImage();
    const QPointF spot = QPointF(widget.mapTo(&window, point)) * image.devicePixelRatio();
    return image.pixelColor(spot.toPoint());
}

} // namespace ambrel

/// Fails the running test unless both colours agree but for rounding.
#define COMPARE_COLORS(actual, expected)                                                                               \
    QVERIFY2(                                                                                                          \
        ambrel::distance(actual, expected) <= 2,                                                                       \
        qPrintable((actual).name(QColor::HexArgb) + QStringLiteral(" is not ") + (expected).name(QColor::HexArgb)))
