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
    void initTestCase() { HttpSession::shared().setLimits({.trustedCertificates = trustedAuthority()}); }
    void cleanupTestCase() { HttpSession::shared().setLimits({}); }

    void aGetFollowsEveryKind()
    {
        for (const int status : {301, 302, 303, 307, 308}) {
            ScriptedServer other;
            other.on("GET", "/a/health", acknowledged);
            ScriptedServer server;
            server.on("GET", "/health", ScriptedReply::redirect(status, other.url().toLatin1() + "a/health?x=%20y"));
            const AmbrelAPI api(server.url());
            QCOMPARE(failureOf(api.call(endpoints::health)), QString());
            QCOMPARE(other.requests().first().target, "/a/health?x=%20y");
        }
    }

    void aPostFollowsAsBrowsersDo_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("method");
        QTest::newRow("301") << 301 << QByteArray("GET");
        QTest::newRow("302") << 302 << QByteArray("GET");
        QTest::newRow("303") << 303 << QByteArray("GET");
        QTest::newRow("307") << 307 << QByteArray("POST");
        QTest::newRow("308") << 308 << QByteArray("POST");
    }

    void aPostFollowsAsBrowsersDo()
    {
        QFETCH(const int, status);
        QFETCH(const QByteArray, method);
        ScriptedServer server;
        server.on("POST", "/api/dismiss", ScriptedReply::redirect(status, "../moved"));
        server.on(method, "/moved", acknowledged);
        const AmbrelAPI api(server.url());
        DismissRequest request;
        request.userId = QStringLiteral("u1");
        QCOMPARE(failureOf(api.call(endpoints::dismiss, request)), QString());
        const ReceivedRequest moved = server.requests().last();
        QCOMPARE(moved.method, method);
        QCOMPARE(moved.body, method == "POST" ? writeRecord(request) : QByteArray());
        QCOMPARE(moved.header("Content-Type"), method == "POST" ? QByteArray("application/json") : QByteArray());
    }

    void everyFormOfAddressIsFollowed_data()
    {
        QTest::addColumn<QByteArray>("location");
        QTest::addColumn<QByteArray>("asked");
        QTest::newRow("whole") << QByteArray("http://HOST/x/y") << QByteArray("/x/y");
        QTest::newRow("without a path") << QByteArray("http://HOST") << QByteArray("/");
        QTest::newRow("without a scheme") << QByteArray("//HOST/x") << QByteArray("/x");
        QTest::newRow("path from the root") << QByteArray("/x") << QByteArray("/x");
        QTest::newRow("path from here") << QByteArray("x/y") << QByteArray("/base/x/y");
        QTest::newRow("path upwards") << QByteArray("../x") << QByteArray("/x");
        QTest::newRow("query alone") << QByteArray("?x=1&y=%2F%20+") << QByteArray("/base/health?x=1&y=%2F%20+");
        QTest::newRow("fragment") << QByteArray("/x#part") << QByteArray("/x");
        QTest::newRow("encoded path") << QByteArray("/a%2Fb%20c%25/") << QByteArray("/a%2Fb%20c%25/");
        QTest::newRow("blank in the path") << QByteArray("/a b") << QByteArray("/a%20b");
        QTest::newRow("letters beyond ASCII") << QByteArray("/\xc3\xa4") << QByteArray("/%C3%A4");
    }

    void everyFormOfAddressIsFollowed()
    {
        QFETCH(QByteArray, location);
        QFETCH(const QByteArray, asked);
        ScriptedServer server;
        location.replace("HOST", QUrl(server.url()).authority().toLatin1());
        const QByteArray path = asked.split('?').first();
        server.next("GET", "/base/health", ScriptedReply::redirect(302, location));
        server.on("GET", path, acknowledged);
        QCOMPARE(failureOf(AmbrelAPI(server.url() + QStringLiteral("base")).call(endpoints::health)), QString());
        QCOMPARE(server.requests().last().target, asked);
    }

    void theBodyOfARedirectDoesNotMatter_data()
    {
        QTest::addColumn<ScriptedReply>("reply");
        const auto redirect = [](const QByteArray &more) {
            return ScriptedReply::head(302, {"location:\t/moved ", more});
        };
        const QByteArray chunked = redirect("Transfer-Encoding: chunked");
        QTest::newRow("endless") << ScriptedReply(ScriptedReply().send(chunked).flood("1\r\nx\r\n"));
        QTest::newRow("stalled") << ScriptedReply(
            ScriptedReply().send(redirect("Content-Length: 99") + "<html>").hang());
        QTest::newRow("silent") << ScriptedReply(ScriptedReply().send(chunked).hang());
        QTest::newRow("zipped twice") << ScriptedReply::answer(302, "zz",
                                                               {"Content-Encoding: gzip, gzip", "Location: /moved"});
        QTest::newRow("badly zipped") << ScriptedReply::answer(302, "this is no gzip",
                                                               {"Content-Encoding: gzip", "Location: /moved"});
        QTest::newRow("cut short") << ScriptedReply(
            ScriptedReply().send(redirect("Content-Length: 99") + "<html>").close());
        QTest::newRow("with another address behind it")
            << ScriptedReply(ScriptedReply().send(chunked + "1\r\nx\r\n0\r\nLocation: /trailer\r\n\r\n"));
    }

    void theBodyOfARedirectDoesNotMatter()
    {
        QFETCH(const ScriptedReply, reply);
        ScriptedServer server;
        server.on("GET", "/health", reply);
        server.on("GET", "/moved", acknowledged);
        QCOMPARE(failureOf(AmbrelAPI(server.url()).call(endpoints::health)), QString());
    }

    void aRedirectWithoutABodyKeepsTheConnection()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::redirect(302, "/moved"));
        server.on("GET", "/moved", acknowledged);
        QCOMPARE(failureOf(AmbrelAPI(server.url()).call(endpoints::health)), QString());
        QCOMPARE(server.connectionCount(), 1);
    }

    void aNameAndPasswordAreNeverSent()
    {
        ScriptedServer server;
        const auto withPassword = [&server](const QString &path) {
            return server.url().replace(QStringLiteral("://"), QStringLiteral("://ann:secret@")) + path;
        };
        server.on("GET", "/health", ScriptedReply::redirect(302, withPassword(QStringLiteral("moved")).toLatin1()));
        server.on("GET", "/moved", acknowledged);
        QCOMPARE(failureOf(AmbrelAPI(withPassword({})).call(endpoints::health)), QString());
        QCOMPARE(server.requests().size(), 2);
        for (const ReceivedRequest &request : server.requests())
            QCOMPARE(request.header("Authorization"), QByteArray());
    }

    void twentyHopsAreFollowedAndNoMore()
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
            QCOMPARE(failureOf(api.call(endpoints::health)), hops == 20 ? QString() : transport("Too many redirects."));
            QCOMPARE(server.requests().size(), 21);
        }
    }

    void aLoopEnds()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::redirect(301, "/health"));
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), transport("Too many redirects."));
    }

    void httpMayLeadToHttps()
    {
        ScriptedServer secure(TlsIdentity{QStringLiteral("valid")});
        secure.on("GET", "/health", acknowledged);
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::redirect(301, secure.url().toLatin1() + "health"));
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
    }

    void httpsNeverLeadsToHttp_data()
    {
        QTest::addColumn<bool>("beginsPlain");
        QTest::newRow("from https") << false;
        QTest::newRow("from http by way of https") << true;
    }

    void httpsNeverLeadsToHttp()
    {
        QFETCH(const bool, beginsPlain);
        ScriptedServer plain; // its /leaked would be unforeseen
        ScriptedServer secure(TlsIdentity{QStringLiteral("valid")});
        plain.on("GET", "/health", ScriptedReply::redirect(302, secure.url().toLatin1() + "health"));
        secure.on("GET", "/health", ScriptedReply::redirect(302, plain.url().toLatin1() + "leaked"));
        const AmbrelAPI api(beginsPlain ? plain.url() : secure.url());
        QCOMPARE(failureOf(api.call(endpoints::health)),
                 transport("The server redirected to an address that is not secure."));
        QCOMPARE(secure.count("GET", "/health"), 1);
        QCOMPARE(plain.requests().size(), beginsPlain ? 1 : 0);
    }

    void otherSchemesAreNeverFollowed_data()
    {
        QTest::addColumn<QByteArray>("location");
        QTest::newRow("file") << QByteArray("file:///etc/passwd");
        QTest::newRow("data") << QByteArray("data:application/json,{\"ok\":true}");
        QTest::newRow("ftp") << QByteArray("ftp://127.0.0.1/health");
        QTest::newRow("scheme in capitals") << QByteArray("FILE:///etc/passwd");
        QTest::newRow("no address at all") << QByteArray("http://[nonsense/");
    }

    void otherSchemesAreNeverFollowed()
    {
        QFETCH(const QByteArray, location);
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::redirect(302, location));
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)),
                 transport("The server redirected to an address that is not supported."));
    }
};

QTEST_GUILESS_MAIN(RedirectTest)
#include "RedirectTest.moc"
