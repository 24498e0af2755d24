#include "ui/look/Painting.h"

#include <QPainterPath>
#include <QRadialGradient>
#include <QtMath>
#include <algorithm>
#include <cmath>

namespace ambrel {

namespace {

/// Restores the painter when it goes out of scope.
class PainterGuard
{
public:
    explicit PainterGuard(QPainter &painter) : m_painter(painter)
    {
        m_painter.save();
        m_painter.setRenderHint(QPainter::Antialiasing);
    }
    ~PainterGuard() { m_painter.restore(); }
    PainterGuard(const PainterGuard &) = delete;
    PainterGuard &operator=(const PainterGuard &) = delete;

private:
    QPainter &m_painter;
};

// The toolkit hands 96 runs of pixels and more to its thread pool and waits until every one of those threads has had a
// processor. So a rounded rectangle is drawn in parts of fewer runs: a line of pixels has one to three, more at a
// corner.
constexpr int straightLinesAtOnce = 30;
constexpr int outlineLinesAtOnce = 8;

/// Where the straight sides of a rounded rectangle are: from a first line of pixels up to a last one, without it.
struct Sides
{
    QTransform toUnits;
    int first;
    int last;

    bool areStraight() const { return first < last; }
    /// The vertical place of a line of pixels.
    qreal at(int line) const { return toUnits.map(QPointF(0, line)).y(); }
    qreal top() const { return at(first); }
    qreal bottom() const { return at(last); }
};

Sides sidesOf(const QPainter &painter, const QRectF &rect, qreal radius)
{
    const QTransform toPixels = painter.deviceTransform();
    return {.toUnits = toPixels.inverted(),
            .first = qCeil(toPixels.map(QPointF(0, rect.top() + radius)).y()),
            .last = qFloor(toPixels.map(QPointF(0, rect.bottom() - radius)).y())};
}

/// Fills what is between `left` and `right` as far down as the sides are straight.
void fillBetween(QPainter &painter, qreal left, qreal right, const Sides &sides, const QBrush &brush)
{
    for (int line = sides.first; line < sides.last; line += straightLinesAtOnce) {
        const int end = std::min(line + straightLinesAtOnce, sides.last);
        painter.fillRect(QRectF(QPointF(left, sides.at(line)), QPointF(right, sides.at(end))), brush);
    }
}

/// Shows of what `draw` draws in `rect` only what is above and below the straight sides, a few lines at a time.
template <typename Draw>
void drawEnds(QPainter &painter, const QRectF &rect, const Sides &sides, Draw draw)
{
    const auto drawBand = [&](int line) {
        const PainterGuard guard(painter);
        const QPointF topLeft(rect.left() - 1, sides.at(line));
        const QPointF bottomRight(rect.right() + 1, sides.at(line + outlineLinesAtOnce));
        painter.setClipRect(QRectF(topLeft, bottomRight), Qt::IntersectClip);
        draw();
    };
    for (int line = sides.first; sides.at(line) > rect.top(); line -= outlineLinesAtOnce)
        drawBand(line - outlineLinesAtOnce);
    for (int line = sides.last; sides.at(line) < rect.bottom(); line += outlineLinesAtOnce)
        drawBand(line);
}

} // namespace

void fillRounded(QPainter &painter, const QRectF &rect, const QBrush &brush, qreal radius)
{
    const PainterGuard guard(painter);
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    const Sides sides = sidesOf(painter, rect, radius);
    if (!sides.areStraight()) {
        painter.drawRoundedRect(rect, radius, radius);
        return;
    }
    const qreal height = 2 * radius;
    const qreal width = std::min(height, rect.width());
    QPainterPath upperEnd(QPointF(rect.left(), sides.top()));
    upperEnd.arcTo(rect.left(), rect.top(), width, height, 180, -90);
    upperEnd.arcTo(rect.right() - width, rect.top(), width, height, 90, -90);
    upperEnd.lineTo(rect.right(), sides.top());
    painter.drawPath(upperEnd);
    fillBetween(painter, rect.left(), rect.right(), sides, brush);
    QPainterPath lowerEnd(QPointF(rect.right(), sides.bottom()));
    lowerEnd.arcTo(rect.right() - width, rect.bottom() - height, width, height, 0, -90);
    lowerEnd.arcTo(rect.left(), rect.bottom() - height, width, height, -90, -90);
    lowerEnd.lineTo(rect.left(), sides.bottom());
    painter.drawPath(lowerEnd);
}

void strokeRounded(QPainter &painter, const QRectF &rect, const QColor &color, qreal width, qreal radius)
{
    const PainterGuard guard(painter);
    const qreal inset = width / 2;
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    const auto drawWhole = [&] {
        painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    };
    const Sides sides = sidesOf(painter, rect, std::max(radius, width));
    if (!sides.areStraight()) {
        drawWhole();
        return;
    }
    drawEnds(painter, rect, sides, drawWhole);
    fillBetween(painter, rect.left(), rect.left() + width, sides, color);
    fillBetween(painter, rect.right() - width, rect.right(), sides, color);
}

void strokeFocusRing(QPainter &painter, const QRectF &rect, const QColor &color, qreal radius)
{
    const qreal inset = theme::focusRingInset;
    strokeRounded(painter, rect.adjusted(inset, inset, -inset, -inset), color, theme::focusRingWidth, radius - inset);
}

void paintDiscShadow(QPainter &painter, const QRectF &frame, const QColor &color, qreal blur, qreal offset)
{
    // A disc much wider than the blur fades at its rim like a straight edge does: along the error function.
    constexpr int steps = 12;
    const qreal deviation = blur / 2;
    const qreal disc = frame.width() / 2;
    const qreal inner = std::max(0.0, disc - blur);
    const qreal outer = disc + blur;

    QRadialGradient fade(frame.center() + QPointF(0, offset), outer);
    for (int step = 0; step <= steps; ++step) {
        const qreal radius = inner + (outer - inner) * step / steps;
        const qreal strength = 0.5 * std::erfc((radius - disc) / (deviation * std::sqrt(2.0)));
        QColor stop = color;
        stop.setAlphaF(float(color.alphaF() * (step == steps ? 0 : strength)));
        fade.setColorAt(radius / outer, stop);
    }
    const PainterGuard guard(painter);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fade);
    painter.drawEllipse(fade.center(), outer, outer);
}

} // namespace ambrel
