#include "ui/SystemAlertSound.h"

#include "tasks/Worker.h"

#include <QTest>

using namespace ambrel;

class SystemAlertSoundTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { qunsetenv("FAKE_CANBERRA_PLAYED"); }

    void playsTheDesktopsNewMessageSoundWithoutWaitingForIt();
    void mayGoWhileASoundIsUnderWay();
};

void SystemAlertSoundTest::playsTheDesktopsNewMessageSoundWithoutWaitingForIt()
{
    SystemAlertSound sound;
    sound.play();
    QVERIFY(qEnvironmentVariableIsEmpty("FAKE_CANBERRA_PLAYED")); // the library takes its time
    QTRY_COMPARE(qgetenv("FAKE_CANBERRA_PLAYED"), QByteArray("message-new-instant"));
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
