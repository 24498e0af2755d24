#include "TestServer.h"
#include "local-server/Geography.h"

using namespace ambrel;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// Two or more users and nobody simulated.
class MeetingsTest : public QObject
{
    Q_OBJECT

    const QString ann = QStringLiteral("ann");
    const QString bob = QStringLiteral("bob");
    const QString device = QStringLiteral("device-ann");

    static RegisterRequest registrationAt(const QString &userId, double meters)
    {
        const local::Coordinates place = local::placeAt({homeLatitude, homeLongitude}, 1, meters);
        return registration(userId, place.latitude, place.longitude);
    }

    /// Ann at home and Bob `meters` away, both live.
    static void bringTogether(TestServer &server, double meters)
    {
        QCOMPARE(server.post("api/signup", registration(QStringLiteral("ann"))).status, 200);
        QCOMPARE(server.post("api/signup", registrationAt(QStringLiteral("bob"), meters)).status, 200);
    }

private Q_SLOTS:
    void twoUsersSeeEachOther()
    {
        TestServer server(0);
        bringTogether(server, 150);
        const CheckResponse forAnn = check(server, ann);
        QVERIFY(forAnn.active);
        QVERIFY(!forAnn.reason);
        QCOMPARE(forAnn.matches.size(), 1);
        const MatchResult &match = forAnn.matches.constFirst();
        QCOMPARE(match.userId, bob);
        QCOMPARE(match.displayName, QStringLiteral("BOB"));
        QVERIFY(std::abs(match.distanceMeters - 150) < 0.01);
        QCOMPARE(match.heatLevel, QStringLiteral("HOT"));
        QVERIFY(match.updatedAt.has_value());

        const CheckResponse forBob = check(server, bob);
        QCOMPARE(forBob.matches.size(), 1);
        QCOMPARE(forBob.matches.constFirst().userId, ann);
        QCOMPARE(forBob.matches.constFirst().distanceMeters, match.distanceMeters);
        QCOMPARE(forBob.matches.constFirst().aToB, match.bToA);
        QCOMPARE(forBob.matches.constFirst().bToA, match.aToB);
    }

    void theTierFollowsTheDistance_data()
    {
        QTest::addColumn<double>("meters");
        QTest::addColumn<QString>("level");
        QTest::newRow("99.9 m") << 99.9 << QStringLiteral("VERY_HOT");
        QTest::newRow("100.1 m") << 100.1 << QStringLiteral("HOT");
        QTest::newRow("199.9 m") << 199.9 << QStringLiteral("HOT");
        QTest::newRow("200.1 m") << 200.1 << QStringLiteral("AMBREL");
        QTest::newRow("804 m") << 804.0 << QStringLiteral("AMBREL");
        QTest::newRow("805 m") << 805.0 << QStringLiteral("WARM");
        QTest::newRow("1609 m") << 1609.0 << QStringLiteral("WARM");
        QTest::newRow("1610 m") << 1610.0 << QString();
    }
    void theTierFollowsTheDistance()
    {
        QFETCH(double, meters);
        QFETCH(QString, level);
        TestServer server(0);
        bringTogether(server, meters);
        const CheckResponse checked = check(server, ann);
        QCOMPARE(checked.matches.isEmpty(), level.isEmpty());
        if (level.isEmpty())
            QCOMPARE(checked.reason, std::optional(QStringLiteral("Nobody is within a mile right now.")));
        else
            QCOMPARE(checked.matches.constFirst().heatLevel, level);
    }

