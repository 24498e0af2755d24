#include "ui/look/AmbrelLogo.h"

#include "toolkit/AccessibleRole.h"
#include "ui/look/Painting.h"
#include "ui/look/PinShapes.h"
#include "ui/look/Theme.h"

namespace ambrel {

namespace {

/// A frame in the middle of a square of `size`, moved up by `lift`; all lengths are fractions of `size`.
QRectF centredFrame(qreal size, const QSizeF &fraction, qreal lift)
{
    const QSizeF frame = fraction * size;
    return {QPointF((size - frame.width()) / 2, (size - frame.height()) / 2 - lift * size), frame};
}

/// The stroked circle as an area: two true circles, where stroking would flatten the curves.
QPainterPath ringPath(qreal size)
{
    const QPointF centre(size / 2, size / 2);
    const qreal middle = size / 2 - theme::logoStrokeInset * size;
    const qreal half = theme::logoStrokeWidth * size / 2;
    QPainterPath path; // odd-even: the inner circle is a hole
    path.addEllipse(centre, middle + half, middle + half);
    path.addEllipse(centre, middle - half, middle - half);
    return path;
}

QPainterPath ellipsePath(const QRectF &frame)
{
    QPainterPath path;
    path.addEllipse(frame);
    return path;
}

} // namespace

AmbrelLogo::AmbrelLogo(int size, bool inverted, QWidget *parent) : QWidget(parent), m_inverted(inverted)
{
    setFixedSize(size, size);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleRole(*this, QAccessible::Graphic);
    setAccessibleName(QStringLiteral("Ambrel"));
}

void AmbrelLogo::setInverted(bool inverted)
{
    if (std::exchange(m_inverted, inverted) != inverted)
        update();
}

std::array<AmbrelLogo::Area, 5> AmbrelLogo::areas(qreal size, bool inverted)
{
    const QColor badge = inverted ? theme::ambrelRed : theme::ambrelCream;
    const QColor ring = inverted ? theme::logoRingInverted : theme::logoRing;
    const QColor heart = inverted ? QColor(Qt::white) : theme::ambrelRed;
    const QRectF heartFrame = centredFrame(size, {theme::logoHeartSize, theme::logoHeartSize}, 0);
    const QRectF pinFrame = centredFrame(size, theme::logoPinSize, theme::logoPinLift);
    return {{{badge, ellipsePath(QRectF(0, 0, size, size))},
             {ring, ringPath(size)},
             {heart, HeartPinShape().path(heartFrame).translated(heartFrame.topLeft())},
             {badge, PinCutoutShape().path(pinFrame).translated(pinFrame.topLeft())},
             {heart,
              ellipsePath(centredFrame(size, {theme::logoDotDiameter, theme::logoDotDiameter}, theme::logoDotLift))}}};
}

void AmbrelLogo::paint(QPainter &painter, qreal size, bool inverted)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (const Area &area : areas(size, inverted)) {
        painter.setBrush(area.colour);
        painter.drawPath(area.path);
    }
    painter.restore();
}

void AmbrelLogo::paintShadow(QPainter &parentPainter) const
{
    paintDiscShadow(parentPainter, geometry(), theme::logoShadow, theme::logoShadowBlur, theme::logoShadowOffset);
}

void AmbrelLogo::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paint(painter, width(), m_inverted);
}

} // namespace ambrel
