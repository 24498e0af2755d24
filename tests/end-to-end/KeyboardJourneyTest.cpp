#include "Person.h"
#include "local-server/LocalServer.h"
#include "ui/window/AmbrelMacApp.h"
#include "ui/window/ViewTimings.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace ambrel;

namespace {

constexpr int patience = 20'000;
constexpr int mostStops = 60; // of Tab in one round

/// A server whose people stand still, the first one within 100 m, and whose clock goes when it is told to.
class StillServer
{
public:
    StillServer() : m_server(options()) { m_server.listen(); }

    QString url() const { return m_server.url().toString(); }
    void letTimePass(std::chrono::milliseconds time) { m_later += time; }

private:
    LocalServerOptions options()
    {
        LocalServerOptions options;
        options.walkingPace = 0;
        options.firstSeeMeDelay = std::chrono::hours(24);
        options.clock = [this] { return m_start + m_later; };
        return options;
    }

    const local::Moment m_start = local::systemTime();
    std::chrono::milliseconds m_later{0};
    LocalServer m_server;
};

QAccessibleInterface *focused()
{
    return QAccessible::queryAccessibleInterface(QApplication::focusWidget());
}

QString nameOf(QAccessibleInterface *thing)
{
    return thing ? thing->text(QAccessible::Name) : QString();
}

/// How many pixels of `place` differ between two pictures of the window.
int changedPixels(const QImage &before, const QImage &after, const QRect &place)
{
    int changed = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x)
            changed += before.valid(x, y) && before.pixel(x, y) != after.pixel(x, y) ? 1 : 0;
    }
    return changed;
}

} // namespace

/// Goes all the way with the keyboard alone.
class KeyboardJourneyTest : public QObject
{
    Q_OBJECT

public:
    KeyboardJourneyTest(AmbrelMacApp &application, StillServer &server) : m_application(application), m_server(server)
    {
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_window = m_application.openWindow();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_person = std::make_unique<Person>(*m_window, QString());
    }

    void tabFollowsTheReadingOrderRoundAndBack()
    {
        const QStringList order{
            QStringLiteral("User ID"),   QStringLiteral("Display name"), QStringLiteral("Email"),
            QStringLiteral("Phone"),     QStringLiteral("Bio"),          QStringLiteral("Sign Up"),
            QStringLiteral("Log In"),    QStringLiteral("Server"),       QStringLiteral("Latitude"),
            QStringLiteral("Longitude"), QStringLiteral("Discoverable"), QStringLiteral("Go Live"),
            QStringLiteral("Pause"),     QStringLiteral("Check Server"), QStringLiteral("Minimize"),
            QStringLiteral("Maximize"),  QStringLiteral("Close"),
        };
        QStringList forwards;
        for (qsizetype step = 0; step < order.size(); ++step) {
            forwards += nameOf(focused());
            press(Qt::Key_Tab);
        }
        QCOMPARE(forwards, order);
        QCOMPARE(nameOf(focused()), order.first());

        QStringList backwards;
        for (qsizetype step = 0; step < order.size(); ++step) {
            press(Qt::Key_Backtab);
            backwards.prepend(nameOf(focused()));
        }
        QCOMPARE(backwards, order);
    }

    void focusCanBeSeenEverywhere()
    {
        constexpr int visible = 60; // a ring around the smallest control has more
        const QWidget *const first = QApplication::focusWidget();
        do {
            const QImage before = m_window->grab().toImage();
            press(Qt::Key_Tab);
            const QWidget &widget = *QApplication::focusWidget();
            const QRect place(widget.mapTo(m_window.get(), QPoint()), widget.size());
            const int changed = changedPixels(before, m_window->grab().toImage(), place);
            QVERIFY2(changed > visible, qPrintable(nameOf(focused()) + u' ' + QString::number(changed)));
        } while (QApplication::focusWidget() != first);
    }

    void theWholeJourneyNeedsNoMouse()
    {
        for (const auto step :
             {&KeyboardJourneyTest::chooseServer, &KeyboardJourneyTest::signUp, &KeyboardJourneyTest::select,
              &KeyboardJourneyTest::sendSeeMe, &KeyboardJourneyTest::receiveSeeMe, &KeyboardJourneyTest::keepAndDismiss,
              &KeyboardJourneyTest::pause}) {
            (this->*step)();
            if (QTest::currentTestFailed())
                return;
        }
    }

private:
    void press(int key) { QTest::keyClick(m_window->windowHandle(), Qt::Key(key)); }
    void type(const QString &text)
    {
        for (const QChar letter : text)
            QTest::sendKeyEvent(QTest::Click, m_window->windowHandle(), Qt::Key_unknown, QString(letter),
                                Qt::NoModifier);
    }

    /// Presses Tab, or another key, until something with this role and name has the focus.
    bool walkTo(QAccessible::Role role, const QString &name, int key = Qt::Key_Tab)
    {
        for (int step = 0; step < mostStops; ++step) {
            if (focused() && focused()->role() == role && nameOf(focused()) == name)
                return true;
            press(key);
            QCoreApplication::processEvents();
        }
        qWarning("the keyboard does not reach \"%s\"", qPrintable(name));
        return false;
    }

    bool isInDialog() const
    {
        for (auto *thing = focused(); thing; thing = thing->parent()) {
            if (thing->role() == QAccessible::Dialog && nameOf(thing) == QLatin1String("Can you see me?"))
                return true;
        }
        return false;
    }

