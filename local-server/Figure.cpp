#include "local-server/Figure.h"

#include <QPainter>
#include <QPainterPath>
#include <array>

namespace ambrel::local {

namespace {

constexpr QRgb inkColor = 0xff2b2226;

QPainterPath ellipse(double x, double y, double radiusX, double radiusY)
{
    QPainterPath path;
    path.addEllipse(QPointF(x, y), radiusX, radiusY);
    return path;
}

QPainterPath facePath()
{
    QPainterPath path(QPointF(-68, -20));
    path.cubicTo(-70, -74, -40, -92, 0, -92);
    path.cubicTo(40, -92, 70, -74, 68, -20);
    path.cubicTo(68, 30, 42, 84, 0, 86);
    path.cubicTo(-42, 84, -68, 30, -68, -20);
    return path;
}

QPen pen(const QColor &color, double width)
{
    return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void drawBody(QPainter &painter, const Look &look)
{
    const QColor skin(look.skin);
    const QColor clothes(look.clothes);
    QPainterPath body(QPointF(-172, 420));
    body.cubicTo(-176, 220, -156, 168, -96, 148);
    body.cubicTo(-60, 138, -40, 132, -30, 118);
    body.lineTo(30, 118);
    body.cubicTo(40, 132, 60, 138, 96, 148);
    body.cubicTo(156, 168, 176, 220, 172, 420);
    painter.fillPath(body, clothes);

    QPainterPath neck(QPointF(-31, 40));
    neck.lineTo(-31, 118);
    neck.cubicTo(-26, 158, 26, 158, 31, 118);
    neck.lineTo(31, 40);
    painter.fillPath(neck, skin);
    painter.save();
    painter.setClipPath(neck);
    painter.fillPath(ellipse(0, 64, 60, 44), skin.darker(118));
    painter.restore();

    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen(clothes.darker(122), 9));
    QPainterPath collar(QPointF(-37, 124));
    collar.cubicTo(-30, 172, 30, 172, 37, 124);
    painter.drawPath(collar);
    painter.setPen(pen(clothes.darker(114), 4));
    painter.drawLine(QPointF(-112, 268), QPointF(-104, 400));
    painter.drawLine(QPointF(112, 268), QPointF(104, 400));
}

void drawHairBehind(QPainter &painter, const Look &look)
{
    const QColor hair(look.hairColor);
    QPainterPath path;
    switch (look.hair) {
    case Hair::Long:
        path.moveTo(-78, -30);
        path.cubicTo(-92, -122, 92, -122, 78, -30);
        path.cubicTo(86, 60, 104, 120, 88, 196);
        path.cubicTo(40, 216, -40, 216, -88, 196);
        path.cubicTo(-104, 120, -86, 60, -78, -30);
        break;
    case Hair::Bob:
        path.moveTo(-82, -26);
        path.cubicTo(-92, -126, 92, -126, 82, -26);
        path.cubicTo(94, 30, 96, 70, 82, 92);
        path.cubicTo(40, 104, -40, 104, -82, 92);
        path.cubicTo(-96, 70, -94, 30, -82, -26);
        break;
    case Hair::Bun:
        path = ellipse(0, -116, 38, 34) + ellipse(0, -30, 76, 74);
        break;
    case Hair::Afro:
        path = ellipse(0, -44, 116, 104);
        break;
    case Hair::Curly: {
        constexpr std::array<QPointF, 10> curls = {QPointF{-78, 8},   {-86, -34}, {-74, -74}, {-40, -104}, {0, -114},
                                                   QPointF{40, -104}, {74, -74},  {86, -34},  {78, 8},     {0, -70}};
        for (const QPointF &curl : curls)
            path |= ellipse(curl.x(), curl.y(), 32, 32);
        break;
    }
    case Hair::Headscarf:
        path.moveTo(-90, 0);
        path.cubicTo(-96, -140, 96, -140, 90, 0);
        path.cubicTo(92, 70, 128, 130, 132, 190);
        path.cubicTo(60, 240, -60, 240, -132, 190);
        path.cubicTo(-128, 130, -92, 70, -90, 0);
        break;
    case Hair::Short:
    case Hair::Bald:
        return;
    }
    painter.fillPath(path, look.hair == Hair::Headscarf ? hair : hair.darker(112));
}

void drawEars(QPainter &painter, const QColor &skin)
{
    for (const double side : {-1.0, 1.0}) {
        painter.fillPath(ellipse(side * 68, -2, 15, 21), skin.darker(106));
        painter.fillPath(ellipse(side * 68, 0, 7, 11), skin.darker(122));
    }
}

void drawFace(QPainter &painter, const Look &look)
{
    const QColor skin(look.skin);
    painter.fillPath(facePath(), skin);
    painter.save();
    painter.setClipPath(facePath());
    QColor shade = skin.darker(125);
    shade.setAlpha(60);
    painter.fillPath(facePath().subtracted(facePath().translated(-16, -6)), shade);
    QColor blush(0xffe0525f);
    blush.setAlpha(46);
    painter.fillPath(ellipse(-40, 26, 20, 14), blush);
    painter.fillPath(ellipse(40, 26, 20, 14), blush);
    painter.restore();
}

void drawBeard(QPainter &painter, const Look &look)
{
    if (look.beard == Beard::None)
        return;
    QPainterPath path(QPointF(-70, -14));
    path.cubicTo(-56, 26, -44, 22, -26, 24);
    path.cubicTo(-10, 18, 10, 18, 26, 24);
    path.cubicTo(44, 22, 56, 26, 70, -14);
    path.cubicTo(74, 44, 44, 98, 0, 98);
    path.cubicTo(-44, 98, -74, 44, -70, -14);
    QColor color(look.hairColor);
    if (look.beard == Beard::Stubble) {
        color.setAlpha(56);
        path = path.intersected(facePath());
    }
    painter.fillPath(path.subtracted(ellipse(0, 47, 27, 15)), color);
}

void drawMouth(QPainter &painter, const QColor &skin, double smile)
{
    const double corner = 40 - 4 * smile;
    QPainterPath mouth(QPointF(-23, corner));
    mouth.cubicTo(-10, corner + 5, 10, corner + 5, 23, corner);
    mouth.cubicTo(14, corner + 12 + 22 * smile, -14, corner + 12 + 22 * smile, -23, corner);
    painter.fillPath(mouth, QColor(0xff8f2f3c));
    painter.save();
    painter.setClipPath(mouth);
    painter.fillPath(ellipse(0, corner - 1, 22, 10), QColor(0xfffffaf3));
    painter.fillPath(ellipse(0, corner + 22 + 8 * smile, 14, 9), QColor(0xffd9616b));
    painter.restore();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen(skin.darker(165), 3));
    painter.drawPath(mouth);
}

void drawNose(QPainter &painter, const QColor &skin)
{
    QPainterPath nose(QPointF(2, -14));
    nose.cubicTo(6, 0, 14, 12, 9, 17);
    nose.cubicTo(4, 21, -4, 21, -8, 17);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen(skin.darker(138), 4));
    painter.drawPath(nose);
}

