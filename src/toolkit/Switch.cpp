#include "toolkit/Switch.h"

#include "toolkit/FocusRing.h"

#include <QFocusEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace ambrel {

namespace {

constexpr QSize trackSize(38, 22);
constexpr int labelSpacing = 10;
constexpr qreal knobInset = 2;
constexpr qreal knobStretchWhilePressed = 3;
constexpr qreal disabledOpacity = 0.45;
constexpr int hoverDarkness = 107;
constexpr int pressedDarkness = 118;

} // namespace

Switch::Switch(const QString &text, QWidget *parent)
    : QCheckBox(text, parent), m_colors{palette().color(QPalette::Highlight), palette().color(QPalette::Dark),
                                        palette().color(QPalette::Base), palette().color(QPalette::Highlight)}
{
    setAttribute(Qt::WA_Hover);
}

void Switch::setColors(const SwitchColors &colors)
{
    m_colors = colors;
    update();
}

QSize Switch::sizeHint() const
{
    const int label = text().isEmpty() ? 0 : fontMetrics().size(Qt::TextShowMnemonic, text()).width() + labelSpacing;
    return {label + minimumSizeHint().width(), minimumSizeHint().height()};
}

QSize Switch::minimumSizeHint() const
{
    return {trackSize.width() + 2 * focusRingReach,
            std::max(fontMetrics().height(), trackSize.height() + 2 * focusRingReach)};
}

void Switch::focusInEvent(QFocusEvent *event)
{
    m_showsFocusRing = showsFocusRing(event->reason(), m_showsFocusRing);
    QCheckBox::focusInEvent(event);
}

bool Switch::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}

QRect Switch::trackRect() const
{
    const QRect room = rect().adjusted(focusRingReach, 0, -focusRingReach, 0);
    return QStyle::alignedRect(layoutDirection(), Qt::AlignRight | Qt::AlignVCenter, trackSize, room);
}

void Switch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = trackRect();
    const qreal radius = track.height() / 2;
    if (hasFocus() && m_showsFocusRing)
        drawFocusRing(painter, track, radius, m_colors.focusRing);

    const QRect label = QStyle::visualRect(
        layoutDirection(), rect(), rect().adjusted(0, 0, -(trackSize.width() + focusRingReach + labelSpacing), 0));
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(label, Qt::AlignLeading | Qt::AlignVCenter | Qt::TextShowMnemonic,
                     fontMetrics().elidedText(text(), Qt::ElideRight, label.width(), Qt::TextShowMnemonic));

    // Disabled by itself it looks so, but not when all around it is disabled, as beneath an alert.
    painter.setOpacity(testAttribute(Qt::WA_ForceDisabled) ? disabledOpacity : 1);
    const int darkness = !isEnabled() ? 100 : isDown() ? pressedDarkness : underMouse() ? hoverDarkness : 100;
    painter.setPen(Qt::NoPen);
    painter.setBrush((isChecked() ? m_colors.trackOn : m_colors.trackOff).darker(darkness));
    painter.drawRoundedRect(track, radius, radius);

    QRectF knob = track.adjusted(knobInset, knobInset, -knobInset, -knobInset);
    knob.setWidth(knob.height() + (isDown() ? knobStretchWhilePressed : 0));
    if (isChecked() == (layoutDirection() == Qt::LeftToRight))
        knob.moveRight(track.right() - knobInset);
    painter.setBrush(m_colors.knob);
    painter.drawRoundedRect(knob, knob.height() / 2, knob.height() / 2);
}

} // namespace ambrel
