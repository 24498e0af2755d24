#include "ui/profile/DataUrlImage.h"

#include "model/Base64.h"
#include "ui/profile/PhotoFile.h"

#include <QColorSpace>
#include <QIODevice>
#include <QImageReader>
#include <QLoggingCategory>
#include <QPainter>
#include <algorithm>
#include <exception>
#include <mutex>

namespace ambrel {

namespace {

std::string_view afterFirstComma(std::string_view text)
{
    const auto comma = text.find(',');
    return comma == std::string_view::npos ? text : text.substr(comma + 1);
}

/// A file in memory that ends where its decoder is to give up.
class WatchedFile : public QIODevice
{
    Q_OBJECT

public:
    WatchedFile(const QByteArray &bytes, DecodingWatch &watch) : m_bytes(bytes), m_watch(watch)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    qint64 size() const override { return m_bytes.size(); }

protected:
    qint64 readData(char *to, qint64 maxLength) override
    {
        if (m_watch.isOver())
            return -1;
        const qint64 length = std::clamp<qint64>(m_bytes.size() - pos(), 0, maxLength);
        std::copy_n(m_bytes.constData() + pos(), length, to);
        return length;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray &m_bytes;
    DecodingWatch &m_watch;
};

/// The middle of an image of size `image`, in the shape of `frame`.
QRect middleShapedAs(QSize frame, QSize image)
{
    const QSize shape = frame.scaled(image, Qt::KeepAspectRatio).expandedTo({1, 1});
    return {QPoint((image.width() - shape.width()) / 2, (image.height() - shape.height()) / 2), shape};
}

/// Lets the JPEG reader decode only what fills `frame`, no smaller, at the least cost: halved up to three times,
/// which libjpeg-turbo has vector code for (five to seven eighths take longer than the whole), the middle alone.
void limitJpegTo(QSize frame, QSize image, QImageReader &reader)
{
    const QRect middle = middleShapedAs(frame, image);
    for (int divisor = 8;; divisor /= 2) {
        // The reader halves only what divides evenly.
        const auto divided = [divisor](int length) { return length / divisor; };
        const QPoint corner(divided(middle.x() + divisor - 1), divided(middle.y() + divisor - 1));
        const QSize size(divided(middle.right() + 1) - corner.x(), divided(middle.bottom() + 1) - corner.y());
        if (divisor == 1 || (size.width() >= frame.width() && size.height() >= frame.height())) {
            reader.setClipRect({corner * divisor, size * divisor});
            reader.setScaledSize(size);
            return;
        }
    }
}

/// The middle of `image`, exactly as large as the frame, in the format that is painted fastest.
QImage fittedTo(QSize frame, const QImage &image)
{
    const QRect middle = middleShapedAs(frame, image.size());
    const bool isMuchLarger = middle.width() > 2 * frame.width() || middle.height() > 2 * frame.height();
    QImage fitted(frame, image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    QPainter painter(&fitted);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (isMuchLarger) {
        // Averages all pixels, which the painter below does not.
        painter.drawImage(0, 0, image.copy(middle).scaled(frame, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    } else {
        // Three to four times as fast, and as good while no pixel is skipped.
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRect(QPoint(), frame), image, middle);
    }
    painter.end();
    if (image.colorSpace().isValid() && image.colorSpace() != QColorSpace(QColorSpace::SRgb)) {
        fitted.setColorSpace(image.colorSpace());
        fitted.convertToColorSpace(QColorSpace::SRgb);
    }
    return fitted;
}

/// Keeps the image readers from writing a line to standard error for every photo that is broken.
void silenceImageReaders()
{
    static std::once_flag once;
    std::call_once(once,
                   [] { QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false\nqt.gui.icc=false")); });
}

/// The picture, at least as large as the frame where the file has it; null when it is none.
QImage decodedFor(QSize frame, const PhotoFile &photo, DecodingWatch &watch)
{
    WatchedFile file(photo.bytes, watch);
    QImageReader reader(&file, photo.format);
    reader.setAutoDetectImageFormat(false);
    reader.setAllocationLimit(maxImageMemory >> 20); // mebibytes
    reader.setAutoTransform(true);
    const QSize size = reader.size(); // as stored, before it is turned upright
    if (size.isEmpty() || qint64(size.width()) * size.height() > maxPhotoPixels)
        return {};
    if (photo.format == "jpeg") {
        const bool onItsSide = reader.transformation() & QImageIOHandler::TransformationRotate90;
        limitJpegTo(onItsSide ? frame.transposed() : frame, size, reader);
    }
    QImage image = reader.read();
    // Painting looks up every pixel's colour, behind the end of the palette as well.
    if (image.format() == QImage::Format_Indexed8 || image.depth() == 1)
        image.setColorCount(1 << image.depth());
    return image;
}

} // namespace

std::optional<QImage> dataURLImage(std::string_view text, QSize frame, const DecodingLimits &limits)
try {
    const std::string_view base64 = afterFirstComma(text);
    if (base64.size() / 4 * 3 > std::size_t(maxPhotoMemory))
        return std::nullopt;
    silenceImageReaders();
    DecodingWatch watch(limits);
    std::optional<QByteArray> bytes = decodeBase64(base64);
    std::optional<PhotoFile> photo = bytes ? vettedPhotoFile(*std::move(bytes)) : std::nullopt;
    if (!photo)
        return std::nullopt;
    const QImage image = decodedFor(frame, *photo, watch);
    if (image.isNull() || watch.isOver())
        return std::nullopt;
    photo.reset();
    return fittedTo(frame, image);
} catch (const std::exception &) {
    return std::nullopt; // out of memory
}

} // namespace ambrel

#include "DataUrlImage.moc"
