#include "support/PaintCounter.h"
#include "tasks/Worker.h"
#include "ui/MatchViews.h"
#include "ui/Pixels.h"
#include "ui/ViewFixture.h"
#include "ui/look/Theme.h"
#include "ui/profile/LargeProfilePhoto.h"
#include "ui/profile/MatchPhoto.h"
#include "ui/profile/PhotoLoader.h"

#include <QSemaphore>
#include <QThread>

using namespace ambrel;

namespace {

constexpr QSize windowSize{300, 260};
const QColor windowColor(200, 220, 240);

/// A photo of one colour.
PhotoText plainPhoto(const QColor &color)
{
    QImage image(120, 150, QImage::Format_RGB32);
    image.fill(color);
    return photoTextOf(fileOf(image, "PNG"));
}

/// The same letters at another place in memory, as the next reply brings them.
PhotoText again(const PhotoText &photo)
{
    return PhotoText(photo.view());
}

/// A window of a known colour with one photo view in it.
template <typename View>
class PhotoWindow : public ViewFixture<View>
{
public:
    PhotoWindow() : ViewFixture<View>(windowSize)
    {
        QPalette palette = this->window.palette();
        palette.setColor(QPalette::Window, windowColor);
        this->window.setPalette(palette);
        this->window.layout()->setAlignment(this->view, Qt::AlignTop);
    }

    QColor at(int x, int y) { return shownAt(*this->view, {x, y}); }
    QColor atCenter() { return at(this->view->width() / 2, this->view->height() / 2); }
    bool isSettled() const { return !this->view->isWaiting(); }
};

using CardPhoto = PhotoWindow<MatchPhoto>;

/// Keeps the worker pool busy, so that no photo is decoded until this is gone.
class BusyWorkers
{
public:
    BusyWorkers()
    {
        for (int i = 0; i < m_workers; ++i) {
            if (!startOnWorker([gate = m_gate] { gate->acquire(); }))
                qFatal("no worker to keep busy");
        }
    }
    ~BusyWorkers() { m_gate->release(m_workers); }
    Q_DISABLE_COPY_MOVE(BusyWorkers)

private:
    const int m_workers = QThread::idealThreadCount();
    std::shared_ptr<QSemaphore> m_gate = std::make_shared<QSemaphore>();
};

} // namespace

class PhotoFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void theFramesHaveTheirExactSizes()
    {
        CardPhoto card;
        QCOMPARE(card.view->size(), QSize(86, 104));
        PhotoWindow<LargeProfilePhoto> large;
        QCOMPARE(large.view->size(), QSize(windowSize.width(), 250));
    }

    void aPhotoFillsTheFrameWithinItsRoundCorners()
    {
        CardPhoto card;
        card.view->setMatch(person(QStringLiteral("Ana"), {plainPhoto(Qt::blue)}));
        QTRY_VERIFY(card.isSettled());
        for (const QPoint point : {QPoint(43, 52), QPoint(1, 52), QPoint(84, 52), QPoint(43, 1), QPoint(43, 102)})
            COMPARE_COLORS(card.at(point.x(), point.y()), QColor(Qt::blue));
        for (const QPoint corner : {QPoint(0, 0), QPoint(85, 0), QPoint(0, 103), QPoint(85, 103)})
            COMPARE_COLORS(card.at(corner.x(), corner.y()), windowColor);
        QCOMPARE(card.view->accessibleName(), QStringLiteral("Photo of Ana"));
        QCOMPARE(QAccessible::queryAccessibleInterface(card.view)->role(), QAccessible::Graphic);
    }

    void aLockedPhotoShowsThePersonSymbol()
    {
        CardPhoto card;
        card.view->setMatch(person(QStringLiteral("Ana"), {plainPhoto(Qt::blue)}, QStringLiteral("COLD")));
        card.refresh();
        const QColor frame = over(theme::photoFrame, windowColor);
        COMPARE_COLORS(card.at(4, 52), frame);
        COMPARE_COLORS(card.at(43 - 20, 52), theme::secondaryText); // the disc is 44 wide
        COMPARE_COLORS(card.at(43 - 23, 52), frame);
        COMPARE_COLORS(card.at(43, 52 - 5), frame); // the head is cut out
        QVERIFY(card.isSettled());
        QCOMPARE(card.view->accessibleName(), QStringLiteral("Photo locked"));
    }

    void theLargeLockSaysSo()
    {
        PhotoWindow<LargeProfilePhoto> large;
        large.view->setMatch(person(QStringLiteral("Ana"), {}));
        large.refresh();
        const QImage lock = large.view->grab().toImage();
        QCOMPARE(large.view->accessibleName(), QStringLiteral("Photo locked"));
        COMPARE_COLORS(large.at(150 - 30, 110), theme::secondaryText); // the disc is 68 wide
        bool hasWords = false;
        for (int x = 110; x < 190; ++x) // beneath the disc
            hasWords = hasWords || distance(lock.pixelColor(x, 163), lock.pixelColor(20, 163)) > 60;
        QVERIFY(hasWords);
    }

    void whatIsNoPhotoShowsTheLock_data()
    {
        QTest::addColumn<QByteArray>("text");
        const PhotoText red = plainPhoto(Qt::red);
        QByteArray broken(red.view().data(), static_cast<qsizetype>(red.view().size()));
        broken.insert(40, '\n');
        QTest::newRow("newline inside the base64") << broken;
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("words") << QByteArray("data:image/png;base64,not a photo");
        QTest::newRow("SVG") << QByteArray("data:image/svg+xml;base64,") + QByteArray("<svg/>").toBase64();
        QTest::newRow("TIFF") << QByteArray("data:image/tiff;base64,") + QByteArray("II*\0\x08\0\0\0", 8).toBase64();
        QTest::newRow("cut PNG") << QByteArray("data:image/png;base64,") +
                                        fileOf(drawnPortrait({200, 200}), "PNG").left(9'000).toBase64();
    }
    void whatIsNoPhotoShowsTheLock()
    {
        QFETCH(const QByteArray, text);
        CardPhoto card;
        card.view->setMatch(person(QStringLiteral("Ana"), {PhotoText(text.toStdString())}));
        QTRY_VERIFY(card.isSettled());
        QVERIFY(card.view->isLocked());
        QCOMPARE(card.view->accessibleName(), QStringLiteral("Photo locked"));
    }

    void aPhotoWithoutACommaIsShown()
    {
        CardPhoto card;
        const PhotoText photo = plainPhoto(Qt::green);
        const std::string_view text = photo.view();
        const PhotoText bare(text.substr(text.find(',') + 1));
        card.view->setMatch(person(QStringLiteral("Ana"), {bare}));
        QTRY_VERIFY(card.isSettled());
        COMPARE_COLORS(card.atCenter(), QColor(Qt::green));
    }

    void aNewPersonsFrameStaysPlainUntilThePhotoIsThere()
    {
        CardPhoto card;
        card.view->setMatch(person(QStringLiteral("Ana"), {plainPhoto(Qt::blue)}));
        QTRY_VERIFY(card.isSettled());
        std::optional<BusyWorkers> busy(std::in_place);
        card.view->setMatch(person(QStringLiteral("Bea"), {plainPhoto(Qt::red)}));
        card.refresh();
        COMPARE_COLORS(card.atCenter(), over(theme::photoFrame, windowColor));
        QVERIFY(!card.view->isLocked());
        busy.reset();
        QTRY_VERIFY(card.isSettled());
        COMPARE_COLORS(card.atCenter(), QColor(Qt::red));
    }

    void aPhotoFadesInAndLeavesNothingRunning()
    {
        CardPhoto card;
        QList<QColor> seen;
        connect(card.view, &PhotoFrame::contentChanged, card.view, [&] { seen.append(card.atCenter()); });
        card.view->setMatch(person(QStringLiteral("Ana"), {plainPhoto(Qt::blue)}));
        QTRY_COMPARE(seen.size(), 1);
        COMPARE_COLORS(seen.first(), over(theme::photoFrame, windowColor)); // no lock, and not yet the photo
        QTRY_VERIFY(card.isSettled());
        COMPARE_COLORS(card.atCenter(), QColor(Qt::blue));
        QTRY_VERIFY(card.view->findChildren<QAbstractAnimation *>().isEmpty());
        QVERIFY(theme::photoFadeDuration <= std::chrono::milliseconds(150));

        card.view->setMatch(person(QStringLiteral("Ana"), {plainPhoto(Qt::blue)})); // decoded already
        QTRY_VERIFY(card.isSettled());
        QVERIFY(card.view->findChildren<QAbstractAnimation *>().isEmpty());
    }

    void photosOnScreenAreDecodedBeforeOthers()
    {
        CardPhoto card;
        PhotoLoader &loader = PhotoLoader::of(*card.view);
        std::optional<BusyWorkers> busy(std::in_place);
        QList<int> received;
        QList<std::shared_ptr<const PhotoOrder>> orders;
        const int begun = QThread::idealThreadCount();
        for (int i = 0; i < begun + 20; ++i) {
            const bool isOnScreen = i < begun || i == begun + 19;
            orders.append(loader.load({.photo = plainPhoto(Qt::red),
                                       .frame = {40, 40},
                                       .shown = {},
                                       .receive = [&received, i](const LoadedPhoto &) { received.append(i); },
                                       .isOnScreen = [isOnScreen] { return isOnScreen; }}));
        }
        busy.reset();
        QTRY_COMPARE(received.size(), begun + 20);
        QVERIFY(received.indexOf(begun + 19) < 2 * begun);
    }

    void onePersonsOldPhotoStaysUntilTheNewOneIsThere()
    {
        CardPhoto card;
        card.view->setMatch(person(QStringLiteral("Ana"), {plainPhoto(Qt::blue)}));
        QTRY_VERIFY(card.isSettled());
        std::optional<BusyWorkers> busy(std::in_place);
        card.view->setMatch(person(QStringLiteral("Ana"), {plainPhoto(Qt::red)}));
        card.refresh();
        COMPARE_COLORS(card.atCenter(), QColor(Qt::blue));
        busy.reset();
        QTRY_VERIFY(card.isSettled());
        COMPARE_COLORS(card.atCenter(), QColor(Qt::red));
    }

    void aLockThatClosesHidesThePhotoAtOnce()
    {
        CardPhoto card;
        MatchResult match = person(QStringLiteral("Ana"), {plainPhoto(Qt::blue)});
        card.view->setMatch(match);
        QTRY_VERIFY(card.isSettled());
        match.heatLevel = QStringLiteral("COLD");
        card.view->setMatch(match);
        QVERIFY(card.view->isLocked());
        match.heatLevel = QStringLiteral("HOT");
        card.view->setMatch(match);
        QTRY_VERIFY(!card.view->isLocked() && card.isSettled());
        COMPARE_COLORS(card.atCenter(), QColor(Qt::blue));
    }

    void theSamePhotoInANewReplyIsNotPaintedAgain()
    {
        CardPhoto card;
        const PhotoText photo = drawnPhoto(3);
        card.view->setMatch(person(QStringLiteral("Ana"), {photo}));
        QTRY_VERIFY(card.isSettled());
        card.refresh();
        const PaintCounter paints;
        for (int reply = 0; reply < 5; ++reply) {
            card.view->setMatch(person(QStringLiteral("Ana"), {again(photo)}));
            QVERIFY(!card.isSettled()); // its letters are compared on a worker
            QTRY_VERIFY(card.isSettled());
        }
        card.view->setMatch(person(QStringLiteral("Ana"), {photo}));
        QTRY_VERIFY(card.isSettled());
        card.view->setMatch(person(QStringLiteral("Ana"), {photo}));
        QVERIFY(card.isSettled()); // known without looking
        card.refresh();
        QCOMPARE(paints.total(), 0);
    }

    void noOldReplyIsKeptAlive()
    {
        CardPhoto card;
        const PhotoText photo = plainPhoto(Qt::blue);
        std::weak_ptr<const Bytes> oldReply;
        {
            const auto reply = std::make_shared<const Bytes>(photo.view());
            oldReply = reply;
            card.view->setMatch(person(QStringLiteral("Ana"), {PhotoText(reply, reply->view())}));
            QTRY_VERIFY(card.isSettled());
        }
        QVERIFY(!oldReply.expired());
        card.view->setMatch(person(QStringLiteral("Ana"), {again(photo)}));
        QTRY_VERIFY(oldReply.expired());
        COMPARE_COLORS(card.atCenter(), QColor(Qt::blue));
    }

    void photosAreDecodedOffTheMainThread()
    {
        CardPhoto card;
        PhotoLoader &loader = PhotoLoader::of(*card.view);
        int received = 0;
        bool hasReturned = false;
        QList<std::shared_ptr<const PhotoOrder>> orders;
        for (int i = 0; i < 6; ++i) {
            orders.append(loader.load({.photo = plainPhoto(Qt::red),
                                       .frame = {40, 40},
                                       .shown = {},
                                       .receive = [&](const LoadedPhoto &photo) {
                                           QVERIFY(hasReturned && QThread::currentThread() == thread());
                                           QCOMPARE(photo.image->size(), QSize(40, 40));
                                           ++received;
                                       }}));
        }
        hasReturned = true;
        QTRY_COMPARE(received, 6);
    }

    void anOrderThatIsDroppedIsNeverAnswered()
    {
        CardPhoto card;
        PhotoLoader &loader = PhotoLoader::of(*card.view);
        bool isAnswered = false;
        const auto ordered = [&](bool &flag) {
            return loader.load(
                {.photo = plainPhoto(Qt::red), .frame = {40, 40}, .shown = {}, .receive = [&flag](const LoadedPhoto &) {
                     flag = true;
                 }});
        };
        bool wasDropped = false;
        auto dropped = ordered(wasDropped);
        const auto kept = ordered(isAnswered);
        dropped.reset();
        QTRY_VERIFY(isAnswered);
        QVERIFY(!wasDropped);
    }

    void aViewThatGoesWhileItsPhotoIsDecodedLeavesNothingBehind()
    {
        CardPhoto card;
        std::optional<BusyWorkers> busy(std::in_place);
        for (int i = 0; i < 8; ++i) {
            auto *const photo = new MatchPhoto(&card.window);
            photo->show();
            photo->setMatch(person(QStringLiteral("Ana"), {drawnPhoto(i)}));
            delete photo;
        }
        card.view->setMatch(person(QStringLiteral("Bea"), {plainPhoto(Qt::red)}));
        busy.reset();
        QTRY_VERIFY(card.isSettled());
        COMPARE_COLORS(card.atCenter(), QColor(Qt::red));
    }

    void aStrangersNameCannotTurnTheWordsAroundIt()
    {
        CardPhoto card;
        card.view->setMatch(person(QStringLiteral("\u202eevil"), {plainPhoto(Qt::blue)}));
        QTRY_VERIFY(card.isSettled());
        QCOMPARE(card.view->accessibleName(), QStringLiteral("Photo of \u2068\u202eevil\u2069"));
    }
};

QTEST_MAIN(PhotoFrameTest)
#include "PhotoFrameTest.moc"
