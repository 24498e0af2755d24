// The client-side frame and the window controls under a real window manager, with a real pointer.
#include "support/WindowManager.h"
#include "toolkit/FramedWindow.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QWindow>

using namespace ambrel;

namespace {

/// Counts the double clicks that reach the application's windows.
class ClickCounter : public QObject
{
public:
    ClickCounter() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        doubleClicks += event->type() == QEvent::MouseButtonDblClick && watched->isWindowType() ? 1 : 0;
        return false;
    }
    int doubleClicks = 0;
};

} // namespace

class WindowFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_windowManager = std::make_unique<WindowManager>(); }

    void cleanupTestCase()
    {
        m_window.reset();
        m_windowManager.reset();
    }

    void init()
    {
        m_window.reset();
        pointer::forgetEarlierClicks();
        pointer::moveTo({5, 5});
        m_window = std::make_unique<FramedWindow>();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_COMPARE(m_window->geometry(), QRect(200, 200, 400, 300));
    }

    void contentReachesTheTopEdge() { QCOMPARE(m_window->frameGeometry(), m_window->geometry()); }

    void draggingTheBackgroundMovesTheWindow()
    {
        QVERIFY(pointer::dragWindow(*m_window, m_window->emptyPlace(), {150, 90}));
        QCOMPARE(m_window->size(), QSize(400, 300));
    }

    void onlyEmptyBackgroundMovesTheWindow()
    {
        FramedWindow &window = *m_window;
        for (QWidget *child : {static_cast<QWidget *>(&window.button), static_cast<QWidget *>(&window.disabled),
                               static_cast<QWidget *>(&window.label), static_cast<QWidget *>(&window.text)}) {
            const QPoint from = window.middleOf(*child);
            QVERIFY(pointer::dragStaysInTheApplication(from, from + QPoint(60, 60)));
            QCOMPARE(pointer::placeOf(window), QPoint(200, 200));
        }
        const QPoint from = m_window->field.mapToGlobal(QPoint(2, 10));
        QVERIFY(pointer::drag(from, from + QPoint(200, 0), [this] { return m_window->field.hasSelectedText(); }));
        QCOMPARE(m_window->pos(), QPoint(200, 200));
    }

    void aShortMovementIsNoDrag()
    {
        const QPoint from = m_window->emptyPlace();
        QVERIFY(pointer::dragStaysInTheApplication(from, from + QPoint(3, 3)));
        QCOMPARE(pointer::placeOf(*m_window), QPoint(200, 200));
    }

    void childrenWorkAfterTheWindowHasMoved()
    {
        QVERIFY(pointer::dragWindow(*m_window, m_window->emptyPlace(), {50, 50}));
        const QPoint moved = m_window->pos();
        QSignalSpy clicked(&m_window->button, &QPushButton::clicked);
        pointer::moveTo(m_window->middleOf(m_window->button));
        QTRY_VERIFY(m_window->button.underMouse());
        QVERIFY(!m_window->button.isDown());
        pointer::press();
        QTRY_VERIFY(m_window->button.isDown());
        pointer::release();
        QTRY_COMPARE(clicked.count(), 1);
        QCOMPARE(m_window->pos(), moved);
    }

    void everyGripResizes_data() { addGripRows(); }

    void everyGripResizes() { proveThatTheGripResizes(*m_window); }

    void everyGripRefusesToShrinkBelowTheMinimum_data() { addGripRows(); }

    void everyGripRefusesToShrinkBelowTheMinimum() { proveThatTheGripRefusesToShrinkBelowTheMinimum(*m_window); }

    void everyGripShowsItsCursor_data() { addGripRows(); }

    void everyGripShowsItsCursor()
    {
        const Grip &grip = currentGrip();
        pointer::moveTo(m_window->emptyPlace());
        QVERIFY(!QGuiApplication::overrideCursor());
        pointer::moveTo(grip.in(m_window->geometry()));
        QTRY_VERIFY(QGuiApplication::overrideCursor());
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), grip.cursor);
        pointer::moveTo(m_window->middleOf(m_window->field));
        QTRY_VERIFY(!QGuiApplication::overrideCursor());
        pointer::moveTo(grip.in(m_window->geometry()));
        QTRY_VERIFY(QGuiApplication::overrideCursor());
        pointer::moveTo({5, 5});
        QTRY_VERIFY(!QGuiApplication::overrideCursor());
    }

    void aPressAtAGripDoesNotReachTheChildBeneath()
    {
        QPushButton atTheEdge(m_window.get());
        atTheEdge.setGeometry(0, 100, 60, 60);
        atTheEdge.show();
        QSignalSpy pressed(&atTheEdge, &QPushButton::pressed);
        pointer::clickAt(m_window->mapToGlobal(QPoint(ClientSideFrame::gripThickness - 1, 130)));
        pointer::clickAt(m_window->mapToGlobal(QPoint(ClientSideFrame::gripThickness + 1, 130)));
        QTRY_COMPARE(pressed.count(), 1);
        QCOMPARE(m_window->size(), QSize(400, 300));
    }

    void doubleClickOnTheBackgroundMaximisesAndRestores()
    {
        pointer::doubleClickAt(m_window->emptyPlace());
        QTRY_VERIFY(m_window->isMaximized());
        QTRY_COMPARE(m_window->geometry(), m_window->screen()->availableGeometry());
        pointer::doubleClickAt(m_window->emptyPlace());
        QTRY_COMPARE(m_window->geometry(), QRect(200, 200, 400, 300));
        QVERIFY(!m_window->isMaximized());
    }

    void doubleClickOnWhatIsNotBackgroundDoesNothing()
    {
        for (const QWidget *child :
             {static_cast<QWidget *>(&m_window->disabled), static_cast<QWidget *>(&m_window->label),
              static_cast<QWidget *>(&m_window->text)}) {
            const ClickCounter clicks;
            pointer::doubleClickAt(m_window->middleOf(*child));
            QTRY_COMPARE(clicks.doubleClicks, 1); // it has come to the window
            QVERIFY(!m_window->isMaximized());
        }
    }

    void maximisedWindowHasNoGrips()
    {
        m_window->showMaximized();
        QTRY_COMPARE(m_window->geometry(), m_window->screen()->availableGeometry());
        const QRect full = m_window->geometry();
        for (const Grip &grip : grips) {
            pointer::moveTo(grip.in(full));
            QVERIFY(!QGuiApplication::overrideCursor());
        }
    }

    void controlsMinimiseMaximiseRestoreAndClose()
    {
        const auto control = [this](const QString &name) {
            for (QPushButton *button : m_window->controls.findChildren<QPushButton *>())
                if (button->accessibleName() == name)
                    return button;
            return static_cast<QPushButton *>(nullptr);
        };
        pointer::clickOn(*control(QStringLiteral("Maximize")));
        QTRY_COMPARE(m_window->geometry(), m_window->screen()->availableGeometry());
        QTRY_VERIFY(control(QStringLiteral("Restore")));
        QVERIFY(!control(QStringLiteral("Maximize")));
        pointer::clickOn(*control(QStringLiteral("Restore")));
        QTRY_COMPARE(m_window->geometry(), QRect(200, 200, 400, 300));
        QTRY_VERIFY(control(QStringLiteral("Maximize")));

        pointer::clickOn(*control(QStringLiteral("Minimize")));
        QTRY_VERIFY(pointer::isIconified(*m_window) && !m_window->windowHandle()->isExposed());
        QVERIFY(m_window->isMinimized());
        m_window->showNormal();
        QTRY_VERIFY(!pointer::isIconified(*m_window) && m_window->windowHandle()->isExposed());

        pointer::clickOn(*control(QStringLiteral("Close")));
        QTRY_VERIFY(!m_window->isVisible());
    }

    void controlsAreNamedAndReachedByTab()
    {
        m_window->disabled.setEnabled(true);
        m_window->disabled.setFocus();
        for (const char *name : {"Minimize", "Maximize", "Close"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            const QAccessibleInterface *control = QAccessible::queryAccessibleInterface(QApplication::focusWidget());
            QCOMPARE(control->text(QAccessible::Name), QString::fromLatin1(name));
            QCOMPARE(control->role(), QAccessible::Button);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QTRY_VERIFY(!m_window->isVisible());
    }

    void controlsShowHoverPressAndFocus()
    {
        m_window->controls.setColors({Qt::black, Qt::yellow, Qt::green, Qt::white, Qt::red, Qt::darkRed, Qt::blue});
        m_window->field.setFocus();
        QPushButton &minimize = *m_window->controls.findChildren<QPushButton *>().first();
        const auto face = [&minimize] { return minimize.grab().toImage().pixelColor(8, 8); };
        const auto ring = [&minimize] { return minimize.grab().toImage().pixelColor(minimize.width() / 2, 1); };
        const QColor rest = face();
        pointer::moveTo(m_window->middleOf(minimize));
        QTRY_COMPARE(face(), QColor(Qt::yellow));
        pointer::press();
        QTRY_COMPARE(face(), QColor(Qt::green));
        pointer::moveTo(m_window->emptyPlace());
        pointer::release();
        QTRY_COMPARE(face(), rest);
        QVERIFY(ring() != QColor(Qt::blue));
        minimize.setFocus(Qt::TabFocusReason);
        QTRY_COMPARE(ring(), QColor(Qt::blue));
    }

private:
    std::unique_ptr<WindowManager> m_windowManager;
    std::unique_ptr<FramedWindow> m_window;
};

QTEST_MAIN(WindowFrameTest)
#include "WindowFrameTest.moc"
