#include "toolkit/WindowControlButton.h"

#include "toolkit/FocusRing.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace ambrel {

namespace {

constexpr QSizeF faceSize(28, 24);
constexpr qreal faceRadius = 6;
constexpr qreal glyphSize = 9;
constexpr qreal glyphStroke = 1.2;
constexpr qreal slantedStroke = 1.6; // looks as heavy as the upright ones

QString nameOf(WindowControlButton::Action action)
{
    switch (action) {
    case WindowControlButton::Action::Minimize:
        return QStringLiteral("Minimize");
    case WindowControlButton::Action::Maximize:
        return QStringLiteral("Maximize");
    case WindowControlButton::Action::Restore:
        return QStringLiteral("Restore");
    case WindowControlButton::Action::Close:
        return QStringLiteral("Close");
    }
    Q_UNREACHABLE();
}

/// The box with its corners where strokes along its sides fill whole pixels of the screen.
QRectF sharpened(const QRectF &box, qreal stroke, const QPainter &painter)
{
    const QTransform toScreen = painter.deviceTransform();
    const qreal half = stroke * toScreen.m11() / 2;
    const auto snap = [&](QPointF corner) {
        const QPointF pixel = toScreen.map(corner);
        return toScreen.inverted().map(
            QPointF(std::round(pixel.x() - half) + half, std::round(pixel.y() - half) + half));
    };
    return {snap(box.topLeft()), snap(box.bottomRight())};
}

} // namespace

WindowControlButton::WindowControlButton(Action action, QWidget *parent) : QPushButton(parent), m_action(action)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAction(action);
}

void WindowControlButton::setAction(Action action)
{
    m_action = action;
    setAccessibleName(nameOf(action));
    setToolTip(nameOf(action));
    update();
}

void WindowControlButton::setColors(const WindowControlColors &colors)
{
    m_colors = colors;
    update();
}

QSize WindowControlButton::sizeHint() const
{
    return faceSize.toSize() + QSize(2 * focusRingReach, 2 * focusRingReach);
}

QColor WindowControlButton::fill() const
{
    const bool closes = m_action == Action::Close;
    if (isDown())
        return closes ? m_colors.closePressedFill : m_colors.pressedFill;
    if (underMouse())
        return closes ? m_colors.closeHoverFill : m_colors.hoverFill;
    return Qt::transparent;
}

void WindowControlButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(rect()).adjusted(focusRingReach, focusRingReach, -focusRingReach, -focusRingReach);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill());
    painter.drawRoundedRect(face, faceRadius, faceRadius);
    if (hasFocus())
        drawFocusRing(painter, face, faceRadius, m_colors.focusRing);

    const bool standsOnCloseFill = m_action == Action::Close && (isDown() || underMouse());
    painter.setBrush(Qt::NoBrush);
    const qreal stroke = std::max(1.0, std::round(glyphStroke * devicePixelRatio())) / devicePixelRatio();
    painter.setPen(QPen(standsOnCloseFill ? m_colors.closeGlyph : m_colors.glyph,
                        m_action == Action::Close ? slantedStroke : stroke, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    QRectF box(0, 0, glyphSize - 1, m_action == Action::Minimize ? 0 : glyphSize - 1);
    box.moveCenter(face.center());
    drawGlyph(painter, sharpened(box, stroke, painter));
}

void WindowControlButton::drawGlyph(QPainter &painter, const QRectF &box) const
{
    constexpr qreal radius = 1.5;
    // Between the two sheets of "Restore", in whole pixels of the screen.
    const qreal offset = std::round(2 * devicePixelRatio()) / devicePixelRatio();
    switch (m_action) {
    case Action::Minimize:
        painter.drawLine(box.topLeft(), box.topRight());
        break;
    case Action::Maximize:
        painter.drawRoundedRect(box, radius, radius);
        break;
    case Action::Restore: {
        painter.drawRoundedRect(box.adjusted(0, offset, -offset, 0), radius, radius);
        QPainterPath behind(QPointF(box.left() + offset, box.top()));
        behind.lineTo(box.right() - radius, box.top());
        behind.quadTo(box.topRight(), QPointF(box.right(), box.top() + radius));
        behind.lineTo(box.right(), box.bottom() - offset);
        painter.drawPath(behind);
        break;
    }
    case Action::Close:
        painter.drawLine(box.topLeft(), box.bottomRight());
        painter.drawLine(box.topRight(), box.bottomLeft());
        break;
    }
}

} // namespace ambrel
