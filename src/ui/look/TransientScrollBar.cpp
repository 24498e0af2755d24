#include "ui/look/TransientScrollBar.h"

#include <QEvent>

namespace ambrel {

TransientScrollBar::TransientScrollBar(Qt::Orientation orientation, QWidget *parent, std::chrono::milliseconds linger)
    : QScrollBar(orientation, parent)
{
    m_linger.setSingleShot(true);
    m_linger.setInterval(linger);
    connect(&m_linger, &QTimer::timeout, this, qOverload<>(&QWidget::update));
}

QSize TransientScrollBar::sizeHint() const
{
    const int thickness = theme::transientScrollBarThickness;
    return orientation() == Qt::Horizontal ? QSize(QScrollBar::sizeHint().width(), thickness)
                                           : QSize(thickness, QScrollBar::sizeHint().height());
}

bool TransientScrollBar::event(QEvent *event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave)
        update();
    return QScrollBar::event(event);
}

void TransientScrollBar::paintEvent(QPaintEvent *event)
{
    if (m_linger.isActive() || underMouse() || isSliderDown())
        QScrollBar::paintEvent(event);
}

void TransientScrollBar::sliderChange(SliderChange change)
{
    if (change == SliderValueChange)
        m_linger.start();
    QScrollBar::sliderChange(change);
}

} // namespace ambrel
