#include "ui/Painting.h"

#include <QRadialGradient>
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

} // namespace

void fillRounded(QPainter &painter, const QRectF &rect, const QColor &color, qreal radius)
{
    const PainterGuard guard(painter);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

void strokeRounded(QPainter &painter, const QRectF &rect, const QColor &color, qreal width, qreal radius)
{
    const PainterGuard guard(painter);
    const qreal inset = width / 2;
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
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
