#include "local-server/Scenery.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <array>
#include <initializer_list>

namespace ambrel::local {

namespace {

/// Scenes are drawn on a square of 100 units, whatever the canvas measures.
constexpr QRectF unitCanvas(0, 0, 100, 100);

void fill(QPainter &painter, QRgb top, QRgb bottom, const QRectF &area = unitCanvas)
{
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, QColor(top));
    gradient.setColorAt(1, QColor(bottom));
    painter.fillRect(area, gradient);
}

void fillPath(QPainter &painter, const QPainterPath &path, QRgb color)
{
    painter.fillPath(path, QColor(color));
}

void disc(QPainter &painter, const QPointF &centre, double radius, QRgb color)
{
    QPainterPath path;
    path.addEllipse(centre, radius, radius);
    painter.fillPath(path, QColor::fromRgba(color));
}

void glow(QPainter &painter, const QPointF &centre, double radius, QRgb color)
{
    QRadialGradient gradient(centre, radius);
    QColor clear(color);
    clear.setAlpha(0);
    gradient.setColorAt(0, QColor(color));
    gradient.setColorAt(1, clear);
    painter.fillRect(unitCanvas, gradient);
}

/// Land whose skyline runs smoothly through `heights`, from the left edge to the right.
void hills(QPainter &painter, std::initializer_list<double> heights, QRgb color)
{
    const double step = 100.0 / double(heights.size() - 1);
    QPainterPath path(QPointF(0, 100));
    path.lineTo(0, *heights.begin());
    double x = 0;
    double y = *heights.begin();
    for (auto height = heights.begin() + 1; height != heights.end(); ++height) {
        path.cubicTo(x + step / 2, y, x + step / 2, *height, x + step, *height);
        x += step;
        y = *height;
    }
    path.lineTo(100, 100);
    fillPath(painter, path, color);
}

void tree(QPainter &painter, double x, double base, double size, QRgb leaves)
{
    painter.fillRect(QRectF(x - size * 0.06, base - size * 0.6, size * 0.12, size * 0.6), QColor(0xff7a5a3c));
    disc(painter, {x - size * 0.18, base - size * 0.72}, size * 0.24, leaves);
    disc(painter, {x + size * 0.2, base - size * 0.7}, size * 0.22, leaves);
    disc(painter, {x, base - size * 0.95}, size * 0.28, QColor(leaves).lighter(108).rgba());
}

void drawPark(QPainter &painter)
{
    fill(painter, 0xffbfe3f2, 0xfff7f2d9);
    glow(painter, {78, 20}, 34, 0xfffff3b8);
    disc(painter, {78, 20}, 7, 0xfffff0a6);
    hills(painter, {58, 50, 60, 52, 57}, 0xffa9d08f);
    tree(painter, 14, 66, 42, 0xff6fae6b);
    tree(painter, 90, 68, 36, 0xff7fba6c);
    hills(painter, {68, 72, 64, 70, 66}, 0xff84bd74);
    hills(painter, {84, 80, 86, 82, 88}, 0xff6aa862);
}

/// Rows of windows, most of them lit, the same ones every time.
void drawWindows(QPainter &painter, const QRectF &tower)
{
    const int rows = int((98 - tower.top() - 4) / 7) + 1;
    const int columns = int((tower.width() - 6) / 5) + 1;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const bool isLit = (row * 5 + column * 7 + int(tower.left())) % 3 != 0;
            const QRectF window(tower.left() + 3 + column * 5, tower.top() + 4 + row * 7, 2.4, 3.4);
            painter.fillRect(window, QColor(isLit ? 0xffffd98a : 0xff6d6596));
        }
    }
}

void drawCity(QPainter &painter)
{
    fill(painter, 0xff6d6aa8, 0xffffc9a0);
    glow(painter, {26, 62}, 46, 0xffffe0b0);
    constexpr std::array<QRectF, 5> far = {QRectF{2, 42, 14, 60}, QRectF{20, 30, 12, 70}, QRectF{38, 46, 16, 60},
                                           QRectF{60, 34, 13, 70}, QRectF{80, 40, 16, 60}};
    for (const QRectF &tower : far)
        painter.fillRect(tower, QColor(0xff8d7fa9));
    constexpr std::array<QRectF, 4> near = {QRectF{-4, 56, 20, 50}, QRectF{22, 62, 18, 50}, QRectF{66, 58, 16, 50},
                                            QRectF{84, 50, 20, 60}};
    for (const QRectF &tower : near) {
        painter.fillRect(tower, QColor(0xff574f7d));
        drawWindows(painter, tower);
    }
}

