#include "toolkit/PeopleColumn.h"

#include <QPointer>

using namespace ambrel;

class LazyColumnRefreshTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unchangedRefreshNeitherPaintsNorLaysOutNorSearches()
    {
        People people(10'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.scrollTo(3'333);
        window.visibleRows().at(1)->keep.setFocus();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        const auto rows = window.rows();
        CardRow::paints = CardRow::resizes = people.lookups = people.binds = 0;
        for (int i = 0; i < 3; ++i) {
            window.column.refresh();
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
        QCOMPARE(CardRow::paints, 0);
        QCOMPARE(CardRow::resizes, 0);
        QCOMPARE(window.rows(), rows);
        QCOMPARE(people.binds, 3 * int(rows.size()));
        QVERIFY2(people.lookups <= 3 * (int(rows.size()) + 2), qPrintable(QString::number(people.lookups)));
    }

    void insertingAboveKeepsTheFirstVisibleRowInPlace()
    {
        People people(1'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.scrollTo(12'345);
        const QPointer<CardRow> first = window.visibleRows().front();
        const QString id = first->id();
        const int y = first->y();
        for (int i = 0; i < 30; ++i)
            people.ids.prepend(QStringLiteral("newcomer %1").arg(i));
        window.column.refresh();
        QCOMPARE(window.visibleRows().front(), first.data());
        QCOMPARE(first->id(), id);
        QCOMPARE(first->y(), y);
        QCOMPARE(window.column.verticalScrollBar()->value(), 12'345 + 30 * (window.rowHeight() + 12));
    }

    void removingAboveKeepsTheFirstVisibleRowInPlace()
    {
        People people(1'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.scrollTo(12'345);
        const QPointer<CardRow> first = window.visibleRows().front();
        const int y = first->y();
        people.ids.remove(3, 20);
        window.column.refresh();
        QCOMPARE(window.visibleRows().front(), first.data());
        QCOMPARE(first->y(), y);
    }

    void losingTheFirstVisibleRowKeepsTheNextOneInPlace()
    {
        People people(1'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.scrollTo(12'345);
        CardRow *second = window.visibleRows().at(1);
        const QString id = second->id();
        const int y = second->y();
        people.ids.removeOne(window.visibleRows().front()->id());
        window.column.refresh();
        QCOMPARE(window.row(id), second);
        QCOMPARE(second->y(), y);
    }

    void columnAtItsTopShowsWhoComesFirst()
    {
        People people(100);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        people.ids.prepend(QStringLiteral("newcomer"));
        window.column.refresh();
        QCOMPARE(window.visibleRows().front()->id(), QStringLiteral("newcomer"));
        QCOMPARE(window.column.verticalScrollBar()->value(), 0);
    }

    void columnAtItsTopKeepsItsPlaceWhileARowHasTheFocus()
    {
        People people(100);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.row(1)->keep.setFocus();
        const int y = window.row(1)->y();
        people.ids.prepend(QStringLiteral("newcomer"));
        window.column.refresh();
        QCOMPARE(window.row(1)->y(), y);
        QVERIFY(window.row(1)->keep.hasFocus());
    }

    void rowsThatStayKeepTheirWidgets()
    {
        People people(100);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QHash<QString, CardRow *> before;
        for (CardRow *row : window.visibleRows())
            before.insert(row->id(), row);
        QVERIFY(before.size() >= 4);
        std::reverse(people.ids.begin(), people.ids.begin() + 4);
        people.ids.insert(2, QStringLiteral("newcomer"));
        window.column.refresh();
        for (int i = 0; i < 4; ++i)
            QCOMPARE(window.row(i), before.value(QStringLiteral("person %1").arg(i)));
        QCOMPARE(window.row(QStringLiteral("newcomer"))->id(), QStringLiteral("newcomer"));
    }

    void pressedRowThatLeavesDoesNotPressItsSuccessor()
    {
        People people(50);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QPushButton &button = window.row(0)->dismiss;
        const QPoint place = button.mapTo(&window, button.rect().center());
        QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, place);
        QVERIFY(button.isDown());
        people.ids.removeAt(0);
        window.column.refresh();
        int clicks = 0;
        for (CardRow *row : window.rows())
            connect(&row->dismiss, &QPushButton::clicked, this, [&clicks] { ++clicks; });
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, place);
        QCOMPARE(clicks, 0);
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place);
        QCOMPARE(clicks, 1);
    }

    void duplicateIdsShowBothRows()
    {
        People people(6);
        people.ids[1] = people.ids[4] = QStringLiteral("twin");
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto shownIds = [&] {
            QStringList ids;
            for (const CardRow *row : window.rows())
                ids.append(row->id());
            return ids;
        };
        QCOMPARE(shownIds(), people.ids);
        CardRow *first = window.rows().at(1);
        CardRow *second = window.rows().at(4);
        second->keep.setFocus();
        window.column.refresh();
        QCOMPARE(window.rows().at(1), first);
        QCOMPARE(window.rows().at(4), second);
        people.ids.prepend(QStringLiteral("newcomer"));
        window.column.refresh();
        QCOMPARE(shownIds(), people.ids);
        QCOMPARE(window.rows().at(5), second);
        QVERIFY(second->keep.hasFocus());
        people.ids.removeAt(2);
        window.column.refresh();
        QCOMPARE(shownIds(), people.ids);
        QVERIFY(second->keep.hasFocus());
    }

    void shrinkingAndGrowingListFollowsTheSource()
    {
        People people(200);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.scrollTo(window.column.verticalScrollBar()->maximum());
        people.ids = people.ids.mid(0, 2);
        window.column.refresh();
        QCOMPARE(window.rows().size(), 2);
        QCOMPARE(window.rows().front()->y(), 2);
        QTRY_COMPARE(CardRow::alive, 2);
        QVERIFY(!window.column.verticalScrollBar()->isVisible());
        people.ids.clear();
        window.column.refresh();
        QVERIFY(window.rows().isEmpty());
        people.ids = People(40).ids;
        window.column.refresh();
        QCOMPARE(window.visibleRows().front()->id(), people.ids.front());
        QTRY_VERIFY(window.column.verticalScrollBar()->isVisible());
        for (const CardRow *row : window.rows())
            QCOMPARE(row->width(), window.column.viewport()->width());
    }

    void listThatShrankBeforeItsRefreshIsNotReadBeyondItsEnd()
    {
        People people(100);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        people.ids = people.ids.mid(0, 3);
        turnWheel(*window.column.viewport(), -1200);
        window.resize(500, 700);
        QTRY_COMPARE(window.width(), 500);
        window.column.refresh();
        QCOMPARE(window.rows().size(), 3);
        QCOMPARE(window.rows().front()->y(), 2);
    }

    void refreshOfALongListLooksOnlyAtWhatIsNear()
    {
        People people(10'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.scrollTo(400'000);
        people.ids.removeAt(10);
        people.ids.prepend(QStringLiteral("one"));
        people.ids.prepend(QStringLiteral("two"));
        people.lookups = people.binds = 0;
        window.column.refresh();
        const int rows = int(window.rows().size());
        QVERIFY2(people.lookups <= 2 * rows + 10, qPrintable(QString::number(people.lookups)));
        QVERIFY2(people.binds <= 2 * rows, qPrintable(QString::number(people.binds)));
    }

    void refreshLooksThroughAVeryLongListAtMostOnce_data()
    {
        QTest::addColumn<QString>("newId");
        QTest::newRow("everybody is somebody else") << QStringLiteral("newcomer %1");
        QTest::newRow("everybody has one id") << QStringLiteral("twin");
    }

    void refreshLooksThroughAVeryLongListAtMostOnce()
    {
        QFETCH(QString, newId);
        People people(100'000);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.scrollTo(400'000);
        window.visibleRows().at(1)->keep.setFocus();
        for (qsizetype i = 0; i < people.ids.size(); ++i)
            people.ids[i] = newId.contains(u'%') ? newId.arg(i) : newId;
        people.lookups = 0;
        window.column.refresh();
        QVERIFY2(people.lookups < 105'000, qPrintable(QString::number(people.lookups)));
        QVERIFY(window.focusedRow());
        people.lookups = 0;
        people.ids.move(0, 99'999);
        window.column.refresh();
        QVERIFY2(people.lookups < 1'000, qPrintable(QString::number(people.lookups)));
    }
};

QTEST_MAIN(LazyColumnRefreshTest)
#include "LazyColumnRefreshTest.moc"
