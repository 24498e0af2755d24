// What a column does while a popup or a layer that covers it has the focus, and who has it afterwards.
#include "support/Names.h"
#include "toolkit/PeopleColumn.h"

using namespace ambrel;

namespace {

/// The reasons for which widgets get the focus.
class FocusReasons : public QObject
{
public:
    FocusReasons() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::FocusIn && watched->isWidgetType())
            last = static_cast<QFocusEvent *>(event)->reason();
        return false;
    }
    Qt::FocusReason last = Qt::NoFocusReason;
};

} // namespace

class LazyColumnFocusReturnTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window.reset();
        m_people = std::make_unique<People>(0);
        m_window = std::make_unique<PeopleWindow>(*m_people);
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        list({ana, ben, cleo, dan});
    }

    void rowThatIsToGetTheFocusBackStaysItself()
    {
        auto &dismiss = row(ben)->dismiss;
        dismiss.setFocus();
        takeFocus();
        list({eve, fay, cleo, ben, ana});
        QCOMPARE(&row(ben)->dismiss, &dismiss);
        dismiss.setFocus(Qt::PopupFocusReason);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QVERIFY(row(ana)->dismiss.hasFocus());
    }

    void rowThatIsToGetTheFocusBackIsNotRecycledByScrolling()
    {
        m_people->ids = People(1'000).ids;
        m_window->column.refresh();
        auto &keep = m_window->row(1)->keep;
        keep.setFocus();
        takeFocus();
        for (int value = 0; value <= 30'000; value += 300)
            m_window->scrollTo(value);
        QVERIFY(m_window->row(1));
        QCOMPARE(&m_window->row(1)->keep, &keep);
    }

    void whenItsRowLeavesTheFocusComesBackToTheNextRow()
    {
        row(ben)->dismiss.setFocus();
        takeFocus();
        list({ana, cleo, dan, eve, fay});
        giveBack();
        QVERIFY(row(cleo)->hasFocus()); // the whole row, not the button that would dismiss it
    }

    void whenTheNextRowLeavesAsWellTheFocusComesBackToTheOneAfter()
    {
        row(ben)->dismiss.setFocus();
        takeFocus();
        list({ana, cleo, dan});
        list({ana, dan});
        giveBack();
        QVERIFY(row(dan)->hasFocus());
    }

    void whenTheListIsEmptiedTheFocusComesBackToTheColumn()
    {
        row(ben)->dismiss.setFocus();
        takeFocus();
        list({});
        list({eve});
        giveBack();
        QVERIFY(m_window->column.hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(row(eve)->hasFocus());
    }

    void focusTakenWhileTheWindowIsInactiveComesBackToTheNextRow()
    {
        row(ben)->dismiss.setFocus();
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        takeFocus();
        list({ana, cleo, dan, eve, fay});
        giveBack();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_VERIFY(row(cleo)->hasFocus());
    }

    void refreshLeavesTheFocusWithWhoeverTookIt()
    {
        row(ben)->dismiss.setFocus();
        takeFocus();
        for (const QStringList &names : {QStringList{ben, ana}, QStringList{ana}, QStringList{}, QStringList{eve}}) {
            list(names);
            QVERIFY(m_window->after.hasFocus());
        }
    }

    void focusThatComesBackDoesNotScroll()
    {
        m_people->ids = People(1'000).ids;
        m_window->column.refresh();
        QTest::mouseClick(m_window->row(0), Qt::LeftButton, {}, {5, 5});
        QPointer<QWidget> clicked = QApplication::focusWidget();
        m_window->scrollTo(300);
        takeFocus();
        clicked->setFocus(Qt::PopupFocusReason);
        QVERIFY(m_window->row(0)->hasFocus());
        QCOMPARE(m_window->column.verticalScrollBar()->value(), 300);
    }

    void focusThatIsTakenForGoodIsNotKept()
    {
        row(ben)->dismiss.setFocus();
        m_window->after.setFocus(Qt::MouseFocusReason);
        list({ana, cleo});
        giveBack();
        QVERIFY(m_window->column.hasFocus());
    }

    void nextRowGetsTheFocusForTheReasonOfTheRowThatLeft()
    {
        const FocusReasons reasons;
        QTest::mouseClick(&row(ben)->dismiss, Qt::LeftButton);
        list({ana, cleo, dan, eve});
        QVERIFY(row(cleo)->hasFocus());
        QCOMPARE(reasons.last, Qt::MouseFocusReason);
        list({ana, dan, eve});
        QVERIFY(row(dan)->hasFocus());
        QCOMPARE(reasons.last, Qt::MouseFocusReason);

        row(dan)->keep.setFocus(Qt::TabFocusReason);
        takeFocus();
        list({ana, eve});
        giveBack();
        QVERIFY(row(eve)->hasFocus());
        QCOMPARE(reasons.last, Qt::TabFocusReason);
    }

private:
    /// Takes the focus as an alert does.
    void takeFocus() { m_window->after.setFocus(Qt::PopupFocusReason); }
    void giveBack() { m_window->column.setFocus(Qt::PopupFocusReason); }
    void list(const QStringList &names)
    {
        m_people->ids = names;
        m_window->column.refresh();
    }
    CardRow *row(const QString &name) const { return m_window->row(name); }

    std::unique_ptr<People> m_people;
    std::unique_ptr<PeopleWindow> m_window;
};

QTEST_MAIN(LazyColumnFocusReturnTest)
#include "LazyColumnFocusReturnTest.moc"
