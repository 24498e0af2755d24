#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "api/HttpSession.h"
#include "support/ScriptedServer.h"

#include <QTest>

using namespace ambrel;

namespace {

const ScriptedReply acknowledged = ScriptedReply::json(R"({"ok":true})");

} // namespace

class RedirectTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { HttpSession::shared().setTrustedCertificates(trustedAuthority()); }
    void cleanupTestCase() { HttpSession::shared().setTrustedCertificates({}); }
    void aGetFollowsEveryKind();
    void aPostFollowsAsBrowsersDo_data();
    void aPostFollowsAsBrowsersDo();
    void twentyHopsAreFollowedAndNoMore();
    void aLoopEnds();
    void httpMayLeadToHttps();
    void httpsNeverLeadsToHttp_data();
    void httpsNeverLeadsToHttp();
    void otherSchemesAreNeverFollowed_data();
    void otherSchemesAreNeverFollowed();
};

void RedirectTest::aGetFollowsEveryKind()
{
    for (const int status : {301, 302, 303, 307, 308}) {
        ScriptedServer other;
        other.on("GET", "/a/health", acknowledged);
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::redirect(status, other.url().toLatin1() + "a/health?x=%20y"));
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.health()), QString());
        QCOMPARE(other.requests().first().target, "/a/health?x=%20y");
    }
}

void RedirectTest::aPostFollowsAsBrowsersDo_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("method");
    QTest::newRow("301") << 301 << QByteArray("GET");
    QTest::newRow("302") << 302 << QByteArray("GET");
    QTest::newRow("303") << 303 << QByteArray("GET");
    QTest::newRow("307") << 307 << QByteArray("POST");
    QTest::newRow("308") << 308 << QByteArray("POST");
}

void RedirectTest::aPostFollowsAsBrowsersDo()
{
    QFETCH(const int, status);
    QFETCH(const QByteArray, method);
    ScriptedServer server;
    server.on("POST", "/api/dismiss", ScriptedReply::redirect(status, "../moved"));
    server.on(method, "/moved", acknowledged);
    const AmbrelAPI api(server.url());
    DismissRequest request;
    request.userId = QStringLiteral("u1");
    QCOMPARE(failureOf(api.dismiss(request)), QString());
    const ReceivedRequest moved = server.requests().last();
    QCOMPARE(moved.method, method);
    QCOMPARE(moved.body, method == "POST" ? writeRecord(request) : QByteArray());
    QCOMPARE(moved.header("Content-Type"), method == "POST" ? QByteArray("application/json") : QByteArray());
}

void RedirectTest::twentyHopsAreFollowedAndNoMore()
{
    for (const int hops : {20, 21}) {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::redirect(302, "/1"));
        for (int hop = 1; hop < hops; ++hop) {
            const QByteArray next = "/" + QByteArray::number(hop + 1);
            server.on("GET", "/" + QByteArray::number(hop), ScriptedReply::redirect(302, next));
        }
        server.on("GET", "/" + QByteArray::number(hops), acknowledged);
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.health()), hops == 20 ? QString() : transport("Too many redirects."));
        QCOMPARE(server.requests().size(), 21);
    }
}

void RedirectTest::aLoopEnds()
{
    ScriptedServer server;
    server.on("GET", "/health", ScriptedReply::redirect(301, "/health"));
    const AmbrelAPI api(server.url());
    QCOMPARE(failureOf(api.health()), transport("Too many redirects."));
}

void RedirectTest::httpMayLeadToHttps()
{
    ScriptedServer secure(TlsIdentity{QStringLiteral("valid")});
    secure.on("GET", "/health", acknowledged);
    ScriptedServer server;
    server.on("GET", "/health", ScriptedReply::redirect(301, secure.url().toLatin1() + "health"));
    const AmbrelAPI api(server.url());
    QCOMPARE(failureOf(api.health()), QString());
}

void RedirectTest::httpsNeverLeadsToHttp_data()
{
    QTest::addColumn<bool>("beginsPlain");
    QTest::newRow("from https") << false;
    QTest::newRow("from http by way of https") << true;
}

void RedirectTest::httpsNeverLeadsToHttp()
{
    QFETCH(const bool, beginsPlain);
    ScriptedServer plain; // its /leaked would be unforeseen
    ScriptedServer secure(TlsIdentity{QStringLiteral("valid")});
    plain.on("GET", "/health", ScriptedReply::redirect(302, secure.url().toLatin1() + "health"));
    secure.on("GET", "/health", ScriptedReply::redirect(302, plain.url().toLatin1() + "leaked"));
    const AmbrelAPI api(beginsPlain ? plain.url() : secure.url());
    QCOMPARE(failureOf(api.health()), transport("The server redirected to an address that is not secure."));
    QCOMPARE(secure.count("GET", "/health"), 1);
    QCOMPARE(plain.requests().size(), beginsPlain ? 1 : 0);
}

void RedirectTest::otherSchemesAreNeverFollowed_data()
{
    QTest::addColumn<QByteArray>("location");
    QTest::newRow("file") << QByteArray("file:///etc/passwd");
    QTest::newRow("data") << QByteArray("data:application/json,{\"ok\":true}");
    QTest::newRow("ftp") << QByteArray("ftp://127.0.0.1/health");
    QTest::newRow("scheme in capitals") << QByteArray("FILE:///etc/passwd");
    QTest::newRow("no address at all") << QByteArray("http://[nonsense/");
}

void RedirectTest::otherSchemesAreNeverFollowed()
{
    QFETCH(const QByteArray, location);
    ScriptedServer server;
    server.on("GET", "/health", ScriptedReply::redirect(302, location));
    const AmbrelAPI api(server.url());
    QCOMPARE(failureOf(api.health()), transport("The server redirected to an address that is not supported."));
}

QTEST_GUILESS_MAIN(RedirectTest)
#include "RedirectTest.moc"
