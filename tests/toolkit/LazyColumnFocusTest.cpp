#include "toolkit/PeopleColumn.h"

#include <QAccessible>
#include <QPointer>
#include <limits>

using namespace ambrel;

class LazyColumnFocusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void arrowAndPageKeysMoveTheFocusFromRowToRow()
    {
        People people(10'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const int page = window.column.viewport()->height() / (window.rowHeight() + 12);
        window.row(0)->setFocus();
        const auto press = [&](Qt::Key key, int expected) {
            QTest::keyClick(QApplication::focusWidget(), key);
            QCOMPARE(window.focusedId(), people.ids[expected]);
            QVERIFY(window.showsFully(window.focusedRow()));
        };
        press(Qt::Key_Down, 1);
        press(Qt::Key_Down, 2);
        press(Qt::Key_PageDown, 2 + page);
        press(Qt::Key_PageDown, 2 + 2 * page);
        press(Qt::Key_PageUp, 2 + page);
        press(Qt::Key_End, 9'999);
        press(Qt::Key_Down, 9'999);
        QCOMPARE(window.column.verticalScrollBar()->value(), window.column.verticalScrollBar()->maximum());
        press(Qt::Key_Up, 9'998);
        press(Qt::Key_Home, 0);
        QCOMPARE(window.column.verticalScrollBar()->value(), 0);
        press(Qt::Key_Up, 0);
        window.row(0)->dismiss.setFocus();
        press(Qt::Key_PageDown, page);
    }

    void focusFollowsItsRowWhenTheListIsReordered()
    {
        People people(50);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QPushButton &button = window.row(1)->dismiss;
        button.setFocus();
        people.ids.move(1, 3);
        window.column.refresh();
        QVERIFY(button.hasFocus());
        QCOMPARE(window.focusedId(), QStringLiteral("person 1"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QCOMPARE(window.focusedId(), people.ids[4]);
    }

    void focusFollowsItsRowOffTheScreen()
    {
        People people(10'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QPushButton &button = window.row(2)->keep;
        button.setFocus();
        people.ids.move(2, 7'000);
        window.column.refresh();
        QVERIFY(button.hasFocus());
        QCOMPARE(window.focusedId(), QStringLiteral("person 2"));
        QVERIFY(window.visibleRows().front()->id() == QStringLiteral("person 0"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QVERIFY(window.row(2)->dismiss.hasFocus());
        QVERIFY(window.showsFully(window.row(2)));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QCOMPARE(window.focusedId(), people.ids[7'001]);
    }

    void focusedRowThatLeavesHandsTheFocusToTheNextOne()
    {
        People people(50);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.row(1)->dismiss.setFocus();
        const QPointer<CardRow> leaving = window.row(1);
        people.ids.removeAt(1);
        window.column.refresh();
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(window.row(2)));
        QVERIFY(window.showsFully(window.row(2)));
        QTRY_VERIFY(!leaving);
        QVERIFY(window.row(2)->hasFocus());
    }

    void lastRowThatLeavesHandsTheFocusToTheOneBefore()
    {
        People people(3);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.row(2)->keep.setFocus();
        people.ids.removeLast();
        window.column.refresh();
        QVERIFY(window.row(1)->hasFocus());
    }

    void emptiedListKeepsTheFocusInTheColumn()
    {
        People people(3);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.row(2)->keep.setFocus();
        people.ids.clear();
        window.column.refresh();
        QVERIFY(window.column.hasFocus());
        QTRY_COMPARE(CardRow::alive, 0);
        people.ids = {QStringLiteral("somebody")};
        window.column.refresh();
        QTest::keyClick(&window.column, Qt::Key_Tab);
        QCOMPARE(window.focusedId(), QStringLiteral("somebody"));
    }

    void arrowKeysStayOnTheSameControlFromRowToRow()
    {
        People people(30);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.row(0)->dismiss.setFocus();
        for (int i = 1; i < 30; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
            QVERIFY2(window.row(i)->dismiss.hasFocus(), qPrintable(QString::number(i)));
            QVERIFY(window.showsFully(window.row(i)));
        }
        window.row(28)->dismiss.hide();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
        QVERIFY(window.row(28)->hasFocus());
    }

    void leftAndRightGoFromControlToControlOfTheRow()
    {
        People people(30);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        CardRow *row = window.row(1);
        row->setFocus();
        const auto press = [](Qt::Key key) {
            QTest::keyClick(QApplication::focusWidget(), key);
            return QApplication::focusWidget();
        };
        QCOMPARE(press(Qt::Key_Left), row);
        QCOMPARE(press(Qt::Key_Right), &row->keep);
        QCOMPARE(press(Qt::Key_Right), &row->dismiss);
        QCOMPARE(press(Qt::Key_Right), &row->dismiss);
        QCOMPARE(press(Qt::Key_Left), &row->keep);
        row->keep.hide(); // its row keeps the focus
        QCOMPARE(QApplication::focusWidget(), row);
        QCOMPARE(press(Qt::Key_Right), &row->dismiss);
        window.setLayoutDirection(Qt::RightToLeft);
        QCOMPARE(press(Qt::Key_Right), row);
        QCOMPARE(press(Qt::Key_Left), &row->dismiss);
    }

    void oneTabLeavesTheListAndComesBackToTheSameControl()
    {
        People people(200);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        for (const int number : {0, 3, 100, 199}) {
            window.row(0) ? window.row(0)->setFocus() : window.visibleRows().front()->setFocus();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
            for (int i = 0; i < number; ++i)
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
            CardRow *row = window.row(number);
            for (QWidget *control : {static_cast<QWidget *>(row), static_cast<QWidget *>(&row->dismiss)}) {
                control->setFocus();
                QTest::keyClick(control, Qt::Key_Tab);
                QVERIFY(window.after.hasFocus());
                QTest::keyClick(&window.after, Qt::Key_Backtab, Qt::ShiftModifier);
                QCOMPARE(QApplication::focusWidget(), control);
                QTest::keyClick(control, Qt::Key_Backtab, Qt::ShiftModifier);
                QVERIFY(window.before.hasFocus());
                QTest::keyClick(&window.before, Qt::Key_Tab);
                QCOMPARE(QApplication::focusWidget(), control);
            }
        }
    }

    void tabFindsTheListAfterItsStopHasGone()
    {
        People people(5);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.row(2)->keep.setFocus();
        window.before.setFocus();
        window.row(2)->keep.hide();
        window.column.refresh();
        QTest::keyClick(&window.before, Qt::Key_Tab);
        QVERIFY(window.row(2)->hasFocus());
        window.before.setFocus();
        people.ids.removeAt(2);
        window.column.refresh();
        QTest::keyClick(&window.before, Qt::Key_Tab);
        QVERIFY(window.row(0)->hasFocus());
    }

    void tabFromOutsideLandsOnTheFirstRowOnScreen()
    {
        People people(1'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.scrollTo(50'050);
        CardRow *firstWhole = window.visibleRows().front();
        if (!window.showsFully(firstWhole))
            firstWhole = window.visibleRows().at(1);
        QTest::keyClick(&window.before, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(firstWhole));
        QCOMPARE(window.column.verticalScrollBar()->value(), 50'050);
        window.after.setFocus();
        QTest::keyClick(&window.after, Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(firstWhole));
        QCOMPARE(window.column.verticalScrollBar()->value(), 50'050);
    }

    void focusOnAnOffScreenRowScrollsItIntoView()
    {
        People people(100);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        CardRow *offScreen = window.rows().back();
        QVERIFY(!offScreen->geometry().intersects(window.column.viewport()->rect()));
        offScreen->keep.setFocus();
        QVERIFY(window.showsFully(offScreen));
    }

    void clickOnAHalfVisibleRowDoesNotMoveIt()
    {
        People people(100);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.scrollTo(2 + window.rowHeight() - 4);
        CardRow *cut = window.row(0);
        QTest::mouseClick(cut, Qt::LeftButton, {}, {5, cut->height() - 2});
        QVERIFY(cut->hasFocus());
        QCOMPARE(window.column.verticalScrollBar()->value(), 2 + window.rowHeight() - 4);
    }

    void focusedRowStaysItselfWhenItIsScrolledAway()
    {
        People people(1'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QPushButton &button = window.row(1)->keep;
        button.setFocus();
        for (int value = 0; value <= 30'000; value += 300)
            window.scrollTo(value);
        QVERIFY(button.hasFocus());
        QCOMPARE(window.focusedId(), QStringLiteral("person 1"));
        window.column.refresh();
        QCOMPARE(window.column.verticalScrollBar()->value(), 30'000);
        QTest::keyClick(&button, Qt::Key_Right);
        QVERIFY(window.row(1)->dismiss.hasFocus());
        QVERIFY(window.showsFully(window.row(1)));
    }

    void screenReadersMeetTheRowsInVisualOrder()
    {
        People people(1'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto verifyOrder = [&window] {
            const QAccessibleInterface *viewport = QAccessible::queryAccessibleInterface(window.column.viewport());
            int last = std::numeric_limits<int>::min();
            int shown = 0;
            for (int i = 0; i < viewport->childCount(); ++i) {
                if (viewport->child(i)->state().invisible)
                    continue;
                QVERIFY(viewport->child(i)->rect().top() > last);
                last = viewport->child(i)->rect().top();
                ++shown;
            }
            QVERIFY(shown > 3);
        };
        for (const int value : {0, 100, 700, 20'000, 19'800, 300}) {
            window.scrollTo(value);
            verifyOrder();
        }
        std::reverse(people.ids.begin(), people.ids.begin() + 20);
        window.column.refresh();
        verifyOrder();
    }
};

QTEST_MAIN(LazyColumnFocusTest)
#include "LazyColumnFocusTest.moc"
