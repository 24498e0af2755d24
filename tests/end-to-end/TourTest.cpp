#include "LocalServerProcess.h"
#include "Person.h"
#include "ui/window/AmbrelMacApp.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace ambrel;

/// Real time is part of this one: the walk of the people, the five and the two seconds of the loops.
constexpr int patience = 60'000;

class TourTest : public QObject
{
    Q_OBJECT

public:
    explicit TourTest(AmbrelMacApp &application) : m_application(application) {}

private Q_SLOTS:
    void aNewUserFindsTheirWayThroughEverything()
    {
        const auto window = m_application.openWindow();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        Person person(*window, QStringLiteral(AMBREL_TOUR_PICTURES));

        QCOMPARE(person.statusLine(QStringLiteral("Status")), QStringLiteral("Ready."));
        QVERIFY(person.sees(QStringLiteral("No profile selected")));
        person.takePicture(QStringLiteral("first-run"));

        person.click(QStringLiteral("Check Server"));
        QTRY_VERIFY_WITH_TIMEOUT(person.statusLine(QStringLiteral("Server status")).endsWith(u" is online."), patience);
        person.takePicture(QStringLiteral("server-checked"));

        for (const auto step : {&TourTest::signUp, &TourTest::select, &TourTest::keep, &TourTest::dismiss,
                                &TourTest::sendSeeMe, &TourTest::receiveSeeMe, &TourTest::pause}) {
            (this->*step)(person);
            if (QTest::currentTestFailed())
                return;
        }
    }

private:
    void signUp(Person &person)
    {
        person.type(QStringLiteral("Display name"), QStringLiteral("Robin Example"));
        person.click(QStringLiteral("Sign Up"));
        QTRY_VERIFY_WITH_TIMEOUT(person.sees(QStringLiteral("Live Nearby")), patience);
        QVERIFY(person.sees(QStringLiteral("Signed in as Robin Example")));
        QTRY_VERIFY_WITH_TIMEOUT(person.cards().size() >= 3, patience);
        QVERIFY(person.statusLine(QStringLiteral("Status")).endsWith(u" nearby."));
        const QString photo = QStringLiteral("Photo of ") + person.cards().first();
        QTRY_VERIFY_WITH_TIMEOUT(person.sees(QAccessible::Graphic, photo), patience);
        person.takePicture(QStringLiteral("live"));
    }

    void select(Person &person)
    {
        const QString name = person.cards().at(1);
        person.click(person.find(QAccessible::ListItem, name));
        QTRY_VERIFY(person.sees(QStringLiteral("Profile")));
        person.takePicture(QStringLiteral("selected"));
    }

    void keep(Person &person)
    {
        const QString name = person.cards().first();
        person.click(
            person.find(QAccessible::Button, QStringLiteral("Continue"), person.find(QAccessible::ListItem, name)));
        QTRY_COMPARE(person.statusLine(QStringLiteral("Status")), QStringLiteral("Keeping %1 visible.").arg(name));
        person.takePicture(QStringLiteral("kept"));
    }

    void dismiss(Person &person)
    {
        const QString name = person.cards().at(1);
        person.click(
            person.find(QAccessible::Button, QStringLiteral("Dismiss"), person.find(QAccessible::ListItem, name)));
        QTRY_VERIFY_WITH_TIMEOUT(!person.cards().contains(name), patience);
        person.takePicture(QStringLiteral("dismissed"));
    }

    void sendSeeMe(Person &person)
    {
        QTRY_VERIFY_WITH_TIMEOUT(person.sees(QAccessible::Button, QStringLiteral("See Me")), patience);
        person.click(QStringLiteral("See Me"));
        QTRY_VERIFY_WITH_TIMEOUT(person.sees(QAccessible::Pane, QStringLiteral("See Me flash")), patience);
        QTRY_VERIFY(person.sees(QStringLiteral("SEE ME")));
        person.takePicture(QStringLiteral("see-me-sent"));
        QTRY_VERIFY_WITH_TIMEOUT(!person.sees(QAccessible::Pane, QStringLiteral("See Me flash")), patience);
    }

    void receiveSeeMe(Person &person)
    {
        QTRY_VERIFY_WITH_TIMEOUT(person.sees(QAccessible::Dialog, QStringLiteral("Can you see me?")), patience);
        person.takePicture(QStringLiteral("see-me-received"));
        person.click(person.find(QAccessible::Button, QStringLiteral("Dismiss"),
                                 person.find(QAccessible::Dialog, QStringLiteral("Can you see me?"))));
        QTRY_VERIFY(!person.sees(QAccessible::Dialog, QStringLiteral("Can you see me?")));
    }

    void pause(Person &person)
    {
        person.click(QStringLiteral("Pause"));
        QTRY_VERIFY(person.sees(QStringLiteral("PAUSED")));
        person.takePicture(QStringLiteral("paused"));
    }

    AmbrelMacApp &m_application;
};

int main(int argc, char **argv)
{
    const LocalServerProcess server;
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QSettings(QStringLiteral("Ambrel"), QStringLiteral("Ambrel"))
        .setValue(QStringLiteral("serverBaseURL"), server.url());

    AmbrelMacApp application(argc, argv);
    TourTest test(application);
    return QTest::qExec(&test, argc, argv);
}

#include "TourTest.moc"
