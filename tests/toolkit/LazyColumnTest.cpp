#include "toolkit/LazyColumn.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOption>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>

using namespace ambrel;

namespace {

/// A row as an application might have it: focusable itself, with two buttons in it. Counts how many are alive and how
/// often any of them paints or is laid out.
class CardRow : public QWidget
{
public:
    explicit CardRow(QWidget *parent) : QWidget(parent)
    {
        ++alive;
        setFocusPolicy(Qt::StrongFocus);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&m_title);
        auto *buttons = new QHBoxLayout;
        layout->addLayout(buttons);
        buttons->addWidget(&keep);
        buttons->addWidget(&dismiss);
    }
    ~CardRow() override { --alive; }

    void show(const QString &id)
    {
        if (m_title.text() == id)
            return;
        m_title.setText(id);
        keep.setText(QStringLiteral("Keep ") + id);
        dismiss.setText(QStringLiteral("Dismiss ") + id);
    }
    QString id() const { return m_title.text(); }

    static inline int alive = 0;
    static inline int paints = 0;
    static inline int resizes = 0;
    QPushButton keep;
    QPushButton dismiss;

protected:
    void paintEvent(QPaintEvent *) override { ++paints; }
    void resizeEvent(QResizeEvent *) override { ++resizes; }

private:
    QLabel m_title;
};

class People : public LazyColumnSource
{
public:
    explicit People(int number)
    {
        for (int i = 0; i < number; ++i)
            ids.append(QStringLiteral("person %1").arg(i));
    }
    int count() const override { return int(ids.size()); }
    QString idAt(int index) const override
    {
        ++lookups;
        return ids.at(index);
    }
    QWidget *makeRow(QWidget *parent) override { return new CardRow(parent); }
    void bindRow(QWidget *row, int index) override
    {
        ++binds;
        static_cast<CardRow *>(row)->show(ids.at(index));
    }

    QStringList ids;
    mutable int lookups = 0;
    int binds = 0;
};

/// A window with a field above and one below the column, 400 x 600, on screen and active.
class Window : public QWidget
{
public:
    explicit Window(People &source) : people(source), column(source)
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&before);
        layout->addWidget(&column, 1);
        layout->addWidget(&after);
        column.setSpacing(12);
        column.setPadding(2);
        column.refresh();
        resize(400, 600);
        show();
        activateWindow();
        before.setFocus();
    }

    QList<CardRow *> rows() const
    {
        QList<CardRow *> shown = column.viewport()->findChildren<CardRow *>(QString(), Qt::FindDirectChildrenOnly);
        shown.removeIf([](const CardRow *row) { return row->isHidden(); });
        std::sort(shown.begin(), shown.end(), [](auto *a, auto *b) { return a->y() < b->y(); });
        return shown;
    }
    CardRow *row(const QString &id) const
    {
        for (CardRow *row : rows())
            if (row->id() == id)
                return row;
        return nullptr;
    }
    CardRow *row(int number) const { return row(QStringLiteral("person %1").arg(number)); }
    bool showsFully(const QWidget *row) const { return row && column.viewport()->rect().contains(row->geometry()); }
    QList<CardRow *> visibleRows() const
    {
        QList<CardRow *> seen = rows();
        seen.removeIf([this](CardRow *row) { return !row->geometry().intersects(column.viewport()->rect()); });
        return seen;
    }
    void scrollTo(int value) { column.verticalScrollBar()->setValue(value); }
    int rowHeight() const { return rows().front()->height(); }
    static CardRow *focusedRow()
    {
        QWidget *widget = QApplication::focusWidget();
        while (widget && !dynamic_cast<CardRow *>(widget))
            widget = widget->parentWidget();
        return static_cast<CardRow *>(widget);
    }
    static QString focusedId() { return focusedRow() ? focusedRow()->id() : QString(); }

    People &people;
    QLineEdit before;
    LazyColumn column;
    QLineEdit after;
};

void turnWheel(QWidget &widget, int angle)
{
    const QPoint middle = widget.rect().center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

} // namespace

class LazyColumnTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsStandUnderOneAnotherAcrossTheWholeWidth();
    void tenThousandRowsNeedOnlyTheWidgetsAroundTheScreen();
    void everyPlaceOfALongListShowsItsOwnRowsAndNoGap();
    void wheelMovesByPixels();
    void realWheelOverAButtonInARowScrolls();
    void pageKeysHomeAndEndScrollAColumnWithoutFocusedRow();
    void arrowAndPageKeysMoveTheFocusFromRowToRow();
    void draggingTheScrollBarReachesTheEnd();
    void unchangedRefreshNeitherPaintsNorLaysOutNorSearches();
    void insertingAboveKeepsTheFirstVisibleRowInPlace();
    void removingAboveKeepsTheFirstVisibleRowInPlace();
    void losingTheFirstVisibleRowKeepsTheNextOneInPlace();
    void columnAtItsTopShowsWhoComesFirst();
    void columnAtItsTopKeepsItsPlaceWhileARowHasTheFocus();
    void rowsThatStayKeepTheirWidgets();
    void focusFollowsItsRowWhenTheListIsReordered();
    void focusFollowsItsRowOffTheScreen();
    void focusedRowThatLeavesHandsTheFocusToTheNextOne();
    void lastRowThatLeavesHandsTheFocusToTheOneBefore();
    void emptiedListKeepsTheFocusInTheColumn();
    void pressedRowThatLeavesDoesNotPressItsSuccessor();
    void tabReachesEveryRowInOrderAndThenLeaves();
    void backtabReachesEveryRowInReverseOrder();
    void tabFromOutsideLandsOnTheFirstRowOnScreen();
    void focusOnAnOffScreenRowScrollsItIntoView();
    void clickOnAHalfVisibleRowDoesNotMoveIt();
    void duplicateIdsShowBothRows();
    void shrinkingAndGrowingListFollowsTheSource();
    void narrowerWindowMeasuresTheRowsAgainAndKeepsThePlace();
    void fixedRowHeightWins();
    void listThatShrankBeforeItsRefreshIsNotReadBeyondItsEnd();
    void refreshOfALongListLooksOnlyAtWhatIsNear();
};

void LazyColumnTest::rowsStandUnderOneAnotherAcrossTheWholeWidth()
{
    People people(3);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto rows = window.rows();
    QCOMPARE(rows.size(), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(rows[i]->id(), people.ids[i]);
        QCOMPARE(rows[i]->geometry(), QRect(0, 2 + i * (rows[0]->sizeHint().height() + 12),
                                            window.column.viewport()->width(), rows[0]->sizeHint().height()));
    }
    QVERIFY(!window.column.verticalScrollBar()->isVisible());
}

