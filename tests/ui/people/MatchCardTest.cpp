#include "ui/people/MatchCard.h"
#include "support/EndsTheProgram.h"
#include "support/PaintCounter.h"
#include "support/ScriptedServer.h"
#include "toolkit/ElidedLabel.h"
#include "ui/MatchViews.h"
#include "ui/Pixels.h"
#include "ui/ViewFixture.h"
#include "ui/look/AmbrelButton.h"
#include "ui/look/Theme.h"
#include "ui/profile/MatchPhoto.h"

#include <limits>

using namespace ambrel;

namespace {

/// One card in a window, as wide as the column is at its narrowest.
class CardWindow : public ViewFixture<MatchCard>
{
public:
    explicit CardWindow(const MatchResult &match = person(QStringLiteral("Ana")))
        : ViewFixture({360, 178}, {{QStringLiteral("userId"), QStringLiteral("me")}})
    {
        view->setMatch(match);
        refresh();
    }
    QStringList texts() { return visibleTexts(window); }
    QColor ground() const { return window.palette().color(QPalette::Window); }
    QStringList buttons()
    {
        QStringList labels;
        for (auto *const candidate : window.findChildren<QAbstractButton *>()) {
            if (candidate->isVisible())
                labels.append(candidate->text());
        }
        return labels;
    }
    QString selected() { return state().selectedMatch.value() ? state().selectedMatch->value().userId : QString(); }
};

QString scoreOf(double aToB, double bToA)
{
    MatchResult match = person(QStringLiteral("Ana"));
    match.aToB = aToB;
    match.bToA = bToA;
    CardWindow card(match);
    return card.texts().last();
}

} // namespace

class MatchCardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void theCardTellsWhoHowNearWhatAndHowWell()
    {
        MatchResult match = person(QStringLiteral("Ana"), {}, QStringLiteral("AMBREL"));
        match.distanceMeters = 120;
        CardWindow card(match);
        QCOMPARE(card.texts(), QStringList({QStringLiteral("Ana"), QStringLiteral("1/2 mi - 120 m away"),
                                            QStringLiteral("No bio yet."), QStringLiteral("Match: 72% / 64%")}));
        match.profileBio = QStringLiteral("I bake.");
        card.view->setMatch(match);
        QCOMPARE(card.texts().at(2), QStringLiteral("I bake."));
        match.profileBio = QString();
        card.view->setMatch(match);
        QCOMPARE(card.texts().at(2), QString());
    }

    void percentagesRoundHalvesAwayFromZero()
    {
        QCOMPARE(scoreOf(72.5, -0.5), QStringLiteral("Match: 73% / -1%"));
        QCOMPARE(scoreOf(0.49, -0.49), QStringLiteral("Match: 0% / 0%"));
        QCOMPARE(scoreOf(99.5, 1e15), QStringLiteral("Match: 100% / 1000000000000000%"));
    }

    void aPercentageThatIsNoNumberEndsTheProgram()
    {
        CardWindow card;
        MatchResult match = person(QStringLiteral("Ana"));
        for (const double percent : {std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300}) {
            match.aToB = percent;
            QVERIFY(endsTheProgram([&] { card.view->setMatch(match); }));
        }
    }

    void withoutSeeMeTheCardShowsOnlyContinueAndDismiss_data()
    {
        QTest::addColumn<QString>("heatLevel");
        QTest::newRow("second tier") << QStringLiteral("HOT");
        QTest::newRow("third tier") << QStringLiteral("AMBREL");
        QTest::newRow("unknown") << QStringLiteral("very_hot");
    }
    void withoutSeeMeTheCardShowsOnlyContinueAndDismiss()
    {
        QFETCH(const QString, heatLevel);
        CardWindow card;
        QCOMPARE(card.buttons(),
                 QStringList({QStringLiteral("See Me"), QStringLiteral("Continue"), QStringLiteral("Dismiss")}));
        auto *const seeMe = card.button(QStringLiteral("See Me"));
        card.view->setMatch(person(QStringLiteral("Bea"), {}, heatLevel));
        card.refresh();
        QCOMPARE(card.buttons(), QStringList({QStringLiteral("Continue"), QStringLiteral("Dismiss")}));
        QVERIFY(qobject_cast<AmbrelPrimaryButton *>(seeMe));
        for (const char *const label : {"Continue", "Dismiss"})
            QVERIFY(qobject_cast<AmbrelSecondaryButton *>(card.button(QString::fromLatin1(label))));
    }

    void allCardsAreEquallyHighWhateverTheySay_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("bio");
        const QString marks = QStringLiteral("Z") + QString(20'000, QChar(0x0301));
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("HTML") << QStringLiteral("<b>x</b><img src=\"file:///etc/passwd\">") << QStringLiteral("<h1>x");
        QTest::newRow("5000 letters") << QString(5000, QLatin1Char('W')) << QString(100'000, QLatin1Char('x'));
        QTest::newRow("20000 combining marks") << marks << marks;
        QTest::newRow("right-to-left override") << QStringLiteral("\u202eevil") << QStringLiteral("\u202eevil");
        QTest::newRow("line breaks") << QStringLiteral("a\nb\nc") << QStringLiteral("a\nb\nc\nd");
        QTest::newRow("emoji and CJK") << QStringLiteral("👩‍👩‍👧‍👦 田中")
                                       << QStringLiteral("写真👍🏽");
        QTest::newRow("ampersand and NUL") << QStringLiteral("A & B") + QChar(0) << QStringLiteral("&amp; & \t");
    }
    void allCardsAreEquallyHighWhateverTheySay()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, bio);
        CardWindow card;
        const int height = card.view->height();
        MatchResult match = person(name);
        match.profileBio = bio;
        card.view->setMatch(match);
        card.refresh();
        QCOMPARE(card.view->height(), height);
        QCOMPARE(card.view->width(), 360);
        QCOMPARE(card.texts().first(), name); // as it is, whatever it looks like
        for (const QWidget *const label : card.view->findChildren<ElidedLabel *>()) {
            QVERIFY(label->geometry().bottom() < 12 + 104);
            QVERIFY(label->geometry().right() < 360 - 12);
        }
    }

    void namesTakeOneLineAndBiosTwo()
    {
        CardWindow card;
        const auto labels = card.view->findChildren<ElidedLabel *>();
        const int nameHeight = labels[0]->height();
        const int bioHeight = labels[2]->height();
        MatchResult match = person(QStringLiteral("Ana Maria ").repeated(40));
        match.profileBio = QStringLiteral("I bake bread. ").repeated(40);
        card.view->setMatch(match);
        card.refresh();
        QCOMPARE(labels[0]->height(), nameHeight);
        QCOMPARE(labels[2]->height(), 2 * bioHeight);
    }

    void oneClickAnywhereSelects()
    {
        CardWindow card;
        for (const QPoint spot : {QPoint(3, 3), QPoint(50, 60), QPoint(150, 20), QPoint(300, 90), QPoint(150, 120)}) {
            card.state().selectedMatch = std::nullopt;
            QTest::mouseClick(card.view->window()->childAt(spot), Qt::LeftButton, {},
                              card.view->window()->childAt(spot)->mapFrom(card.view->window(), spot));
            QCOMPARE(card.selected(), QStringLiteral("ana"));
        }
        card.state().selectedMatch = std::nullopt;
        QTest::mouseClick(card.view, Qt::RightButton, {}, {3, 3});
        QCOMPARE(card.selected(), QString());
    }

    void aReleaseOutsideDoesNotSelect()
    {
        CardWindow card;
        QTest::mousePress(card.view, Qt::LeftButton, {}, {3, 3});
        QTest::mouseRelease(card.view, Qt::LeftButton, {}, {3, 300});
        QCOMPARE(card.selected(), QString());
    }

    void enterAndSpaceSelectAndTheButtonsFollowByTab()
    {
        CardWindow card;
        card.view->setFocus(Qt::TabFocusReason);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
            card.state().selectedMatch = std::nullopt;
            QTest::keyClick(card.view, key);
            QCOMPARE(card.selected(), QStringLiteral("ana"));
        }
        for (const char *const label : {"See Me", "Continue", "Dismiss"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), card.button(QString::fromLatin1(label)));
        }
    }

    void theFocusRingShowsForTheKeyboardOnly()
    {
        CardWindow card;
        const QPoint onRing(180, 3);
        card.view->clearFocus();
        const QColor without = shownAt(*card.view, onRing);
        card.view->setFocus(Qt::TabFocusReason);
        QVERIFY(distance(shownAt(*card.view, onRing), without) > 60);
        card.view->clearFocus();
        QTest::mouseClick(card.view, Qt::LeftButton, {}, {3, 3});
        QVERIFY(card.view->hasFocus());
        COMPARE_COLORS(shownAt(*card.view, onRing), without);
    }

    void theCardUnderTheMouseLightsUpAndShowsThatItCanBeClicked()
    {
        CardWindow card;
        const QPoint empty(180, 5);
        COMPARE_COLORS(shownAt(*card.view, empty), over(theme::regularMaterial, card.ground()));
        for (const QPoint under : {QPoint(180, 5), QPoint(40, 40), QPoint(180, 140)}) { // the card, its photo, a button
            QTest::mouseMove(card.view, under);
            QTRY_VERIFY(card.view->underMouse());
            COMPARE_COLORS(shownAt(*card.view, empty), over(theme::cardHovered, card.ground()));
        }
        QVERIFY(distance(over(theme::cardHovered, card.ground()), over(theme::regularMaterial, card.ground())) >= 2);
        QCOMPARE(card.view->cursor().shape(), Qt::PointingHandCursor);
    }

    void theSelectedCardIsOutlined()
    {
        CardWindow card;
        const QColor edge = shownAt(*card.view, {180, 0});
        const QColor inside = shownAt(*card.view, {180, 5});
        card.view->setSelected(true);
        for (const int y : {0, 1})
            COMPARE_COLORS(shownAt(*card.view, {180, y}), theme::selectedCardOutline);
        COMPARE_COLORS(shownAt(*card.view, {180, 5}), inside);
        QVERIFY(QAccessible::queryAccessibleInterface(card.view)->state().selected);
        card.view->setSelected(false);
        COMPARE_COLORS(shownAt(*card.view, {180, 0}), edge);
        QVERIFY(!QAccessible::queryAccessibleInterface(card.view)->state().selected);
    }

    void assistiveTechnologyMeetsAListItemNamedForTheMatch()
    {
        CardWindow card;
        auto *const face = QAccessible::queryAccessibleInterface(card.view);
        QCOMPARE(face->role(), QAccessible::ListItem);
        QCOMPARE(face->text(QAccessible::Name), QStringLiteral("Ana"));
        QVERIFY(face->state().selectable);
        QVERIFY(face->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
        face->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(card.selected(), QStringLiteral("ana"));
        card.view->setMatch(person(QStringLiteral("Bea")));
        QCOMPARE(face->text(QAccessible::Name), QStringLiteral("Bea"));
        QCOMPARE(face->text(QAccessible::Description),
                 QStringLiteral("100 m - 42 m away. No bio yet.. Match: 72% / 64%"));
    }

    void continueKeepsTheRecordThatTheCardShows()
    {
        CardWindow card;
        card.view->setMatch(person(QStringLiteral("Bea")));
        QTest::mouseClick(card.button(QStringLiteral("Continue")), Qt::LeftButton);
        QCOMPARE(card.selected(), QStringLiteral("bea"));
        QCOMPARE(card.state().statusText.value(), QStringLiteral("Keeping Bea visible."));
    }

    void seeMeAndDismissReachTheServerEvenWhenTheCardGoes()
    {
        ScriptedServer server;
        server.on("POST", "/api/see-me", ScriptedReply::json("{\"ok\":true}"));
        server.on("POST", "/api/dismiss", ScriptedReply::json("{\"ok\":true}"));
        CardWindow card;
        card.state().serverBaseURL = server.url();
        card.state().saveSettings();
        card.state().matches = QList{person(QStringLiteral("Ana"))};

        QTest::mouseClick(card.button(QStringLiteral("See Me")), Qt::LeftButton);
        QTRY_COMPARE(card.state().statusText.value(), QStringLiteral("Sent: Can you see me?"));
        QVERIFY(card.state().showSeeMeFlash);
        QTest::mouseClick(card.button(QStringLiteral("Dismiss")), Qt::LeftButton);
        delete card.view;
        QTRY_COMPARE(card.state().statusText.value(), QStringLiteral("Dismissed."));
        QVERIFY(card.state().matches->isEmpty());
    }

    void anUnchangedRecordPaintsNothing()
    {
        const MatchResult match = person(QStringLiteral("Ana"), {drawnPhoto()});
        CardWindow card(match);
        QTRY_VERIFY(allPhotosAreThere(card.window));
        card.refresh();
        const PaintCounter paints;
        MatchResult next = match;
        next.profilePhotos = {PhotoText(match.profilePhotos.first().view())};
        next.updatedAt = QStringLiteral("later");
        card.view->setMatch(next);
        QTRY_VERIFY(allPhotosAreThere(card.window));
        card.refresh();
        QCOMPARE(paints.total(), 0);
        next.distanceMeters = 50;
        card.view->setMatch(next);
        QTRY_VERIFY(paints.total() > 0);
        QCOMPARE(paints.of(card.view->findChild<MatchPhoto *>()), 0);
    }
};

QTEST_MAIN(MatchCardTest)
#include "MatchCardTest.moc"
