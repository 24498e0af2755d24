#include "TestServer.h"
#include "local-server/Geography.h"

#include <QSet>

using namespace ambrel;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// One user among simulated people.
class NeighboursTest : public QObject
{
    Q_OBJECT

    const QString ann = QStringLiteral("ann");
    const QString device = QStringLiteral("device-ann");

    /// Lets `duration` pass like a live client does it, and collects the messages that arrive with their times.
    QList<std::pair<seconds, SeeMeMessage>> live(TestServer &server, seconds duration)
    {
        QList<std::pair<seconds, SeeMeMessage>> received;
        for (seconds time(1); time <= duration; ++time) {
            server.advance(seconds(1));
            server.post("api/location", location(ann));
            for (const SeeMeMessage &message : inbox(server, ann))
                received.append({time, message});
        }
        return received;
    }

private Q_SLOTS:
    void theNeighbourhoodHasTheDefaultPeople()
    {
        TestServer server{LocalServerOptions()};
        server.post("api/signup", registration(ann));
        const QList<MatchResult> matches = check(server, ann).matches;
        QCOMPARE(matches.size(), 6);
        QVERIFY(matches.constFirst().distanceMeters <= 100);
        QCOMPARE(matches.constFirst().heatLevel, QStringLiteral("VERY_HOT"));
        QSet<QString> names;
        for (const MatchResult &match : matches) {
            names.insert(match.displayName);
            QVERIFY(!match.profileBio.value().isEmpty());
        }
        QCOMPARE(names.size(), 6);
    }

    void asManyPeopleAsAskedFor()
    {
        TestServer server(30);
        server.post("api/signup", registration(ann));
        QSet<QString> ids;
        for (const MatchResult &match : check(server, ann).matches)
            ids.insert(match.userId);
        QCOMPARE(ids.size(), 30);
    }

    void watchingForAMinuteShowsAllTiersAndTheirPhotos()
    {
        TestServer server{LocalServerOptions()};
        server.post("api/signup", registration(ann));
        QHash<QString, QSet<QString>> levels;
        for (int second = 0; second <= 60; second += 5) {
            server.post("api/location", location(ann));
            for (const MatchResult &match : check(server, ann).matches) {
                levels[match.userId].insert(match.heatLevel);
                if (match.heatLevel == QStringLiteral("WARM"))
                    QVERIFY(match.profilePhotos.isEmpty() && !match.profilePhoto);
                else if (match.heatLevel == QStringLiteral("VERY_HOT"))
                    QVERIFY(match.profilePhotos.size() >= 1 && match.profilePhotos.size() <= 4);
                else
                    QCOMPARE(match.profilePhotos.size(), 1);
                if (!match.profilePhotos.isEmpty())
                    QVERIFY(match.profilePhoto == match.profilePhotos.constFirst());
            }
            server.advance(seconds(5));
        }
        const auto passedThroughAll =
            std::count_if(levels.begin(), levels.end(), [](const QSet<QString> &seen) { return seen.size() == 4; });
        QVERIFY(passedThroughAll >= 1);
    }

    void seeMeIsAnsweredAfterAMoment()
    {
        LocalServerOptions options;
        options.firstSeeMeDelay = std::chrono::hours(1);
        TestServer server(options);
        server.post("api/signup", registration(ann));
        const QString nearest = check(server, ann).matches.constFirst().userId;
        const Reply reply = server.post("api/see-me", SeeMeRequest{ann, device, nearest});
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.as<SeeMeResponse>().message->toUserId, nearest);