    void photosLeaveTheServerOnlyWhenTheTierShowsThem_data()
    {
        QTest::addColumn<double>("meters");
        QTest::addColumn<int>("count");
        QTest::newRow("VERY_HOT") << 50.0 << 3;
        QTest::newRow("HOT") << 150.0 << 1;
        QTest::newRow("AMBREL") << 500.0 << 1;
        QTest::newRow("WARM") << 1000.0 << 0;
    }
    void photosLeaveTheServerOnlyWhenTheTierShowsThem()
    {
        QFETCH(double, meters);
        QFETCH(int, count);
        TestServer server(0);
        server.post("api/signup", registration(ann));
        RegisterRequest request = registrationAt(bob, meters);
        const QList<PhotoText> photos = {PhotoText(QStringLiteral("data:,one")), PhotoText(QStringLiteral("data:,two")),
                                         PhotoText(QStringLiteral("data:,three"))};
        request.profilePhotos = photos;
        server.post("api/signup", request);
        const Reply reply = server.get("api/check/ann?deviceId=device-ann");
        const MatchResult match = reply.as<CheckResponse>().matches.constFirst();
        QCOMPARE(match.profilePhotos, photos.mid(0, count));
        QCOMPARE(match.profilePhoto.has_value(), count > 0);
        QCOMPARE(reply.body.contains("data:,two"), count > 1);
    }

    void aSinglePhotoCounts()
    {
        TestServer server(0);
        server.post("api/signup", registration(ann));
        RegisterRequest request = registrationAt(bob, 150);
        request.profilePhoto = PhotoText(QStringLiteral("data:,only"));
        server.post("api/signup", request);
        QCOMPARE(check(server, ann).matches.constFirst().profilePhotos, QList<PhotoText>{*request.profilePhoto});
    }

    void theNearestComeFirst()
    {
        TestServer server(0);
        server.post("api/signup", registration(ann));
        for (const int meters : {900, 20, 1500, 300})
            server.post("api/signup", registrationAt(QStringLiteral("at %1").arg(meters), meters));
        QStringList order;
        for (const MatchResult &match : check(server, ann).matches)
            order.append(match.userId);
        QCOMPARE(order, QStringList({QStringLiteral("at 20"), QStringLiteral("at 300"), QStringLiteral("at 900"),
                                     QStringLiteral("at 1500")}));
    }

    void whoeverIsNotDiscoverableIsNotShown()
    {
        TestServer server(0);
        bringTogether(server, 50);
        LocationUpdateRequest hidden = location(bob);
        hidden.discoverable = false;
        server.post("api/location", hidden);
        QVERIFY(check(server, ann).matches.isEmpty());
        QCOMPARE(check(server, bob).matches.size(), 1);
        server.post("api/location", location(bob));
        QCOMPARE(check(server, ann).matches.size(), 1);
    }

    void whoeverFallsSilentIsNotShown()
    {
        TestServer server(0);
        bringTogether(server, 50);
        server.advance(seconds(30));
        QCOMPARE(check(server, ann).matches.size(), 1);
        server.advance(milliseconds(1));
        const CheckResponse silent = check(server, ann);
        QVERIFY(!silent.active);
        QVERIFY(silent.matches.isEmpty());
        QCOMPARE(silent.reason, std::optional(QStringLiteral("Report your position to see who is near.")));
        server.post("api/location", location(ann));
        QVERIFY(check(server, ann).active);
        QVERIFY(check(server, ann).matches.isEmpty());
    }

