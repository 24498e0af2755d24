#include "state/AmbrelAppState.h"
#include "ui/window/AmbrelMacApp.h"
#include "ui/window/ViewEnvironment.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTest>

using namespace ambrel;

class ApplicationExitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsWithinASecondWithRequestsInFlightAndAnOpenFlash()
    {
        QElapsedTimer clock;
        std::weak_ptr<AmbrelAppState> state;
        {
            char name[] = "ambrel";
            char *arguments[] = {name, nullptr};
            int count = 1;
            AmbrelMacApp application(count, arguments);
            QTcpServer silent; // takes every request and never answers
            QVERIFY(silent.listen(QHostAddress::LocalHost));
            int requests = 0;
            QObject::connect(&silent, &QTcpServer::newConnection, &silent, [&silent, &requests] {
                while (silent.nextPendingConnection())
                    ++requests;
            });

            const auto window = application.openWindow();
            auto &live = ViewEnvironment::of(*window).state();
            state = live.weak_from_this();
            live.serverBaseURL = QStringLiteral("http://127.0.0.1:%1").arg(silent.serverPort());
            live.userId = QStringLiteral("sam");
            live.startLive();
            live.flashSeeMeLogo();
            static_cast<void>(live.checkServerStatus());
            QTRY_VERIFY(requests >= 3); // position, inbox, health

            clock.start();
            window->close();
        }
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(state.expired()); // every operation has ended and let go
    }
};

QTEST_APPLESS_MAIN(ApplicationExitTest)
#include "ApplicationExitTest.moc"
