#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "support/ScriptedServer.h"

#include <QTest>

using namespace ambrel;

namespace {

constexpr const char *acknowledged = R"({"ok":true})";

RegisterRequest someone()
{
    RegisterRequest request;
    request.userId = QStringLiteral("u1");
    request.deviceId = QStringLiteral("d1");
    request.displayName = QStringLiteral("Ann");
    request.latitude = 51.5;
    request.aboutMe = {0, 1, 2};
    return request;
}

} // namespace

class EndpointsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkAsksForTheUserWithTheDeviceAsQuery()
    {
        ScriptedServer server;
        server.on("GET", "/api/check/u1", ScriptedReply::json(R"({"active":true,"matches":[],"seeMeMessages":[]})"));
        const AmbrelAPI api(server.url());
        const auto answer = recordOf(api.call(endpoints::check, QStringLiteral("u1"), QStringLiteral("d1")));
        QVERIFY(answer && answer->active);
        QCOMPARE(server.requests().first().target, "/api/check/u1?deviceId=d1");
    }

    void healthIsDirectlyBelowTheBaseWithoutAQuery()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true,"name":"n","version":"1"})"));
        const AmbrelAPI api(server.url());
        const auto answer = recordOf(api.call(endpoints::health));
        QVERIFY(answer && answer->ok);
        QCOMPARE(server.requests().first().target, "/health");
    }

    void appVersionIsBelowApiWithoutAQuery()
    {
        ScriptedServer server;
        server.on("GET", "/api/app-version",
                  ScriptedReply::json(R"({"versionCode":7,"versionName":"7","downloadUrl":"","apkAvailable":false,)"
                                      R"("phoneVerificationAvailable":false})"));
        const AmbrelAPI api(server.url());
        const auto answer = recordOf(api.call(endpoints::appVersion));
        QVERIFY(answer);
        QCOMPARE(answer->versionCode, 7);
        QCOMPARE(server.requests().first().target, "/api/app-version");
    }

    void anEmptyUserIdLeavesTheTrailingSlash()
    {
        ScriptedServer server;
        server.on("GET", "/api/check/", ScriptedReply::json("{}", 404));
        const AmbrelAPI api(server.url());
        (void)failureOf(api.call(endpoints::check, {}, QStringLiteral("d1")));
        QCOMPARE(server.requests().first().target, "/api/check/?deviceId=d1");
    }

    void seeMeMessagesAsksForTheUserWithTheDeviceAsQuery()
    {
        ScriptedServer server;
        server.on("GET", "/api/see-me/u1", ScriptedReply::json(R"({"ok":true,"seeMeMessages":[]})"));
        const AmbrelAPI api(server.url());
        QVERIFY(recordOf(api.call(endpoints::seeMeMessages, QStringLiteral("u1"), QStringLiteral("d1"))));
        QCOMPARE(server.requests().first().target, "/api/see-me/u1?deviceId=d1");
    }

    void everyPostGoesToItsPathAsJson()
    {
        ScriptedServer server;
        const QList<QByteArray> paths = {"/api/signup",   "/api/registerOrUpdate", "/api/logout",
                                         "/api/location", "/api/dismiss",          "/api/see-me"};
        for (const QByteArray &path : paths)
            server.on("POST", path, ScriptedReply::json(acknowledged));
        server.on("POST", "/api/login",
                  ScriptedReply::json(R"({"user":{"userId":"u1","displayName":"Ann",)"
                                      R"("discoverable":true,"latitude":1,"longitude":2,)"
                                      R"("aboutMe":[],"lookingFor":[],"profilePhotos":[]}})"));
        const AmbrelAPI api(server.url());
        QVERIFY(recordOf(api.call(endpoints::signup, someone())));
        QVERIFY(recordOf(api.call(endpoints::registerOrUpdate, someone())));
        QVERIFY(recordOf(api.call(endpoints::logout, LogoutRequest())));
        QVERIFY(recordOf(api.call(endpoints::updateLocation, LocationUpdateRequest())));
        QVERIFY(recordOf(api.call(endpoints::dismiss, DismissRequest())));
        QVERIFY(recordOf(api.call(endpoints::seeMe, SeeMeRequest())));
        QVERIFY(recordOf(api.call(endpoints::login, LoginRequest())));

        QList<QByteArray> seen;
        for (const ReceivedRequest &request : server.requests()) {
            QCOMPARE(request.method, "POST");
            QCOMPARE(request.header("Content-Type"), "application/json");
            QVERIFY(request.header("Expect").isNull());
            seen.append(request.target);
        }
        QCOMPARE(seen, paths + QList<QByteArray>{"/api/login"});
    }

    void aPostCarriesTheRecord()
    {
        ScriptedServer server;
        server.on("POST", "/api/signup", ScriptedReply::json(acknowledged, 201));
        const AmbrelAPI api(server.url());
        QVERIFY(recordOf(api.call(endpoints::signup, someone())));
        QCOMPARE(server.requests().first().body, writeRecord(someone()));
    }

    void aRequestCarriesNothingAboutThePerson()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::answer(200, acknowledged, {"Set-Cookie: tracked=1; Path=/"}));
        const AmbrelAPI api(server.url());
        QVERIFY(recordOf(api.call(endpoints::health)));
        QVERIFY(recordOf(api.call(endpoints::health)));
        for (const ReceivedRequest &request : server.requests()) {
            QStringList names;
            for (const auto &[name, value] : request.headers)
                names.append(QString::fromLatin1(name));
            QCOMPARE(names, (QStringList{QStringLiteral("Host"), QStringLiteral("User-Agent"), QStringLiteral("Accept"),
                                         QStringLiteral("Accept-Encoding")}));
            QVERIFY(request.header("User-Agent").startsWith("Ambrel/"));
            QVERIFY(request.body.isEmpty());
        }
    }

    void userIdsArriveAsTheyAre_data()
    {
        QTest::addColumn<QString>("userId");
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("blank") << QStringLiteral("a b") << QByteArray("a%20b");
        QTest::newRow("question mark") << QStringLiteral("a?b") << QByteArray("a%3Fb");
        QTest::newRow("hash") << QStringLiteral("a#b") << QByteArray("a%23b");
        QTest::newRow("percent") << QStringLiteral("a%20b") << QByteArray("a%2520b");
        QTest::newRow("slash separates") << QStringLiteral("a/b") << QByteArray("a/b");
        QTest::newRow("leading slash") << QStringLiteral("/a") << QByteArray("/a");
        QTest::newRow("two dots") << QStringLiteral("..") << QByteArray("..");
        QTest::newRow("way up") << QStringLiteral("../../x") << QByteArray("../../x");
        QTest::newRow("one dot") << QStringLiteral(".") << QByteArray(".");
        QTest::newRow("backslash") << QStringLiteral("a\\b") << QByteArray("a%5Cb");
        QTest::newRow("letters") << QStringLiteral(u"\u00e4\u4e2d") << QByteArray("%C3%A4%E4%B8%AD");
        QTest::newRow("emoji") << QStringLiteral(u"\U0001F9D9") << QByteArray("%F0%9F%A7%99");
        QTest::newRow("half an emoji") << QString(QChar(0xd83e)) << QByteArray("%EF%BF%BD");
        QTest::newRow("control") << QString(QChar(u'\n')) << QByteArray("%0A");
        QTest::newRow("allowed marks") << QStringLiteral("a@b:c+d&e=f;g,h") << QByteArray("a@b:c+d&e=f;g,h");
    }

    void userIdsArriveAsTheyAre()
    {
        QFETCH(const QString, userId);
        QFETCH(const QByteArray, path);
        ScriptedServer server;
        server.on("GET", "/api/see-me/" + path, ScriptedReply::json(R"({"ok":true,"seeMeMessages":[]})"));
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::seeMeMessages, userId, QStringLiteral("d"))), QString());
        QCOMPARE(server.requests().first().target, "/api/see-me/" + path + "?deviceId=d");
    }

    void deviceIdsAreEscapedInTheQuery()
    {
        ScriptedServer server;
        server.on("GET", "/api/see-me/u", ScriptedReply::json(R"({"ok":true,"seeMeMessages":[]})"));
        const AmbrelAPI api(server.url());
        QVERIFY(
            recordOf(api.call(endpoints::seeMeMessages, QStringLiteral("u"), QStringLiteral(u"a&b=c+d%#\u00e4 /?"))));
        QCOMPARE(server.requests().first().target, "/api/see-me/u?deviceId=a%26b%3Dc%2Bd%25%23%C3%A4%20%2F%3F");
    }

    void aBaseWithAPathKeepsIt()
    {
        ScriptedServer server;
        server.on("GET", "/v%2F1/a%20b/health", ScriptedReply::json(acknowledged));
        const AmbrelAPI api(server.url() + QStringLiteral("v%2F1/a%20b"));
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
    }

    void anAnswerThatIsNotOkIsReturnedAsItIs()
    {
        ScriptedServer server;
        server.on("POST", "/api/logout", ScriptedReply::json(R"({"ok":false})"));
        const AmbrelAPI api(server.url());
        const auto answer = recordOf(api.call(endpoints::logout, LogoutRequest()));
        QVERIFY(answer && !answer->ok);
    }

    void theClientMayGoWhileItsOperationRuns()
    {
        ScriptedServer server;
        server.on("POST", "/api/logout", ScriptedReply::json(acknowledged).held());
        auto api = std::make_unique<AmbrelAPI>(server.url());
        const Awaited logout(api->call(endpoints::logout, LogoutRequest()));
        api.reset();
        server.release("POST", "/api/logout");
        QVERIFY(logout.wait().record());
    }

    void aRecordThatCannotBeWrittenIsNotSent()
    {
        const ScriptedServer server;
        const AmbrelAPI api(server.url());
        LocationUpdateRequest nowhere;
        nowhere.latitude = std::numeric_limits<double>::quiet_NaN();
        QVERIFY_THROWS_EXCEPTION(EncodingError, api.call(endpoints::updateLocation, nowhere));
        QCOMPARE(server.connectionCount(), 0);
    }

    void answersMayArriveInAnyOrder()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(acknowledged).held());
        server.on("POST", "/api/logout", ScriptedReply::json(acknowledged));
        const AmbrelAPI api(server.url());
        const Awaited first(api.call(endpoints::health));
        QVERIFY(recordOf(api.call(endpoints::logout, LogoutRequest())));
        QVERIFY(!first.isDone());
        server.release("GET", "/health");
        QVERIFY(first.wait().record());
    }
};

QTEST_GUILESS_MAIN(EndpointsTest)
#include "EndpointsTest.moc"
