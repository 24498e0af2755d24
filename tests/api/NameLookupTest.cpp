#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "api/HttpSession.h"
#include "api/HttpTransfer.h"
#include "support/ScriptedServer.h"

#include <QElapsedTimer>
#include <QTest>
#include <atomic>
#include <netdb.h>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

std::atomic<bool> nameServerAnswers = false;
std::atomic<int> waiting = 0;

} // namespace

/// Stands before the C library's: a name server that cannot be reached, until it answers that there is no such host.
extern "C" [[gnu::visibility("default")]] int getaddrinfo(const char *, const char *, const addrinfo *, addrinfo **)
{
    ++waiting;
    nameServerAnswers.wait(false);
    --waiting;
    return EAI_NONAME;
}

/// What a name look-up that hangs does to the rest.
class NameLookupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        nameServerAnswers = true;
        nameServerAnswers.notify_all();
        QTRY_COMPARE(waiting, 0);
    }

    void anUnknownHostIsNotFound()
    {
        nameServerAnswers = true;
        QCOMPARE(failureOf(AmbrelAPI(QStringLiteral("http://nowhere.test")).call(endpoints::health)),
                 transport("The server could not be found."));
    }

    void aLookUpThatHangsIsATimeOutAndDelaysNobody()
    {
        nameServerAnswers = false;
        HttpSession::shared().setLimits({.maxSilence = 400ms});
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        const Awaited hanging(AmbrelAPI(QStringLiteral("http://nowhere.test")).call(endpoints::health));
        QTRY_COMPARE(waiting, 1);
        QCOMPARE(failureOf(AmbrelAPI(server.url()).call(endpoints::health)), QString());
        QVERIFY(!hanging.isDone());
        QCOMPARE(hanging.wait().failure(), transport("The request timed out."));
        QCOMPARE(waiting, 1);
        QCOMPARE(failureOf(AmbrelAPI(server.url()).call(endpoints::health)), QString());
        HttpSession::shared().setLimits({});
    }

    void closingDoesNotWaitForALookUp()
    {
        nameServerAnswers = false;
        std::atomic<int> failures = 0;
        HttpSession session;
        HttpRequest request;
        request.url = QUrl(QStringLiteral("http://nowhere.test/health"));
        session.perform(request, [&failures](const Outcome<HttpReply> &outcome) { failures += outcome.error ? 1 : 0; });
        QTRY_COMPARE(waiting, 1);
        QElapsedTimer clock;
        clock.start();
        session.close();
        QVERIFY(clock.elapsed() < 1000);
        QCOMPARE(failures, 1);
        QCOMPARE(waiting, 1);
    }
};

QTEST_GUILESS_MAIN(NameLookupTest)
#include "NameLookupTest.moc"
