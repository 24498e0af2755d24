#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "support/ScriptedServer.h"

#include <QTest>
#include <functional>

using namespace ambrel;

namespace {

using Failure = std::function<QString(const AmbrelAPI &)>;

const ScriptedReply acknowledged = ScriptedReply::json(R"({"ok":true})");

ScriptedReply chunked(const QByteArray &chunks)
{
    return ScriptedReply().send(ScriptedReply::head(200, {"Transfer-Encoding: chunked"}) + chunks);
}

} // namespace

class ConnectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aServerThatIsNotThereIsToldFromOneThatHasNoName()
    {
        QString closedPort;
        {
            const ScriptedServer server;
            closedPort = server.url();
        }
        QCOMPARE(failureOf(AmbrelAPI(closedPort).call(endpoints::health)),
                 transport("Could not connect to the server."));
        QCOMPARE(failureOf(AmbrelAPI(QStringLiteral("http://nobody.invalid")).call(endpoints::health)),
                 transport("The server could not be found."));
    }

    void aLostConnectionIsNamed_data()
    {
        QTest::addColumn<ScriptedReply>("reply");
        const QByteArray head = ScriptedReply::head(200, {"Content-Length: 500"});
        QTest::newRow("close without answer") << ScriptedReply().close();
        QTest::newRow("reset without answer") << ScriptedReply().reset();
        QTest::newRow("close in the headers") << ScriptedReply().send("HTTP/1.1 200 OK\r\nContent-Le").close();
        QTest::newRow("close after the headers") << ScriptedReply().send(head).close();
        QTest::newRow("short body") << ScriptedReply().send(head + R"({"ok":true})").close();
        QTest::newRow("reset in the body")
            << ScriptedReply().send(head + R"({"ok":)").pause(std::chrono::milliseconds(50)).reset();
        QTest::newRow("cut chunk") << chunked("b\r\n{\"ok\":").close();
        QTest::newRow("no last chunk") << chunked("b\r\n{\"ok\":true}\r\n").close();
    }

    void aLostConnectionIsNamed()
    {
        QFETCH(const ScriptedReply, reply);
        ScriptedServer server;
        server.on("GET", "/health", reply);
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), transport("The network connection was lost."));
    }

    void aChunkedAnswerIsPutTogether()
    {
        ScriptedServer server;
        server.on("GET", "/health", chunked("6\r\n{\"ok\":\r\n5\r\ntrue}\r\n0\r\n\r\n"));
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
        server.next("GET", "/health", chunked("b\r\n{\"ok\":true}\r\n0\r\nX-Trailer: 1\r\n\r\n"));
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
        server.next("GET", "/health", chunked("b\r\n{\"ok\":true}\r\n0\r\nHTTP/1.1 500 No: 1\r\nHTTP/: 1\r\n\r\n"));
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
    }

    void anAnswerThatIsNoHttpIsUnreadable()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply().send("220 mail.example ESMTP\r\n").close());
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), transport("The server's answer could not be read."));
    }

    void pollsShareOneConnection()
    {
        ScriptedServer server;
        server.on("GET", "/api/see-me/u", ScriptedReply::json(R"({"ok":true,"seeMeMessages":[]})"));
        for (int poll = 0; poll < 20; ++poll) {
            const AmbrelAPI api(server.url()); // a new client, as after saving the settings
            QCOMPARE(failureOf(api.call(endpoints::seeMeMessages, QStringLiteral("u"), QStringLiteral("d"))),
                     QString());
        }
        QCOMPARE(server.requests().size(), 20);
        QCOMPARE(server.connectionCount(), 1);
    }

    void aServerGetsSixConnectionsAtOnceAndTheRestWaits()
    {
        constexpr int calls = 20;
        ScriptedServer busy;
        busy.on("GET", "/health", ScriptedReply(acknowledged).held());
        ScriptedServer other;
        other.on("GET", "/health", acknowledged);
        std::vector<Awaited<HealthResponse>> waiting;
        for (int call = 0; call < calls; ++call)
            waiting.emplace_back(AmbrelAPI(busy.url()).call(endpoints::health));
        for (int answered = 0; answered < calls; ++answered) {
            QTRY_COMPARE(busy.count("GET", "/health"), std::min(answered + 6, calls));
            QCOMPARE(failureOf(AmbrelAPI(other.url()).call(endpoints::health)), QString());
            QCOMPARE(busy.count("GET", "/health"), std::min(answered + 6, calls));
            busy.release("GET", "/health");
        }
        for (const auto &answer : waiting)
            QCOMPARE(answer.wait().failure(), QString());
        QCOMPARE(busy.count("GET", "/health"), calls);
    }

    void aGetThatDiesOnAnOldConnectionIsSentAgain()
    {
        ScriptedServer server;
        server.on("GET", "/health", acknowledged);
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
        server.next("GET", "/health", ScriptedReply().close());
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
        QCOMPARE(server.count("GET", "/health"), 3);
    }

    void whatMustNotHappenTwiceIsSentOnce_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<Failure>("call");
        QTest::addColumn<ScriptedReply>("end");
        const std::pair<QByteArray, Failure> calls[] = {
            {"/api/signup",
             [](const AmbrelAPI &api) { return failureOf(api.call(endpoints::signup, RegisterRequest())); }},
            {"/api/dismiss",
             [](const AmbrelAPI &api) { return failureOf(api.call(endpoints::dismiss, DismissRequest())); }},
            {"/api/see-me", [](const AmbrelAPI &api) { return failureOf(api.call(endpoints::seeMe, SeeMeRequest())); }},
        };
        for (const auto &[path, call] : calls) {
            QTest::addRow("%s, closed", path.constData()) << path << call << ScriptedReply(ScriptedReply().close());
            QTest::addRow("%s, reset", path.constData()) << path << call << ScriptedReply(ScriptedReply().reset());
        }
    }

    void whatMustNotHappenTwiceIsSentOnce()
    {
        QFETCH(const QByteArray, path);
        QFETCH(const Failure, call);
        QFETCH(const ScriptedReply, end);
        ScriptedServer server;
        server.on("GET", "/health", acknowledged);
        server.on("POST", path, end);
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), QString()); // leaves a connection that could be used again
        QCOMPARE(call(api), transport("The network connection was lost."));
        QCOMPARE(server.count("POST", path), 1);
    }

    void whatMustNotHappenTwiceIsSentOnceBehindARedirect()
    {
        ScriptedServer server;
        server.on("GET", "/health", acknowledged);
        server.on("POST", "/api/see-me", ScriptedReply::redirect(307, "/moved/see-me"));
        server.on("POST", "/moved/see-me", ScriptedReply().close());
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
        QCOMPARE(failureOf(api.call(endpoints::seeMe, SeeMeRequest())), transport("The network connection was lost."));
        QCOMPARE(server.count("POST", "/api/see-me"), 1);
        QCOMPARE(server.count("POST", "/moved/see-me"), 1);
    }
};

QTEST_GUILESS_MAIN(ConnectionTest)
#include "ConnectionTest.moc"
