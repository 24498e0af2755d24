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

/// The threads of this process, by the directories that /proc has for them.
QStringList threads()
{
    const QDir tasks(QStringLiteral("/proc/self/task"));
    return tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

/// How often the threads besides `others` have gone to sleep and been put to sleep.
QList<QByteArray> contextSwitches(const QStringList &others)
{
    QList<QByteArray> lines;
    for (const QString &thread : threads()) {
        QFile status(QStringLiteral("/proc/self/task/%1/status").arg(thread));
        if (others.contains(thread) || !status.open(QIODevice::ReadOnly))
            continue;
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

    QStringList m_othersThreads; ///< the test's own, and a sanitizer's

private Q_SLOTS:
    void initTestCase() { m_othersThreads = threads(); }

    void nothingIsMadeBeforeTheFirstRequest()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        const AmbrelAPI api(server.url());
        const auto before = threads();
        QVERIFY(!failureOf(AmbrelAPI(QStringLiteral("nonsense")).call(endpoints::health)).isEmpty());
        QCOMPARE(threads(), before);
        QCOMPARE(failureOf(api.call(endpoints::health)), QString());
        QVERIFY(threads().size() > before.size());
    }

    void noThreadWakesUpBetweenRequests()
    {
        QList<QByteArray> seen;
        {
            ScriptedServer server;
            server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
            QCOMPARE(failureOf(AmbrelAPI(server.url()).call(endpoints::health)), QString());
        }
        // They may still be on their way to sleep: the counts have to stand still for a whole stretch of time.
        QElapsedTimer still;
        still.start();
        const auto haveRested = [this, &seen, &still] {
            if (const auto now = contextSwitches(m_othersThreads); now != seen) {
                seen = now;
                still.restart();
            }
            return still.elapsed() > 600;
        };
        QTRY_VERIFY2_WITH_TIMEOUT(haveRested(), "a thread wakes up while there is nothing to do", 10000);
        QVERIFY(seen.size() >= 4); // the network thread's and a worker's
    }

    void answersResumeOnTheCallingThreadFromItsLoop()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        const AmbrelAPI api(server.url());
        bool stillCalling = true;
        QThread *resumedOn = nullptr;
        const auto observe = [](HandOff<HealthResponse> task, bool &calling, QThread *&thread) -> QCoro::Task<> {
            const auto health = co_await task;
            Q_UNUSED(health)
            thread = calling ? nullptr : QThread::currentThread();
        };
        QCoro::Task<> watching = observe(api.call(endpoints::health), stillCalling, resumedOn);
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
            session.perform(healthOf(server),
                            [&failures](const Outcome<HttpReply> &outcome) { failures += outcome.error ? 1 : 0; });
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
                std::rethrow_exception(outcome.error);
            } catch (const TransportError &error) {
                sentence = error.errorDescription();
            }
        });
        QCOMPARE(sentence, QStringLiteral("The request was cancelled."));
        QCOMPARE(server.connectionCount(), 0);
    }

    void aSessionEndsItsThread()
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        const auto before = threads();
        {
            const HttpSession unused;
            QCOMPARE(threads(), before);
        }
        std::atomic<bool> hasAnswered = false;
        {
            HttpSession session;
            session.perform(healthOf(server), [&hasAnswered](const Outcome<HttpReply> &) { hasAnswered = true; });
            QTRY_VERIFY(hasAnswered);
            QVERIFY(threads() != before);
        }
        QTRY_COMPARE(threads(), before); // the server's end of the connection needs a moment
    }
};

QTEST_GUILESS_MAIN(SessionLifetimeTest)
#include "SessionLifetimeTest.moc"
