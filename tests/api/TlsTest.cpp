#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "api/HttpSession.h"
#include "support/ScriptedServer.h"

#include <QTest>

using namespace ambrel;

namespace {

const ScriptedReply acknowledged = ScriptedReply::json(R"({"ok":true})");

QString asHttps(QString url)
{
    return url.replace(QStringLiteral("http:"), QStringLiteral("https:"));
}

} // namespace

class TlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { HttpSession::shared().setLimits({.trustedCertificates = trustedAuthority()}); }
    void cleanup() { HttpSession::shared().setLimits({}); }

    void aTrustedServerIsTalkedTo()
    {
        for (const QString &host : {QStringLiteral("127.0.0.1"), QStringLiteral("localhost")}) {
            ScriptedServer server(TlsIdentity{QStringLiteral("valid")});
            server.on("GET", "/health", acknowledged);
            server.on("POST", "/api/see-me", acknowledged);
            const AmbrelAPI api(server.url(host));
            QCOMPARE(failureOf(api.call(endpoints::health)), QString());
            QCOMPARE(failureOf(api.call(endpoints::seeMe, SeeMeRequest())), QString());
        }
    }

    void aServerWithoutATrustedCertificateHearsNothing_data()
    {
        QTest::addColumn<QString>("certificate");
        for (const char *const name :
             {"self-signed", "unknown-issuer", "incomplete-chain", "wrong-host", "expired", "not-yet-valid"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void aServerWithoutATrustedCertificateHearsNothing()
    {
        QFETCH(const QString, certificate);
        const ScriptedServer server(TlsIdentity{certificate});
        const AmbrelAPI api(server.url());
        const QString notTrusted = transport("The certificate for this server is not trusted.");
        QCOMPARE(failureOf(api.call(endpoints::health)), notTrusted);
        QCOMPARE(failureOf(api.call(endpoints::signup, RegisterRequest())), notTrusted);
        QCOMPARE(server.requests().size(), 0);
        QCOMPARE(server.connectionCount(), 2);
    }

    void thePlatformsStoreKnowsNoTestAuthority()
    {
        HttpSession::shared().setLimits({});
        const ScriptedServer server(TlsIdentity{QStringLiteral("valid")});
        QCOMPARE(failureOf(AmbrelAPI(server.url()).call(endpoints::health)),
                 transport("The certificate for this server is not trusted."));
    }

    void outdatedTlsIsRefused()
    {
        const ScriptedServer server(TlsIdentity{QStringLiteral("valid"), true});
        QCOMPARE(failureOf(AmbrelAPI(server.url()).call(endpoints::health)),
                 transport("A secure connection to the server could not be made."));
        QCOMPARE(server.connectionCount(), 1);
    }

    void aHandshakeThatIsCutIsALostConnection_data()
    {
        QTest::addColumn<ScriptedReply>("greeting");
        // A handshake record that announces more than follows.
        const QByteArray halfRecord("\x16\x03\x03\x00\x40\x02", 6);
        QTest::newRow("closed") << ScriptedReply(ScriptedReply().close());
        QTest::newRow("reset") << ScriptedReply(ScriptedReply().reset());
        QTest::newRow("closed in a record") << ScriptedReply(ScriptedReply().send(halfRecord).close());
    }

    void aHandshakeThatIsCutIsALostConnection()
    {
        QFETCH(const ScriptedReply, greeting);
        ScriptedServer server;
        server.onConnect(greeting);
        QCOMPARE(failureOf(AmbrelAPI(asHttps(server.url())).call(endpoints::health)),
                 transport("The network connection was lost."));
    }

    void aPlainServerIsNotSpokenToInPlainText()
    {
        ScriptedServer server;
        server.onConnect(ScriptedReply().send("HTTP/1.1 400 Bad Request\r\n\r\n"));
        QCOMPARE(failureOf(AmbrelAPI(asHttps(server.url())).call(endpoints::health)),
                 transport("A secure connection to the server could not be made."));
        QCOMPARE(server.requests().size(), 0);
    }
};

QTEST_GUILESS_MAIN(TlsTest)
#include "TlsTest.moc"
