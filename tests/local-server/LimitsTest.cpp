#include "TestServer.h"

#include <QTcpSocket>
#include <vector>

using namespace ambrel;

/// What strangers leave behind in the server stays small.
class LimitsTest : public QObject
{
    Q_OBJECT

    static constexpr qint64 mebibyte = 1024LL * 1024;

    static std::unique_ptr<QTcpSocket> connected(const TestServer &server)
    {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QHostAddress::LocalHost, server.port());
        return socket;
    }

    /// A sign-up with a photo of so many bytes.
    static Reply signUp(TestServer &server, int number, qint64 photoBytes)
    {
        RegisterRequest request = registration(QStringLiteral("user-%1").arg(number));
        request.profilePhotos = {PhotoText(std::string(std::size_t(photoBytes), 'A'))};
        return server.post("api/signup", request);
    }

private Q_SLOTS:
    void answersThatNobodyReadsAreNotCollected()
    {
        TestServer server(6);
        QCOMPARE(server.post("api/signup", registration(QStringLiteral("ann"))).status, 200);
        constexpr int requests = 400;
        const QByteArray check = "GET /api/check/ann?deviceId=device-ann HTTP/1.1\r\nHost: a\r\n\r\n";
        const qint64 oneAnswer = server.get("api/check/ann?deviceId=device-ann").body.size();
        QVERIFY(requests * oneAnswer > 60 * mebibyte); // far more than the system keeps for a connection

        const auto socket = connected(server);
        socket->setReadBufferSize(1); // nothing more is read
        socket->write(check.repeated(requests));
        for (int turn = 0; turn < requests; ++turn) // by then the server has come to each of them
            QCOMPARE(server.get("health").status, 200);

        socket->setReadBufferSize(0);
        qint64 received = 0;
        connect(socket.get(), &QTcpSocket::readyRead, this,
                [&socket, &received] { received += socket->readAll().size(); });
        received += socket->readAll().size();
        QTRY_COMPARE_WITH_TIMEOUT(socket->state(), QAbstractSocket::UnconnectedState, 60'000);
        QVERIFY2(received < 40 * mebibyte, QByteArray::number(received).constData());
    }

    void unfinishedBodiesShareALimit()
    {
        TestServer server(0);
        std::vector<std::unique_ptr<QTcpSocket>> sockets;
        QByteArray refusal;
        for (int number = 0; number < 10; ++number) {
            auto &socket = sockets.emplace_back(connected(server));
            connect(socket.get(), &QTcpSocket::readyRead, this,
                    [socket = socket.get(), &refusal] { refusal += socket->readAll(); });
            socket->write("POST /api/login HTTP/1.1\r\nHost: a\r\nContent-Length: 15000000\r\n\r\n");
            socket->write(QByteArray(14 * mebibyte, ' '));
        }
        QTRY_VERIFY_WITH_TIMEOUT(refusal.endsWith('}'), 60'000);
        QVERIFY2(refusal.startsWith("HTTP/1.1 503 "), refusal.constData());
        QVERIFY(refusal.endsWith("{\"error\":\"The server is busy. Try again later.\"}"));

        sockets.clear();
        QTRY_COMPARE(signUp(server, 1, 8 * mebibyte).status, 200); // their share is free again
    }

    void profilesShareALimit()
    {
        TestServer server(0);
        constexpr qint64 photo = 15 * mebibyte;
        constexpr int fitting = int(256 * mebibyte / photo);
        for (int number = 0; number < fitting; ++number)
            QCOMPARE(signUp(server, number, photo).status, 200);
        const Reply reply = signUp(server, fitting, photo);
        QCOMPARE(reply.status, 503);
        QCOMPARE(reply.error(), QStringLiteral("This server is full."));

        QCOMPARE(signUp(server, 0, photo).status, 200); // takes the place of the same profile
        QCOMPARE(signUp(server, 0, 1).status, 200);
        QCOMPARE(signUp(server, fitting, photo).status, 200);
    }

    void theLongestSilentConnectionMakesPlace()
    {
        TestServer server(0);
        std::vector<std::unique_ptr<QTcpSocket>> sockets;
        const auto open = [&sockets, &server] {
            sockets.push_back(connected(server));
            return QTest::qWaitFor([&sockets] { return sockets.back()->state() == QAbstractSocket::ConnectedState; });
        };
        for (int number = 0; number < 2; ++number)
            QVERIFY(open());
        QTcpSocket &spoken = *sockets.front();
        QTcpSocket &silent = *sockets.at(1);
        spoken.write("GET /health HTTP/1.1\r\nHost: a\r\n\r\n");
        QTRY_VERIFY(spoken.bytesAvailable() > 0);

        constexpr int maxConnections = 200;
        while (silent.state() == QAbstractSocket::ConnectedState) {
            QVERIFY(sockets.size() <= maxConnections + 1);
            QVERIFY(open());
            QCOMPARE(server.get("health").status, 200);
        }
        QCOMPARE(spoken.state(), QAbstractSocket::ConnectedState);
        QVERIFY(sockets.size() > maxConnections / 2);
    }
};

QTEST_GUILESS_MAIN(LimitsTest)
#include "LimitsTest.moc"