void drawSea(QPainter &painter)
{
    fill(painter, 0xff9fd8ee, 0xfffdf1d6, QRectF(0, 0, 100, 58));
    glow(painter, {24, 26}, 30, 0xfffffbe0);
    disc(painter, {24, 26}, 6, 0xfffff8cf);
    fill(painter, 0xff3f9fb8, 0xff8fd3d2, QRectF(0, 56, 100, 26));
    QPainterPath sail(QPointF(82, 36));
    sail.lineTo(82, 56);
    sail.lineTo(93, 56);
    sail.closeSubpath();
    fillPath(painter, sail, 0xfffffdf6);
    QPainterPath hull(QPointF(76, 58));
    hull.lineTo(95, 58);
    hull.lineTo(91, 62);
    hull.lineTo(79, 62);
    hull.closeSubpath();
    fillPath(painter, hull, 0xffc8553d);
    hills(painter, {80, 77, 81, 78, 80}, 0xfff7fbf4);
    hills(painter, {82, 79, 83, 80, 82}, 0xfff0d9a8);
}

void drawCafe(QPainter &painter)
{
    fill(painter, 0xffe9c9a0, 0xffcf9e74);
    painter.fillRect(QRectF(8, 12, 34, 46), QColor(0xff7c5236));
    fill(painter, 0xffd6eef2, 0xfff8f1dc, QRectF(10, 14, 30, 42));
    painter.fillRect(QRectF(24.2, 14, 1.6, 42), QColor(0xff7c5236));
    painter.fillRect(QRectF(10, 34, 30, 1.6), QColor(0xff7c5236));
    painter.fillRect(QRectF(60, 34, 36, 2.4), QColor(0xff7c5236));
    constexpr std::array<QRgb, 6> cups = {0xffb5485d, 0xff2f6f8f, 0xfff5efe2, 0xffd98a2b, 0xff5c7f3a, 0xfff5efe2};
    double x = 62;
    for (const QRgb cup : cups) {
        painter.fillRect(QRectF(x, 27, 4, 7), QColor(cup));
        x += 5.6;
    }
    painter.fillRect(QRectF(77.6, 0, 0.8, 8), QColor(0xff4b3323));
    glow(painter, {78, 16}, 26, 0xfffff0bf);
    QPainterPath lamp(QPointF(72, 15));
    lamp.quadTo(78, 2, 84, 15);
    lamp.closeSubpath();
    fillPath(painter, lamp, 0xff3f5b57);
    painter.fillRect(QRectF(0, 84, 100, 16), QColor(0xff8d5f3f));
}

void ridge(QPainter &painter, std::initializer_list<QPointF> points, QRgb color)
{
    QPainterPath path(QPointF(0, 100));
    for (const QPointF &point : points)
        path.lineTo(point);
    path.lineTo(100, 100);
    fillPath(painter, path, color);
}

void drawMountains(QPainter &painter)
{
    fill(painter, 0xffa8c8ea, 0xfffbe6d8);
    ridge(painter, {{0, 54}, {16, 34}, {30, 50}, {52, 22}, {70, 46}, {86, 30}, {100, 48}}, 0xff8fa3c4);
    constexpr std::array<QPointF, 6> snow = {QPointF{52, 22}, QPointF{45, 31}, QPointF{49, 30},
                                             QPointF{53, 34}, QPointF{56, 30}, QPointF{59.5, 32}};
    painter.setBrush(QColor(0xfffbfdff));
    painter.drawPolygon(snow.data(), int(snow.size()));
    ridge(painter, {{0, 66}, {22, 50}, {44, 68}, {68, 48}, {100, 70}}, 0xff6f87a8);
    hills(painter, {80, 70, 78, 72, 80}, 0xff5f8f6d);
    hills(painter, {90, 84, 90, 82, 88}, 0xff4d7c5b);
}

void drawStudio(QPainter &painter)
{
    fill(painter, 0xfff6d9d2, 0xffefb9a9);
    disc(painter, {50, 44}, 42, 0x55fff6ee);
    disc(painter, {16, 82}, 18, 0x40d1495b);
    disc(painter, {90, 16}, 12, 0x40ffffff);
}

} // namespace

void drawScene(QPainter &painter, Scene scene, const QRectF &canvas)
{
    constexpr std::array scenes = {drawPark, drawCity, drawSea, drawCafe, drawMountains, drawStudio};
    static_assert(scenes.size() == sceneCount);
    painter.save();
    painter.translate(canvas.topLeft());
    painter.scale(canvas.width() / unitCanvas.width(), canvas.height() / unitCanvas.height());
    painter.setPen(Qt::NoPen);
    scenes.at(std::size_t(scene))(painter);
    painter.restore();
}

} // namespace ambrel::local
