#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "support/ScriptedServer.h"
#include "tasks/Worker.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

using namespace ambrel;

/// Works on, step by step, once the answer has come or failed.
static QCoro::Task<> workAfter(HandOff<HealthResponse> answer, int &steps)
{
    try {
        const auto health = co_await answer;
        Q_UNUSED(health)
    } catch (const TransportError &) {
        steps = 0;
    }
    for (int step = 1; step <= 3; ++step) {
        const auto working = runOnWorker([step] { return step; });
        steps = co_await working;
    }
}

/// The end of the application, with an application object of its own.
class ExitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whoeverWaitsIsWokenWhenTheApplicationEnds()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply().hang());
        server.on("GET", "/api/app-version",
                  ScriptedReply().send(ScriptedReply::head(200, {"Content-Length: 9"})).hang());
        server.on("POST", "/api/logout", ScriptedReply().hang());

        int argc = 1;
        char name[] = "test-exit";
        char *argv[] = {name, nullptr};
        auto application = std::make_unique<QCoreApplication>(argc, argv);
        const AmbrelAPI api(server.url());
        const Awaited silent(api.call(endpoints::health));
        const Awaited begun(api.call(endpoints::appVersion));
        const Awaited posted(api.call(endpoints::logout, LogoutRequest()));
        int steps = -1;
        const auto working = workAfter(api.call(endpoints::health), steps);
        QTRY_COMPARE(server.requests().size(), 4);

        QElapsedTimer clock;
        clock.start();
        application.reset();
        QVERIFY(clock.elapsed() < 1000);
        const QString cancelled = transport("The request was cancelled.");
        QCOMPARE(silent.failure(), cancelled);
        QCOMPARE(begun.failure(), cancelled);
        QCOMPARE(posted.failure(), cancelled);
        QCOMPARE(steps, 3);
    }
};

QTEST_APPLESS_MAIN(ExitTest)
#include "ExitTest.moc"
