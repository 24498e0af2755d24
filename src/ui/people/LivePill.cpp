#include "ui/people/LivePill.h"

#include "ui/look/Painting.h"
#include "ui/look/TextStyling.h"

namespace ambrel {

LivePill::LivePill(bool isLive, QWidget *parent) : QLabel(parent), m_isLive(!isLive)
{
    setAlignment(Qt::AlignCenter);
    setContentsMargins(theme::pillHorizontalPadding, theme::pillVerticalPadding, theme::pillHorizontalPadding,
                       theme::pillVerticalPadding);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setLive(isLive);
}

void LivePill::setLive(bool isLive)
{
    if (std::exchange(m_isLive, isLive) == isLive)
        return;
    styleText(*this, theme::TextStyle::CaptionBold, isLive ? QColor(Qt::white) : theme::secondaryText);
    setText(isLive ? QStringLiteral("LIVE") : QStringLiteral("PAUSED"));
}

void LivePill::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    fillRounded(painter, rect(), m_isLive ? theme::livePill : theme::pausedPill, height() / 2.0);
    painter.end();
    QLabel::paintEvent(event);
}

} // namespace ambrel
