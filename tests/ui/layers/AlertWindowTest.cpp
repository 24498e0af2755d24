// The window and its frame while the alert is up, under a real window manager, with a real pointer.
#include "support/WindowManager.h"
#include "ui/layers/SeeMeAlert.h"
#include "ui/layers/SeeMeFlashOverlay.h"
#include "ui/window/OpenedWindow.h"
#include "ui/window/ViewEnvironment.h"

#include <QScreen>
#include <QWindow>
#include <memory>

using namespace ambrel;

class AlertWindowTest : public QObject
{
    Q_OBJECT

public:
    explicit AlertWindowTest(AmbrelMacApp &application) : m_application(application) {}

private Q_SLOTS:
    void init()
    {
        openForUse(m_application, m_window);
        if (QTest::currentTestFailed())
            return;
        state().showSeeMeFlash = false;
        state().incomingSeeMe = SeeMeMessage{.id = QStringLiteral("1"),
                                             .fromUserId = QStringLiteral("ana"),
                                             .toUserId = QStringLiteral("sam"),
                                             .body = QStringLiteral("Look left!"),
                                             .createdAt = std::nullopt};
        QTRY_VERIFY(alert());
    }

    void cleanup() { m_window.reset(); }

    void draggingBesideTheSheetMovesTheWindowAndDismissesNothing()
    {
        state().showSeeMeFlash = true;
        QTRY_VERIFY(flash());
        QVERIFY(pointer::dragWindow(*m_window, besideTheSheet(), {-80, 50}));
        QVERIFY(state().incomingSeeMe.value());
        QVERIFY(state().showSeeMeFlash);
        pointer::clickAt(besideTheSheet()); // a click still ends the flash
        QTRY_VERIFY(!state().showSeeMeFlash);
        QVERIFY(state().incomingSeeMe.value());
        QTRY_VERIFY(!flash());
        pointer::clickOn(*control(QStringLiteral("Close"))); // the flash no longer covers it
        QTRY_VERIFY(!m_window->isVisible());
    }

    void draggingTheSheetDoesNotMoveTheWindow()
    {
        const QPoint from = sheet()->mapToGlobal(QPoint(10, 10));
        const QPoint to = from + QPoint(60, 60);
        QVERIFY(pointer::drag(from, to, [] { return true; }));
        pointer::clickOn(*sheet()); // a round trip
        QCOMPARE(m_window->pos(), QPoint(320, 150));
        QVERIFY(state().incomingSeeMe.value());
    }

    void doubleClickBesideTheSheetMaximises()
    {
        pointer::doubleClickAt(besideTheSheet());
        QTRY_COMPARE(m_window->geometry(), m_window->screen()->availableGeometry());
        QVERIFY(state().incomingSeeMe.value());
    }

    void windowControlsWorkAboveTheAlert()
    {
        pointer::clickOn(*control(QStringLiteral("Maximize")));
        QTRY_COMPARE(m_window->geometry(), m_window->screen()->availableGeometry());
        QTRY_VERIFY(alert()->isAncestorOf(QApplication::focusWidget()));
        QTRY_VERIFY(control(QStringLiteral("Restore")));
        pointer::clickOn(*control(QStringLiteral("Restore")));
        QTRY_COMPARE(m_window->geometry(), QRect(320, 150, 1280, 900));

        pointer::clickOn(*control(QStringLiteral("Minimize")));
        QTRY_VERIFY(pointer::isIconified(*m_window));
        m_window->showNormal();
        QTRY_VERIFY(!pointer::isIconified(*m_window) && m_window->windowHandle()->isExposed());
        pointer::clickOn(*control(QStringLiteral("Close")));
        QTRY_VERIFY(!m_window->isVisible());
    }

private:
    AmbrelAppState &state() { return ViewEnvironment::of(*m_window).state(); }
    SeeMeAlert *alert() { return m_window->findChild<SeeMeAlert *>(); }
    SeeMeFlashOverlay *flash() { return m_window->findChild<SeeMeFlashOverlay *>(); }
    QWidget *sheet() { return alert()->findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly); }
    QWidget *control(const QString &name)
    {
        for (auto *const button : m_window->findChild<WindowControls *>()->findChildren<QPushButton *>()) {
            if (button->accessibleName() == name)
                return button;
        }
        return nullptr;
    }
    QPoint besideTheSheet() { return m_window->mapToGlobal(QPoint(200, 300)); }

    AmbrelMacApp &m_application;
    const WindowManager m_windowManager;
    std::unique_ptr<QWidget> m_window;
};

int main(int argc, char **argv)
{
    AmbrelMacApp application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    AlertWindowTest test(application);
    return QTest::qExec(&test, argc, argv);
}

#include "AlertWindowTest.moc"
