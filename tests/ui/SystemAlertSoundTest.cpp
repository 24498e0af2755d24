#include "ui/SystemAlertSound.h"

#include <QElapsedTimer>
#include <QTest>
#include <QThreadPool>

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
    QElapsedTimer clock;
    clock.start();
    sound.play();
    QVERIFY(clock.elapsed() < 250); // the library takes 500
    QTRY_COMPARE(qgetenv("FAKE_CANBERRA_PLAYED"), QByteArray("message-new-instant"));
}

void SystemAlertSoundTest::mayGoWhileASoundIsUnderWay()
{
    {
        SystemAlertSound sound;
        sound.play();
    }
    QVERIFY(QThreadPool::globalInstance()->waitForDone(5000));
    QCOMPARE(qgetenv("FAKE_CANBERRA_PLAYED"), QByteArray("message-new-instant"));
}

QTEST_MAIN(SystemAlertSoundTest)
#include "SystemAlertSoundTest.moc"
