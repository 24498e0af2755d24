#include "ui/DataUrlImage.h"

#include "ui/Base64.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <algorithm>
#include <cmath>

namespace ambrel {

namespace {

/// The most that a decoded image may take, in mebibytes.
constexpr int allocationLimit = 64;
/// The most pixels that an image may have in its file: a progressive JPEG is held whole, at three bytes or more a
/// pixel, however small it is drawn.
constexpr qint64 maximumPixels = 50'000'000;

std::string_view afterFirstComma(std::string_view text)
{
    const auto comma = text.find(',');
    return comma == std::string_view::npos ? text : text.substr(comma + 1);
}

/// The reader to use for these bytes, empty when they are no photo. SVG, TIFF, icons and the like are none.
QByteArray formatOf(const QByteArray &bytes)
{
    if (bytes.startsWith("\xff\xd8\xff"))
        return QByteArrayLiteral("jpeg");
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return QByteArrayLiteral("png");
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return QByteArrayLiteral("gif");
    if (bytes.startsWith("BM"))
        return QByteArrayLiteral("bmp");
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return QByteArrayLiteral("webp");
    return {};
}

/// The smallest size not below `frame` that a JPEG is decoded to without a resampling pass: eighths of its own.
QSize decodedSize(QSize image, QSize frame)
{
    const double scale = std::max(double(frame.width()) / image.width(), double(frame.height()) / image.height());
    const int eighths = std::clamp(int(std::ceil(scale * 8)), 1, 8);
    const auto scaled = [eighths](int length) { return (length * eighths + 7) / 8; };
    return {scaled(image.width()), scaled(image.height())};
}

/// The middle of `image` in the shape of `frame`.
QRect middleShapedAs(QSize frame, QSize image)
{
    const QSize shape = frame.scaled(image, Qt::KeepAspectRatio).expandedTo({1, 1});
    return {QPoint((image.width() - shape.width()) / 2, (image.height() - shape.height()) / 2), shape};
}

/// The image as it is drawn: exactly as large as the frame, in the format that is painted fastest.
QImage fittedTo(QSize frame, const QImage &image)
{
    const QImage::Format format = image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    const QRect middle = middleShapedAs(frame, image.size());
    const QImage shaped = middle.size() == image.size() ? image : image.copy(middle);
    QImage fitted = shaped.scaled(frame, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(format);
    if (fitted.colorSpace().isValid() && fitted.colorSpace() != QColorSpace(QColorSpace::SRgb))
        fitted.convertToColorSpace(QColorSpace::SRgb);
    return fitted;
}

} // namespace

std::optional<QImage> dataURLImage(std::string_view text, QSize frame)
{
    std::optional<QByteArray> bytes = decodeBase64(afterFirstComma(text));
    if (!bytes)
        return std::nullopt;
    const QByteArray format = formatOf(*bytes);
    if (format.isEmpty())
        return std::nullopt;

    QBuffer file(&*bytes);
    file.open(QIODevice::ReadOnly);
    QImageReader reader(&file, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAllocationLimit(allocationLimit);
    reader.setAutoTransform(true);
    const QSize size = reader.size(); // as stored, before it is turned upright
    if (size.isEmpty() || qint64(size.width()) * size.height() > maximumPixels)
        return std::nullopt;
    if (format == "jpeg") {
        const bool onItsSide = reader.transformation() & QImageIOHandler::TransformationRotate90;
        reader.setScaledSize(decodedSize(size, onItsSide ? frame.transposed() : frame));
    }
    const QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;
    return fittedTo(frame, image);
}

} // namespace ambrel
