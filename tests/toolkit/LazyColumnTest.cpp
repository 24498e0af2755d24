#include "support/ChildProcess.h"
#include "toolkit/PeopleColumn.h"

#include <QStyle>
#include <QStyleOption>

using namespace ambrel;

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

class LazyColumnTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsStandUnderOneAnotherAcrossTheWholeWidth()
    {
        People people(3);
        PeopleWindow window(people);
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

    void tenThousandRowsNeedOnlyTheWidgetsAroundTheScreen()
    {
        People people(10'000);
        PeopleWindow window(people);
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

    void everyPlaceOfALongListShowsItsOwnRowsAndNoGap()
    {
        People people(500);
        PeopleWindow window(people);
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

    void wheelMovesByPixels()
    {
        People people(100);
        PeopleWindow window(people);
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

    void realWheelOverAButtonInARowScrolls()
    {
        People people(100);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const QPoint place = window.row(1)->keep.mapToGlobal(window.row(1)->keep.rect().center());
        QCOMPARE(ChildProcess::run("xdotool", {"mousemove", QByteArray::number(place.x()),
                                               QByteArray::number(place.y()), "click", "5"}),
                 0);
        QTRY_COMPARE(window.column.verticalScrollBar()->value(),
                     QApplication::wheelScrollLines() * window.column.verticalScrollBar()->singleStep());
    }

    void pageKeysHomeAndEndScrollAColumnWithoutFocusedRow()
    {
        People people(10'000);
        PeopleWindow window(people);
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

    void draggingTheScrollBarReachesTheEnd()
    {
        People people(10'000);
        PeopleWindow window(people);
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

    void narrowerWindowMeasuresTheRowsAgainAndKeepsThePlace()
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

    void largerFontMeasuresTheRowsAgain()
    {
        People people(100);
        PeopleWindow window(people);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const int before = window.rowHeight();
        QFont font = window.font();
        font.setPointSize(3 * font.pointSize());
        window.setFont(font);
        QTRY_COMPARE(window.rowHeight(), window.rows().front()->sizeHint().height());
        QVERIFY(window.rowHeight() > before);
    }
};

QTEST_MAIN(LazyColumnTest)
#include "LazyColumnTest.moc"
