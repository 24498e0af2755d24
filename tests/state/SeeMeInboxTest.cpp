#include "AssignmentJournal.h"
#include "FlowFixture.h"

#include <QElapsedTimer>

using namespace ambrel;
using namespace std::chrono_literals;

class SeeMeInboxTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstOfTwoMessagesIsShownWithOneSound()
    {
        FlowFixture fixture;
        fixture.answerInbox({messageWith(QStringLiteral("m1")), messageWith(QStringLiteral("m2"))});
        fixture.run(fixture.state.pollSeeMe());
        QCOMPARE(fixture.state.incomingSeeMe.value(), messageWith(QStringLiteral("m1")));
        QCOMPARE(fixture.sound.count, 1);
        QCOMPARE(fixture.server.requests().first().target, QByteArray("/api/see-me/me?deviceId=mac-1"));
    }

    void sameMessageTwiceIsSetTwiceAndSoundsTwice()
    {
        FlowFixture fixture;
        fixture.answerInbox({messageWith(QStringLiteral("m1"))});
        AssignmentJournal journal(fixture.state);
        fixture.run(fixture.state.pollSeeMe());
        QCOMPARE(journal.entries(), QStringList{QStringLiteral("incomingSeeMe=m1")});
        fixture.run(fixture.state.pollSeeMe());
        QCOMPARE(journal.entries(), (QStringList{QStringLiteral("incomingSeeMe=m1"), QStringLiteral("unchanged")}));
        QCOMPARE(fixture.sound.count, 2);
    }

    void emptyReplyLeavesTheEarlierMessage()
    {
        FlowFixture fixture;
        fixture.answerInbox({messageWith(QStringLiteral("m1"))});
        fixture.run(fixture.state.pollSeeMe());
        fixture.answerInbox({});
        fixture.run(fixture.state.pollSeeMe());
        QCOMPARE(fixture.state.incomingSeeMe.value(), messageWith(QStringLiteral("m1")));
        QCOMPARE(fixture.sound.count, 1);
    }

    void durationsAreThoseOfTheService()
    {
        QCOMPARE(LiveTimings().flashDuration, 3500ms);
        QCOMPARE(LiveTimings().livePause, 5s);
        QCOMPARE(LiveTimings().seeMePause, 2s);
    }

    void flashIsShownForItsDuration()
    {
        FlowFixture fixture({1h, 1h, 200ms});
        QElapsedTimer timer;
        timer.start();
        fixture.state.flashSeeMeLogo();
        QVERIFY(fixture.state.showSeeMeFlash);
        QTRY_VERIFY(!fixture.state.showSeeMeFlash);
        QVERIFY2(timer.elapsed() >= 200, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(fixture.sound.count, 0);
    }

    void secondFlashDoesNotExtendTheFirst()
    {
        FlowFixture fixture({1h, 1h, 50ms});
        QList<bool> before;
        QObject::connect(&fixture.state, &AmbrelAppState::objectWillChange, &fixture.state,
                         [&] { before += fixture.state.showSeeMeFlash; });
        fixture.state.flashSeeMeLogo();
        fixture.state.flashSeeMeLogo();
        QTRY_COMPARE(before, (QList<bool>{false, true, true, false})); // the second end finds nothing to end
        QVERIFY(!fixture.state.showSeeMeFlash);
    }

    void flashEndsWithTheProgram()
    {
        FlowFixture fixture({1h, 1h, 1h});
        fixture.state.flashSeeMeLogo();
        fixture.state.shutDown();
        QCoreApplication::processEvents();
        QVERIFY(!fixture.state.showSeeMeFlash);
    }

    void failedPollShowsTheErrorAndKeepsTheMessage()
    {
        FlowFixture fixture;
        fixture.server.on("GET", "/api/see-me/me", ScriptedReply::answer(502, "<html>"));
        fixture.state.incomingSeeMe = messageWith(QStringLiteral("m0"));
        fixture.run(fixture.state.pollSeeMe());
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Server returned 502."));
        QCOMPARE(fixture.state.incomingSeeMe.value(), messageWith(QStringLiteral("m0")));
        QCOMPARE(fixture.sound.count, 0);
    }

    void anAnswerAfterShutDownMakesNoSound()
    {
        FlowFixture fixture;
        fixture.server.on(
            "GET", "/api/see-me/me",
            FlowFixture::record(SeeMeMessagesResponse{true, {messageWith(QStringLiteral("m1"))}, {}}).held());
        const auto poll = fixture.state.pollSeeMe();
        QTRY_COMPARE(fixture.server.count("GET", "/api/see-me/me"), 1);
        fixture.state.shutDown();
        fixture.server.release("GET", "/api/see-me/me");
        QTRY_COMPARE(fixture.state.incomingSeeMe.value(), messageWith(QStringLiteral("m1")));
        QCOMPARE(fixture.sound.count, 0);
    }

    void notSignedInPollsNothing()
    {
        FlowFixture fixture;
        fixture.state.userId = QString();
        fixture.run(fixture.state.pollSeeMe());
        QCOMPARE(fixture.server.requests().size(), 0);
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Ready."));
    }

    void pollsFollowEachOtherWhileLive()
    {
        FlowFixture fixture({1h, 20ms, 1h});
        fixture.answerEverything();
        fixture.state.startLive();
        QTRY_VERIFY(fixture.server.count("GET", "/api/see-me/me") >= 4);
        QTRY_COMPARE(fixture.server.count("POST", "/api/location"), 1);
    }

    void pauseDoesNotEndAFlash()
    {
        FlowFixture fixture({1h, 1h, 100ms});
        fixture.state.flashSeeMeLogo();
        fixture.state.stopLive();
        QVERIFY(fixture.state.showSeeMeFlash);
        QTRY_VERIFY(!fixture.state.showSeeMeFlash);
    }
};

QTEST_GUILESS_MAIN(SeeMeInboxTest)
#include "SeeMeInboxTest.moc"
