#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "support/ScriptedServer.h"

#include <QTest>

using namespace ambrel;

namespace {

/// How `health()` fails on this answer.
QString failureOn(const ScriptedReply &reply)
{
    ScriptedServer server;
    server.on("GET", "/health", reply);
    const AmbrelAPI api(server.url());
    return failureOf(api.call(endpoints::health));
}

QString refused(const char *text)
{
    return QStringLiteral("AmbrelAPIError: ") + QString::fromUtf8(text);
}

} // namespace

class ErrorMappingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStatusOf201Or204IsASuccessAndAnEmptyBodyFailsToDecode()
    {
        QCOMPARE(failureOn(ScriptedReply::json(R"({"ok":true})", 201)), QString());
        const auto noContent = ScriptedReply().send(ScriptedReply::head(204));
        QVERIFY(failureOn(noContent).startsWith(QStringLiteral("DecodingError: ")));
    }

    void aStatusOf199Or300IsAFailure()
    {
        const auto interim = ScriptedReply().send(ScriptedReply::head(199)).close();
        QCOMPARE(failureOn(interim), refused("Server returned 199."));
        QCOMPARE(failureOn(ScriptedReply::json(R"({"ok":true})", 300)), refused("Server returned 300."));
    }

    void aRefusalShowsTheServersTextAlone()
    {
        QCOMPARE(failureOn(ScriptedReply::json(R"({"error":"Name taken"})", 409)), refused("Name taken"));
    }

    void aRefusalWithoutARecordShowsTheStatus()
    {
        const auto page = ScriptedReply::answer(500, "<html><h1>Oops</h1></html>", {"Content-Type: text/html"});
        QCOMPARE(failureOn(page), refused("Server returned 500."));
    }

    void aRefusalWhoseErrorIsNoTextShowsTheStatus()
    {
        QCOMPARE(failureOn(ScriptedReply::json(R"({"error":42})", 404)), refused("Server returned 404."));
    }

    void aSuccessWithAnErrorObjectFailsToDecode()
    {
        const QString failure = failureOn(ScriptedReply::json(R"({"error":"Name taken"})"));
        QVERIFY2(failure.startsWith(QStringLiteral("DecodingError: ")), qPrintable(failure));
        QVERIFY(!failure.contains(QStringLiteral("Name taken")));
    }

    void anEmptyQueryLeavesNoQuestionMark()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
        QVERIFY(!server.requests().first().target.contains('?'));
    }

    void everySuccessfulStatusIsASuccess()
    {
        for (const int status : {200, 202, 203, 206, 226, 299})
            QCOMPARE(failureOn(ScriptedReply::json(R"({"ok":true})", status)), QString());
    }

    void otherStatusesShowTheirNumber_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QList<QByteArray>>("headers");
        const QList<QByteArray> none;
        QTest::newRow("304") << 304 << none;
        QTest::newRow("400") << 400 << none;
        QTest::newRow("401 with challenge") << 401 << QList<QByteArray>{"WWW-Authenticate: Basic realm=\"x\""};
        QTest::newRow("407 with challenge") << 407 << QList<QByteArray>{"Proxy-Authenticate: Basic realm=\"x\""};
        QTest::newRow("429") << 429 << QList<QByteArray>{"Retry-After: 100"};
        QTest::newRow("502") << 502 << none;
        QTest::newRow("503") << 503 << none;
        QTest::newRow("599") << 599 << none;
        QTest::newRow("redirect without a target") << 302 << none;
        QTest::newRow("choices with a target") << 300 << QList<QByteArray>{"Location: /elsewhere"};
    }

    void otherStatusesShowTheirNumber()
    {
        QFETCH(const int, status);
        QFETCH(const QList<QByteArray>, headers);
        const auto reply = ScriptedReply::answer(status, status == 304 ? "" : "{\"no\":1}", headers);
        QCOMPARE(failureOn(reply), QStringLiteral("AmbrelAPIError: Server returned %1.").arg(status));
    }

    void theServersTextIsShownUnchanged()
    {
        const char *const text = "  <b>\u00c4rger</b>\u202e & co  ";
        const QByteArray body = QByteArray(R"({"code":7,"error":")") + text + "\"}";
        QCOMPARE(failureOn(ScriptedReply::json(body, 401)), refused(text));
    }

    void anUnusableAnswerFailsToDecode_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("page") << QByteArray("<!doctype html><p>Welcome to the hotel</p>");
        QTest::newRow("cut") << QByteArray(R"({"ok":tr)");
        QTest::newRow("array") << QByteArray("[]");
        QTest::newRow("wrong type") << QByteArray(R"({"ok":"true"})");
        QTest::newRow("null") << QByteArray(R"({"ok":null})");
        QTest::newRow("bad UTF-8") << QByteArray("{\"ok\":true,\"name\":\"\xff\xfe\"}");
        QTest::newRow("abyss") << "{\"ok\":true,\"name\":" + QByteArray(100'000, '[');
    }

    void anUnusableAnswerFailsToDecode()
    {
        QFETCH(const QByteArray, body);
        const QString failure = failureOn(ScriptedReply::json(body));
        QVERIFY2(failure.startsWith(QStringLiteral("DecodingError: ")), qPrintable(failure));
        QVERIFY2(failure.endsWith(u'.'), qPrintable(failure));
    }

    void aDecodingFailureNamesTheKey()
    {
        QVERIFY(failureOn(ScriptedReply::json(R"({"ok":7})")).contains(QStringLiteral("ok")));
    }

    void addressesOtherThanHttpAreNeverOpened_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("failure");
        const QString noServer = QStringLiteral("AmbrelAPIError: No server response.");
        const QString unsupported =
            transport("The server address must begin with http:// or https:// and name a server.");
        const QString unusable = transport("The server address cannot be used.");
        QTest::newRow("port too large") << QStringLiteral("http://127.0.0.1:99999/") << unusable;
        QTest::newRow("no such host") << QStringLiteral("http://127.0.0..1/") << unusable;
        QTest::newRow("invisible character") << QStringLiteral(u"http://127.0.\u200b0.1/") << unusable;
        QTest::newRow("file") << QStringLiteral("file:///etc/") << noServer;
        QTest::newRow("FILE") << QStringLiteral("FILE:///etc/") << noServer;
        QTest::newRow("data") << QStringLiteral("data:application/json,1") << noServer;
        QTest::newRow("no scheme") << QStringLiteral("host.example") << unsupported;
        QTest::newRow("loopback without a scheme") << QStringLiteral("127.0.0.1") << unsupported;
        QTest::newRow("host as scheme") << QStringLiteral("localhost:3000") << unsupported;
        QTest::newRow("two slashes") << QStringLiteral("//127.0.0.1/") << unsupported;
        QTest::newRow("no host") << QStringLiteral("http:///") << unsupported;
        QTest::newRow("ftp") << QStringLiteral("ftp://127.0.0.1/") << unsupported;
        QTest::newRow("gopher") << QStringLiteral("gopher://127.0.0.1/") << unsupported;
        QTest::newRow("dict") << QStringLiteral("dict://127.0.0.1/") << unsupported;
        QTest::newRow("socket") << QStringLiteral("unix:///run/socket") << unsupported;
    }

    void addressesOtherThanHttpAreNeverOpened()
    {
        QFETCH(const QString, address);
        QFETCH(const QString, failure);
        const AmbrelAPI api(address);
        QCOMPARE(failureOf(api.call(endpoints::health)), failure);
        QCOMPARE(failureOf(api.call(endpoints::seeMe, SeeMeRequest())), failure);
    }
};

QTEST_GUILESS_MAIN(ErrorMappingTest)
#include "ErrorMappingTest.moc"
