#include "support/DrawnPhoto.h"
#include "support/ResidentMemory.h"
#include "support/Slowdown.h"
#include "ui/profile/DataUrlImage.h"
#include "ui/profile/PhotoFile.h"

#include <QColorSpace>
#include <QDir>
#include <QImageReader>
#include <QImageWriter>
#include <QRandomGenerator>
#include <QTemporaryFile>
#include <QTest>
#include <QtEndian>
#include <ctime>
#include <sys/resource.h>
#include <unistd.h>
#include <zlib.h>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

constexpr QSize frame{86, 104};
constexpr qint64 mebibyte = 1 << 20;

std::optional<QImage> decoded(const QByteArray &file, const DecodingLimits &limits = {})
{
    return dataURLImage(photoTextOf(file).view(), frame, limits);
}

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

/// What it cost to decode a file.
struct Cost
{
    bool isShown = false;
    double seconds = 0; ///< of processor
    qint64 memory = 0;  ///< resident peak, the text itself left out

    QByteArray text() const
    {
        return QByteArray::number(seconds) + " s, " + QByteArray::number(memory / mebibyte) + " MiB";
    }
};

Cost costOf(const QByteArray &file)
{
    const PhotoText text = photoTextOf(file);
    forgetMemoryPeak();
    const qint64 before = memoryFigure("VmRSS");
    const double start = processorSeconds();
    const bool isShown = dataURLImage(text.view(), frame).has_value();
    return {isShown, processorSeconds() - start, memoryFigure("VmHWM") - before};
}

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray chunk(const QByteArray &name, const QByteArray &data)
{
    const QByteArray summed = name + data;
    const auto sum = crc32(0, reinterpret_cast<const uchar *>(summed.constData()), uInt(summed.size()));
    return bigEndian(quint32(data.size())) + summed + bigEndian(quint32(sum));
}

const QByteArray signature = QByteArrayLiteral("\x89PNG\r\n\x1a\n");

QByteArray header(QSize size, int depth, int colorType, bool isInterlaced)
{
    QByteArray data = bigEndian(quint32(size.width())) + bigEndian(quint32(size.height()));
    return chunk("IHDR", data.append(char(depth)).append(char(colorType)).append(2, '\0').append(char(isInterlaced)));
}

QByteArray deflated(const QByteArray &data)
{
    return qCompress(data, 9).mid(4);
}

/// A PNG file whose pixels are noise, in rows of every filter.
QByteArray noisyPng(QSize size, int depth, int colorType, bool isInterlaced)
{
    QRandomGenerator random(quint32(size.width() * 1000 + size.height() + depth * 7 + colorType));
    // More than enough; each byte may be the number of a filter, wherever the rows begin.
    QByteArray pixels((size.width() + 8) * (size.height() + 8) * (1 + depth * 4 / 8), '\0');
    for (char &byte : pixels)
        byte = char(random.generate() % 5);
    const QByteArray palette = colorType == 3 ? chunk("PLTE", QByteArray("\x10\x20\x30", 3).repeated(1 << depth)) : "";
    return signature + header(size, depth, colorType, isInterlaced) + palette + chunk("IDAT", deflated(pixels)) +
           chunk("IEND", {});
}

/// A whole picture with something in front of its pixels.
QByteArray pngWith(const QByteArray &chunks)
{
    QByteArray png = fileOf(drawnPortrait({40, 50}), "PNG");
    return png.insert(33, chunks);
}

QByteArray progressiveJpeg(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    if (!writer.write(image))
        qFatal("cannot write a JPEG file");
    return bytes;
}

/// A progressive JPEG that goes over its pixels so many times.
QByteArray jpegWithScans(QSize size, int scans)
{
    QImage plain(size, QImage::Format_Grayscale8);
    plain.fill(Qt::gray);
    const QByteArray jpeg = progressiveJpeg(plain);
    const qsizetype lastScan = jpeg.lastIndexOf("\xff\xda");
    const QByteArray scan = jpeg.mid(lastScan, jpeg.size() - 2 - lastScan);
    return jpeg.left(lastScan) + scan.repeated(scans) + jpeg.right(2);
}

