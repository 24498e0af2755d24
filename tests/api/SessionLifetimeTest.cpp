#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "api/HttpSession.h"
#include "support/ScriptedServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>
#include <atomic>

using namespace ambrel;

namespace {

/// The directory in /proc of the session's thread; empty while there is none.
QString networkThread()
{
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(tasks.filePath(task + QStringLiteral("/comm")));
        if (name.open(QIODevice::ReadOnly) && name.readAll().trimmed() == "network")
            return tasks.filePath(task);
    }
    return {};
}

/// How often that thread has gone to sleep and has been put to sleep.
QList<QByteArray> contextSwitches(const QString &thread)
{
    QFile status(thread + QStringLiteral("/status"));
    QList<QByteArray> lines;
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.contains("ctxt_switches"))
                lines.append(line);
        }
    }
    return lines;
}

HttpRequest healthOf(const ScriptedServer &server)
{
    HttpRequest request;
    request.url = QUrl(server.url() + QStringLiteral("health"));
    return request;
}

} // namespace

class SessionLifetimeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsMadeBeforeTheFirstRequest()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        const AmbrelAPI api(server.url());
        QVERIFY(!failureOf(AmbrelAPI(QStringLiteral("nonsense")).health()).isEmpty());
        QCOMPARE(networkThread(), QString());
        QCOMPARE(failureOf(api.health()), QString());
        QVERIFY(!networkThread().isEmpty());
    }

    void theNetworkThreadSleepsBetweenRequests()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        QCOMPARE(failureOf(AmbrelAPI(server.url()).health()), QString());
        const QString thread = networkThread();
        QList<QByteArray> seen = contextSwitches(thread);
        QCOMPARE(seen.size(), 2);
        // It may still be on its way to sleep: the counts have to stand still for a whole stretch of time.
        QElapsedTimer still;
        still.start();
        const auto hasRested = [&seen, &still, &thread] {
            if (const auto now = contextSwitches(thread); now != seen) {
                seen = now;
                still.restart();
            }
            return still.elapsed() > 600;
        };
        QTRY_VERIFY2_WITH_TIMEOUT(hasRested(), "the idle network thread wakes up", 3'000);
    }

    void answersResumeOnTheCallingThreadFromItsLoop()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        const AmbrelAPI api(server.url());
        bool stillCalling = true;
        QThread *resumedOn = nullptr;
        const auto observe = [](QCoro::Task<HealthResponse> task, bool &calling, QThread *&thread) -> QCoro::Task<> {
            const auto health = co_await task;
            Q_UNUSED(health)
            thread = calling ? nullptr : QThread::currentThread();
        };
        QCoro::Task<> watching = observe(api.health(), stillCalling, resumedOn);
        Q_UNUSED(watching)
        stillCalling = false;
        QTRY_COMPARE(resumedOn, QThread::currentThread());
    }

    void closingEndsWhatIsUnderWayAtOnce_data()
    {
        QTest::addColumn<bool>("answersBegin");
        QTest::newRow("before an answer") << false;
        QTest::newRow("in the middle of an answer") << true;
    }

    void closingEndsWhatIsUnderWayAtOnce()
    {
        QFETCH(const bool, answersBegin);
        const QByteArray begun = answersBegin ? ScriptedReply::head(200, {"Content-Length: 99"}) + "{" : QByteArray();
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply().send(begun).hang());
        std::atomic<int> failures = 0;
        HttpSession session;
        for (int request = 0; request < 5; ++request) {
            session.perform(healthOf(server), [&failures](const Outcome<HttpReply> &outcome) {
                failures += std::holds_alternative<std::exception_ptr>(outcome) ? 1 : 0;
            });
        }
        QTRY_COMPARE(server.count("GET", "/health"), 5);
        QCOMPARE(failures, 0);
        QElapsedTimer clock;
        clock.start();
        session.close();
        QVERIFY(clock.elapsed() < 1000);
        QCOMPARE(failures, 5);
    }

    void aClosedSessionRefusesAtOnce()
    {
        const ScriptedServer server;
        HttpSession session;
        session.close();
        session.close();
        QString sentence;
        session.perform(healthOf(server), [&sentence](const Outcome<HttpReply> &outcome) {
            try {
                std::rethrow_exception(std::get<std::exception_ptr>(outcome));
            } catch (const TransportError &error) {
                sentence = error.errorDescription();
            }
        });
        QCOMPARE(sentence, QStringLiteral("The request was cancelled."));
        QCOMPARE(server.connectionCount(), 0);
    }

    void aSessionThatSentNothingEndsToo() { const HttpSession session; }
};

QTEST_GUILESS_MAIN(SessionLifetimeTest)
#include "SessionLifetimeTest.moc"
