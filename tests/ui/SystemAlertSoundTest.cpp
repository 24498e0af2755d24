#include "ui/SystemAlertSound.h"

#include "tasks/Worker.h"

#include <QApplication>
#include <QTest>

using namespace ambrel;

static int beeps = 0;

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
        qunsetenv("FAKE_CANBERRA_PLAYED");
        qunsetenv("FAKE_CANBERRA_FAILS");
        beeps = 0;
    }

    void playsTheDesktopsNewMessageSoundWithoutWaitingForIt();
    void beepsWhereNoSoundCanBePlayed();
    void mayGoWhileASoundIsUnderWay();
};

void SystemAlertSoundTest::playsTheDesktopsNewMessageSoundWithoutWaitingForIt()
{
    SystemAlertSound sound;
    sound.play();
    QVERIFY(qEnvironmentVariableIsEmpty("FAKE_CANBERRA_PLAYED")); // the library takes its time
    QTRY_COMPARE(qgetenv("FAKE_CANBERRA_PLAYED"), QByteArray("message-new-instant"));
    waitForWorkers();
    QCoreApplication::processEvents();
    QCOMPARE(beeps, 0);
}

void SystemAlertSoundTest::beepsWhereNoSoundCanBePlayed()
{
    qputenv("FAKE_CANBERRA_FAILS", "1");
    SystemAlertSound sound;
    sound.play();
    QTRY_COMPARE(beeps, 1);
}

void SystemAlertSoundTest::mayGoWhileASoundIsUnderWay()
{
    {
        SystemAlertSound sound;
        sound.play();
    }
    waitForWorkers();
    QCOMPARE(qgetenv("FAKE_CANBERRA_PLAYED"), QByteArray("message-new-instant"));
}

QTEST_MAIN(SystemAlertSoundTest)
#include "SystemAlertSoundTest.moc"