void drawEyes(QPainter &painter, const Look &look)
{
    const bool hasHair = look.hair != Hair::Headscarf;
    const QColor brow = hasHair ? QColor(look.hairColor).darker(118) : QColor(0xff3a2a22);
    for (const double side : {-1.0, 1.0}) {
        const double x = side * 29;
        painter.fillPath(ellipse(x, -16, 12.5, 8.6), QColor(0xfffffdf8));
        painter.fillPath(ellipse(x, -16, 8, 8), QColor(0xff4b3527));
        painter.fillPath(ellipse(x, -16, 4.5, 4.5), QColor(inkColor));
        painter.fillPath(ellipse(x + 3, -19, 2.4, 2.4), QColor(Qt::white));
        painter.setBrush(Qt::NoBrush);
        painter.setPen(pen(QColor(inkColor), 3.4));
        QPainterPath lid(QPointF(x - 15 * side, -16));
        lid.cubicTo(x - 8 * side, -27, x + 8 * side, -27, x + 16 * side, -18);
        painter.drawPath(lid);
        painter.setPen(pen(brow, 6));
        QPainterPath eyebrow(QPointF(x - 15 * side, -37));
        eyebrow.cubicTo(x - 6 * side, -44, x + 8 * side, -43, x + 18 * side, -35);
        painter.drawPath(eyebrow);
    }
}

