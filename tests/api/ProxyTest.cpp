#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "support/ScriptedServer.h"

#include <QTest>

using namespace ambrel;

/// The environment is set before the first exchange of each test and read by the network thread during it.
class ProxyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        qunsetenv("http_proxy");
        qunsetenv("https_proxy");
        qunsetenv("no_proxy");
    }

    void theProxyOfTheEnvironmentIsAsked()
    {
        ScriptedServer proxy;
        proxy.on("GET", "http://far.invalid:3000/health", ScriptedReply::json(R"({"ok":true})"));
        qputenv("http_proxy", proxy.url().toLatin1());
        QCOMPARE(failureOf(AmbrelAPI(QStringLiteral("http://far.invalid:3000")).call(endpoints::health)), QString());
    }

    void exceptionsAreAskedDirectly()
    {
        const ScriptedServer proxy;
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        qputenv("http_proxy", proxy.url().toLatin1());
        qputenv("no_proxy", "127.0.0.1");
        QCOMPARE(failureOf(AmbrelAPI(server.url()).call(endpoints::health)), QString());
        QCOMPARE(proxy.connectionCount(), 0);
    }

    void aProxyThatIsNotThereCannotBeConnectedTo()
    {
        QByteArray closedPort;
        {
            const ScriptedServer proxy;
            closedPort = proxy.url().toLatin1();
        }
        qputenv("http_proxy", closedPort);
        QCOMPARE(failureOf(AmbrelAPI(QStringLiteral("http://far.invalid")).call(endpoints::health)),
                 transport("Could not connect to the server."));
    }

    void aProxyThatWantsAPasswordShowsItsStatus()
    {
        ScriptedServer proxy;
        proxy.on("GET", "http://far.invalid/health",
                 ScriptedReply::answer(407, {}, {"Proxy-Authenticate: Basic realm=\"proxy\""}));
        qputenv("http_proxy", proxy.url().toLatin1());
        QCOMPARE(failureOf(AmbrelAPI(QStringLiteral("http://far.invalid")).call(endpoints::health)),
                 QStringLiteral("AmbrelAPIError: Server returned 407."));
    }

    void aProxyThatRefusesATunnelIsNamed()
    {
        ScriptedServer proxy;
        proxy.on("CONNECT", "far.invalid:443", ScriptedReply::answer(502));
        qputenv("https_proxy", proxy.url().toLatin1());
        QCOMPARE(failureOf(AmbrelAPI(QStringLiteral("https://far.invalid")).call(endpoints::health)),
                 transport("The proxy server refused the connection."));
    }
};

QTEST_GUILESS_MAIN(ProxyTest)
#include "ProxyTest.moc"
