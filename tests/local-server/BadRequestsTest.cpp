#include "TestServer.h"

#include <QRandomGenerator>
#include <QTcpSocket>

using namespace ambrel;

class BadRequestsTest : public QObject
{
    Q_OBJECT

    static QByteArray bodyWith(const QByteArray &key, const QByteArray &value)
    {
        QHash<QByteArray, QByteArray> fields = {
            {"userId", "\"ann\""},      {"deviceId", "\"device-ann\""},
            {"displayName", "\"Ann\""}, {"email", "\"\""},
            {"phone", "\"\""},          {"latitude", "1"},
            {"longitude", "2"},         {"discoverable", "true"},
            {"aboutMe", "[]"},          {"lookingFor", "[]"},
            {"profilePhotos", "[]"},    {"profileBio", "null"},
            {"targetUserId", "\"x\""},  {"dismissedUserId", "\"x\""},
        };
        fields.insert(key, value);
        QByteArrayList members;
        for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
            if (!field.value().isEmpty())
                members.append('"' + field.key() + "\":" + field.value());
        }
        return '{' + members.join(',') + '}';
    }

    static QByteArray text(qsizetype length) { return '"' + QByteArray(length, 'x') + '"'; }

    static void verifyAlive(TestServer &server) { QCOMPARE(server.get("health").status, 200); }

    /// Sends a request that is too large to fit anywhere and returns the answer.
    static QByteArray answerTo(const TestServer &server, const QByteArray &bytes)
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, server.port());
        socket.write(bytes);
        QByteArray received;
        const auto isComplete = [&socket, &received] {
            received += socket.readAll();
            return socket.bytesToWrite() == 0 && received.endsWith('}');
        };
        const bool isAnswered = QTest::qWaitFor(isComplete, 30'000); // 20 MiB on a busy machine
        return isAnswered ? received : "no answer: " + received;
    }

    /// Sends raw bytes, whatever they are, and verifies that others are still served meanwhile and afterwards.
    static void sendRaw(TestServer &server, const QByteArray &bytes)
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, server.port());
        QVERIFY(socket.waitForConnected());
        socket.write(bytes);
        QVERIFY(socket.waitForBytesWritten());
        verifyAlive(server);
        socket.abort();
        verifyAlive(server);
    }

