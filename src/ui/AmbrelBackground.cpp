#include "ui/AmbrelBackground.h"

#include "ui/Theme.h"

#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>
#include <QtMath>

namespace ambrel {

namespace {

QSize pixelSize(const QSize &size, qreal scale)
{
    return {qCeil(size.width() * scale), qCeil(size.height() * scale)};
}

QPixmap renderGradient(const QSize &size, qreal scale)
{
    QLinearGradient gradient(0, 0, size.width(), size.height());
    gradient.setColorAt(0, theme::backgroundStart);
    gradient.setColorAt(0.5, theme::backgroundMiddle);
    gradient.setColorAt(1, theme::backgroundEnd);

    QImage image(pixelSize(size, scale), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    QPainter painter(&image);
    painter.fillRect(QRect(QPoint(), size + QSize(1, 1)), gradient); // covers a last, partial pixel too
    painter.end();
    return QPixmap::fromImage(std::move(image));
}

} // namespace

AmbrelBackground::AmbrelBackground(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void AmbrelBackground::paintEvent(QPaintEvent *event)
{
    const qreal scale = devicePixelRatioF();
    if (m_gradient.size() != pixelSize(size(), scale) || m_gradient.devicePixelRatio() != scale)
        m_gradient = renderGradient(size(), scale);

    // One rectangle at a time is a plain copy. A region of several is filled in spans, which the toolkit hands to other
    // threads and waits for: milliseconds where the processors are busy.
    QPainter painter(this);
    for (const QRect &part : event->region()) {
        painter.setClipRect(part);
        painter.drawPixmap(0, 0, m_gradient);
    }
}

} // namespace ambrel
