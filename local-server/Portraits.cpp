#include "local-server/Portraits.h"

#include "local-server/Figure.h"
#include "local-server/Scenery.h"

#include <QBuffer>
#include <QPainter>
#include <algorithm>
#include <array>

namespace ambrel::local {

namespace {

constexpr QSize photoSize(480, 600);

/// How one of the four photos is framed.
struct Framing
{
    int sceneStep; ///< how far from the home scene this one lies
    QPointF face;  ///< middle of the face, in pixels
    double scale;
    double tilt; ///< degrees
    double smile;
    int clothesHue; ///< turned by this many degrees
    bool inTheSun;
};

const std::array<Framing, 4> framings = {
    Framing{0, {240, 262}, 1.36, 0, 0.45, 0, false},
    Framing{2, {190, 300}, 0.98, -5, 0.9, 140, false},
    Framing{5, {248, 300}, 1.74, 4, 0.7, 0, false},
    Framing{4, {296, 330}, 0.78, 3, 1, 220, true},
};

QRgb turned(QRgb color, int degrees)
{
    constexpr int calm = 110; // of 255: bright colours turn gaudy at other hues
    const QColor hsl = QColor(color).toHsl();
    if (degrees == 0)
        return color;
    return QColor::fromHsl((std::max(hsl.hslHue(), 0) + degrees) % 360, std::min(hsl.hslSaturation(), calm),
                           hsl.lightness())
        .rgb();
}

PhotoText dataUrl(const QImage &image)
{
    constexpr int quality = 86;
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", quality);
    const QByteArray text = QByteArrayLiteral("data:image/jpeg;base64,") + jpeg.toBase64();
    return PhotoText(std::string_view(text.constData(), std::size_t(text.size())));
}

} // namespace

QImage drawPortrait(const Look &look, int index)
{
    const Framing &framing = framings.at(std::size_t(index));
    QImage image(photoSize, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawScene(painter, Scene((int(look.home) + framing.sceneStep) % sceneCount), QRectF(image.rect()));

    Look dressed = look;
    dressed.clothes = turned(look.clothes, framing.clothesHue);
    if (framing.inTheSun)
        dressed.glasses = Glasses::Sun;
    painter.translate(framing.face);
    painter.rotate(framing.tilt);
    painter.scale(framing.scale, framing.scale);
    drawFigure(painter, dressed, framing.smile);
    return image;
}

QList<PhotoText> Portraits::photos(const Person &person, qsizetype count)
{
    QList<PhotoText> &drawn = m_drawn[&person];
    while (drawn.size() < count)
        drawn.append(dataUrl(drawPortrait(person.look, int(drawn.size()))));
    return drawn.mid(0, count);
}

} // namespace ambrel::local
