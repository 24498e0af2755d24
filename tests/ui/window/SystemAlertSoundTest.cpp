#include "ui/window/SystemAlertSound.h"
#include "support/Slowdown.h"

#include "state/FlowFixture.h"
#include "support/ChildProcess.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <cstdio>
#include <optional>

using namespace ambrel;
using namespace std::chrono_literals;

static int beeps = 0;

namespace {

int timesAsked()
{
    return qEnvironmentVariableIntValue("FAKE_CANBERRA_ASKED");
}

void letItPlay()
{
    qputenv("FAKE_CANBERRA_MAY_PLAY", "1");
}

bool isClosed()
{
    return qEnvironmentVariableIsSet("FAKE_CANBERRA_CLOSED");
}

/// A program that ends while its sound server hangs.
int endWhileASoundHangs(int argc, char **argv)
{
    const QApplication application(argc, argv);
    SystemAlertSound sound;
    for (int message = 0; message < 3; ++message)
        sound.play();
    if (!QTest::qWaitFor([] { return timesAsked() == 1; }))
        return 1;
    std::puts("ends now");
    std::fflush(stdout);
    return 0;
}

} // namespace

// Stands before the toolkit's own, whose beep nobody could hear here.
void QApplication::beep()
{
    ++beeps;
}

class SystemAlertSoundTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        for (const char *const variable : {"ASKED", "MAY_PLAY", "PLAYED", "FAILS", "CLOSED"})
            qunsetenv(QByteArray("FAKE_CANBERRA_").append(variable).constData());
        beeps = 0;
        m_sound.emplace();
    }
    void cleanup()
    {
        letItPlay();
        m_sound.reset();
        QTRY_VERIFY(isClosed() || timesAsked() == 0); // the thread that plays has ended
    }

    void playsTheDesktopsNewMessageSoundWithoutWaitingForIt()
    {
        m_sound->play(); // returns, although the library does not
        QTRY_COMPARE(timesAsked(), 1);
        QVERIFY(!qEnvironmentVariableIsSet("FAKE_CANBERRA_PLAYED"));
        letItPlay();
        QTRY_COMPARE(qgetenv("FAKE_CANBERRA_PLAYED"), QByteArray("message-new-instant"));
        m_sound.reset();
        QTRY_VERIFY(isClosed());
        QCOMPARE(beeps, 0);
    }

    void beepsWhereNoSoundCanBePlayed()
    {
        qputenv("FAKE_CANBERRA_FAILS", "1");
        letItPlay();
        m_sound->play();
        QTRY_COMPARE(beeps, 1);
    }

    void holdsAtMostOneSoundWaiting()
    {
        m_sound->play();
        QTRY_COMPARE(timesAsked(), 1);
        for (int message = 0; message < 100; ++message)
            m_sound->play();
        letItPlay();
        QTRY_COMPARE(timesAsked(), 2);
        m_sound.reset();
        QTRY_VERIFY(isClosed());
        QCOMPARE(timesAsked(), 2);
    }

    void loopsAndRequestsGoOnWhileTheSoundServerHangs()
    {
        FlowFixture server;
        server.answerEverything();
        server.answerInbox({messageWith(QStringLiteral("m1"))});
        server.server.on("GET", "/health", ScriptedReply::json(R"({"ok":true,"name":"Core","version":"2.0"})"));
        server.server.on("GET", "/api/app-version", FlowFixture::record(AppVersionResponse()));
        const auto state = AmbrelAppState::create(*m_sound, {.livePause = 1ms, .seeMePause = 1ms});
        state->startLive();
        QTRY_COMPARE(timesAsked(), 1);
        const auto cycles = [&] { return server.server.count("POST", "/api/location"); };
        const auto polls = [&] { return server.server.count("GET", "/api/see-me/me"); };
        const int until = std::max(cycles(), polls()) + 10;
        QTRY_VERIFY(cycles() > until && polls() > until);
        FlowFixture::run(state->checkServerStatus());
        QVERIFY(!state->isBusy);
        QCOMPARE(state->serverStatusText.value(), QStringLiteral("Core v2.0 is online."));

        QElapsedTimer clock;
        clock.start();
        state->shutDown();
        QTRY_VERIFY(state.use_count() == 1);
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(timesAsked(), 1);
    }

    void programEndsAtOnceWhileTheSoundServerHangs()
    {
        ChildProcess program(QCoreApplication::applicationFilePath().toLocal8Bit(), {"end"});
        QCOMPARE(program.readLine(), QByteArray("ends now"));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(program.wait(), 0);
        QVERIFY2(clock.elapsed() < 1000 * slowdown, qPrintable(QString::number(clock.elapsed())));
    }

private:
    std::optional<SystemAlertSound> m_sound;
};

int main(int argc, char **argv)
{
    if (argc == 2 && QByteArray(argv[1]) == "end")
        return endWhileASoundHangs(argc, argv);
    QApplication application(argc, argv);
    SystemAlertSoundTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SystemAlertSoundTest.moc"
