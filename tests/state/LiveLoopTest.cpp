#include "AssignmentJournal.h"
#include "FlowFixture.h"

using namespace ambrel;
using namespace std::chrono_literals;

class LiveLoopTest : public QObject
{
    Q_OBJECT

    /// Long enough that a second cycle never starts by itself.
    static LiveTimings once() { return {1h, 1h, 1h}; }
    static LiveTimings quick() { return {20ms, 1h, 1h}; }

private Q_SLOTS:
    void idOfSpacesStartsNothing()
    {
        FlowFixture fixture;
        fixture.state.userId = QStringLiteral("   ");
        fixture.state.discoverable = false;
        AssignmentJournal journal(fixture.state);
        fixture.state.startLive();
        QCoreApplication::processEvents();
        QCOMPARE(journal.entries(), QStringList{QStringLiteral("statusText=Sign up or log in first.")});
        QCOMPARE(fixture.server.requests().size(), 0);
    }

    void startGoesLiveAndReportsThePositionAtOnce()
    {
        FlowFixture fixture(once());
        fixture.answerEverything();
        fixture.state.discoverable = false;
        fixture.state.latitudeText = QStringLiteral("51.5");
        fixture.state.startLive();
        QVERIFY(fixture.state.discoverable);
        QVERIFY(fixture.state.isLive);
        QTRY_COMPARE(fixture.server.count("GET", "/api/check/me"), 1);
        QCOMPARE(fixture.server.requests("POST", "/api/location").first().body,
                 QByteArray("{\"userId\":\"me\",\"deviceId\":\"mac-1\",\"latitude\":51.5,\"longitude\":-84.5086,"
                            "\"discoverable\":true}"));
        QCOMPARE(fixture.server.requests("GET", "/api/check/me").first().target,
                 QByteArray("/api/check/me?deviceId=mac-1"));
    }