void LazyColumnTest::tenThousandRowsNeedOnlyTheWidgetsAroundTheScreen()
{
    People people(10'000);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const int onScreen = window.column.viewport()->height() / (window.rowHeight() + 12) + 1;
    const auto verifyFew = [&] { return CardRow::alive <= 2 * onScreen + 4 && CardRow::alive >= onScreen; };
    QVERIFY2(verifyFew(), qPrintable(QString::number(CardRow::alive)));
    QVERIFY(window.column.verticalScrollBar()->isVisible());
    for (int value = 0; value < 20'000; value += 37)
        window.scrollTo(value);
    QVERIFY2(verifyFew(), qPrintable(QString::number(CardRow::alive)));
    window.scrollTo(window.column.verticalScrollBar()->maximum());
    QVERIFY(window.showsFully(window.row(9'999)));
    people.ids = people.ids.mid(5'000);
    window.column.refresh();
    QTRY_VERIFY2(verifyFew(), qPrintable(QString::number(CardRow::alive)));
}

void LazyColumnTest::everyPlaceOfALongListShowsItsOwnRowsAndNoGap()
{
    People people(500);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const int step = window.rowHeight() + 12;
    const int maximum = window.column.verticalScrollBar()->maximum();
    QCOMPARE(maximum, 2 * 2 + 500 * step - 12 - window.column.viewport()->height());
    for (int value = 0; value <= maximum; value += 1'009) {
        window.scrollTo(value);
        for (const CardRow *row : window.rows()) {
            const int index = (row->y() + value - 2) / step;
            QCOMPARE(row->y() + value, 2 + index * step);
            QCOMPARE(row->id(), people.ids[index]);
        }
        QVERIFY(window.visibleRows().front()->y() <= 12);
        QVERIFY(window.visibleRows().back()->geometry().bottom() >= window.column.viewport()->height() - 13);
    }
}

void LazyColumnTest::wheelMovesByPixels()
{
    People people(100);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    turnWheel(*window.column.viewport(), -120);
    const int notch = window.column.verticalScrollBar()->value();
    QCOMPARE(notch, QApplication::wheelScrollLines() * window.column.verticalScrollBar()->singleStep());
    QCOMPARE(window.row(0)->y(), 2 - notch);
    turnWheel(*window.column.viewport(), -30); // a fine wheel
    QCOMPARE(window.column.verticalScrollBar()->value(), notch + notch / 4);
    turnWheel(*window.column.viewport(), 1200);
    QCOMPARE(window.row(0)->y(), 2);
}

void LazyColumnTest::realWheelOverAButtonInARowScrolls()
{
    People people(100);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QPoint place = window.row(1)->keep.mapToGlobal(window.row(1)->keep.rect().center());
    QCOMPARE(QProcess::execute(QStringLiteral("xdotool"),
                               {QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y()),
                                QStringLiteral("click"), QStringLiteral("5")}),
             0);
    QTRY_COMPARE(window.column.verticalScrollBar()->value(),
                 QApplication::wheelScrollLines() * window.column.verticalScrollBar()->singleStep());
}

void LazyColumnTest::pageKeysHomeAndEndScrollAColumnWithoutFocusedRow()
{
    People people(10'000);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QScrollBar &bar = *window.column.verticalScrollBar();
    window.column.setFocus();
    QTest::keyClick(&window.column, Qt::Key_PageDown);
    QVERIFY(bar.value() > window.column.viewport()->height() / 2);
    QVERIFY(bar.value() < window.column.viewport()->height());
    QTest::keyClick(&window.column, Qt::Key_End);
    QCOMPARE(bar.value(), bar.maximum());
    QVERIFY(window.showsFully(window.row(9'999)));
    QTest::keyClick(&window.column, Qt::Key_Up);
    QCOMPARE(bar.value(), bar.maximum() - bar.singleStep());
    QTest::keyClick(&window.column, Qt::Key_Down);
    QCOMPARE(bar.value(), bar.maximum());
    QTest::keyClick(&window.column, Qt::Key_PageUp);
    QVERIFY(bar.value() < bar.maximum());
    QTest::keyClick(&window.column, Qt::Key_Home);
    QCOMPARE(bar.value(), 0);
}

void LazyColumnTest::arrowAndPageKeysMoveTheFocusFromRowToRow()
{
    People people(10'000);
    Window window(people);
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

void LazyColumnTest::draggingTheScrollBarReachesTheEnd()
{
    People people(10'000);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QScrollBar &bar = *window.column.verticalScrollBar();
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = Qt::Vertical;
    option.maximum = bar.maximum();
    option.pageStep = bar.pageStep();
    const QPoint grip =
        bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &bar).center();
    QTest::mousePress(&bar, Qt::LeftButton, {}, grip);
    QTest::mouseMove(&bar, {grip.x(), bar.height() / 2});
    const int middle = bar.value();
    QVERIFY(middle > bar.maximum() / 3 && middle < 2 * bar.maximum() / 3);
    QTest::mouseMove(&bar, {grip.x(), bar.height() + 50});
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, {grip.x(), bar.height() + 50});
    QVERIFY(window.showsFully(window.row(9'999)));
}

void LazyColumnTest::unchangedRefreshNeitherPaintsNorLaysOutNorSearches()
{
    People people(10'000);
    Window window(people);
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

void LazyColumnTest::insertingAboveKeepsTheFirstVisibleRowInPlace()
{
    People people(1'000);
    Window window(people);
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

void LazyColumnTest::removingAboveKeepsTheFirstVisibleRowInPlace()
{
    People people(1'000);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.scrollTo(12'345);
    const QPointer<CardRow> first = window.visibleRows().front();
    const int y = first->y();
    people.ids.remove(3, 20);
    window.column.refresh();
    QCOMPARE(window.visibleRows().front(), first.data());
    QCOMPARE(first->y(), y);
}

void LazyColumnTest::losingTheFirstVisibleRowKeepsTheNextOneInPlace()
{
    People people(1'000);
    Window window(people);
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

void LazyColumnTest::columnAtItsTopShowsWhoComesFirst()
{
    People people(100);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    people.ids.prepend(QStringLiteral("newcomer"));
    window.column.refresh();
    QCOMPARE(window.visibleRows().front()->id(), QStringLiteral("newcomer"));
    QCOMPARE(window.column.verticalScrollBar()->value(), 0);
}

void LazyColumnTest::columnAtItsTopKeepsItsPlaceWhileARowHasTheFocus()
{
    People people(100);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.row(1)->keep.setFocus();
    const int y = window.row(1)->y();
    people.ids.prepend(QStringLiteral("newcomer"));
    window.column.refresh();
    QCOMPARE(window.row(1)->y(), y);
    QVERIFY(window.row(1)->keep.hasFocus());
}

void LazyColumnTest::rowsThatStayKeepTheirWidgets()
{
    People people(100);
    Window window(people);
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

void LazyColumnTest::focusFollowsItsRowWhenTheListIsReordered()
{
    People people(50);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QPushButton &button = window.row(1)->dismiss;
    button.setFocus();
    people.ids.move(1, 3);
    window.column.refresh();
    QVERIFY(button.hasFocus());
    QCOMPARE(window.focusedId(), QStringLiteral("person 1"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(window.focusedId(), people.ids[4]);
}

void LazyColumnTest::focusFollowsItsRowOffTheScreen()
{
    People people(10'000);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QPushButton &button = window.row(2)->keep;
    button.setFocus();
    people.ids.move(2, 7'000);
    window.column.refresh();
    QVERIFY(button.hasFocus());
    QCOMPARE(window.focusedId(), QStringLiteral("person 2"));
    QVERIFY(window.visibleRows().front()->id() == QStringLiteral("person 0"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(window.row(2)->dismiss.hasFocus());
    QVERIFY(window.showsFully(window.row(2)));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(window.focusedId(), people.ids[7'001]);
}

void LazyColumnTest::focusedRowThatLeavesHandsTheFocusToTheNextOne()
{
    People people(50);
    Window window(people);
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

void LazyColumnTest::lastRowThatLeavesHandsTheFocusToTheOneBefore()
{
    People people(3);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.row(2)->keep.setFocus();
    people.ids.removeLast();
    window.column.refresh();
    QVERIFY(window.row(1)->hasFocus());
}

void LazyColumnTest::emptiedListKeepsTheFocusInTheColumn()
{
    People people(3);
    Window window(people);
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

void LazyColumnTest::pressedRowThatLeavesDoesNotPressItsSuccessor()
{
    People people(50);
    Window window(people);
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

void LazyColumnTest::tabReachesEveryRowInOrderAndThenLeaves()
{
    People people(30);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(!window.row(29));
    for (int i = 0; i < 30; ++i) {
        for (int stop = 0; stop < 3; ++stop) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            CardRow *row = window.row(i);
            QVERIFY2(window.showsFully(row), qPrintable(QString::number(i)));
            QWidget *expected[] = {row, &row->keep, &row->dismiss};
            QCOMPARE(QApplication::focusWidget(), expected[stop]);
        }
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(window.after.hasFocus());
}

void LazyColumnTest::backtabReachesEveryRowInReverseOrder()
{
    People people(30);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.scrollTo(window.column.verticalScrollBar()->maximum());
    window.after.setFocus();
    for (int i = 29; i >= 0; --i) {
        for (int stop = 2; stop >= 0; --stop) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
            CardRow *row = window.row(i);
            QVERIFY2(window.showsFully(row), qPrintable(QString::number(i)));
            QWidget *expected[] = {row, &row->keep, &row->dismiss};
            QCOMPARE(QApplication::focusWidget(), expected[stop]);
        }
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(window.before.hasFocus());
}

void LazyColumnTest::tabFromOutsideLandsOnTheFirstRowOnScreen()
{
    People people(1'000);
    Window window(people);
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
    QVERIFY(window.showsFully(window.focusedRow()));
    QVERIFY(window.focusedRow()->dismiss.hasFocus());
    QCOMPARE(window.column.verticalScrollBar()->value(), 50'050);
}

void LazyColumnTest::focusOnAnOffScreenRowScrollsItIntoView()
{
    People people(100);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    CardRow *offScreen = window.rows().back();
    QVERIFY(!offScreen->geometry().intersects(window.column.viewport()->rect()));
    offScreen->keep.setFocus();
    QVERIFY(window.showsFully(offScreen));
}

void LazyColumnTest::clickOnAHalfVisibleRowDoesNotMoveIt()
{
    People people(100);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.scrollTo(2 + window.rowHeight() - 4);
    CardRow *cut = window.row(0);
    QTest::mouseClick(cut, Qt::LeftButton, {}, {5, cut->height() - 2});
    QVERIFY(cut->hasFocus());
    QCOMPARE(window.column.verticalScrollBar()->value(), 2 + window.rowHeight() - 4);
}

void LazyColumnTest::duplicateIdsShowBothRows()
{
    People people(6);
    people.ids[1] = people.ids[4] = QStringLiteral("twin");
    Window window(people);
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

void LazyColumnTest::shrinkingAndGrowingListFollowsTheSource()
{
    People people(200);
    Window window(people);
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

namespace {

/// Rows whose height depends on their width, as wrapping text does.
class WrappingPeople : public People
{
public:
    using People::People;
    QWidget *makeRow(QWidget *parent) override
    {
        QLabel *label =
            new QLabel(QStringLiteral("a line that is long enough to wrap in a narrow window ").repeated(3), parent);
        label->setWordWrap(true);
        return label;
    }
    void bindRow(QWidget *row, int index) override { row->setObjectName(ids.at(index)); }
};

} // namespace

void LazyColumnTest::narrowerWindowMeasuresTheRowsAgainAndKeepsThePlace()
{
    WrappingPeople people(100);
    LazyColumn column(people);
    column.refresh();
    column.resize(600, 400);
    column.show();
    QVERIFY(QTest::qWaitForWindowExposed(&column));
    QLabel *label = column.findChild<QLabel *>(people.ids[5]);
    QCOMPARE(label->height(), label->heightForWidth(column.viewport()->width()));
    const int wideHeight = label->height();
    column.verticalScrollBar()->setValue(50 * wideHeight);
    QCOMPARE(column.findChild<QLabel *>(people.ids[50])->y(), 0);
    column.resize(250, 400);
    QTRY_COMPARE(column.width(), 250);
    label = column.findChild<QLabel *>(people.ids[50]);
    QTRY_COMPARE(label->width(), column.viewport()->width());
    QVERIFY(label->height() > wideHeight);
    QCOMPARE(label->height(), label->heightForWidth(label->width()));
    QCOMPARE(label->y(), 0);
}

void LazyColumnTest::fixedRowHeightWins()
{
    People people(10);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.column.setRowHeight(111);
    QCOMPARE(window.row(1)->geometry().height(), 111);
    QCOMPARE(window.row(1)->y(), 2 + 111 + 12);
    window.column.setRowHeight(0);
    QCOMPARE(window.row(1)->height(), window.row(1)->sizeHint().height());
}

void LazyColumnTest::listThatShrankBeforeItsRefreshIsNotReadBeyondItsEnd()
{
    People people(100);
    Window window(people);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    people.ids = people.ids.mid(0, 3);
    turnWheel(*window.column.viewport(), -1200);
    window.resize(500, 700);
    QTRY_COMPARE(window.width(), 500);
    window.column.refresh();
    QCOMPARE(window.rows().size(), 3);
    QCOMPARE(window.rows().front()->y(), 2);
}

void LazyColumnTest::refreshOfALongListLooksOnlyAtWhatIsNear()
{
    People people(10'000);
    Window window(people);
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

QTEST_MAIN(LazyColumnTest)
#include "LazyColumnTest.moc"
