#include "support/ScriptedServer.h"

#include <QTest>
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace ambrel;

/// Fails on purpose: ctest expects the report of the scripted server.
class UnforeseenRequestTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRequestThatNobodyForesawFailsTheTest()
    {
        ScriptedServer server;
        server.on("GET", "/expected", ScriptedReply::json("{}"));

        const int client = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(server.port());
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        QCOMPARE(::connect(client, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        const QByteArray request = "GET /surprise HTTP/1.1\r\n\r\n";
        QCOMPARE(::send(client, request.constData(), static_cast<std::size_t>(request.size()), 0), request.size());
        QTRY_COMPARE(server.count("GET", "/surprise"), 1);
        ::close(client);
    }
};

QTEST_GUILESS_MAIN(UnforeseenRequestTest)
#include "UnforeseenRequestTest.moc"
