#include "ui/window/SystemAlertSound.h"

#include "tasks/Worker.h"

#include <QApplication>
#include <QTest>

using namespace ambrel;

static int beeps = 0;

namespace {

bool isUnderWay()
{
    return qEnvironmentVariableIsSet("FAKE_CANBERRA_ASKED") && !qEnvironmentVariableIsSet("FAKE_CANBERRA_PLAYED");
}

void letItPlay()
{
    qputenv("FAKE_CANBERRA_MAY_PLAY", "1");
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
        for (const char *const variable : {"ASKED", "MAY_PLAY", "PLAYED", "FAILS"})
            qunsetenv(QByteArray("FAKE_CANBERRA_").append(variable).constData());
        beeps = 0;
    }
    void cleanup()
    {
        letItPlay(); // a test that failed may have left a worker waiting
        waitForWorkers();
    }

    void playsTheDesktopsNewMessageSoundWithoutWaitingForIt()
    {
        SystemAlertSound sound;
        sound.play(); // returns, although the library does not
        QTRY_VERIFY(isUnderWay());
        letItPlay();
        QTRY_COMPARE(qgetenv("FAKE_CANBERRA_PLAYED"), QByteArray("message-new-instant"));
        waitForWorkers();
        QCoreApplication::processEvents();
        QCOMPARE(beeps, 0);
    }

    void beepsWhereNoSoundCanBePlayed()
    {
        qputenv("FAKE_CANBERRA_FAILS", "1");
        letItPlay();
        SystemAlertSound sound;
        sound.play();
        QTRY_COMPARE(beeps, 1);
    }

    void mayGoWhileASoundIsUnderWay()
    {
        {
            SystemAlertSound sound;
            sound.play();
            QTRY_VERIFY(isUnderWay());
        }
        letItPlay();
        waitForWorkers();
        QCOMPARE(qgetenv("FAKE_CANBERRA_PLAYED"), QByteArray("message-new-instant"));
    }
};

QTEST_MAIN(SystemAlertSoundTest)
#include "SystemAlertSoundTest.moc"