/// The start of a JPEG file with four components at full resolution, and a scan without anything in it.
QByteArray claimingJpeg(uchar frameMarker, QSize size)
{
    QByteArray jpeg("\xff\xd8\xff", 3);
    jpeg.append(char(frameMarker)).append("\0\x14\x08", 3);
    jpeg.append(char(size.height() >> 8)).append(char(size.height())).append(char(size.width() >> 8));
    jpeg.append(char(size.width())).append('\4');
    for (char id = 1; id <= 4; ++id)
        jpeg.append(id).append("\x11\0", 2);
    jpeg.append("\xff\xdb\0\x43\0", 5).append(64, '\1');
    return jpeg.append("\xff\xda\0\x0e\4\1\0\2\0\3\0\4\0\0\0\0", 16);
}

QImage noise(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator random(7);
    random.fillRange(reinterpret_cast<quint32 *>(image.bits()), image.sizeInBytes() / 4);
    return image;
}

/// What the toolkit makes of a file that nobody has looked through.
QImage plainlyDecoded(const QByteArray &file)
{
    QByteArray bytes = file;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    return reader.read();
}

/// All lines that reach standard error while this exists.
class StandardError
{
public:
    StandardError() : m_before(dup(2))
    {
        if (!m_file.open())
            qFatal("no temporary file");
        dup2(m_file.handle(), 2);
    }
    ~StandardError() { restore(); }
    Q_DISABLE_COPY_MOVE(StandardError)

    QByteArray text()
    {
        restore();
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    void restore() { dup2(m_before, 2); }

    QTemporaryFile m_file;
    const int m_before;
};

/// A few real pictures of each format.
QList<QByteArray> soundFiles()
{
    QList<QByteArray> files;
    const QDir seeds(QStringLiteral(AMBREL_PHOTO_SEEDS));
    for (const QFileInfo &info : seeds.entryInfoList(QDir::Files, QDir::Name)) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read a seed");
        files.append(file.readAll());
    }
    return files;
}

} // namespace

class HostilePhotoTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPngsClaimsAreNeverBelieved_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<quint32>("claim");
        for (const char *name : {"tEXt", "zTXt", "iTXt", "sPLT", "iCCP", "PLTE", "tRNS", "eXIf", "IDAT", "quIz"}) {
            QTest::addRow("2 GiB of %s", name) << QByteArray(name) << quint32(0x7fffffff);
            QTest::addRow("4 GiB of %s", name) << QByteArray(name) << quint32(0xffffffff);
        }
    }
    void aPngsClaimsAreNeverBelieved()
    {
        QFETCH(const QByteArray, name);
        QFETCH(const quint32, claim);
        const QByteArray attack = signature + header({8, 8}, 8, 2, false) + bigEndian(claim) + name;
        QVERIFY(attack.size() < 50);
        const Cost cost = costOf(attack);
        QVERIFY(!cost.isShown);
        QVERIFY2(cost.memory < 20 * mebibyte && cost.seconds < 0.1, cost.text().constData());
    }

    void compressedTextsCostNothing_data()
    {
        QTest::addColumn<QByteArray>("chunks");
        const QByteArray bomb = deflated(QByteArray(60 * mebibyte, ' '));
        QTest::newRow("zTXt") << chunk("zTXt", QByteArray("Comment\0\0", 9) + bomb).repeated(12);
        QTest::newRow("iTXt") << chunk("iTXt", QByteArray("Comment\0\1\0\0\0", 12) + bomb).repeated(12);
        QTest::newRow("iCCP") << chunk("iCCP", QByteArray("Profile\0\0", 9) + bomb);
        QTest::newRow("tEXt") << chunk("tEXt", QByteArray("Comment\0", 8) + QByteArray(2000, 'x')).repeated(1000);
    }
    void compressedTextsCostNothing()
    {
        QFETCH(const QByteArray, chunks);
        const Cost cost = costOf(pngWith(chunks));
        QVERIFY(cost.isShown);
        QVERIFY2(cost.memory < 20 * mebibyte && cost.seconds < 0.2, cost.text().constData());
    }

    void aColorProfileIsTakenOnlyAtItsWord()
    {
        for (const quint32 claim : {quint32(0x7fffffff), quint32(131), quint32(0)}) {
            const QByteArray profile = bigEndian(claim) + QByteArray(128, '\0');
            const Cost cost = costOf(pngWith(chunk("iCCP", QByteArray("P\0\0", 3) + deflated(profile))));
            QVERIFY(cost.isShown);
            QVERIFY2(cost.memory < 20 * mebibyte, cost.text().constData());
        }
    }

    void aJpegWithThousandsOfScansIsRefused()
    {
        QVERIFY(decoded(jpegWithScans({1000, 1000}, 5)).has_value());
        const QByteArray attack = jpegWithScans({5000, 5000}, 4000);
        QVERIFY2(attack.size() < 1'000'000, QByteArray::number(attack.size()).constData());
        const Cost cost = costOf(attack);
        QVERIFY(!cost.isShown);
        QVERIFY2(cost.memory < 20 * mebibyte && cost.seconds < 0.1, cost.text().constData());
    }

    void noNumberOfScansCostsMoreThanASecond()
    {
        for (const auto &[scans, side] : {std::pair(90, 1500), std::pair(50, 3000), std::pair(15, 6500)}) {
            const Cost cost = costOf(jpegWithScans({side, side}, scans));
            QVERIFY2(cost.memory < 200 * mebibyte && cost.seconds < 1.3, cost.text().constData());
        }
    }

    void aJpegsClaimsAreNeverBelieved_data()
    {
        QTest::addColumn<int>("frameMarker");
        QTest::addColumn<QSize>("size");
        for (const int marker : {0xc0, 0xc1, 0xc2, 0xc9, 0xca}) {
            for (const QSize size : {QSize(65'535, 65'535), QSize(7071, 7071), QSize(4500, 4500), QSize(65'500, 700)})
                QTest::addRow("%x: %d x %d", marker, size.width(), size.height()) << marker << size;
        }
    }
    void aJpegsClaimsAreNeverBelieved()
    {
        QFETCH(const int, frameMarker);
        QFETCH(const QSize, size);
        const Cost cost = costOf(claimingJpeg(uchar(frameMarker), size));
        QVERIFY2(cost.memory < 200 * mebibyte && cost.seconds < 1.3, cost.text().constData());
    }

    void anAnimationShowsItsFirstFrame()
    {
        const QByteArray dot = QByteArray::fromBase64("R0lGODdhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");
        const QByteArray screen = dot.left(19);
        const QByteArray picture = dot.mid(19, dot.size() - 20);
        const Cost cost = costOf(screen + picture.repeated(100'000) + dot.right(1));
        QVERIFY(cost.isShown);
        QVERIFY2(cost.memory < 40 * mebibyte && cost.seconds < 1, cost.text().constData());

        const QByteArray control = chunk("acTL", bigEndian(0xffffffff) + bigEndian(0));
        QVERIFY(decoded(pngWith(control)).has_value());
    }

    void decodingThatTakesTooLongIsGivenUp()
    {
        for (const char *const format : {"JPEG", "PNG", "BMP"}) {
            const QByteArray file = fileOf(noise({2000, 2000}), format, 95);
            QVERIFY(decoded(file).has_value());
            const double start = processorSeconds();
            QVERIFY2(!decoded(file, {.maxProcessorTime = 3ms, .isWanted = [] { return true; }}), format);
            QVERIFY2(processorSeconds() - start < 0.2 * slowdown, format); // base64 is read before
        }
    }

    void whatNobodyWaitsForIsGivenUpInItsMiddle()
    {
        for (const char *const format : {"JPEG", "PNG", "BMP"}) {
            int questions = 0;
            const auto image = decoded(fileOf(noise({1000, 1000}), format, 95),
                                       {.maxProcessorTime = 1h, .isWanted = [&questions] { return ++questions < 10; }});
            QVERIFY2(!image, format);
            QCOMPARE(questions, 10); // and nothing was read after the answer
        }
    }

    void aTextTooLongForAPhotoIsNotEvenRead()
    {
        const std::string text = "data:image/png;base64," + std::string(240 * std::size_t(mebibyte), 'A');
        forgetMemoryPeak();
        const qint64 before = memoryFigure("VmRSS");
        QVERIFY(!dataURLImage(text, frame));
        QVERIFY(memoryFigure("VmHWM") - before < 20 * mebibyte);
    }

    void runningOutOfMemoryIsNoMoreThanALock()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("the sanitizers end a program that runs out of memory");
#endif
        const std::string text = "data:image/png;base64," + std::string(120 * std::size_t(mebibyte), 'A');
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_AS, &before), 0);
        const rlimit tight{rlim_t(memoryFigure("VmSize") + 30 * mebibyte), before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_AS, &tight), 0);
        const auto image = dataURLImage(text, frame);
        QCOMPARE(setrlimit(RLIMIT_AS, &before), 0);
        QVERIFY(!image);
    }

    void aPngThatWasLookedThroughHasTheSamePixels()
    {
        int compared = 0;
        for (const auto &[colorType, depths] :
             {std::pair(0, QList{1, 2, 4, 8, 16}), std::pair(2, QList{8, 16}), std::pair(3, QList{1, 2, 4, 8}),
              std::pair(4, QList{8, 16}), std::pair(6, QList{8, 16})}) {
            for (const int depth : depths) {
                for (const bool isInterlaced : {false, true}) {
                    for (const QSize size : {QSize(1, 1), QSize(3, 2), QSize(5, 9), QSize(17, 33), QSize(1, 2000),
                                             QSize(2000, 1), QSize(100, 80)}) {
                        const QByteArray file = noisyPng(size, depth, colorType, isInterlaced);
                        const auto png = plainPng(file);
                        const QImage expected = plainlyDecoded(file);
                        QVERIFY2(png && !expected.isNull(), file.toHex().left(80).constData());
                        const QImage image = plainlyDecoded(*png);
                        QCOMPARE(image.size(), size);
                        QVERIFY2(image == expected, file.toHex().left(80).constData());
                        ++compared;
                    }
                }
            }
        }
        QCOMPARE(compared, 15 * 2 * 7);
        for (const QByteArray &file : soundFiles()) {
            const auto photo = vettedPhotoFile(file);
            QVERIFY(photo.has_value());
            const QImage image = plainlyDecoded(photo->bytes);
            const QImage expected = plainlyDecoded(file);
            QVERIFY(!image.isNull() && image == expected && image.colorSpace() == expected.colorSpace());
        }
    }

    void noColorBehindTheEndOfAPaletteIsLookedUp()
    {
        const QByteArray palette = chunk("PLTE", QByteArray("\xff\0\0\0\0\xff", 6));
        const QByteArray rows = (QByteArray(1, '\0') + QByteArray(100, '\xf0')).repeated(120);
        const QByteArray png =
            signature + header({100, 120}, 8, 3, false) + palette + chunk("IDAT", deflated(rows)) + chunk("IEND", {});
        QImage full({100, 120}, QImage::Format_Indexed8);
        full.setColorCount(256);
        full.fill(0);
        QByteArray bmp = fileOf(full, "BMP").left(54);
        qToLittleEndian(quint32(2), bmp.data() + 46); // colours
        qToLittleEndian(quint32(62), bmp.data() + 10);
        bmp += QByteArray("\0\0\xff\0\xff\0\0\0", 8) + QByteArray(100 * 120, '\xf0');
        for (const QByteArray &file : {png, bmp}) {
            const auto image = decoded(file);
            QVERIFY(image.has_value());
            const QRgb color = image->pixel(43, 52);
            QVERIFY2(color == 0xffff0000 || color == 0xff000000, qPrintable(QColor(color).name()));
        }
    }

    void aFileThatWasCutShowsWhatTheToolkitWouldShow()
    {
        const QImage portrait = drawnPortrait({300, 360});
        QList<QByteArray> files = {fileOf(portrait), progressiveJpeg(portrait), fileOf(portrait, "PNG"),
                                   fileOf(portrait, "BMP")};
        int shown = 0;
        int refused = 0;
        for (const QByteArray &file : files + soundFiles()) {
            const qsizetype step = file.size() > 4000 ? 1000 : 40;
            for (qsizetype length = 0; length <= file.size(); length += step) {
                const QByteArray cut = file.left(length);
                const bool isExpected = !plainlyDecoded(cut).isNull();
                const bool isShown = decoded(cut).has_value();
                QVERIFY2(isShown == isExpected,
                         (file.left(12).toHex() + " cut at " + QByteArray::number(length)).constData());
                ++(isShown ? shown : refused);
            }
        }
        QVERIFY(shown > 100 && refused > 100);
    }

    void noMutationCostsMuchOrIsQuoted()
    {
        QRandomGenerator random(20'26);
        StandardError standardError;
        int shown = 0;
        double worst = 0;
        const QList<QByteArray> files = soundFiles();
        for (int round = 0; round < 4000; ++round) {
            QByteArray file = files[round % files.size()];
            for (int change = random.bounded(1, 6); change > 0; --change) {
                const auto at = random.bounded(int(file.size()));
                if (random.bounded(4) == 0)
                    file.insert(at, file.mid(random.bounded(int(file.size())), random.bounded(60)));
                else
                    file[at] = char(random.bounded(256));
            }
            if (file.startsWith(signature))
                repairChecksums(file);
            const double start = processorSeconds();
            const auto image = decoded(file);
            worst = std::max(worst, processorSeconds() - start);
            QVERIFY(!image || image->size() == frame);
            shown += image.has_value();
        }
        // libpng says in a few words of its own what is wrong, and nothing that the file says.
        const QList<QByteArray> lines = standardError.text().split('\n');
        for (const QByteArray &line : lines)
            QVERIFY2(line.isEmpty() || (line.startsWith("libpng error: ") && line.size() < 60), line.constData());
        QVERIFY2(worst < 1.3, QByteArray::number(worst).constData());
        QVERIFY2(shown > 400 && shown < 3600, QByteArray::number(shown).constData());
    }

    void photosOfEveryShapeAndKindAreShown()
    {
        for (const QSize size : {QSize(1, 1), QSize(1, 20'000), QSize(20'000, 1), QSize(7, 5000)}) {
            for (const char *const format : {"JPEG", "PNG", "BMP"}) {
                QImage image(size, QImage::Format_RGB32);
                image.fill(Qt::red);
                const auto photo = decoded(fileOf(image, format));
                QVERIFY2(photo && photo->pixelColor(43, 52).red() > 240, format);
            }
        }
        QFile cmyk(QStringLiteral(AMBREL_PHOTO_SEEDS "/cmyk.jpg"));
        QVERIFY(cmyk.open(QIODevice::ReadOnly));
        const auto photo = decoded(cmyk.readAll());
        QVERIFY(photo && photo->pixelColor(80, 52).lightness() > 200 && photo->pixelColor(10, 52).red() < 100);
    }

private:
    static void repairChecksums(QByteArray &file)
    {
        qsizetype at = 8;
        while (file.size() - at >= 12) {
            auto *const start = reinterpret_cast<uchar *>(file.data()) + at;
            const qsizetype length = qFromBigEndian<quint32>(start);
            if (length > file.size() - at - 12)
                return;
            qToBigEndian(quint32(crc32(0, start + 4, uInt(length + 4))), start + 8 + length);
            at += length + 12;
        }
    }
};

QTEST_APPLESS_MAIN(HostilePhotoTest)
#include "HostilePhotoTest.moc"