    void aDismissedUserIsNotShownAgain()
    {
        TestServer server(0);
        bringTogether(server, 50);
        const Reply reply = server.post("api/dismiss", DismissRequest{ann, device, bob});
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.as<DismissResponse>().dismissedUserId, std::optional(bob));
        QVERIFY(check(server, ann).matches.isEmpty());
        QCOMPARE(check(server, bob).matches.size(), 1);
        server.post("api/signup", registration(ann));
        QVERIFY(check(server, ann).matches.isEmpty());
    }

    void nobodyCanDismissANobodyOrThemselves()
    {
        TestServer server(0);
        bringTogether(server, 50);
        const Reply unknown = server.post("api/dismiss", DismissRequest{ann, device, QStringLiteral("nobody")});
        QCOMPARE(unknown.status, 404);
        QCOMPARE(unknown.error(), QStringLiteral("There is nobody with this user ID."));
        QCOMPARE(server.post("api/dismiss", DismissRequest{ann, device, ann}).status, 400);
    }

    void seeMeIsDeliveredOnceByTheInbox()
    {
        TestServer server(0);
        bringTogether(server, 100);
        const Reply reply = server.post("api/see-me", SeeMeRequest{ann, device, bob});
        QVERIFY2(reply.status == 200, reply.body.constData());
        const SeeMeMessage stored = reply.as<SeeMeResponse>().message.value();
        QCOMPARE(stored.fromUserId, ann);
        QCOMPARE(stored.toUserId, bob);
        QCOMPARE(stored.body, QStringLiteral("Can you see me?"));

        QVERIFY(inbox(server, ann).isEmpty());
        QCOMPARE(inbox(server, bob), QList<SeeMeMessage>{stored});
        QVERIFY(inbox(server, bob).isEmpty());
        QVERIFY(check(server, bob).seeMeMessages.isEmpty());
    }

    void seeMeIsDeliveredOnceByACheck()
    {
        TestServer server(0);
        bringTogether(server, 10);
        server.post("api/see-me", SeeMeRequest{ann, device, bob});
        server.post("api/see-me", SeeMeRequest{ann, device, bob});
        const QList<SeeMeMessage> received = check(server, bob).seeMeMessages;
        QCOMPARE(received.size(), 2);
        QVERIFY(received.at(0).id != received.at(1).id);
        QVERIFY(inbox(server, bob).isEmpty());
        QVERIFY(check(server, bob).seeMeMessages.isEmpty());
    }

    void aMessageWaitsForSomebodyWhoIsAway()
    {
        TestServer server(0);
        bringTogether(server, 10);
        server.post("api/see-me", SeeMeRequest{ann, device, bob});
        server.post("api/logout", LogoutRequest{bob, QStringLiteral("device-bob")});
        server.advance(seconds(3600));
        QCOMPARE(inbox(server, bob).size(), 1);
    }

    void seeMeNeedsTheNearestTier()
    {
        TestServer server(0);
        bringTogether(server, 100.1);
        const Reply reply = server.post("api/see-me", SeeMeRequest{ann, device, bob});
        QCOMPARE(reply.status, 403);
        QCOMPARE(reply.error(), QStringLiteral("See Me unlocks at 100 m."));
        QVERIFY(inbox(server, bob).isEmpty());
    }

    void seeMeIsRefusedToWhoeverCannotBeMet()
    {
        TestServer server(0);
        bringTogether(server, 10);
        const auto refusal = [&server, this](const QString &target) {
            return server.post("api/see-me", SeeMeRequest{ann, device, target});
        };
        QCOMPARE(refusal(ann).status, 400);
        QCOMPARE(refusal(QStringLiteral("nobody")).error(), QStringLiteral("That person is not nearby any more."));

        server.post("api/dismiss", DismissRequest{bob, QStringLiteral("device-bob"), ann});
        QCOMPARE(refusal(bob).status, 404);
        QVERIFY(inbox(server, bob).isEmpty());

        server.advance(seconds(31));
        QCOMPARE(refusal(bob).error(), QStringLiteral("Go live before you send See Me."));
        QCOMPARE(refusal(bob).status, 409);
    }

    void anInboxDoesNotGrowForEver()
    {
        TestServer server(0);
        bringTogether(server, 10);
        Reply reply;
        int accepted = 0;
        for (; accepted < 1000; ++accepted) {
            reply = server.post("api/see-me", SeeMeRequest{ann, device, bob});
            if (reply.status != 200)
                break;
        }
        QCOMPARE(accepted, 50);
        QCOMPARE(reply.status, 429);
        QCOMPARE(inbox(server, bob).size(), 50);
        QCOMPARE(server.post("api/see-me", SeeMeRequest{ann, device, bob}).status, 200);
    }

    void scoresArePlausibleAndStable()
    {
        TestServer server(0);
        bringTogether(server, 10);
        const MatchResult first = check(server, ann).matches.constFirst();
        QVERIFY(first.aToB >= 55 && first.aToB <= 98);
        QVERIFY(first.bToA >= 55 && first.bToA <= 98);
        const CheckResponse later = check(server, ann);
        QCOMPARE(later.matches.constFirst().aToB, first.aToB);
        QCOMPARE(later.thresholdPercent, std::optional<qint64>(55));
        QCOMPARE(later.maxDistanceMeters, std::optional(1609.34));
    }
};

QTEST_GUILESS_MAIN(MeetingsTest)
#include "MeetingsTest.moc"
