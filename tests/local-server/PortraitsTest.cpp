#include "local-server/Portraits.h"

#include <QBuffer>
#include <QImageReader>
#include <QSet>
#include <QTest>

using namespace ambrel;
using namespace ambrel::local;

class PortraitsTest : public QObject
{
    Q_OBJECT

    static QByteArray jpegOf(const PhotoText &photo)
    {
        const QByteArray text(photo.view().data(), qsizetype(photo.view().size()));
        const auto decoded =
            QByteArray::fromBase64Encoding(text.mid(text.indexOf(',') + 1), QByteArray::AbortOnBase64DecodingErrors);
        return decoded ? *decoded : QByteArray();
    }

private Q_SLOTS:
    void everybodyHasOneToFourDifferentJpegPhotos()
    {
        Portraits portraits;
        QSet<QByteArray> all;
        int photoCount = 0;
        for (int index = 0; index < personCount(); ++index) {
            const Person &person = personAt(index);
            QVERIFY(person.photoCount >= 1 && person.photoCount <= 4);
            const QList<PhotoText> photos = portraits.photos(person, person.photoCount);
            QCOMPARE(photos.size(), person.photoCount);
            photoCount += person.photoCount;
            for (const PhotoText &photo : photos) {
                QVERIFY(photo.view().starts_with("data:image/jpeg;base64,"));
                QByteArray jpeg = jpegOf(photo);
                all.insert(jpeg);
                QBuffer buffer(&jpeg);
                QImageReader reader(&buffer, "jpeg");
                QCOMPARE(reader.size(), QSize(480, 600));
                QVERIFY(!reader.read().isNull());
                QVERIFY(jpeg.size() < 100'000);
            }
        }
        QCOMPARE(all.size(), photoCount);
    }

    void theFaceIsInThePicture()
    {
        for (int index = 0; index < personCount(); ++index) {
            const Look look = personAt(index).look;
            const QColor cheek = drawPortrait(look, 0).pixelColor(240, 262);
            const QColor skin(look.skin);
            const int difference = std::abs(cheek.red() - skin.red()) + std::abs(cheek.green() - skin.green()) +
                                   std::abs(cheek.blue() - skin.blue());
            QVERIFY2(difference < 90, qPrintable(cheek.name() + u' ' + skin.name()));
        }
    }

    void aPhotoIsDrawnOnce()
    {
        Portraits portraits;
        const QList<PhotoText> first = portraits.photos(personAt(0), 1);
        const QList<PhotoText> later = portraits.photos(personAt(0), 3);
        QCOMPARE(later.size(), 3);
        QVERIFY(later.constFirst().isSameAs(first.constFirst()));
        QVERIFY(portraits.photos(personAt(0), 2).at(1).isSameAs(later.at(1)));
        QVERIFY(portraits.photos(personAt(0), 0).isEmpty());
    }
};

QTEST_GUILESS_MAIN(PortraitsTest)
#include "PortraitsTest.moc"
