// The client-side frame on a display without a window manager, with a real pointer.
#include "toolkit/FramedWindow.h"

#include <QSignalSpy>

using namespace ambrel;

class WindowFrameAloneTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window.reset();
        pointer::forgetEarlierClicks();
        pointer::moveTo({5, 5});
        m_window = std::make_unique<FramedWindow>();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QTRY_COMPARE(m_window->geometry(), QRect(200, 200, 400, 300));
    }

    void draggingTheBackgroundMovesTheWindowUntilTheRelease()
    {
        const QPoint from = m_window->emptyPlace();
        QVERIFY(pointer::dragWindow(*m_window, from, {150, 90}));
        const QRect moved = m_window->geometry();
        pointer::moveTo(from + QPoint(100, 60));
        pointer::clickOn(m_window->button);
        QCOMPARE(m_window->geometry(), moved);
    }

    void everyGripResizes_data() { addGripRows(); }

    void everyGripResizes() { proveThatTheGripResizes(*m_window); }

    void everyGripRefusesToShrinkBelowTheMinimum_data() { addGripRows(); }

    void everyGripRefusesToShrinkBelowTheMinimum() { proveThatTheGripRefusesToShrinkBelowTheMinimum(*m_window); }

    void childrenWorkAfterTheWindowHasMoved()
    {
        QVERIFY(pointer::dragWindow(*m_window, m_window->emptyPlace(), {50, 50}));
        QSignalSpy clicked(&m_window->button, &QPushButton::clicked);
        pointer::clickOn(m_window->button);
        QTRY_COMPARE(clicked.count(), 1);
    }

    void doubleClickLeavesTheGripsInReach()
    {
        pointer::doubleClickAt(m_window->emptyPlace());
        QTRY_VERIFY(m_window->isMaximized());
        const QPoint from = grips[1].in(m_window->geometry());
        QVERIFY(pointer::drag(from, from + QPoint(40, 0), [this] { return m_window->width() == 440; }));
    }

private:
    std::unique_ptr<FramedWindow> m_window;
};

QTEST_MAIN(WindowFrameAloneTest)
#include "WindowFrameAloneTest.moc"
