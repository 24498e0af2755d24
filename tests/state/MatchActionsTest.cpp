#include "FlowFixture.h"

using namespace ambrel;
using namespace std::chrono_literals;

class MatchActionsTest : public QObject
{
    Q_OBJECT

    static void acceptDismissals(FlowFixture &fixture)
    {
        fixture.server.on("POST", "/api/dismiss", ScriptedReply::json("{\"ok\":false}"));
    }
    static QStringList ids(const char *text) { return QString::fromLatin1(text).split(u' '); }

private Q_SLOTS:
    void keepSelectsTheMatchAndSaysSo()
    {
        FlowFixture fixture;
        MatchResult ana = matchNamed(QStringLiteral("a"));
        ana.displayName = QStringLiteral("Ana");
        fixture.state.keep(ana);
        QCOMPARE(fixture.state.selectedMatch.value(), ana);
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Keeping Ana visible."));
        ana.displayName.clear();
        fixture.state.keep(ana);
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Keeping  visible."));
    }

    void dismissingTheSecondOfFourKeepsOrderAndSelection()
    {
        FlowFixture fixture;
        acceptDismissals(fixture);
        fixture.state.matches = nearby(ids("a b c d")).matches;
        fixture.state.selectedMatch = matchNamed(QStringLiteral("c"));
        fixture.run(fixture.state.dismiss(matchNamed(QStringLiteral("b"))));
        QCOMPARE(idsOf(fixture.state.matches), ids("a c d"));
        QCOMPARE(fixture.state.selectedMatch.value()->userId, QStringLiteral("c"));
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Dismissed."));
        QCOMPARE(fixture.server.requests().first().body,
                 QByteArray("{\"userId\":\"me\",\"deviceId\":\"mac-1\",\"dismissedUserId\":\"b\"}"));
    }

    void dismissingTheSelectionMovesItToTheFirstOrToNobody()
    {
        FlowFixture fixture;
        acceptDismissals(fixture);
        fixture.state.matches = nearby(ids("a b")).matches;
        fixture.state.selectedMatch = matchNamed(QStringLiteral("b"));
        fixture.run(fixture.state.dismiss(matchNamed(QStringLiteral("b"))));
        QCOMPARE(fixture.state.selectedMatch.value()->userId, QStringLiteral("a"));

        fixture.state.matches = nearby(ids("b")).matches;
        fixture.state.selectedMatch = matchNamed(QStringLiteral("b"));
        fixture.run(fixture.state.dismiss(matchNamed(QStringLiteral("b"))));
        QVERIFY(!fixture.state.selectedMatch.value());
        QVERIFY(fixture.state.matches->isEmpty());
    }

    void dismissingRemovesEveryEntryOfThatUser()
    {
        FlowFixture fixture;
        acceptDismissals(fixture);
        fixture.state.matches = nearby(ids("b a b B")).matches;
        fixture.run(fixture.state.dismiss(matchNamed(QStringLiteral("b"))));
        QCOMPARE(idsOf(fixture.state.matches), ids("a B"));
    }

    void failedDismissalLeavesTheListAndShowsTheError()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/dismiss", ScriptedReply::json("{\"error\":\"Not now.\"}", 500));
        fixture.state.matches = nearby(ids("a b")).matches;
        fixture.state.selectedMatch = matchNamed(QStringLiteral("b"));
        fixture.run(fixture.state.dismiss(matchNamed(QStringLiteral("b"))));
        QCOMPARE(idsOf(fixture.state.matches), ids("a b"));
        QCOMPARE(fixture.state.selectedMatch.value()->userId, QStringLiteral("b"));
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Not now."));
    }

    void seeMeOnASecondTierMatchSendsNothing()
    {
        FlowFixture fixture;
        fixture.run(fixture.state.seeMe(matchNamed(QStringLiteral("b"), QStringLiteral("HOT"))));
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("See Me unlocks at 100 m."));
        QCOMPARE(fixture.server.requests().size(), 0);
    }

    void acceptedSeeMeFlashesAtOnce()
    {
        FlowFixture fixture({1h, 1h, 1h});
        fixture.server.on("POST", "/api/see-me", ScriptedReply::json("{\"ok\":false}"));
        fixture.run(fixture.state.seeMe(matchNamed(QStringLiteral("b"), QStringLiteral("VERY_HOT"))));
        QVERIFY(fixture.state.showSeeMeFlash);
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Sent: Can you see me?"));
        QCOMPARE(fixture.server.requests().first().body,
                 QByteArray("{\"userId\":\"me\",\"deviceId\":\"mac-1\",\"targetUserId\":\"b\"}"));
        QCOMPARE(fixture.sound.count, 0);
    }

    void failedSeeMeShowsTheErrorWithoutAFlash()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/see-me", ScriptedReply::json("{\"error\":\"They left.\"}", 404));
        fixture.run(fixture.state.seeMe(matchNamed(QStringLiteral("b"), QStringLiteral("VERY_HOT"))));
        QVERIFY(!fixture.state.showSeeMeFlash);
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("They left."));
    }

    void dismissalWorksOnTheListAsItIsWhenTheReplyArrives()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/dismiss", ScriptedReply::json("{\"ok\":true}").held());
        fixture.state.matches = nearby(ids("a b")).matches;
        const auto dismissal = fixture.state.dismiss(matchNamed(QStringLiteral("b")));
        QTRY_COMPARE(fixture.server.count("POST", "/api/dismiss"), 1);
        fixture.state.matches = nearby(ids("c b d")).matches;
        fixture.server.release("POST", "/api/dismiss");
        QTRY_COMPARE(fixture.state.statusText.value(), QStringLiteral("Dismissed."));
        QCOMPARE(idsOf(fixture.state.matches), ids("c d"));
    }

    void dismissingSomeoneWhoLeftTheListIsStillDismissed()
    {
        FlowFixture fixture;
        acceptDismissals(fixture);
        fixture.state.matches = nearby(ids("a")).matches;
        fixture.run(fixture.state.dismiss(matchNamed(QStringLiteral("z"))));
        QCOMPARE(idsOf(fixture.state.matches), ids("a"));
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Dismissed."));
    }

    void actionsDoNotMakeTheStateBusy()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/dismiss", ScriptedReply::json("{\"ok\":true}").held());
        const auto dismissal = fixture.state.dismiss(matchNamed(QStringLiteral("b")));
        QVERIFY(!fixture.state.isBusy);
        fixture.server.release("POST", "/api/dismiss");
        QTRY_COMPARE(fixture.state.statusText.value(), QStringLiteral("Dismissed."));
    }
};

QTEST_GUILESS_MAIN(MatchActionsTest)
#include "MatchActionsTest.moc"
