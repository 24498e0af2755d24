// By which of its places the window can be moved, under a real window manager, with a real pointer.
#include "support/WindowManager.h"
#include "ui/MatchViews.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/people/LivePill.h"
#include "ui/people/WarmthMeter.h"
#include "ui/profile/LargeProfilePhoto.h"
#include "ui/profile/MatchPhoto.h"
#include "ui/sidebar/StatusLine.h"
#include "ui/window/OpenedWindow.h"
#include "ui/window/ViewEnvironment.h"

using namespace ambrel;

class WindowMoveTest : public QObject
{
    Q_OBJECT

public:
    explicit WindowMoveTest(AmbrelMacApp &application) : m_application(application) {}

private Q_SLOTS:
    void init()
    {
        openForUse(m_application, m_window);
        if (QTest::currentTestFailed())
            return;
        auto &state = ViewEnvironment::of(*m_window).state();
        const MatchResult ana = person(QStringLiteral("Ana"));
        state.matches = QList<MatchResult>{ana};
        state.selectedMatch = ana;
        QTRY_VERIFY(m_window->findChild<MatchPhoto *>());
    }

    void cleanup() { m_window.reset(); }

    void emptyBackgroundMovesIt_data()
    {
        QTest::addColumn<QPoint>("place");
        QTest::newRow("left of the sidebar") << QPoint(11, 400);
        QTest::newRow("in the sidebar beside the brand") << QPoint(300, 60);
        QTest::newRow("above the main panel") << QPoint(700, 24);
        QTest::newRow("in the list below the last card") << QPoint(600, 780);
        QTest::newRow("between list and profile") << QPoint(896, 60);
    }

    void emptyBackgroundMovesIt()
    {
        QFETCH(QPoint, place);
        QVERIFY(pointer::dragWindow(*m_window, m_window->mapToGlobal(place), {-60, 40}));
    }

    void whatIsShownDoesNotMoveIt()
    {
        for (QWidget *const shown : std::initializer_list<QWidget *>{
                 first<AmbrelLogo>(), first<QLabel>(), first<StatusLine>(), first<LivePill>(), first<WarmthMeter>(),
                 first<MatchPhoto>(), first<LargeProfilePhoto>()}) {
            const QPoint from = shown->mapToGlobal(shown->rect().center());
            QVERIFY2(pointer::dragStaysInTheApplication(from, from + QPoint(40, 30)), shown->metaObject()->className());
            QCOMPARE(pointer::placeOf(*m_window), QPoint(320, 150));
        }
    }

private:
    template <typename View>
    View *first() const
    {
        return m_window->findChild<View *>();
    }

    AmbrelMacApp &m_application;
    const WindowManager m_windowManager;
    std::unique_ptr<QWidget> m_window;
};

int main(int argc, char **argv)
{
    AmbrelMacApp application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    WindowMoveTest test(application);
    return QTest::qExec(&test, argc, argv);
}

#include "WindowMoveTest.moc"
