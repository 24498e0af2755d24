// What a screen reader is told without asking. It is switched on for the whole program.
#include "toolkit/CoveringLayer.h"
#include "ui/MatchViews.h"
#include "ui/ViewFixture.h"
#include "ui/people/MatchCard.h"
#include "ui/window/ContentView.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QLineEdit>
#include <optional>
#include <utility>

using namespace ambrel;

namespace {

QStringList told; // since the last look

/// Until Qt 6.8 a screen reader reads the labels in a notification that it is told to be in sight.
QString announcementIn(QAccessibleEvent &event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    if (event.type() == QAccessible::Announcement)
        return static_cast<QAccessibleAnnouncementEvent &>(event).message();
#else
    const QAccessibleInterface *const source = event.accessibleInterface();
    if (event.type() == QAccessible::ObjectShow && source->role() == QAccessible::Notification) {
        const QAccessibleInterface *const label = source->child(0);
        if (label->role() == QAccessible::StaticText && !label->state().invisible)
            return label->text(QAccessible::Name);
    }
#endif
    return {};
}

void listen(QAccessibleEvent *event)
{
    const QAccessibleInterface *const source = event->accessibleInterface();
    if (const QString text = announcementIn(*event); !text.isEmpty())
        told += text;
    else if (event->type() == QAccessible::Selection)
        told +=
            source->text(QAccessible::Name) + QLatin1String(source->state().selected ? " selected" : " not selected");
}

void switchScreenReaderOn()
{
    for (const char *const setting : {"IsEnabled", "ScreenReaderEnabled"}) {
        auto call =
            QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                           QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
        call << QStringLiteral("org.a11y.Status") << QString::fromLatin1(setting)
             << QVariant::fromValue(QDBusVariant(true));
        QDBusConnection::sessionBus().call(call);
    }
}

QStringList takeTold()
{
    return std::exchange(told, {});
}

} // namespace

class ScreenReaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        AmbrelStyle::install();
        QTRY_VERIFY(QAccessible::isActive());
    }
    void init()
    {
        m_content.emplace(QSize(1280, 860));
        m_content->refresh();
        QAccessible::installUpdateHandler(listen);
        takeTold();
    }
    void cleanup()
    {
        QAccessible::installUpdateHandler(nullptr);
        m_content.reset();
    }

    void eachStatusIsToldOnceWhenItHasChanged()
    {
        AmbrelAppState &state = m_content->state();
        const auto *const focused = QApplication::focusWidget();
        for (auto *const field : {&state.statusText, &state.serverStatusText, &state.betaStatusText}) {
            for (const bool isNew : {true, false}) {
                *field = QStringLiteral("All is well.");
                m_content->refresh();
                QCOMPARE(takeTold(), isNew ? QStringList{QStringLiteral("All is well.")} : QStringList());
            }
        }
        QCOMPARE(QApplication::focusWidget(), focused);
    }

    void whoHasComeIsToldEveryTime()
    {
        for (int time = 0; time < 2; ++time) {
            show({person(QStringLiteral("Eve")), person(QStringLiteral("Ana"))});
            QCOMPARE(takeTold(), QStringList{QStringLiteral("Eve is nearby, and 1 more.")});
            show({person(QStringLiteral("Ana")), person(QStringLiteral("Eve"))});
            QCOMPARE(takeTold(), QStringList());
            show({});
            QCOMPARE(takeTold(), QStringList());
        }
    }

    void theSelectionIsToldWhenItChanges()
    {
        show({person(QStringLiteral("Eve")), person(QStringLiteral("Ana"))});
        takeTold();
        m_content->state().selectedMatch = person(QStringLiteral("Ana"));
        m_content->refresh();
        QCOMPARE(takeTold(), QStringList{QStringLiteral("Ana selected")});
        m_content->state().selectedMatch = std::nullopt;
        m_content->refresh();
        QCOMPARE(takeTold(), QStringList{QStringLiteral("Ana not selected")});
    }

    void anAlertIsToldToWhoTypesAndTakesTheFocusAtTheirNextPause()
    {
        auto *const email = m_content->named<QLineEdit>(QStringLiteral("Email"));
        email->setFocus();
        takeTold();
        SeeMeMessage message;
        message.body = QStringLiteral("Look left!");
        m_content->state().incomingSeeMe = message;
        QCoreApplication::sendPostedEvents(); // no timer goes off meanwhile
        QCOMPARE(takeTold(), QStringList{message.body});
        QVERIFY(email->isEnabled());
        QTest::sendKeyEvent(QTest::Click, m_content->window.windowHandle(), Qt::Key_S, QStringLiteral("s"), {});
        QCOMPARE(m_content->state().email.value(), QStringLiteral("s"));
        QTRY_VERIFY(isInLayer(QApplication::focusWidget()));
        QVERIFY(!email->isEnabled());
    }

    void anAlertThatTakesTheFocusAtOnceIsToldByIt()
    {
        m_content->button(QStringLiteral("Pause"))->setFocus();
        takeTold();
        SeeMeMessage message;
        message.body = QStringLiteral("Look left!");
        m_content->state().incomingSeeMe = message;
        QCoreApplication::sendPostedEvents();
        QVERIFY(isInLayer(QApplication::focusWidget()));
        QCOMPARE(takeTold(), QStringList());
    }

private:
    bool isInLayer(const QWidget *widget)
    {
        return m_content->view->findChild<CoveringLayer *>()->isAncestorOf(widget);
    }
    void show(const QList<MatchResult> &matches)
    {
        m_content->state().matches = matches;
        m_content->refresh();
    }

    std::optional<ViewFixture<ContentView>> m_content;
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    switchScreenReaderOn();
    ScreenReaderTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ScreenReaderTest.moc"