/// A cap of hair from temple to temple; `fringe` is how far it comes down over the forehead.
QPainterPath hairCap(double fringe)
{
    QPainterPath path(QPointF(-72, -10));
    path.cubicTo(-90, -132, 90, -132, 72, -10);
    path.cubicTo(66, -34, 58, -52, 34, -62 + fringe);
    path.cubicTo(6, -50 + fringe, -30, -52 + fringe, -50, -58 + fringe);
    path.cubicTo(-62, -46, -68, -30, -72, -10);
    return path;
}

void drawHairInFront(QPainter &painter, const Look &look)
{
    const QColor hair(look.hairColor);
    switch (look.hair) {
    case Hair::Short:
    case Hair::Curly:
    case Hair::Bun:
        painter.fillPath(hairCap(0), hair);
        break;
    case Hair::Bob:
        painter.fillPath(hairCap(10), hair);
        break;
    case Hair::Afro:
        painter.fillPath(hairCap(-4), hair.darker(112));
        break;
    case Hair::Long: {
        QPainterPath path(QPointF(-6, -90));
        path.cubicTo(-56, -96, -96, -62, -80, 46);
        path.cubicTo(-66, 20, -64, -44, -6, -90);
        path.cubicTo(46, -70, 66, 0, 80, 46);
        path.cubicTo(96, -62, 66, -112, -6, -90);
        painter.fillPath(path, hair);
        break;
    }
    case Hair::Headscarf: {
        QPainterPath outer = ellipse(0, -14, 92, 112);
        painter.fillPath(outer.subtracted(ellipse(0, 4, 62, 80)), hair);
        QPainterPath drape(QPointF(-86, 30));
        drape.cubicTo(-60, 104, 60, 104, 86, 30);
        drape.cubicTo(92, 80, 118, 140, 124, 186);
        drape.cubicTo(60, 214, -60, 214, -124, 186);
        drape.cubicTo(-118, 140, -92, 80, -86, 30);
        painter.fillPath(drape, hair);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(pen(hair.darker(120), 4));
        QPainterPath fold(QPointF(-74, 52));
        fold.cubicTo(-36, 116, 40, 134, 104, 150);
        painter.drawPath(fold);
        break;
    }
    case Hair::Bald:
        break;
    }
}

void drawGlasses(QPainter &painter, Glasses glasses)
{
    if (glasses == Glasses::None)
        return;
    const bool isDark = glasses == Glasses::Sun;
    painter.setPen(pen(QColor(inkColor), 4));
    painter.setBrush(QColor::fromRgba(isDark ? 0xf02d3440 : 0x1cffffff));
    for (const double side : {-1.0, 1.0})
        painter.drawRoundedRect(QRectF(side * 30 - 23, -36, 46, 40), isDark ? 14 : 20, isDark ? 14 : 20);
    painter.drawLine(QPointF(-7, -20), QPointF(7, -20));
    painter.drawLine(QPointF(-53, -22), QPointF(-68, -18));
    painter.drawLine(QPointF(53, -22), QPointF(68, -18));
}

} // namespace

void drawFigure(QPainter &painter, const Look &look, double smile)
{
    const QColor skin(look.skin);
    painter.save();
    painter.setPen(Qt::NoPen);
    drawHairBehind(painter, look);
    drawBody(painter, look);
    if (look.hair != Hair::Headscarf)
        drawEars(painter, skin);
    drawFace(painter, look);
    drawBeard(painter, look);
    drawMouth(painter, skin, smile);
    drawNose(painter, skin);
    drawEyes(painter, look);
    drawHairInFront(painter, look);
    drawGlasses(painter, look.glasses);
    painter.restore();
}

} // namespace ambrel::local