    /// Leaves the keyboard alone until an alert or a flash takes keys; a timer that is due earlier goes off earlier.
    static void takeNotice() { QTest::qWait(int(ViewTimings().keyQuiet.count()) + 100); }

    void chooseServer()
    {
        QVERIFY(walkTo(QAccessible::EditableText, QStringLiteral("Server")));
        QTest::keySequence(m_window->windowHandle(), QKeySequence::SelectAll);
        type(m_server.url());
        QCOMPARE(focused()->text(QAccessible::Value), m_server.url());
        QVERIFY(walkTo(QAccessible::Button, QStringLiteral("Check Server")));
        press(Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(m_person->statusLine(QStringLiteral("Server status")).endsWith(u" is online."),
                                 patience);
        QTRY_COMPARE(nameOf(focused()), QStringLiteral("Check Server")); // back after it was disabled
    }

    void signUp()
    {
        QVERIFY(walkTo(QAccessible::EditableText, QStringLiteral("Display name")));
        type(QStringLiteral("Robin Example"));
        QCOMPARE(focused()->text(QAccessible::Value), QStringLiteral("Robin Example"));
        QVERIFY(walkTo(QAccessible::Button, QStringLiteral("Sign Up")));
        press(Qt::Key_Space);
        const bool haveCome = QTest::qWaitFor([this] { return m_person->cards().size() >= 3; }, patience);
        QVERIFY2(haveCome, qPrintable(m_person->statusLine(QStringLiteral("Status"))));
        QVERIFY(m_person->sees(QStringLiteral("Live Nearby")));
        QTRY_COMPARE(nameOf(focused()), QStringLiteral("Sign Up")); // back after it was disabled
    }

    void select()
    {
        const QStringList cards = m_person->cards();
        for (const auto &[index, key] : {std::pair(1, Qt::Key_Return), std::pair(0, Qt::Key_Space)}) {
            const QString name = cards.at(index);
            if (index == 1)
                QVERIFY(walkTo(QAccessible::ListItem, cards.at(0)));
            QVERIFY(walkTo(QAccessible::ListItem, name, index == 1 ? Qt::Key_Down : Qt::Key_Up));
            press(key);
            QTRY_VERIFY(focused()->state().selected);
            QCOMPARE(nameOf(focused()), name);
        }
    }

    void sendSeeMe()
    {
        QVERIFY(walkTo(QAccessible::Button, QStringLiteral("See Me"), Qt::Key_Right));
        press(Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(m_person->sees(QAccessible::Pane, QStringLiteral("See Me flash")), patience);
        QCOMPARE(nameOf(focused()), QStringLiteral("See Me flash"));
        press(Qt::Key_Tab);
        QCOMPARE(nameOf(focused()), QStringLiteral("See Me flash")); // nothing beneath takes the keys
        press(Qt::Key_Escape);                                       // too soon
        QVERIFY(m_person->sees(QAccessible::Pane, QStringLiteral("See Me flash")));
        takeNotice();
        press(Qt::Key_Escape);
        QTRY_VERIFY(!m_person->sees(QAccessible::Pane, QStringLiteral("See Me flash")));
        QTRY_COMPARE(nameOf(focused()), QStringLiteral("See Me"));
    }

    void receiveSeeMe()
    {
        m_server.letTimePass(std::chrono::seconds(3)); // and the answer has come
        QTRY_VERIFY_WITH_TIMEOUT(m_person->sees(QAccessible::Dialog, QStringLiteral("Can you see me?")), patience);
        QVERIFY(isInDialog());
        for (const int key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            press(key);
            QVERIFY(isInDialog());
        }
        QVERIFY(walkTo(QAccessible::Button, QStringLiteral("Dismiss")));
        takeNotice();
        press(Qt::Key_Space);
        QTRY_VERIFY(!m_person->sees(QAccessible::Dialog, QStringLiteral("Can you see me?")));
        QTRY_COMPARE(nameOf(focused()), QStringLiteral("See Me"));
    }

    void keepAndDismiss()
    {
        const QString name = m_person->cards().first();
        QVERIFY(walkTo(QAccessible::Button, QStringLiteral("Continue"), Qt::Key_Right));
        press(Qt::Key_Return);
        QTRY_COMPARE(m_person->statusLine(QStringLiteral("Status")),
                     QStringLiteral("Keeping ") + name + QStringLiteral(" visible."));
        QVERIFY(walkTo(QAccessible::Button, QStringLiteral("Dismiss"), Qt::Key_Right));
        press(Qt::Key_Space);
        QTRY_VERIFY_WITH_TIMEOUT(!m_person->cards().contains(name), patience);
        QVERIFY(!m_person->cards().isEmpty());
        QTRY_VERIFY(focused() && QApplication::focusWidget()->isVisible()); // with somebody who is still there
    }

    void pause()
    {
        QVERIFY(walkTo(QAccessible::Button, QStringLiteral("Pause"), Qt::Key_Backtab));
        press(Qt::Key_Space);
        QTRY_VERIFY(m_person->sees(QStringLiteral("PAUSED")));
        QCOMPARE(m_person->statusLine(QStringLiteral("Status")), QStringLiteral("Paused."));
    }

    AmbrelMacApp &m_application;
    StillServer &m_server;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<Person> m_person;
};

int main(int argc, char **argv)
{
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    AmbrelMacApp application(argc, argv);
    StillServer server;
    KeyboardJourneyTest test(application, server);
    return QTest::qExec(&test, argc, argv);
}

#include "KeyboardJourneyTest.moc"
