#include "support/PaintCounter.h"
#include "toolkit/LazyColumn.h"
#include "ui/MatchViews.h"
#include "ui/ViewFixture.h"
#include "ui/people/LivePill.h"
#include "ui/people/MainPanelView.h"
#include "ui/people/MatchCard.h"
#include "ui/people/WarmthMeter.h"
#include "ui/profile/ProfilePanel.h"

#include <QLineEdit>
#include <QScrollBar>

using namespace ambrel;

namespace {

class PanelWindow : public ViewFixture<MainPanelView>
{
public:
    explicit PanelWindow(const QString &displayName = QStringLiteral("Me"), QSize size = {920, 800})
        : ViewFixture(
              size, {{QStringLiteral("userId"), QStringLiteral("me-1")}, {QStringLiteral("displayName"), displayName}})
    {
    }

    void show(const QList<MatchResult> &matches)
    {
        state().matches = matches;
        refresh();
    }
    QStringList headerTexts() { return visibleTexts(window).mid(0, 2); }
    QStringList meterTexts() { return visibleTexts(*view->findChild<WarmthMeter *>()); }
    QStringList profileTexts() { return visibleTexts(*view->findChild<ProfilePanel *>()); }
    LazyColumn &column() { return *view->findChild<LazyColumn *>(); }

    /// The cards that exist, from top to bottom.
    QList<MatchCard *> cards()
    {
        auto cards = view->findChildren<MatchCard *>();
        cards.removeIf([](const MatchCard *card) { return !card->isVisible(); });
        std::sort(cards.begin(), cards.end(), [](const auto *a, const auto *b) { return a->y() < b->y(); });
        return cards;
    }
    QStringList cardNames()
    {
        QStringList names;
        for (const MatchCard *const card : cards())
            names.append(card->accessibleName());
        return names;
    }
    QString selected() { return state().selectedMatch.value() ? state().selectedMatch->value().userId : QString(); }
};

QList<MatchResult> people(const QStringList &names)
{
    QList<MatchResult> matches;
    for (const QString &name : names)
        matches.append(person(name));
    return matches;
}

QList<MatchResult> crowd(int count, const PhotoText &photo = {})
{
    QList<MatchResult> matches;
    for (int i = 0; i < count; ++i)
        matches.append(person(QStringLiteral("Person %1").arg(i), {photo}));
    return matches;
}

const QStringList noProfile{QStringLiteral("Profile"), QStringLiteral("No profile selected"),
                            QStringLiteral("Nearby matches will appear here when Ambrel is live.")};

} // namespace

class MainPanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void withoutMatchesTheMeterSearchesAndTheListIsBlank()
    {
        PanelWindow panel;
        QCOMPARE(panel.meterTexts(),
                 QStringList({QStringLiteral("Searching"), QStringLiteral("Go live to look for a match.")}));
        QVERIFY(panel.cards().isEmpty());
        QVERIFY(visibleTexts(panel.column()).isEmpty());
        QCOMPARE(panel.profileTexts(), noProfile);
    }

    void withoutASelectionTheMeterDescribesTheFirstMatch()
    {
        PanelWindow panel;
        panel.show(people({QStringLiteral("Sam"), QStringLiteral("Ana")}));
        QCOMPARE(panel.meterTexts(), QStringList({QStringLiteral("100 m"), QStringLiteral("Sam is 42 m away")}));
        QCOMPARE(panel.profileTexts(), noProfile);
        QCOMPARE(panel.cardNames(), QStringList({QStringLiteral("Sam"), QStringLiteral("Ana")}));
    }

    void withoutADisplayNameTheSubtitleTellsTheUserId()
    {
        PanelWindow panel{QString()};
        QCOMPARE(panel.headerTexts(), QStringList({QStringLiteral("Ready"), QStringLiteral("Signed in as me-1")}));
        panel.state().displayName = QStringLiteral(" ");
        panel.refresh();
        QCOMPARE(panel.headerTexts().last(), QStringLiteral("Signed in as  ")); // a blank is a name
        panel.state().userId = QStringLiteral("  ");
        panel.refresh();
        QCOMPARE(panel.headerTexts().last(), QStringLiteral("Sign up or log in to look nearby."));
    }

    void theHeaderFollowsTheLiveState()
    {
        PanelWindow panel;
        QCOMPARE(panel.headerTexts(), QStringList({QStringLiteral("Ready"), QStringLiteral("Signed in as Me")}));
        panel.state().isLive = true;
        panel.refresh();
        QCOMPARE(panel.headerTexts().first(), QStringLiteral("Live Nearby"));
        QVERIFY(visibleTexts(panel.window).contains(QStringLiteral("LIVE")));
    }

    void theSelectionShowsInMeterCardAndProfile()
    {
        PanelWindow panel;
        panel.show(people({QStringLiteral("Sam"), QStringLiteral("Ana")}));
        QTest::mouseClick(panel.cards().at(1), Qt::LeftButton, {}, {5, 5});
        panel.refresh();
        QCOMPARE(panel.selected(), QStringLiteral("ana"));
        QCOMPARE(panel.meterTexts().last(), QStringLiteral("Ana is 42 m away"));
        QCOMPARE(panel.profileTexts().at(1), QStringLiteral("Ana"));
        QVERIFY(!panel.cards().at(0)->isSelected() && panel.cards().at(1)->isSelected());
    }
    void peopleWithTheSameIdAreAllShown()
    {
        PanelWindow panel;
        QList<MatchResult> twins = people({QStringLiteral("Sam"), QStringLiteral("Ana"), QStringLiteral("Sam")});
        twins[2].displayName = QStringLiteral("Sam II");
        panel.show(twins);
        QCOMPARE(panel.cardNames(),
                 QStringList({QStringLiteral("Sam"), QStringLiteral("Ana"), QStringLiteral("Sam II")}));
        panel.show(twins);
        QCOMPARE(panel.cardNames().size(), 3);
        QTest::mouseClick(panel.cards().at(2), Qt::LeftButton, {}, {5, 5});
        QCOMPARE(panel.state().selectedMatch->value().displayName, QStringLiteral("Sam II"));
    }

    void aThousandMatchesBuildOnlyTheCardsAroundTheScreen()
    {
        PanelWindow panel;
        panel.show(crowd(1000));
        const auto built = panel.view->findChildren<MatchCard *>().size();
        QVERIFY2(built >= 3 && built <= 15, qPrintable(QString::number(built)));
        QScrollBar *const bar = panel.column().verticalScrollBar();
        bar->setValue(bar->maximum());
        panel.refresh();
        QVERIFY(panel.cardNames().contains(QStringLiteral("Person 999")));
        QVERIFY(panel.view->findChildren<MatchCard *>().size() <= 15);
    }

    void aShorterListMeetsNoCardBeyondItsEnd()
    {
        PanelWindow panel;
        panel.show(crowd(100));
        QScrollBar *const bar = panel.column().verticalScrollBar();
        bar->setValue(bar->maximum());
        panel.refresh();
        panel.state().matches = crowd(2);
        bar->setValue(bar->maximum() / 2); // before the refresh
        panel.refresh();
        QCOMPARE(panel.cardNames(), QStringList({QStringLiteral("Person 0"), QStringLiteral("Person 1")}));
        panel.show({});
        QVERIFY(panel.cards().isEmpty());
    }

    void cardsActOnTheNewestRecord()
    {
        PanelWindow panel;
        panel.show(people({QStringLiteral("Sam")}));
        MatchCard *const card = panel.cards().first();
        QList<MatchResult> nearer = people({QStringLiteral("Sam")});
        nearer[0].distanceMeters = 7;
        panel.show(nearer);
        QCOMPARE(panel.cards().first(), card);
        QTest::mouseClick(panel.button(QStringLiteral("Continue")), Qt::LeftButton);
        QCOMPARE(panel.state().selectedMatch->value().distanceMeters, 7.0);
    }

    void anUnchangedReplyPaintsNothing()
    {
        const PhotoText photo = drawnPhoto();
        PanelWindow panel;
        panel.show(crowd(20, photo));
        panel.state().selectedMatch = crowd(1, photo).first();
        panel.refresh();
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        panel.refresh();
        const PaintCounter paints;
        for (int reply = 0; reply < 3; ++reply) {
            panel.show(crowd(20, PhotoText(photo.view())));
            QTRY_VERIFY(allPhotosAreThere(panel.window));
        }
        panel.refresh();
        QCOMPARE(paints.total(), 0);
    }

    void aChangePaintsOnlyTheCardThatChanged()
    {
        PanelWindow panel;
        panel.show(people({QStringLiteral("Sam"), QStringLiteral("Ana")}));
        panel.state().selectedMatch = person(QStringLiteral("Sam"));
        panel.refresh();
        QList<MatchResult> next = people({QStringLiteral("Sam"), QStringLiteral("Ana")});
        next[1].distanceMeters = 12;
        const PaintCounter paints;
        panel.show(next);
        const auto cards = panel.cards();
        QTRY_VERIFY(paints.of(cards.at(1)) > 0);
        QCOMPARE(paints.of(cards.at(0)), 0);
        QCOMPARE(paints.of(panel.view->findChild<WarmthMeter *>()), 0);
        QCOMPARE(paints.of(panel.view->findChild<ProfilePanel *>()), 0);
    }

    void aListThatIsReplacedIsLetGo()
    {
        PanelWindow panel;
        std::weak_ptr<const Bytes> oldReply;
        {
            const PhotoText photo = drawnPhoto();
            const auto reply = std::make_shared<const Bytes>(photo.view());
            oldReply = reply;
            panel.show(crowd(30, PhotoText(reply, reply->view())));
        }
        QTRY_VERIFY(allPhotosAreThere(panel.window));
        QVERIFY(!oldReply.expired());
        panel.show(crowd(30, drawnPhoto()));
        QTRY_VERIFY(oldReply.expired());
    }

    void arrowKeysGoThroughTheCardsAndTheirButtons()
    {
        PanelWindow panel;
        panel.show(people({QStringLiteral("Sam"), QStringLiteral("Ana")}));
        const auto cards = panel.cards();
        cards.at(0)->setFocus(Qt::TabFocusReason);
        const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
        for (const char *const label : {"See Me", "Continue", "Dismiss"}) {
            press(Qt::Key_Right);
            QCOMPARE(qobject_cast<QAbstractButton *>(QApplication::focusWidget())->text(), QString::fromLatin1(label));
        }
        press(Qt::Key_Down);
        QCOMPARE(qobject_cast<QAbstractButton *>(QApplication::focusWidget())->text(), QStringLiteral("Dismiss"));
        for (int step = 0; step < 3; ++step)
            press(Qt::Key_Left);
        QCOMPARE(QApplication::focusWidget(), cards.at(1));
        press(Qt::Key_Space);
        QCOMPARE(panel.selected(), QStringLiteral("ana"));
    }

    void oneTabLeavesAListOf200PeopleFromEveryControl()
    {
        PanelWindow panel;
        panel.show(crowd(200, drawnPhoto()));
        QLineEdit beside(&panel.window);
        beside.show();
        panel.cards().at(0)->setFocus(Qt::TabFocusReason);
        const auto *const list = panel.window.findChild<LazyColumn *>();
        for (int step = 0; step < 120; ++step)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        for (int control = 0; control < 4; ++control) {
            QWidget *const focused = QApplication::focusWidget();
            QVERIFY(list->isAncestorOf(focused));
            QTest::keyClick(focused, Qt::Key_Tab);
            QVERIFY(!list->isAncestorOf(QApplication::focusWidget()));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
            QCOMPARE(QApplication::focusWidget(), focused);
            QTest::keyClick(focused, Qt::Key_Right);
        }
    }

    void theCardThatInheritsTheFocusWearsARingOnlyForTheKeyboard()
    {
        PanelWindow panel;
        for (const auto reason : {Qt::MouseFocusReason, Qt::TabFocusReason}) {
            panel.show(people({QStringLiteral("Sam"), QStringLiteral("Ana")}));
            const auto buttons = panel.cards().at(0)->findChildren<QAbstractButton *>();
            buttons.first()->setFocus(reason);
            const QImage unfocused = panel.cards().at(1)->grab().toImage();
            panel.show(people({QStringLiteral("Ana")}));
            QVERIFY(panel.cards().at(0)->hasFocus());
            QCOMPARE(panel.cards().at(0)->grab().toImage() == unfocused, reason == Qt::MouseFocusReason);
        }
    }
};

QTEST_MAIN(MainPanelTest)
#include "MainPanelTest.moc"