    void emptyReplyEmptiesTheListAndTheSelection()
    {
        FlowFixture fixture;
        fixture.answerLocation();
        fixture.answerCheck(nearby({}));
        fixture.state.matches = nearby({QStringLiteral("a")}).matches;
        fixture.state.selectedMatch = matchNamed(QStringLiteral("a"));
        fixture.run(fixture.state.updateAndCheck());
        QVERIFY(fixture.state.matches->isEmpty());
        QVERIFY(!fixture.state.selectedMatch.value());
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("No matches nearby."));
    }

    void firstOfTwoMatchesIsSelectedWhenNobodyWas()
    {
        FlowFixture fixture;
        fixture.answerLocation();
        fixture.answerCheck(nearby({QStringLiteral("b"), QStringLiteral("a")}));
        AssignmentJournal journal(fixture.state);
        fixture.run(fixture.state.updateAndCheck());
        QCOMPARE(journal.entries(), (QStringList{QStringLiteral("matches=2"), QStringLiteral("selectedMatch=b"),
                                                 QStringLiteral("statusText=2 nearby.")}));
    }

    void selectionThatIsStillListedKeepsItsOldRecord()
    {
        FlowFixture fixture;
        fixture.answerLocation();
        fixture.answerCheck(nearby({QStringLiteral("a"), QStringLiteral("b")}));
        MatchResult old = matchNamed(QStringLiteral("b"), QStringLiteral("VERY_HOT"));
        old.distanceMeters = 12;
        fixture.state.selectedMatch = old;
        fixture.run(fixture.state.updateAndCheck());
        QCOMPARE(fixture.state.selectedMatch.value(), old);
        QCOMPARE(fixture.state.matches->at(1).distanceMeters, 150.0);
    }

    void selectionThatIsNoLongerListedMovesToTheFirstMatch()
    {
        FlowFixture fixture;
        fixture.answerLocation();
        fixture.answerCheck(nearby({QStringLiteral("B"), QStringLiteral("c")}));
        fixture.state.selectedMatch = matchNamed(QStringLiteral("b"));
        fixture.run(fixture.state.updateAndCheck());
        QCOMPARE(fixture.state.selectedMatch.value()->userId, QStringLiteral("B"));
    }

    void messagesInAReplySoundEachTimeTheyAreReported()
    {
        FlowFixture fixture(quick());
        fixture.answerLocation();
        fixture.answerInbox({});
        CheckResponse reply;
        reply.seeMeMessages = {messageWith(QStringLiteral("m1")), messageWith(QStringLiteral("m2"))};
        fixture.server.next("GET", "/api/check/me", FlowFixture::record(reply));
        fixture.server.next("GET", "/api/check/me", FlowFixture::record(reply));
        fixture.answerCheck({});
        fixture.state.startLive();
        QTRY_VERIFY(fixture.server.count("GET", "/api/check/me") >= 3);
        QCOMPARE(fixture.state.incomingSeeMe.value(), messageWith(QStringLiteral("m1")));
        QCOMPARE(fixture.sound.count, 2);
        QVERIFY(!fixture.state.showSeeMeFlash);
    }

    void failedReportSkipsTheCheckAndKeepsTheMatches()
    {
        FlowFixture fixture;
        fixture.answerLocation(ScriptedReply::json("{\"error\":\"Come back later.\"}", 503));
        fixture.state.matches = nearby({QStringLiteral("a")}).matches;
        fixture.state.selectedMatch = matchNamed(QStringLiteral("a"));
        AssignmentJournal journal(fixture.state);
        fixture.run(fixture.state.updateAndCheck());
        QCOMPARE(journal.entries(), QStringList{QStringLiteral("statusText=Come back later.")});
        QCOMPARE(fixture.server.requests().size(), 1);
    }

    void pauseWithoutEverStartingStillSaysPaused()
    {
        FlowFixture fixture;
        fixture.state.stopLive();
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Paused."));
        QVERIFY(!fixture.state.discoverable);
        QVERIFY(!fixture.state.isLive);
    }

    void startingTwiceLeavesOnlyTheSecondPairOfLoopsCycling()
    {
        FlowFixture fixture({20ms, 20ms, 1h});
        fixture.answerEverything();
        fixture.server.next("POST", "/api/location", ScriptedReply::json("{\"ok\":true}").held());
        fixture.state.startLive();
        QTRY_COMPARE(fixture.server.count("POST", "/api/location"), 1);
        fixture.state.startLive(); // the first loop's cycle is still in flight
        QTRY_VERIFY(fixture.server.count("POST", "/api/location") >= 3);
        fixture.server.release("POST", "/api/location");
        QTRY_COMPARE(fixture.server.count("GET", "/api/check/me"), fixture.server.count("POST", "/api/location"));

        // From here on one live loop remains: held up, it leaves nothing that could report a position.
        fixture.server.next("POST", "/api/location", ScriptedReply::json("{\"ok\":true}").held());
        fixture.server.next("POST", "/api/location", ScriptedReply::json("{\"ok\":true}").held());
        const int before = fixture.server.count("POST", "/api/location");
        const int polls = fixture.server.count("GET", "/api/see-me/me");
        QTRY_VERIFY(fixture.server.count("GET", "/api/see-me/me") >= polls + 10);
        QCOMPARE(fixture.server.count("POST", "/api/location"), before + 1);
        fixture.server.release("POST", "/api/location");
        fixture.server.release("POST", "/api/location");
    }

    void cyclesFollowEachOtherAndNeverOverlap()
    {
        FlowFixture fixture(quick());
        fixture.answerEverything();
        fixture.state.startLive();
        QTRY_VERIFY(fixture.server.count("GET", "/api/check/me") >= 4);
        QByteArrayList order;
        const QList<ReceivedRequest> requests = fixture.server.requests();
        for (const ReceivedRequest &request : requests) {
            if (request.path != "/api/see-me/me")
                order += request.path;
        }
        for (qsizetype i = 0; i < 8; ++i)
            QCOMPARE(order.at(i), QByteArray(i % 2 == 0 ? "/api/location" : "/api/check/me"));
    }

    void pauseEndsBothLoopsAndContactsNobody()
    {
        FlowFixture fixture({0ms, 0ms, 1h});
        fixture.answerEverything();
        fixture.server.on("POST", "/api/dismiss", ScriptedReply::json("{\"ok\":true}"));
        fixture.state.startLive();
        QTRY_COMPARE(fixture.state.statusText.value(), QStringLiteral("No matches nearby."));
        fixture.state.stopLive();
        QTRY_COMPARE(fixture.state.weak_from_this().use_count(), 1L); // the cycles in flight have ended
        const qsizetype before = fixture.server.requests().size();
        for (int i = 0; i < 3; ++i) // round trips in which a loop without a pause would have shown itself
            fixture.run(fixture.state.dismiss(matchNamed(QStringLiteral("a"))));
        QCOMPARE(fixture.server.requests().size(), before + 3);
    }

    void replyThatArrivesAfterThePauseIsStillApplied()
    {
        FlowFixture fixture(once());
        fixture.answerLocation();
        fixture.answerInbox({});
        fixture.server.on("GET", "/api/check/me", FlowFixture::record(nearby({QStringLiteral("a")})).held());
        fixture.state.startLive();
        QTRY_COMPARE(fixture.server.count("GET", "/api/check/me"), 1);
        fixture.state.stopLive();
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Paused."));
        fixture.server.release("GET", "/api/check/me");
        QTRY_COMPARE(fixture.state.statusText.value(), QStringLiteral("1 nearby."));
        QCOMPARE(fixture.state.matches->size(), 1);
        QVERIFY(!fixture.state.isLive);
    }

    void pauseKeepsMatchesSelectionAndMessage()
    {
        FlowFixture fixture;
        fixture.state.matches = nearby({QStringLiteral("a")}).matches;
        fixture.state.selectedMatch = matchNamed(QStringLiteral("a"));
        fixture.state.incomingSeeMe = messageWith(QStringLiteral("m"));
        fixture.state.stopLive();
        QCOMPARE(fixture.state.matches->size(), 1);
        QVERIFY(fixture.state.selectedMatch.value());
        QVERIFY(fixture.state.incomingSeeMe.value());
    }

    void clearedIdMakesCyclesDoNothingAndTheLoopsGoOn()
    {
        FlowFixture fixture(quick());
        fixture.answerEverything();
        fixture.state.startLive();
        QTRY_COMPARE(fixture.state.statusText.value(), QStringLiteral("No matches nearby."));
        fixture.state.userId = QStringLiteral(" ");
        fixture.state.statusText = QStringLiteral("untouched");
        fixture.run(fixture.state.updateAndCheck());
        fixture.run(fixture.state.pollSeeMe());
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("untouched"));
        fixture.state.userId = QStringLiteral("me");
        QTRY_COMPARE(fixture.state.statusText.value(), QStringLiteral("No matches nearby."));
    }

    void idEditedDuringAReportIsTheOneThatIsChecked()
    {
        FlowFixture fixture;
        fixture.answerLocation(ScriptedReply::json("{\"ok\":true}").held());
        fixture.server.on("GET", "/api/check/you", FlowFixture::record(CheckResponse()));
        const auto cycle = fixture.state.updateAndCheck();
        QTRY_COMPARE(fixture.server.count("POST", "/api/location"), 1);
        fixture.state.userId = QStringLiteral("you");
        fixture.server.release("POST", "/api/location");
        QTRY_COMPARE(fixture.server.count("GET", "/api/check/you"), 1);
        QTRY_COMPARE(fixture.state.statusText.value(), QStringLiteral("No matches nearby."));
    }

    void duplicatesAndOrderOfTheServerAreKept()
    {
        FlowFixture fixture;
        fixture.answerLocation();
        const QStringList ids{QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("c"), QStringLiteral("b")};
        fixture.answerCheck(nearby(ids));
        fixture.run(fixture.state.updateAndCheck());
        QCOMPARE(idsOf(fixture.state.matches), ids);
    }

    void nothingHoldsTheStateBetweenTwoCycles()
    {
        FlowFixture server;
        server.answerEverything();
        CountingSound sound;
        auto state = AmbrelAppState::create(sound, quick());
        const std::weak_ptr<AmbrelAppState> watch = state;
        state->startLive();
        QTRY_COMPARE(state->statusText.value(), QStringLiteral("No matches nearby."));
        QTRY_COMPARE(watch.use_count(), 1L); // between two cycles nothing holds the state
        state->shutDown();
        QCoreApplication::processEvents(); // the loops wake up and end
        state.reset();
        QVERIFY(watch.expired());
    }

    void selectionLetsGoOfTheReplyItCameIn()
    {
        FlowFixture fixture;
        fixture.answerLocation();
        CheckResponse reply = nearby({QStringLiteral("a")});
        reply.matches.first().profilePhotos = {PhotoText(QString(100'000, u'A'))};
        fixture.answerCheck(reply);
        fixture.run(fixture.state.updateAndCheck());
        QVERIFY(!fixture.state.selectedMatch.value()->profilePhotos.first().isOwned());
        fixture.run(fixture.state.updateAndCheck());
        QTRY_VERIFY(fixture.state.selectedMatch.value()->profilePhotos.first().isOwned());
        QCOMPARE(fixture.state.selectedMatch.value(), reply.matches.first());
    }
};

QTEST_GUILESS_MAIN(LiveLoopTest)
#include "LiveLoopTest.moc"
