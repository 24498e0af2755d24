#include "ui/profile/DataUrlImage.h"
#include "support/DrawnPhoto.h"

#include <QColorSpace>
#include <QTest>
#include <QtEndian>
#include <array>

using namespace ambrel;

namespace {

constexpr QSize frame{86, 104};

std::optional<QImage> decoded(const QByteArray &file, QSize size = frame)
{
    return dataURLImage(photoTextOf(file).view(), size);
}

/// Four quarters in four colours, so that turning and cropping can be told apart.
QImage quarters(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int right = size.width() / 2;
    const int lower = size.height() / 2;
    painter.fillRect(0, 0, right, lower, Qt::red);
    painter.fillRect(right, 0, size.width() - right, lower, Qt::green);
    painter.fillRect(0, lower, right, size.height() - lower, Qt::blue);
    painter.fillRect(right, lower, size.width() - right, size.height() - lower, Qt::white);
    return image;
}

bool isNear(QColor color, QColor expected)
{
    return qAbs(color.red() - expected.red()) < 24 && qAbs(color.green() - expected.green()) < 24 &&
           qAbs(color.blue() - expected.blue()) < 24;
}

/// The colours near the corners: top left, top right, bottom left, bottom right.
bool hasCorners(const QImage &image, const std::array<QColor, 4> &expected)
{
    const int x = image.width() / 8;
    const int y = image.height() / 8;
    const std::array points{QPoint(x, y), QPoint(image.width() - 1 - x, y), QPoint(x, image.height() - 1 - y),
                            QPoint(image.width() - 1 - x, image.height() - 1 - y)};
    for (std::size_t corner = 0; corner < points.size(); ++corner) {
        if (!isNear(image.pixelColor(points[corner]), expected[corner]))
            return false;
    }
    return true;
}

/// `jpeg` with an orientation tag, as cameras write it.
QByteArray turned(const QByteArray &jpeg, char orientation)
{
    QByteArray tag("\xff\xe1\x00\x22"
                   "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0",
                   29);
    tag.append(orientation).append(QByteArray(6, '\0'));
    return jpeg.left(2) + tag + jpeg.mid(2);
}

/// `jpeg` with another size in its header.
QByteArray claiming(QSize size, QByteArray jpeg)
{
    const auto header = jpeg.indexOf("\xff\xc0");
    qToBigEndian(static_cast<quint16>(size.height()), jpeg.data() + header + 5);
    qToBigEndian(static_cast<quint16>(size.width()), jpeg.data() + header + 7);
    return jpeg;
}

/// The start of a PNG file that claims this size, its checksum right.
QByteArray pngClaiming(QSize size)
{
    QByteArray png = fileOf(quarters({16, 16}), "PNG");
    qToBigEndian(static_cast<quint32>(size.width()), png.data() + 16);
    qToBigEndian(static_cast<quint32>(size.height()), png.data() + 20);
    quint32 sum = 0xffffffff;
    for (int at = 12; at < 29; ++at) {
        sum ^= static_cast<unsigned char>(png.at(at));
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (0xedb88320 & (0 - (sum & 1)));
    }
    qToBigEndian(~sum, png.data() + 29);
    return png;
}

} // namespace

class DataUrlImageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTextWithoutACommaIsDecodedWhole()
    {
        const QByteArray base64 = fileOf(quarters({100, 120})).toBase64();
        QVERIFY(dataURLImage(base64.toStdString(), frame).has_value());
    }

    void onlyWhatFollowsTheFirstCommaCounts()
    {
        const std::string base64 = fileOf(quarters({100, 120})).toBase64().toStdString();
        QVERIFY(dataURLImage("," + base64, frame).has_value());
        QVERIFY(dataURLImage("no scheme at all \xff," + base64, frame).has_value());
        QVERIFY(!dataURLImage("data:image/jpeg;base64,," + base64, frame).has_value());
        QVERIFY(!dataURLImage(base64 + ",", frame).has_value());
    }

    void aNewlineOrBlankInsideTheBase64TextFails()
    {
        for (const char *blank : {"\n", "\r\n", " ", "\t"}) {
            std::string text = "data:image/jpeg;base64," + fileOf(quarters({100, 120})).toBase64().toStdString();
            text.insert(60, blank);
            QVERIFY(!dataURLImage(text, frame).has_value());
        }
    }

    void everyPhotoFormatDecodes_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("JPEG") << fileOf(quarters({172, 208}), "JPEG");
        QTest::newRow("grey JPEG") << fileOf(quarters({172, 208}).convertToFormat(QImage::Format_Grayscale8), "JPEG");
        QTest::newRow("PNG") << fileOf(quarters({172, 208}), "PNG");
        QTest::newRow("PNG with 16 bits") << fileOf(quarters({172, 208}).convertToFormat(QImage::Format_RGBX64), "PNG");
        QTest::newRow("BMP") << fileOf(quarters({172, 208}), "BMP");
        QTest::newRow("GIF") << QByteArray::fromBase64("R0lGODdhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");
    }
    void everyPhotoFormatDecodes()
    {
        QFETCH(const QByteArray, file);
        const auto image = decoded(file);
        QVERIFY(image.has_value());
        QCOMPARE(image->size(), frame);
        QCOMPARE(image->format(), QImage::Format_RGB32);
    }

    void nothingElseDecodes_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("SVG") << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>");
        QTest::newRow("TIFF") << QByteArray("II*\0\x08\0\0\0\0\0\0\0\0\0", 14);
        QTest::newRow("icon") << fileOf(quarters({16, 16}), "ICO");
        QTest::newRow("portable pixmap") << fileOf(quarters({16, 16}), "PPM");
        QTest::newRow("X pixmap") << fileOf(quarters({16, 16}), "XPM");
        QTest::newRow("text") << QByteArray("just words");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("cut PNG") << fileOf(drawnPortrait({200, 200}), "PNG").left(9'000);
        QTest::newRow("PNG signature alone") << fileOf(quarters({9, 9}), "PNG").left(8);
        QTest::newRow("JPEG signature alone") << fileOf(quarters({9, 9}), "JPEG").left(3);
        QTest::newRow("BMP signature alone") << QByteArray("BM");
        QTest::newRow("noise after a PNG signature") << fileOf(quarters({9, 9}), "PNG").left(8) + QByteArray(500, 'x');
    }
    void nothingElseDecodes()
    {
        QFETCH(const QByteArray, file);
        QVERIFY(!decoded(file).has_value());
    }

    void anImageThatClaimsToBeEnormousDoesNotDecode()
    {
        const QByteArray jpeg = fileOf(quarters({16, 16}));
        QVERIFY(decoded(claiming({16, 16}, jpeg)).has_value());
        QVERIFY(!decoded(claiming({60'000, 60'000}, jpeg)).has_value());
        QVERIFY(decoded(pngClaiming({16, 16})).has_value());
        QVERIFY(!decoded(pngClaiming({60'000, 60'000})).has_value());
        QVERIFY(!decoded(pngClaiming({6'000, 6'000})).has_value()); // 144 MB of pixels
    }

    void aCutJpegShowsWhatCame()
    {
        const QByteArray whole = fileOf(drawnPortrait({400, 480}));
        const auto image = decoded(whole.left(whole.size() / 2));
        const auto complete = decoded(whole);
        QVERIFY(image.has_value() && complete.has_value());
        for (int x = 0; x < frame.width(); ++x)
            QVERIFY(isNear(image->pixelColor(x, 10), complete->pixelColor(x, 10)));
    }

    void theOrientationTagTurnsThePhotoUpright_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QList<QColor>>("corners");
        const QColor r = Qt::red;
        const QColor g = Qt::green;
        const QColor b = Qt::blue;
        const QColor w = Qt::white;
        QTest::newRow("upright") << 1 << QList{r, g, b, w};
        QTest::newRow("mirrored") << 2 << QList{g, r, w, b};
        QTest::newRow("upside down") << 3 << QList{w, b, g, r};
        QTest::newRow("mirrored, upside down") << 4 << QList{b, w, r, g};
        QTest::newRow("transposed") << 5 << QList{r, b, g, w};
        QTest::newRow("turned right") << 6 << QList{b, r, w, g};
        QTest::newRow("transversed") << 7 << QList{w, g, b, r};
        QTest::newRow("turned left") << 8 << QList{g, w, r, b};
    }
    void theOrientationTagTurnsThePhotoUpright()
    {
        QFETCH(const int, orientation);
        QFETCH(const QList<QColor>, corners);
        const auto image = decoded(turned(fileOf(quarters({400, 200})), static_cast<char>(orientation)));
        QVERIFY(image.has_value());
        QCOMPARE(image->size(), frame);
        QVERIFY(hasCorners(*image, {corners[0], corners[1], corners[2], corners[3]}));
    }

    void thePhotoFillsTheFrameWithItsShapeKept_data()
    {
        QTest::addColumn<QSize>("photo");
        QTest::newRow("large") << QSize(1600, 1200);
        QTest::newRow("wide") << QSize(900, 130);
        QTest::newRow("high") << QSize(100, 900);
        QTest::newRow("small") << QSize(20, 30);
        QTest::newRow("exact") << frame;
    }
    void thePhotoFillsTheFrameWithItsShapeKept()
    {
        QFETCH(const QSize, photo);
        // A black square in the middle must stay a square in the middle.
        QImage drawn(photo, QImage::Format_RGB32);
        drawn.fill(Qt::white);
        const double scale = std::max(86.0 / photo.width(), 104.0 / photo.height());
        const int side = qRound(40 / scale);
        QPainter(&drawn).fillRect((photo.width() - side) / 2, (photo.height() - side) / 2, side, side, Qt::black);
        for (const char *format : {"JPEG", "PNG"}) {
            const auto image = decoded(fileOf(drawn, format, 95));
            QVERIFY(image.has_value());
            QCOMPARE(image->size(), frame);
            const auto isDark = [&image](int x, int y) { return image->pixelColor(x, y).lightness() < 128; };
            QVERIFY(isDark(43, 52) && isDark(43 - 16, 52) && isDark(43 + 15, 52));
            QVERIFY(isDark(43, 52 - 16) && isDark(43, 52 + 15));
            QVERIFY(!isDark(43 - 25, 52) && !isDark(43 + 25, 52) && !isDark(43, 52 - 25) && !isDark(43, 52 + 25));
        }
    }

    void aPhotoOneHairWideDecodes()
    {
        QImage hair(1, 30'000, QImage::Format_RGB32);
        hair.fill(Qt::red);
        for (const char *format : {"JPEG", "PNG"}) {
            const auto image = decoded(fileOf(hair, format));
            QVERIFY(image.has_value());
            QCOMPARE(image->size(), frame);
            QVERIFY(isNear(image->pixelColor(43, 52), Qt::red));
        }
    }

    void transparencyIsKeptReadyToPaint()
    {
        QImage drawn(100, 120, QImage::Format_ARGB32);
        drawn.fill(QColor(255, 0, 0, 128));
        const auto image = decoded(fileOf(drawn, "PNG"));
        QVERIFY(image.has_value());
        QCOMPARE(image->format(), QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(image->pixelColor(43, 52).alpha(), 128);
    }

    void wideColoursBecomeThoseOfTheScreen()
    {
        QImage drawn(100, 120, QImage::Format_RGB32);
        drawn.fill(QColor(200, 60, 50));
        drawn.setColorSpace(QColorSpace::SRgb);
        QImage wide = drawn.convertedToColorSpace(QColorSpace::DisplayP3);
        QVERIFY(wide.pixelColor(50, 60) != drawn.pixelColor(50, 60));
        for (const char *format : {"JPEG", "PNG"}) {
            const auto image = decoded(fileOf(wide, format, 100));
            QVERIFY(image.has_value());
            QVERIFY(isNear(image->pixelColor(43, 52), QColor(200, 60, 50)));
        }
    }
};

QTEST_APPLESS_MAIN(DataUrlImageTest)
#include "DataUrlImageTest.moc"
