#include "toolkit/FocusInSight.h"

#include "toolkit/ClearScrollArea.h"
#include "toolkit/PeopleColumn.h"

#include <QSignalSpy>

using namespace ambrel;

namespace {

/// A window, 300 x 300, with a field beside an area in which two fields and two buttons stand 400 pixels apart.
class ScrollingWindow : public QWidget
{
public:
    ScrollingWindow()
    {
        auto *const content = new QWidget;
        content->resize(200, 1'400);
        QWidget *const inside[] = {&top, &topButton, &bottom, &bottomButton};
        for (int i = 0; i < 4; ++i) {
            inside[i]->setParent(content);
            inside[i]->setGeometry(10, 60 + 400 * i, 100, 30);
        }
        auto *const layout = new QHBoxLayout(this);
        layout->addWidget(&before);
        layout->addWidget(&area);
        showThrough(area, *content);
        area.setFocusPolicy(Qt::NoFocus);
        setTabOrder(&before, &top);
        setTabOrder(&top, &topButton);
        setTabOrder(&topButton, &bottom);
        setTabOrder(&bottom, &bottomButton);
        resize(300, 300);
        show();
        activateWindow();
    }
    bool shows(const QWidget &widget) const
    {
        return area.viewport()->rect().contains(QRect(widget.mapTo(area.viewport(), QPoint()), widget.size()));
    }
    void scrollTo(int value) { area.verticalScrollBar()->setValue(value); }
    int position() const { return area.verticalScrollBar()->value(); }

    QLineEdit before;
    QScrollArea area;
    QLineEdit top;
    QPushButton topButton{QStringLiteral("Top")};
    QLineEdit bottom;
    QPushButton bottomButton{QStringLiteral("Bottom")};
};

} // namespace

class FocusInSightTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { FocusInSight::install(); }

    void init()
    {
        m_window = std::make_unique<ScrollingWindow>();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void focusThatComesFromOutsideIsSeen()
    {
        m_window->before.setFocus();
        m_window->scrollTo(600);
        QTest::keyClick(&m_window->before, Qt::Key_Tab);
        QVERIFY(m_window->top.hasFocus());
        QVERIFY(m_window->shows(m_window->top));
        m_window->before.setFocus();
        QTest::keyClick(&m_window->before, Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(m_window->bottomButton.hasFocus());
        QVERIFY(m_window->shows(m_window->bottomButton));
    }

    void focusIsSeenAfterAResize()
    {
        m_window->resize(300, 900);
        QTRY_COMPARE(m_window->height(), 900);
        m_window->bottom.setFocus();
        QVERIFY(m_window->shows(m_window->bottom));
        m_window->scrollTo(0);
        m_window->bottom.setFocus(); // has it already: the user has scrolled away
        m_window->resize(300, 200);
        QTRY_VERIFY(m_window->shows(m_window->bottom));
    }

    void aKeyShowsAnUnseenButtonBeforeItPressesIt()
    {
        QSignalSpy clicked(&m_window->bottomButton, &QPushButton::clicked);
        m_window->bottomButton.setFocus();
        m_window->scrollTo(0);
        QTest::keyClick(&m_window->bottomButton, Qt::Key_Space);
        QCOMPARE(clicked.count(), 0);
        QVERIFY(m_window->shows(m_window->bottomButton));
        QTest::keyClick(&m_window->bottomButton, Qt::Key_Space);
        QCOMPARE(clicked.count(), 1);
    }

    void noLetterIsLostInAnUnseenField()
    {
        m_window->bottom.setFocus();
        m_window->scrollTo(0);
        QTest::keyClicks(&m_window->bottom, QStringLiteral("a b"));
        QCOMPARE(m_window->bottom.text(), QStringLiteral("a b"));
        QVERIFY(m_window->shows(m_window->bottom));
    }

    void neitherTheMouseNorAFocusThatComesBackScrolls()
    {
        m_window->scrollTo(600);
        for (const auto reason : {Qt::MouseFocusReason, Qt::PopupFocusReason, Qt::ActiveWindowFocusReason}) {
            m_window->before.setFocus();
            m_window->top.setFocus(reason);
            QVERIFY(m_window->top.hasFocus());
            QCOMPARE(m_window->position(), 600);
        }
    }

    void aKeyShowsAnUnseenRowOfALazyColumnBeforeItPressesInIt()
    {
        People people(1'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QPushButton &button = window.row(1)->keep;
        QSignalSpy clicked(&button, &QPushButton::clicked);
        button.setFocus();
        window.scrollTo(20'000);
        QTest::keyClick(&button, Qt::Key_Space);
        QCOMPARE(clicked.count(), 0);
        QVERIFY(window.showsFully(window.row(1)));
        QTest::keyClick(&button, Qt::Key_Space);
        QCOMPARE(clicked.count(), 1);
    }

    void tabIntoALazyColumnStillLandsWhereTheReaderLooks()
    {
        People people(1'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.row(1)->keep.setFocus();
        window.before.setFocus();
        window.scrollTo(20'000);
        QTest::keyClick(&window.before, Qt::Key_Tab);
        QVERIFY(window.showsFully(window.focusedRow()));
        QCOMPARE(window.column.verticalScrollBar()->value(), 20'000);
    }

private:
    std::unique_ptr<ScrollingWindow> m_window;
};

QTEST_MAIN(FocusInSightTest)
#include "FocusInSightTest.moc"
