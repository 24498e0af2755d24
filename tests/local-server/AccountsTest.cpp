#include "TestServer.h"

#include <QDateTime>

using namespace ambrel;
using std::chrono::seconds;

class AccountsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signUpStoresWhatLogInReturns()
    {
        TestServer server(0);
        RegisterRequest request = registration(QStringLiteral("ann"));
        request.email = QStringLiteral("ann@example.com");
        request.phone = QStringLiteral("+1 555");
        request.profileBio = QStringLiteral("Grüße – 你好");
        request.profilePhoto = PhotoText(QStringLiteral("data:image/png;base64,AAAA"));
        request.profilePhotos = {PhotoText(QStringLiteral("data:image/png;base64,BBBB"))};
        const UserResponse acknowledged = server.post("api/signup", request).as<UserResponse>();
        QVERIFY(acknowledged.ok);
        QVERIFY(QDateTime::fromString(acknowledged.serverTime.value(), Qt::ISODateWithMs).isValid());

        const Reply reply = server.post("api/login", LoginRequest{request.userId, request.deviceId});
        QCOMPARE(reply.status, 200);
        const UserProfile stored = reply.as<UserProfileResponse>().user;
        QCOMPARE(stored.userId, request.userId);
        QCOMPARE(stored.displayName, request.displayName);
        QCOMPARE(stored.email, std::optional(request.email));
        QCOMPARE(stored.phone, std::optional(request.phone));
        QCOMPARE(stored.discoverable, true);
        QCOMPARE(stored.latitude, homeLatitude);
        QCOMPARE(stored.longitude, homeLongitude);
        QCOMPARE(stored.aboutMe, request.aboutMe);
        QCOMPARE(stored.lookingFor, request.lookingFor);
        QCOMPARE(stored.profileBio, request.profileBio);
        QVERIFY(stored.profilePhoto == request.profilePhoto);
        QVERIFY(stored.profilePhotos == request.profilePhotos);
    }

    void theSameDeviceUpdatesTheAccount_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("signup") << QByteArray("api/signup");
        QTest::newRow("registerOrUpdate") << QByteArray("api/registerOrUpdate");
    }
    void theSameDeviceUpdatesTheAccount()
    {
        QFETCH(QByteArray, path);
        TestServer server(0);
        RegisterRequest request = registration(QStringLiteral("ann"));
        QCOMPARE(server.post(path, request).status, 200);
        request.displayName = QStringLiteral("Ann II");
        QCOMPARE(server.post(path, request).status, 200);
        const Reply reply = server.post("api/login", LoginRequest{request.userId, request.deviceId});
        QCOMPARE(reply.as<UserProfileResponse>().user.displayName, QStringLiteral("Ann II"));
    }

    void anotherDeviceCannotTakeAUserId()
    {
        TestServer server(0);
        RegisterRequest request = registration(QStringLiteral("ann"));
        server.post("api/signup", request);
        request.deviceId = QStringLiteral("stolen");
        const Reply reply = server.post("api/signup", request);
        QCOMPARE(reply.status, 409);
        QCOMPARE(reply.error(), QStringLiteral("This user ID is taken."));
    }

    void theIdOfASimulatedPersonIsTaken()
    {
        TestServer server(6);
        QCOMPARE(server.post("api/signup", registration(QStringLiteral("amelie nearby"))).status, 409);
    }

    void anUnknownUserIsRefusedEverywhere_data() { everyCallForAUser(); }
    void anUnknownUserIsRefusedEverywhere()
    {
        QFETCH(QByteArray, method);
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, body);
        TestServer server(0);
        const Reply reply = server.send(method, path, body);
        QCOMPARE(reply.status, 404);
        QCOMPARE(reply.error(), QStringLiteral("Unknown user. Sign up first."));
    }

    void anotherDeviceIsRefusedEverywhere_data() { everyCallForAUser(); }
    void anotherDeviceIsRefusedEverywhere()
    {
        QFETCH(QByteArray, method);
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, body);
        TestServer server(0);
        server.post("api/signup", registration(QStringLiteral("ann")));
        const Reply reply = server.send(method, path, body);
        QCOMPARE(reply.status, 403);
        QCOMPARE(reply.error(), QStringLiteral("This user ID belongs to another device."));
    }

    void logOutEndsPresenceButKeepsTheAccount()
    {
        TestServer server(0);
        const RegisterRequest ann = registration(QStringLiteral("ann"));
        server.post("api/signup", ann);
        server.post("api/signup", registration(QStringLiteral("bob")));
        QCOMPARE(check(server, QStringLiteral("bob")).matches.size(), 1);
        QVERIFY(server.post("api/logout", LogoutRequest{ann.userId, ann.deviceId}).as<UserResponse>().ok);
        QVERIFY(check(server, QStringLiteral("bob")).matches.isEmpty());
        QVERIFY(!check(server, QStringLiteral("ann")).active);
        QCOMPARE(server.post("api/login", LoginRequest{ann.userId, ann.deviceId}).status, 200);
    }

    void aPositionReportIsStored()
    {
        TestServer server(0);
        const RegisterRequest ann = registration(QStringLiteral("ann"));
        server.post("api/signup", ann);
        const LocationUpdateRequest update{ann.userId, ann.deviceId, -12.5, 180, false};
        QVERIFY(server.post("api/location", update).as<UserResponse>().ok);
        const Reply reply = server.post("api/login", LoginRequest{ann.userId, ann.deviceId});
        const UserProfile stored = reply.as<UserProfileResponse>().user;
        QCOMPARE(stored.latitude, -12.5);
        QCOMPARE(stored.longitude, 180.0);
        QCOMPARE(stored.discoverable, false);
    }

    void encodedUserIdsAreDecoded_data()
    {
        QTest::addColumn<QString>("userId");
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("blanks") << QStringLiteral(" a b ") << QByteArray("%20a%20b%20");
        QTest::newRow("question mark") << QStringLiteral("a?b") << QByteArray("a%3Fb");
        QTest::newRow("hash") << QStringLiteral("a#b") << QByteArray("a%23b");
        QTest::newRow("percent") << QStringLiteral("100%") << QByteArray("100%25");
        QTest::newRow("looks encoded") << QStringLiteral("a%20b") << QByteArray("a%2520b");
        QTest::newRow("slash as separator") << QStringLiteral("a/b/c") << QByteArray("a/b/c");
        QTest::newRow("encoded slash") << QStringLiteral("a/b/c") << QByteArray("a%2Fb%2fc");
        QTest::newRow("slash at the end") << QStringLiteral("a/") << QByteArray("a/");
        QTest::newRow("letters") << QStringLiteral("zoë 由紀 نور 😀")
                                 << QUrl::toPercentEncoding(QStringLiteral("zoë 由紀 نور 😀"));
        QTest::newRow("plus") << QStringLiteral("a+b") << QByteArray("a+b");
        QTest::newRow("quote and brackets") << QStringLiteral("\"[<a>]\"") << QByteArray("%22%5B%3Ca%3E%5D%22");
    }
    void encodedUserIdsAreDecoded()
    {
        QFETCH(QString, userId);
        QFETCH(QByteArray, path);
        TestServer server(0);
        RegisterRequest request = registration(userId);
        request.deviceId = QStringLiteral("d&1 +ü");
        QCOMPARE(server.post("api/signup", request).status, 200);
        const QByteArray query = "?deviceId=" + QUrl::toPercentEncoding(request.deviceId);
        const Reply checked = server.get("api/check/" + path + query);
        QVERIFY2(checked.status == 200, checked.body.constData());
        QVERIFY(checked.as<CheckResponse>().active);
        QCOMPARE(server.get("api/see-me/" + path + query).status, 200);
    }

    void healthAndAppVersionNeedNoUser()
    {
        TestServer server(0);
        const HealthResponse health = server.get("health").as<HealthResponse>();
        QVERIFY(health.ok);
        QCOMPARE(health.name, std::optional(QStringLiteral("Ambrel local server")));
        QVERIFY(!health.version->isEmpty());
        QCOMPARE(health.serverTime, std::optional(QStringLiteral("2023-11-14T22:13:20.000Z")));

        const AppVersionResponse version = server.get("api/app-version").as<AppVersionResponse>();
        QVERIFY(version.apkAvailable);
        QVERIFY(!version.versionName.isEmpty());
        QVERIFY(version.downloadUrl.startsWith(server.url().toString()));
    }

private:
    /// Every call on behalf of a user "ann", from a device that never signed up.
    static void everyCallForAUser()
    {
        const QString ann = QStringLiteral("ann");
        const QString other = QStringLiteral("other device");
        QTest::addColumn<QByteArray>("method");
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("body");
        const auto post = [](const char *path, const auto &record) {
            QTest::newRow(path) << QByteArray("POST") << QByteArray(path) << writeRecord(record);
        };
        post("api/login", LoginRequest{ann, other});
        post("api/logout", LogoutRequest{ann, other});
        post("api/location", LocationUpdateRequest{ann, other, 0, 0, true});
        post("api/dismiss", DismissRequest{ann, other, QStringLiteral("bob")});
        post("api/see-me", SeeMeRequest{ann, other, QStringLiteral("bob")});
        for (const char *path : {"api/check/ann?deviceId=other%20device", "api/see-me/ann?deviceId=other%20device"})
            QTest::newRow(path) << QByteArray("GET") << QByteArray(path) << QByteArray();
    }
};

QTEST_GUILESS_MAIN(AccountsTest)
#include "AccountsTest.moc"
