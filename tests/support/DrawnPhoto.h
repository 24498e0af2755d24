#pragma once

#include "model/PhotoText.h"

#include <QBuffer>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <string_view>

namespace ambrel {

/// A portrait drawn for tests: `person` picks the colours. The gradients and strokes give a JPEG encoder real work.
inline QImage drawnPortrait(QSize size, int person = 0)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size.width(), size.height());
    QLinearGradient sky(0, 0, 0.4, 1);
    sky.setColorAt(0, QColor::fromHsv((person * 67 + 190) % 360, 70, 250));
    sky.setColorAt(1, QColor::fromHsv((person * 67 + 230) % 360, 130, 170));
    painter.fillRect(QRectF(0, 0, 1, 1), sky);
    for (int leaf = 0; leaf < 160; ++leaf) {
        const double x = ((leaf * 7919 + person * 31) % 1000) / 1000.0;
        const double y = ((leaf * 104'729) % 1000) / 1000.0;
        painter.setPen(QPen(QColor::fromHsv((person * 67 + leaf) % 360, 90, 230, 70), 0.012));
        painter.drawLine(QPointF(x, y), QPointF(x + 0.05, y - 0.08));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromHsv((person * 97 + 20) % 360, 150, 190)); // shoulders
    painter.drawEllipse(QPointF(0.5, 1.08), 0.42, 0.36);
    const QColor skin = QColor::fromHsv(22, 70 + (person * 37) % 90, 250 - (person * 53) % 110);
    painter.setBrush(skin.darker(112));
    painter.drawRect(QRectF(0.43, 0.58, 0.14, 0.2));
    painter.setBrush(QColor::fromHsv((person * 41 + 10) % 50, 160, 40 + (person * 71) % 120)); // hair
    painter.drawEllipse(QPointF(0.5, 0.4), 0.235, 0.255);
    painter.setBrush(skin);
    painter.drawEllipse(QPointF(0.5, 0.47), 0.18, 0.215);
    painter.setBrush(QColor(60, 40, 35));
    painter.drawEllipse(QPointF(0.43, 0.45), 0.017, 0.014);
    painter.drawEllipse(QPointF(0.57, 0.45), 0.017, 0.014);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(150, 60, 60), 0.012, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(QRectF(0.43, 0.49, 0.14, 0.1), 200 * 16, 140 * 16);
    return image;
}

/// `image` as the bytes of a file.
inline QByteArray fileOf(const QImage &image, const char *format = "JPEG", int quality = 88)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format, quality))
        qFatal("cannot write a %s file", format);
    return bytes;
}

/// `file` as the text that the server sends.
inline QByteArray dataUrlOf(const QByteArray &file)
{
    return QByteArrayLiteral("data:image/jpeg;base64,") + file.toBase64();
}

/// The same, as the client keeps it.
inline PhotoText photoTextOf(const QByteArray &file)
{
    const QByteArray text = dataUrlOf(file);
    return PhotoText(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
}

/// The text of a drawn portrait.
inline PhotoText drawnPhoto(int person = 0, QSize size = {360, 480})
{
    return photoTextOf(fileOf(drawnPortrait(size, person)));
}

} // namespace ambrel