private Q_SLOTS:
    void aHeadHasNoBodyAndTheLastRequestEndsTheConnection()
    {
        TestServer server(0);
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, server.port());
        QByteArray received;
        connect(&socket, &QTcpSocket::readyRead, this, [&socket, &received] { received += socket.readAll(); });
        socket.write("HEAD /health HTTP/1.1\r\nHost: x\r\n\r\n");
        QTRY_VERIFY(received.contains("\r\n\r\n"));
        socket.write("GET /health HTTP/1.1\r\nHost: x\r\nConnection: Close\r\n\r\n");
        QTRY_COMPARE(socket.state(), QAbstractSocket::UnconnectedState);
        const qsizetype first = received.indexOf("\r\n\r\n") + 4;
        QVERIFY2(received.mid(first).startsWith("HTTP/1.1 200"), received.constData());
        QVERIFY2(received.endsWith("}"), received.constData());
    }

    void unknownPathsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("path");
        for (const char *path : {"", "api", "api/", "api/nothing", "api/check", "api/signup/", "API/signup", "health/",
                                 "healthy", "api//check/ann", "..", "%2e%2e/etc/passwd", "api/see-meat"})
            QTest::newRow(path) << QByteArray(path);
    }
    void unknownPathsAreRefused()
    {
        QFETCH(QByteArray, path);
        TestServer server(0);
        const Reply reply = server.get(path);
        QCOMPARE(reply.status, 404);
        QCOMPARE(reply.error(), QStringLiteral("There is nothing at this address."));
    }

    void wrongMethodsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("method");
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("allowed");
        for (const char *path : {"api/signup", "api/registerOrUpdate", "api/login", "api/logout", "api/location",
                                 "api/dismiss", "api/see-me"})
            QTest::newRow(path) << QByteArray("GET") << QByteArray(path) << QByteArray("POST");
        for (const char *path : {"api/check/ann", "api/see-me/ann", "health", "api/app-version"})
            QTest::newRow(path) << QByteArray("POST") << QByteArray(path) << QByteArray("GET");
        for (const char *method : {"PUT", "DELETE", "PATCH", "OPTIONS"})
            QTest::newRow(method) << QByteArray(method) << QByteArray("api/login") << QByteArray("POST");
    }
    void wrongMethodsAreRefused()
    {
        QFETCH(QByteArray, method);
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, allowed);
        TestServer server(0);
        const Reply reply = server.send(method, path);
        QCOMPARE(reply.status, 405);
        QCOMPARE(reply.allowed, allowed);
        QCOMPARE(reply.error(), QStringLiteral("This address needs %1.").arg(QString::fromLatin1(allowed)));
    }

    void everyMissingKeyIsNamed_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("key");
        const auto add = [](const char *path, std::initializer_list<const char *> keys) {
            for (const char *key : keys)
                QTest::addRow("%s %s", path, key) << QByteArray(path) << QByteArray(key);
        };
        add("api/signup", {"userId", "deviceId", "displayName", "email", "phone", "latitude", "longitude",
                           "discoverable", "aboutMe", "lookingFor", "profilePhotos"});
        add("api/registerOrUpdate", {"userId", "profilePhotos"});
        add("api/location", {"userId", "deviceId", "latitude", "longitude", "discoverable"});
        add("api/login", {"userId", "deviceId"});
        add("api/logout", {"userId", "deviceId"});
        add("api/dismiss", {"userId", "deviceId", "dismissedUserId"});
        add("api/see-me", {"userId", "deviceId", "targetUserId"});
    }
    void everyMissingKeyIsNamed()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, key);
        TestServer server(0);
        for (const QByteArray &value : {QByteArray(), QByteArray("null"), QByteArray("{}")}) {
            const Reply reply = server.post(path, bodyWith(key, value));
            QCOMPARE(reply.status, 400);
            QVERIFY2(reply.error().contains(u'"' + QString::fromLatin1(key) + u'"'), reply.body.constData());
        }
    }

    void senselessValuesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("value");
        const auto add = [](const char *name, const char *key, const QByteArray &value) {
            QTest::newRow(name) << QByteArray(key) << value;
        };
        add("blank user", "userId", "\" \\t \"");
        add("empty user", "userId", "\"\"");
        add("long user", "userId", text(201));
        add("blank device", "deviceId", "\"\"");
        add("long device", "deviceId", text(201));
        add("blank name", "displayName", "\"\\u00a0\"");
        add("long name", "displayName", text(201));
        add("long e-mail", "email", text(321));
        add("long phone", "phone", text(321));
        add("long bio", "profileBio", text(10'001));
        add("north of the pole", "latitude", "90.000001");
        add("south of the pole", "latitude", "-91");
        add("east of the date line", "longitude", "180.5");
        add("west of the date line", "longitude", "-1e300");
        add("coordinate as text", "latitude", "\"1\"");
        add("fraction for a code", "aboutMe", "[1.5]");
        add("too many codes", "lookingFor", '[' + QByteArray("1,").repeated(100) + "1]");
        add("too many photos", "profilePhotos", '[' + QByteArray("\"\",").repeated(8) + "\"\"]");
        add("flag as number", "discoverable", "1");
    }
    void senselessValuesAreRefused()
    {
        QFETCH(QByteArray, key);
        QFETCH(QByteArray, value);
        TestServer server(0);
        QCOMPARE(server.post("api/signup", bodyWith({}, {})).status, 200);
        const Reply reply = server.post("api/signup", bodyWith(key, value));
        QCOMPARE(reply.status, 400);
        QVERIFY2(reply.error().contains(QString::fromLatin1(key)), reply.body.constData());
        QVERIFY(reply.error().endsWith(u'.'));
    }

    void theLongestTextsAreAccepted()
    {
        TestServer server(0);
        RegisterRequest request = registration(QString(193, u'ü'));
        request.displayName = QString(200, u'由');
        request.profileBio = QString(10'000, u'x');
        request.latitude = -90;
        request.longitude = 180;
        QCOMPARE(server.post("api/signup", request).status, 200);
    }

    void idsInThePathAreValidated_data()
    {
        QTest::addColumn<QByteArray>("path");
        for (const char *path :
             {"api/check/?deviceId=d", "api/see-me/?deviceId=d", "api/check/%20%20?deviceId=d", "api/check/ann",
              "api/check/ann?deviceId=", "api/check/ann?deviceid=d", "api/see-me/ann?deviceId=%20"})
            QTest::newRow(path) << QByteArray(path);
        QTest::newRow("long ID") << "api/check/" + QByteArray(201, 'x') + "?deviceId=d";
    }
    void idsInThePathAreValidated()
    {
        QFETCH(QByteArray, path);
        TestServer server(0);
        const Reply reply = server.get(path);
        QCOMPARE(reply.status, 400);
        QVERIFY(reply.error().contains(QStringLiteral("Id\"")));
    }

    void garbageBodiesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("blank") << QByteArray("   ");
        QTest::newRow("text") << QByteArray("hello");
        QTest::newRow("list") << QByteArray("[]");
        QTest::newRow("null") << QByteArray("null");
        QTest::newRow("cut") << QByteArray("{\"userId\":\"a");
        QTest::newRow("NUL bytes") << QByteArray(1000, '\0');
        QTest::newRow("bad UTF-8") << QByteArray("{\"userId\":\"\xff\xfe\",\"deviceId\":\"d\"}");
        QTest::newRow("lone surrogate") << QByteArray("{\"userId\":\"\\ud800\",\"deviceId\":\"d\"}");
        QTest::newRow("beyond a double") << bodyWith("latitude", "1e999");
        QTest::newRow("not a number") << bodyWith("longitude", "NaN");
        QTest::newRow("deep lists") << QByteArray(500'000, '[');
        QTest::newRow("deep objects") << "{\"userId\":" + QByteArray("{\"a\":").repeated(200'000);
        QTest::newRow("deep unknown key") << "{\"x\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') +
                                                 ",\"userId\":\"a\",\"deviceId\":\"d\"}";
    }
    void garbageBodiesAreRefused()
    {
        QFETCH(QByteArray, body);
        TestServer server(0);
        for (const char *path : {"api/signup", "api/login", "api/location", "api/see-me"}) {
            const Reply reply = server.post(path, body);
            QCOMPARE(reply.status, 400);
            QVERIFY(!reply.error().isEmpty());
        }
        verifyAlive(server);
    }

    void oversizedRequestsAreCutOff_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QByteArray>("filling");
        const QByteArray post = "POST /api/login HTTP/1.1\r\nHost: localhost\r\n";
        QTest::newRow("body") << post + "Content-Length: 100000000\r\n\r\n" << QByteArray(1 << 20, 'x');
        QTest::newRow("chunks") << post + "Transfer-Encoding: chunked\r\n\r\n"
                                << "100000\r\n" + QByteArray(1 << 20, 'x') + "\r\n";
        QTest::newRow("headers") << post << QByteArray("X-Filling: 0123456789abcdef\r\n").repeated(40'000);
        QTest::newRow("request line") << QByteArray("GET /api/check/") << QByteArray(1 << 20, 'x');
    }
    void oversizedRequestsAreCutOff()
    {
        QFETCH(QByteArray, head);
        QFETCH(QByteArray, filling);
        TestServer server(0);
        const QByteArray answer = answerTo(server, head + filling.repeated(20));
        QVERIFY2(answer.startsWith("HTTP/1.1 413 "), answer.constData());
        QVERIFY(answer.contains("\r\nConnection: close\r\n"));
        QVERIFY(answer.endsWith("{\"error\":\"The request is too large.\"}"));
        verifyAlive(server);
    }

    void manySmallRequestsOnOneConnectionAreNotTooLarge()
    {
        TestServer server(0);
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, server.port());
        QTRY_COMPARE(socket.state(), QAbstractSocket::ConnectedState);
        const QByteArray body = bodyWith("profileBio", text(9'000));
        const QByteArray request =
            "POST /api/signup HTTP/1.1\r\nHost: a\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" +
            body;
        constexpr int most = 16 * 1024 * 1024;
        for (qsizetype sent = 0; sent < 2 * most; sent += request.size()) {
            socket.write(request);
            QByteArray answer;
            while (!answer.endsWith('}')) { // a spy waits for the event; QTRY_VERIFY would sleep, thousands of times
                QVERIFY(socket.bytesAvailable() > 0 || QSignalSpy(&socket, &QTcpSocket::readyRead).wait());
                answer += socket.readAll();
            }
            QVERIFY2(answer.startsWith("HTTP/1.1 200 "), answer.constData());
        }
    }

    void brokenHttpDoesNoHarm_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("no HTTP") << QByteArray("hello\r\n\r\n");
        QTest::newRow("no path") << QByteArray("GET\r\n\r\n");
        QTest::newRow("bad version") << QByteArray("GET / HTTX/9.9\r\n\r\n");
        QTest::newRow("TLS hello") << QByteArray("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03\x00", 12);
        QTest::newRow("NUL bytes") << QByteArray(10'000, '\0');
        QTest::newRow("bad header") << QByteArray("GET /health HTTP/1.1\r\nno colon\r\n\r\n");
        QTest::newRow("unknown method") << QByteArray("BREW /health HTTP/1.1\r\nHost: a\r\n\r\n");
        QTest::newRow("bad percent") << QByteArray("GET /api/check/%zz%f?deviceId=% HTTP/1.1\r\nHost: a\r\n\r\n");
        QTest::newRow("bad UTF-8") << QByteArray("GET /api/check/%ff%fe?deviceId=%ff HTTP/1.1\r\nHost: a\r\n\r\n");
        QTest::newRow("NUL in the path") << QByteArray("GET /api/check/%00?deviceId=%00 HTTP/1.1\r\nHost: a\r\n\r\n");
        QTest::newRow("raw bytes in the path") << QByteArray("GET /\xff\xfe HTTP/1.1\r\nHost: a\r\n\r\n");
        QTest::newRow("full address") << QByteArray("GET http://[::1 HTTP/1.1\r\nHost: a\r\n\r\n");
        QTest::newRow("two slashes") << QByteArray("GET //health HTTP/1.1\r\nHost: a\r\n\r\n");
        QTest::newRow("star") << QByteArray("OPTIONS * HTTP/1.1\r\nHost: a\r\n\r\n");
        QTest::newRow("bad host") << QByteArray("GET /health HTTP/1.1\r\nHost: [[[:99999999\r\n\r\n");
        QTest::newRow("length is no number") << QByteArray("POST /api/login HTTP/1.1\r\nContent-Length: x\r\n\r\n{}");
        QTest::newRow("negative length") << QByteArray("POST /api/login HTTP/1.1\r\nContent-Length: -5\r\n\r\n{}");
        QTest::newRow("enormous length") << QByteArray("POST /api/login HTTP/1.1\r\n"
                                                       "Content-Length: 9223372036854775807\r\n\r\n{}");
        QTest::newRow("negative chunk") << QByteArray("POST /api/login HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n"
                                                      "-5\r\nabc\r\n0\r\n\r\n");
        QTest::newRow("enormous chunk") << QByteArray("POST /api/login HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n"
                                                      "7fffffffffffffff\r\nabc");
        QTest::newRow("chunk is no number")
            << QByteArray("POST /api/login HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nabc\r\n0\r\n\r\n");
        QTest::newRow("web socket") << QByteArray("GET /health HTTP/1.1\r\nHost: a\r\nConnection: Upgrade\r\n"
                                                  "Upgrade: websocket\r\nSec-WebSocket-Version: 13\r\n"
                                                  "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
        QTest::newRow("other upgrade") << QByteArray("GET /health HTTP/1.1\r\nHost: a\r\nConnection: upgrade\r\n"
                                                     "Upgrade: h2c\r\n\r\n");
        QTest::newRow("three at once") << QByteArray("GET /health HTTP/1.1\r\nHost: a\r\n\r\n").repeated(3);
    }
    void brokenHttpDoesNoHarm()
    {
        QFETCH(QByteArray, bytes);
        TestServer server(0);
        sendRaw(server, bytes);
        sendRaw(server, bytes.left(bytes.size() / 2));
    }

    void randomBytesDoNoHarm()
    {
        TestServer server(0);
        QRandomGenerator random(4711);
        const QByteArray valid = "POST /api/login HTTP/1.1\r\nHost: a\r\nContent-Length: 33\r\n\r\n"
                                 "{\"userId\":\"ann\",\"deviceId\":\"abc\"}";
        for (int round = 0; round < 300; ++round) {
            QByteArray bytes = valid;
            const int changes = random.bounded(1, 12);
            for (int change = 0; change < changes; ++change)
                bytes[random.bounded(int(bytes.size()))] = char(random.bounded(256));
            sendRaw(server, bytes);
            if (QTest::currentTestFailed())
                return;
        }
    }

    void aConnectionThatIsClosedEarlyDoesNoHarm()
    {
        TestServer server(6);
        server.post("api/signup", registration(QStringLiteral("ann")));
        for (int round = 0; round < 20; ++round) {
            QTcpSocket socket;
            socket.connectToHost(QHostAddress::LocalHost, server.port());
            socket.write("GET /api/check/ann?deviceId=device-ann HTTP/1.1\r\nHost: a\r\n\r\n");
            QVERIFY(socket.waitForConnected() && socket.waitForBytesWritten());
            socket.abort();
        }
        verifyAlive(server);
    }
};

QTEST_GUILESS_MAIN(BadRequestsTest)
#include "BadRequestsTest.moc"
