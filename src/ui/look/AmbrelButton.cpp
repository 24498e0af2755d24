#include "ui/look/AmbrelButton.h"

#include "toolkit/FocusRing.h"
#include "ui/look/Painting.h"
#include "ui/look/Theme.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>

namespace ambrel {

AmbrelButton::AmbrelButton(const QString &label, const Colors &colors, QWidget *parent)
    : QPushButton(label, parent), m_colors(colors)
{
    setFont(theme::font(theme::TextStyle::Headline));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(false);
}

AmbrelPrimaryButton::AmbrelPrimaryButton(const QString &label, QWidget *parent)
    : AmbrelButton(
          label, {theme::primaryButton, theme::primaryButtonPressed, theme::primaryButtonLabel, theme::focusRingOnRed},
          parent)
{
}

AmbrelSecondaryButton::AmbrelSecondaryButton(const QString &label, QWidget *parent)
    : AmbrelButton(
          label, {theme::secondaryButton, theme::secondaryButtonPressed, theme::secondaryButtonLabel, theme::focusRing},
          parent)
{
}

QSize AmbrelButton::sizeHint() const
{
    // The same width for every label, so that buttons in a row share it equally.
    const int height = theme::scaled(theme::buttonMinimumHeight);
    return {height, height};
}

void AmbrelButton::focusInEvent(QFocusEvent *event)
{
    m_showsFocusRing = showsFocusRing(event->reason(), m_showsFocusRing);
    QPushButton::focusInEvent(event);
}

void AmbrelButton::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->isAutoRepeat() && (isEnter || event->key() == Qt::Key_Space))
        return; // and nothing around the button gets it
    if (isEnter)
        click();
    else
        QPushButton::keyPressEvent(event);
}

void AmbrelButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    fillRounded(painter, rect(), isDown() ? m_colors.pressed : m_colors.rest);
    if (underMouse() && isEnabled() && !isDown())
        fillRounded(painter, rect(), theme::buttonHoverVeil);
    if (hasFocus() && m_showsFocusRing)
        strokeFocusRing(painter, rect(), m_colors.focusRing);
    paintLabel(painter);
}

void AmbrelButton::paintLabel(QPainter &painter) const
{
    const QRect room = rect().adjusted(theme::buttonLabelMargin, 0, -theme::buttonLabelMargin, 0);
    const qreal fit = room.width() / std::max(1.0, QFontMetricsF(font()).horizontalAdvance(text()));
    QFont labelFont = font();
    if (fit < 1) {
        const int smallest = qRound(font().pixelSize() * theme::buttonLabelMinimumScale);
        labelFont.setPixelSize(std::max(smallest, int(font().pixelSize() * fit)));
    }
    painter.setFont(labelFont);
    painter.setPen(m_colors.label);
    painter.drawText(room, Qt::AlignCenter | Qt::TextSingleLine,
                     QFontMetrics(labelFont).elidedText(text(), Qt::ElideRight, room.width()));
}

} // namespace ambrel
