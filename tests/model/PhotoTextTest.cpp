#include "model/PhotoText.h"

#include <QTest>

using namespace ambrel;

class PhotoTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sliceKeepsTheReplyAliveUntilItIsOwned()
    {
        auto reply = std::make_shared<Bytes>(std::string_view("head photo tail"));
        const std::weak_ptr<Bytes> watch = reply;
        PhotoText photo(reply, reply->view().substr(5, 5));
        reply.reset();
        QVERIFY(!watch.expired());
        QVERIFY(!photo.isOwned());

        photo = photo.owned();
        QVERIFY(watch.expired());
        QVERIFY(photo.isOwned());
        QCOMPARE(photo.view(), std::string_view("photo"));
    }

    void copiesAreTheSameAndEqualTextsAreEqual()
    {
        const PhotoText one(std::string_view("abc"));
        const PhotoText copy = one;
        const PhotoText other(std::string_view("abc"));
        QVERIFY(copy.isSameAs(one));
        QVERIFY(!other.isSameAs(one));
        QCOMPARE(other, one);
        QVERIFY(!(PhotoText(std::string_view("abd")) == one));
        QVERIFY(PhotoText().isEmpty());
        QVERIFY(PhotoText().owned().isOwned());
    }

    void bytesGrowAndKeepTheirPadding()
    {
        Bytes bytes;
        std::string expected;
        for (int i = 0; i < 5000; ++i) {
            bytes.append("0123456789");
            expected += "0123456789";
        }
        QCOMPARE(bytes.view(), std::string_view(expected));
        for (std::size_t i = 0; i < Bytes::padding; ++i)
            QCOMPARE(bytes.view().data()[bytes.size() + i], '\0');
    }
};

QTEST_APPLESS_MAIN(PhotoTextTest)
#include "PhotoTextTest.moc"
