#include "toolkit/ClearScrollArea.h"
#include "toolkit/PeopleColumn.h"

#include <QAccessible>
#include <QTest>

using namespace ambrel;

class AccessibleScrollAreaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void askingForAChildThatIsNotThereFindsNone()
    {
        QScrollArea area;
        showThrough(area, *new QWidget);
        People people(100);
        LazyColumn column(people);
        column.refresh();
        for (QAbstractScrollArea *const asked :
             {static_cast<QAbstractScrollArea *>(&area), static_cast<QAbstractScrollArea *>(&column)}) {
            asked->resize(200, 200);
            asked->show();
            QVERIFY(QTest::qWaitForWindowExposed(asked));
            const auto *const face = QAccessible::queryAccessibleInterface(asked);
            QVERIFY(face->childCount() > 0);
            QCOMPARE(face->child(0)->object(), asked->viewport());
            for (const int index : {-1, face->childCount(), face->childCount() + 1, 1'000})
                QVERIFY(!face->child(index));
        }
    }

    void aWalkThroughGoesOnWhenAScrollBarGoes()
    {
        QScrollArea area;
        auto *const content = new QWidget;
        content->resize(100, 1'000);
        showThrough(area, *content);
        area.resize(200, 200);
        area.show();
        QVERIFY(QTest::qWaitForWindowExposed(&area));
        const auto *const face = QAccessible::queryAccessibleInterface(&area);
        const int count = face->childCount();
        content->resize(100, 100);
        QTRY_VERIFY(!area.verticalScrollBar()->isVisible());
        for (int index = 0; index < count; ++index) {
            if (const auto *const child = face->child(index))
                QVERIFY(child->isValid());
        }
    }
};

QTEST_MAIN(AccessibleScrollAreaTest)
#include "AccessibleScrollAreaTest.moc"
