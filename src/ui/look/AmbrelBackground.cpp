#include "ui/look/AmbrelBackground.h"

#include "ui/look/Theme.h"

#include <QImage>
#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>

namespace ambrel {

AmbrelBackground::AmbrelBackground(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

namespace {

/// A part of the line of pixels that crosses the gradient, from pixel `first` on. The whole line has `length` pixels.
QImage gradientLine(qreal length, int first, int count)
{
    QLinearGradient gradient(0, 0, length, 0);
    gradient.setColorAt(0, theme::backgroundStart);
    gradient.setColorAt(0.5, theme::backgroundMiddle);
    gradient.setColorAt(1, theme::backgroundEnd);
    QImage line(count, 1, QImage::Format_RGB32);
    QPainter painter(&line);
    painter.translate(-first, 0);
    painter.fillRect(first, 0, count, 1, gradient);
    return line;
}

} // namespace

void AmbrelBackground::paintEvent(QPaintEvent *event)
{
    // In a gradient from corner to corner, each line of pixels is the one above it, a little further along. So one line
    // is computed, and all others are copied out of it: a sixth of the work, and none of it spread over threads, which
    // the toolkit would wait for. A copy of the whole to blit from would be four megabytes of memory.
    const qreal ratio = devicePixelRatioF();
    const qreal across = width() * ratio;
    const qreal step = height() / qreal(width());
    const qreal length = across + height() * ratio * step;
    QPainter painter(this);
    painter.scale(1 / ratio, 1 / ratio);
    for (const QRect &part : event->region()) {
        const QRect pixels = QRectF(QPointF(part.topLeft()) * ratio, QSizeF(part.size()) * ratio).toAlignedRect();
        const auto along = [step](int y) { return qRound(y * step); };
        const int first = pixels.left() + along(pixels.top());
        const QImage line = gradientLine(length, first, pixels.right() + along(pixels.bottom()) + 1 - first);
        for (int y = pixels.top(); y <= pixels.bottom(); ++y)
            painter.drawImage(pixels.left(), y, line, pixels.left() + along(y) - first, 0, pixels.width(), 1);
    }
}

} // namespace ambrel
