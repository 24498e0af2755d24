#include "ui/profile/ProfilePanel.h"
#include "support/PaintCounter.h"
#include "toolkit/WrappedLabel.h"
#include "ui/MatchViews.h"
#include "ui/ViewFixture.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/profile/BioText.h"
#include "ui/profile/LargeProfilePhoto.h"
#include "ui/profile/PhotoStrip.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <ctime>

using namespace ambrel;

namespace {

class PanelWindow : public ViewFixture<ProfilePanel>
{
public:
    explicit PanelWindow(const std::optional<MatchResult> &match = {}, int height = 780) : ViewFixture({330, height})
    {
        view->setMatch(match);
        refresh();
    }
    QStringList texts() { return visibleTexts(window); }
    LargeProfilePhoto &photo() { return *view->findChild<LargeProfilePhoto *>(); }
    PhotoStrip &strip() { return *view->findChild<PhotoStrip *>(); }
    BioText &bio() { return *view->findChild<BioText *>(); }
    QScrollBar &bar() { return *view->findChild<QScrollArea *>()->verticalScrollBar(); }

    /// The thumbnails that can be seen, as frames in the strip's row.
    QList<QRect> thumbnails()
    {
        QList<QRect> frames;
        for (const QWidget *const thumbnail : strip().findChildren<PhotoFrame *>()) {
            if (thumbnail->isVisible())
                frames.append(thumbnail->geometry());
        }
        std::sort(frames.begin(), frames.end(), [](const QRect &a, const QRect &b) { return a.x() < b.x(); });
        return frames;
    }
};

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

QString noteFor(const QString &heatLevel)
{
    PanelWindow panel(person(QStringLiteral("Ana"), {}, heatLevel));
    return panel.texts().last();
}

} // namespace

class ProfilePanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void withoutASelectionThePanelShowsTheMarkBetweenTwoSpaces()
    {
        PanelWindow panel;
        QCOMPARE(panel.texts(), QStringList({QStringLiteral("Profile"), QStringLiteral("No profile selected"),
                                             QStringLiteral("Nearby matches will appear here when Ambrel is live.")}));
        auto *const logo = panel.view->findChild<AmbrelLogo *>();
        QVERIFY(logo->isVisible() && !logo->isInverted());
        QCOMPARE(logo->size(), QSize(94, 94));
        const auto labels = logo->parentWidget()->findChildren<WrappedLabel *>();
        const int above = logo->y();
        const int below = logo->parentWidget()->height() - labels.last()->geometry().bottom() - 1;
        QVERIFY(above > 150 && qAbs(above - below) <= 1);
        QCOMPARE(labels.first()->y(), logo->geometry().bottom() + 1 + 10);
        QVERIFY(!panel.photo().isVisible());
    }

    void aMatchIsShownFromPhotoToNote()
    {
        MatchResult match = person(QStringLiteral("Ana"), {drawnPhoto()}, QStringLiteral("HOT"));
        match.profileBio = QStringLiteral("I bake.");
        PanelWindow panel(match);
        QCOMPARE(panel.texts(),
                 QStringList({QStringLiteral("Profile"), QStringLiteral("Ana"), QStringLiteral("200 m - 42 m away"),
                              QStringLiteral("I bake."), QStringLiteral("More photos unlock within 100 m.")}));
        QCOMPARE(panel.photo().size(), QSize(330 - 2 * 18, 250));
        QCOMPARE(panel.photo().mapTo(panel.view, QPoint()).x(), 18);
        QTRY_COMPARE(panel.photo().accessibleName(), QStringLiteral("Photo of Ana"));
        match.profileBio = std::nullopt;
        panel.view->setMatch(match);
        QTRY_COMPARE(panel.texts().at(3), QStringLiteral("No bio yet."));
    }

    void theNoteTellsHowCloseToCome()
    {
        QCOMPARE(noteFor(QStringLiteral("COLD")), QStringLiteral("Profile photo unlocks within 1/2 mile."));
        QCOMPARE(noteFor(QStringLiteral("AMBREL")), QStringLiteral("Photo opens within 200 m."));
        QCOMPARE(noteFor(QStringLiteral("HOT")), QStringLiteral("More photos unlock within 100 m."));
        QCOMPARE(noteFor(QStringLiteral("VERY_HOT")), QStringLiteral("All available photos are unlocked."));
    }

    void anUnlockedMatchWithoutPhotosShowsTheLockAndTheNoteOfItsLevel()
    {
        for (const char *const level : {"AMBREL", "HOT", "VERY_HOT"}) {
            PanelWindow panel(person(QStringLiteral("Ana"), {}, QString::fromLatin1(level)));
            QVERIFY(panel.photo().isLocked());
            QCOMPARE(panel.photo().accessibleName(), QStringLiteral("Photo locked"));
            QCOMPARE(panel.texts().last(), noteFor(QString::fromLatin1(level)));
        }
    }

    void onePhotoMakesNoStrip()
    {
        PanelWindow panel(person(QStringLiteral("Ana"), {drawnPhoto()}));
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        QVERIFY(!panel.photo().isLocked());
        QVERIFY(!panel.strip().isVisible());
        QVERIFY(panel.thumbnails().isEmpty());
    }

    void severalPhotosMakeAStripOfAllInOrder()
    {
        PanelWindow panel(person(QStringLiteral("Ana"), {drawnPhoto(0), drawnPhoto(1), drawnPhoto(2), drawnPhoto(3)}));
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        QVERIFY(panel.strip().isVisible());
        QCOMPARE(panel.thumbnails(),
                 QList({QRect(0, 0, 74, 90), QRect(82, 0, 74, 90), QRect(164, 0, 74, 90), QRect(246, 0, 74, 90)}));
        QVERIFY(panel.strip().horizontalScrollBar()->isVisible());
        panel.view->setMatch(person(QStringLiteral("Ana"), {drawnPhoto(0), drawnPhoto(1)}, QStringLiteral("HOT")));
        panel.refresh();
        QVERIFY(!panel.strip().isVisible());
    }

    void aPhotoThatDoesNotDecodeLeavesNoThumbnailAndNoGap()
    {
        const PhotoText broken(QStringLiteral("data:image/png;base64,broken"));
        PanelWindow panel(person(QStringLiteral("Ana"), {drawnPhoto(0), broken, drawnPhoto(2)}));
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        QTRY_COMPARE(panel.thumbnails(), QList({QRect(0, 0, 74, 90), QRect(82, 0, 74, 90)}));
        panel.view->setMatch(person(QStringLiteral("Ana"), {drawnPhoto(0), drawnPhoto(1), drawnPhoto(2)}));
        QTRY_COMPARE(panel.thumbnails().size(), 3);
        panel.view->setMatch(person(QStringLiteral("Bea"), {broken, drawnPhoto(1)}));
        QTRY_COMPARE(panel.thumbnails().size(), 1);
        QVERIFY(panel.photo().isLocked());
    }

    void thumbnailsAreNamedByTheirPlace()
    {
        const PhotoText broken(QStringLiteral("data:image/png;base64,broken"));
        PanelWindow panel(person(QStringLiteral("Ana"), {drawnPhoto(0), broken, drawnPhoto(2), drawnPhoto(3)}));
        QTRY_COMPARE(panel.thumbnails().size(), 3);
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        QCOMPARE(panel.photo().accessibleName(), QStringLiteral("Photo of Ana"));
        for (int place = 1; place <= 3; ++place)
            QVERIFY(panel.named<PhotoFrame>(QStringLiteral("Photo %1 of 3 of Ana").arg(place)));
        QVERIFY(!panel.strip().accessibleName().isEmpty());
        QVERIFY(!panel.view->findChild<QScrollArea *>()->accessibleName().isEmpty());
    }

    void theWheelScrollsTheStripAndThenTheProfile()
    {
        PanelWindow panel(person(QStringLiteral("Ana"), QList<PhotoText>(8, drawnPhoto())), 300);
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        QScrollBar &bar = *panel.strip().horizontalScrollBar();
        const auto turn = [&panel](int notches, Qt::KeyboardModifiers modifiers) {
            QWidget *const target = panel.strip().viewport();
            const QPointF middle = target->rect().center();
            QWheelEvent event(middle, target->mapToGlobal(middle), {}, {0, -120 * notches}, Qt::NoButton, modifiers,
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(target, &event);
            return event.isAccepted();
        };
        QVERIFY(turn(1, Qt::NoModifier));
        QCOMPARE(bar.value(), 82);
        QVERIFY(turn(1, Qt::ShiftModifier));
        QCOMPARE(bar.value(), 164);
        QVERIFY(turn(-1, Qt::ShiftModifier));
        QCOMPARE(bar.value(), 82);
        QVERIFY(turn(-1, Qt::NoModifier));
        QCOMPARE(bar.value(), 0);
        QVERIFY(!turn(-1, Qt::NoModifier)); // left to the profile
        bar.setValue(bar.maximum());
        QVERIFY(!turn(1, Qt::ShiftModifier));
    }

    void theKeyboardScrollsTheStripAPhotoAtATime()
    {
        PanelWindow panel(person(QStringLiteral("Ana"), QList<PhotoText>(8, drawnPhoto())));
        const QScrollBar &bar = *panel.strip().horizontalScrollBar();
        panel.strip().setFocus(Qt::TabFocusReason);
        for (const auto &[key, value] :
             {std::pair(Qt::Key_Right, 82), std::pair(Qt::Key_Right, 164), std::pair(Qt::Key_Left, 82),
              std::pair(Qt::Key_End, bar.maximum()), std::pair(Qt::Key_Home, 0)}) {
            QTest::keyClick(&panel.strip(), key);
            QCOMPARE(bar.value(), value);
        }
        QTest::keyClick(&panel.strip(), Qt::Key_End);
        QTRY_COMPARE(panel.thumbnails().last().right() + 1, panel.strip().viewport()->width());
    }

    void aHundredThousandPhotosCostTheMainThreadNoMoreThanTen()
    {
        PanelWindow panel(person(QStringLiteral("Ana")));
        const MatchResult many = person(QStringLiteral("Bea"), QList<PhotoText>(100'000, drawnPhoto()));
        const double before = processorSeconds();
        panel.view->setMatch(many);
        panel.refresh();
        const double cost = processorSeconds() - before;
        QVERIFY2(cost < 0.1, qPrintable(QString::number(cost)));
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        QVERIFY(panel.strip().findChildren<PhotoFrame *>().size() <= 12);
        QCOMPARE(panel.strip().horizontalScrollBar()->maximum(), 100'000 * 82 - 8 - panel.strip().viewport()->width());
        QTest::keyClick(&panel.strip(), Qt::Key_End);
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        QVERIFY(panel.named<PhotoFrame>(QStringLiteral("Photo 100000 of 100000 of Bea")));
        QVERIFY(panel.strip().findChildren<PhotoFrame *>().size() <= 24);
    }

    void thousandsOfTextsThatAreNoPhotosAreSkippedAtOnce()
    {
        QList<PhotoText> photos(10'000, PhotoText(QStringLiteral("x")));
        photos[9'000] = drawnPhoto(1);
        photos[9'999] = drawnPhoto(2);
        PanelWindow panel(person(QStringLiteral("Ana")));
        const double before = processorSeconds();
        panel.view->setMatch(person(QStringLiteral("Bea"), photos));
        QTRY_COMPARE_WITH_TIMEOUT(panel.thumbnails(), QList({QRect(0, 0, 74, 90), QRect(82, 0, 74, 90)}), 30'000);
        const double cost = processorSeconds() - before;
        QVERIFY2(cost < 1, qPrintable(QString::number(cost)));
        QTRY_VERIFY(panel.named<PhotoFrame>(QStringLiteral("Photo 2 of 2 of Bea")));

        photos[5'000] = drawnPhoto(3); // as the next reply brings it
        panel.view->setMatch(person(QStringLiteral("Bea"), photos));
        QTRY_COMPARE_WITH_TIMEOUT(panel.thumbnails().size(), 3, 30'000);
    }

    void aLongBiographyIsShownWholeAndScrolls()
    {
        MatchResult match = person(QStringLiteral("Ana"), {drawnPhoto()});
        match.profileBio = QStringLiteral("I bake bread and walk. ").repeated(100).trimmed();
        PanelWindow panel(match, 500);
        QTRY_VERIFY(panel.bar().maximum() > 500);
        QString shown;
        int y = 0;
        for (auto *const piece : panel.bio().findChildren<WrappedLabel *>()) {
            QCOMPARE(piece->y(), y); // no gaps, nothing covered
            QCOMPARE(piece->height(), piece->heightForWidth(330 - 2 * 18));
            y += piece->height();
            shown += piece->text();
        }
        QCOMPARE(shown, *match.profileBio);
        QTRY_COMPARE(panel.bio().height(), y);
        QCOMPARE(panel.photo().width(), 330 - 2 * 18); // beside the scroll bar as well

        QWidget *const area = panel.view->findChild<QScrollArea *>();
        area->setFocus(Qt::TabFocusReason);
        QTest::keyClick(area, Qt::Key_End);
        QTest::keyClick(area, Qt::Key_Down);
        QVERIFY(panel.bar().value() > 0);
        panel.view->setMatch(person(QStringLiteral("Bea")));
        panel.refresh();
        QCOMPARE(panel.bar().value(), 0);
    }

    void aHugeBiographyNeverHoldsTheWindow()
    {
        PanelWindow panel(person(QStringLiteral("Ana")));
        MatchResult match = person(QStringLiteral("Bea"));
        match.profileBio = QString(30'000, QLatin1Char('x')) + QStringLiteral(" lorem ipsum").repeated(6'000);
        panel.view->setMatch(match);
        const auto shownLetters = [&panel] {
            qsizetype letters = 0;
            for (auto *const piece : panel.bio().findChildren<WrappedLabel *>())
                letters += piece->text().size();
            return letters;
        };
        qsizetype before = shownLetters();
        QVERIFY(before > 0 && before <= 2000);
        while (before < match.profileBio->size()) {
            panel.refresh();
            const qsizetype now = shownLetters();
            QVERIFY(now > before);
            before = now;
        }
        for (auto *const piece : panel.bio().findChildren<WrappedLabel *>())
            QVERIFY(piece->laidOutCharacters() <= 3 * piece->text().size()); // no piece is laid out again and again
    }

    void hostileTextsStayWithinTheColumn_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("HTML") << QStringLiteral("<b>x</b><img src=\"file:///etc/passwd\">");
        QTest::newRow("5000 letters") << QString(5000, QLatin1Char('W'));
        QTest::newRow("20000 combining marks") << QStringLiteral("Z") + QString(20'000, QChar(0x0301));
        QTest::newRow("right-to-left override") << QStringLiteral("\u202eevil");
    }
    void hostileTextsStayWithinTheColumn()
    {
        QFETCH(const QString, text);
        MatchResult match = person(text);
        match.profileBio = text;
        PanelWindow panel(match);
        QTRY_COMPARE(panel.bio().text(), text);
        QCOMPARE(panel.texts().at(1), text);
        QCOMPARE(panel.view->width(), 330);
        for (const QWidget *const label : panel.view->findChildren<WrappedLabel *>())
            QVERIFY(label->width() <= 330 - 2 * 18);
    }

    void anUnchangedSelectionPaintsNothing()
    {
        const MatchResult match = person(QStringLiteral("Ana"), {drawnPhoto(0), drawnPhoto(1)});
        PanelWindow panel(match);
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        panel.refresh();
        const PaintCounter paints;
        MatchResult next = match;
        for (PhotoText &photo : next.profilePhotos)
            photo = PhotoText(photo.view());
        panel.view->setMatch(next);
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        panel.refresh();
        QCOMPARE(paints.total(), 0);
    }
};

QTEST_MAIN(ProfilePanelTest)
#include "ProfilePanelTest.moc"