        server.advance(milliseconds(1999));
        QVERIFY(inbox(server, ann).isEmpty());
        server.advance(milliseconds(1));
        const QList<SeeMeMessage> answers = check(server, ann).seeMeMessages;
        QCOMPARE(answers.size(), 1);
        QCOMPARE(answers.constFirst().fromUserId, nearest);
        QCOMPARE(answers.constFirst().toUserId, ann);
        QVERIFY(answers.constFirst().body.startsWith(QStringLiteral("Yes")));
        QVERIFY(inbox(server, ann).isEmpty());
    }

    void seeMeToAFarNeighbourIsRefused()
    {
        TestServer server{LocalServerOptions()};
        server.post("api/signup", registration(ann));
        const QString farthest = check(server, ann).matches.constLast().userId;
        QCOMPARE(server.post("api/see-me", SeeMeRequest{ann, device, farthest}).status, 403);
    }

    void neighboursCallByThemselvesButSeldom()
    {
        TestServer server{LocalServerOptions()};
        server.post("api/signup", registration(ann));
        const auto received = live(server, seconds(300));
        QVERIFY(received.size() >= 4);
        QVERIFY(received.constFirst().first <= seconds(20));
        for (qsizetype i = 1; i < received.size(); ++i)
            QVERIFY(received.at(i).first - received.at(i - 1).first >= seconds(40));
        for (const auto &[time, message] : received) {
            QCOMPARE(message.toUserId, ann);
            QVERIFY(message.body.startsWith(QStringLiteral("Can you see me?")));
        }
    }

    void nobodyCallsSomebodyWhoHides()
    {
        TestServer server{LocalServerOptions()};
        RegisterRequest request = registration(ann);
        request.discoverable = false;
        server.post("api/signup", request);
        server.advance(seconds(16));
        QVERIFY(check(server, ann).matches.constFirst().distanceMeters <= 100);
        QVERIFY(inbox(server, ann).isEmpty());
        server.post("api/location", location(ann));
        QCOMPARE(inbox(server, ann).size(), 1);
    }

    void aDismissedNeighbourIsGoneAndSilent()
    {
        TestServer server(1);
        server.post("api/signup", registration(ann));
        const QString only = check(server, ann).matches.constFirst().userId;
        QCOMPARE(server.post("api/dismiss", DismissRequest{ann, device, only}).status, 200);
        QVERIFY(check(server, ann).matches.isEmpty());
        QVERIFY(live(server, seconds(120)).isEmpty());
        QCOMPARE(server.post("api/see-me", SeeMeRequest{ann, device, only}).status, 404);
    }

    void walkingAShortWayChangesTheDistances()
    {
        LocalServerOptions options;
        options.walkingPace = 0;
        TestServer server(options);
        server.post("api/signup", registration(ann));
        const MatchResult nearest = check(server, ann).matches.constFirst();
        const local::Coordinates place = local::placeAt({homeLatitude, homeLongitude}, 0, 300);
        server.post("api/location", location(ann, place.latitude, place.longitude));
        for (const MatchResult &match : check(server, ann).matches) {
            if (match.userId == nearest.userId)
                QVERIFY(std::abs(match.distanceMeters - 300) <= nearest.distanceMeters);
        }
    }

    void anotherPlaceHasPeopleAroundItToo()
    {
        TestServer server{LocalServerOptions()};
        server.post("api/signup", registration(ann));
        for (const local::Coordinates place :
             {local::Coordinates{48.85, 2.35}, {-33.86, 151.2}, {90, 0}, {-90, 180}, {0, -180}}) {
            server.post("api/location", location(ann, place.latitude, place.longitude));
            const QList<MatchResult> matches = check(server, ann).matches;
            QCOMPARE(matches.size(), 6);
            QVERIFY(matches.constFirst().distanceMeters <= 100);
        }
    }

    void usersWhoAreNearSeeTheSamePeopleInTheSamePlaces()
    {
        const QString bob = QStringLiteral("bob");
        TestServer server{LocalServerOptions()};
        server.post("api/signup", registration(ann));
        server.advance(seconds(20));
        server.post("api/signup", registration(bob));
        QHash<QString, double> distances;
        for (const MatchResult &match : check(server, ann).matches)
            distances.insert(match.userId, match.distanceMeters);
        const QList<MatchResult> forBob = check(server, bob).matches;
        QCOMPARE(forBob.size(), 7);
        for (const MatchResult &match : forBob) {
            if (match.userId != ann)
                QCOMPARE(match.distanceMeters, distances.value(match.userId));
        }
    }

    void comingBackFindsSomebodyNear()
    {
        TestServer server(1);
        server.post("api/signup", registration(ann));
        for (int absence = 31; absence < 100; ++absence) {
            server.advance(seconds(absence));
            server.post("api/location", location(ann));
            QVERIFY(check(server, ann).matches.constFirst().distanceMeters <= 100);
        }
    }
};

QTEST_GUILESS_MAIN(NeighboursTest)
#include "NeighboursTest.moc"
