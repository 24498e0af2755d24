#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "api/HttpSession.h"
#include "api/HttpTransfer.h"
#include "support/ScriptedServer.h"

#include <QElapsedTimer>
#include <QTest>
#include <vector>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

constexpr auto silence = 400ms;
constexpr auto alive = 60ms; ///< well within the silence

const QByteArray body = R"({"ok":true,"name":"slow"})";

} // namespace

/// The silence that ends an exchange, shortened from its twelve seconds.
class TimeoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        HttpSession::shared().setLimits({.maxSilence = silence, .trustedCertificates = trustedAuthority()});
    }

    void cleanupTestCase() { HttpSession::shared().setLimits({}); }

    void silenceLastsTwelveSeconds() { QCOMPARE(TransferLimits().maxSilence, 12'000ms); }

    void silenceEndsTheExchangeAtEveryStage()
    {
        const QByteArray head = ScriptedReply::head(200, {"Content-Length: 500"});
        const std::pair<const char *, ScriptedReply> stages[] = {
            {"after-the-request", ScriptedReply().hang()},
            {"in-the-status-line", ScriptedReply().send("HTTP/1.1 2").hang()},
            {"in-the-headers", ScriptedReply().send("HTTP/1.1 200 OK\r\nContent-").hang()},
            {"after-the-headers", ScriptedReply().send(head).hang()},
            {"in-the-body", ScriptedReply().send(head + body).hang()},
            {"after-an-interim-answer", ScriptedReply().send(ScriptedReply::head(103)).hang()},
            {"in-a-refusal", ScriptedReply().send(ScriptedReply::head(500, {"Content-Length: 500"})).hang()},
        };
        ScriptedServer server;
        QElapsedTimer clock;
        clock.start();
        std::vector<Awaited<HealthResponse>> exchanges;
        for (const auto &[stage, reply] : stages) {
            server.on("GET", QByteArray("/") + stage + "/health", reply);
            exchanges.emplace_back(AmbrelAPI(server.url() + QString::fromLatin1(stage)).call(endpoints::health));
        }
        for (const auto &exchange : exchanges) {
            QCOMPARE(exchange.wait().failure(), transport("The request timed out."));
            QVERIFY(clock.elapsed() >= silence.count());
        }
        QCOMPARE(server.requests().size(), std::ssize(stages));
    }

    void theTimeOfARequestBeginsWhenItsTurnComes()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply().hang());
        QElapsedTimer clock;
        clock.start();
        std::vector<Awaited<HealthResponse>> exchanges;
        for (int request = 0; request < 7; ++request) // one more than a server gets at once
            exchanges.emplace_back(AmbrelAPI(server.url()).call(endpoints::health));
        for (const auto &exchange : exchanges)
            QCOMPARE(exchange.wait().failure(), transport("The request timed out."));
        QVERIFY(clock.elapsed() >= 2 * silence.count());
        QCOMPARE(server.count("GET", "/health"), 7);
    }

    void silenceAfterARedirectEndsTheExchange()
    {
        ScriptedServer silent;
        silent.on("GET", "/elsewhere", ScriptedReply().hang());
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::redirect(302, silent.url().toLatin1() + "elsewhere"));
        const AmbrelAPI api(server.url());
        QCOMPARE(failureOf(api.call(endpoints::health)), transport("The request timed out."));
        QCOMPARE(silent.count("GET", "/elsewhere"), 1);
    }

    void silenceInTheTlsHandshakeEndsTheExchange()
    {
        ScriptedServer plain; // takes the handshake for a request that never ends
        plain.onConnect(ScriptedReply().hang());
        const AmbrelAPI api(plain.url().replace(QStringLiteral("http:"), QStringLiteral("https:")));
        QCOMPARE(failureOf(api.call(endpoints::health)), transport("The request timed out."));
    }

    void aSlowButLivingAnswerIsNotCut()
    {
        const QByteArray length = "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n";
        const QByteArray status = "HTTP/1.1 200 OK\r\n";
        const ScriptedReply slowHeaders = ScriptedReply().send(status).drip(length, alive).send(body);
        const ScriptedReply slowBody = ScriptedReply().send(status + length).drip(body, alive);

        ScriptedServer plain;
        plain.on("GET", "/headers/health", slowHeaders);
        plain.on("GET", "/body/health", slowBody);
        ScriptedServer secure(TlsIdentity{QStringLiteral("valid")});
        secure.on("GET", "/body/health", slowBody);

        QElapsedTimer clock;
        clock.start();
        const Awaited<HealthResponse> exchanges[] = {
            Awaited(AmbrelAPI(plain.url() + QStringLiteral("headers")).call(endpoints::health)),
            Awaited(AmbrelAPI(plain.url() + QStringLiteral("body")).call(endpoints::health)),
            Awaited(AmbrelAPI(secure.url() + QStringLiteral("body")).call(endpoints::health)),
        };
        for (const auto &exchange : exchanges) {
            QCOMPARE(exchange.wait().failure(), QString());
            QCOMPARE(exchange.record()->name, QStringLiteral("slow"));
            QVERIFY(clock.elapsed() > 2 * silence.count());
        }
    }

    void aSlowAnswerNextToASilentOneIsNotCut()
    {
        ScriptedServer server;
        server.on("GET", "/health",
                  ScriptedReply().send(ScriptedReply::head(200, {"Connection: close"})).drip(body, alive).close());
        server.on("POST", "/api/logout", ScriptedReply().hang());
        const AmbrelAPI api(server.url());
        const Awaited slow(api.call(endpoints::health));
        const Awaited silent(api.call(endpoints::logout, LogoutRequest()));
        QCOMPARE(silent.wait().failure(), transport("The request timed out."));
        QVERIFY(!slow.isDone());
        QCOMPARE(slow.wait().failure(), QString());
    }
};

QTEST_GUILESS_MAIN(TimeoutTest)
#include "TimeoutTest.moc"
