#include "ui/AmbrelBackground.h"

#include "ui/Theme.h"

#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

namespace ambrel {

AmbrelBackground::AmbrelBackground(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void AmbrelBackground::paintEvent(QPaintEvent *event)
{
    QLinearGradient gradient(0, 0, width(), height());
    gradient.setColorAt(0, theme::backgroundStart);
    gradient.setColorAt(0.5, theme::backgroundMiddle);
    gradient.setColorAt(1, theme::backgroundEnd);
    // Drawn anew each time: a copy to blit from would be four megabytes of memory and two milliseconds of the first
    // frame. In bands, because the toolkit spreads 96 lines and more over threads and waits for them, which takes
    // milliseconds where the processors are busy.
    constexpr int band = 64;
    QPainter painter(this);
    for (const QRect &part : event->region()) {
        for (int y = part.top(); y <= part.bottom(); y += band)
            painter.fillRect(part.x(), y, part.width(), std::min(band, part.bottom() + 1 - y), gradient);
    }
}

} // namespace ambrel
