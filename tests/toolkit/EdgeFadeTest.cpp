#include "toolkit/EdgeFade.h"

#include "toolkit/ClearScrollArea.h"

#include <QPainter>
#include <QScrollBar>
#include <QTest>

using namespace ambrel;

namespace {

constexpr int fadeHeight = 12;

/// A white window with an area of red content, 1000 pixels high, at 20, 20.
class RedWindow : public QWidget
{
public:
    RedWindow()
    {
        auto *const content = new QWidget;
        QPalette red(Qt::red);
        red.setColor(QPalette::Window, Qt::red);
        showThrough(area, *content);
        content->setPalette(red);
        content->setAutoFillBackground(true);
        content->resize(150, 1'000);
        area.setGeometry(20, 20, 200, 300);
        fadeEdges(area, fadeHeight);
        resize(240, 340);
        show();
    }
    /// How red it is `pixels` below the area's upper edge, or above its lower one if negative: 0 to 255.
    int rednessAt(int pixels)
    {
        const int y = pixels < 0 ? 320 + pixels : 20 + pixels;
        return 255 - grab().toImage().pixelColor(60, y).green();
    }

    QScrollArea area{this};

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(rect(), Qt::white); }
};

} // namespace

class EdgeFadeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyTheEdgesWhereMoreIsHiddenFade()
    {
        RedWindow window;
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.rednessAt(0), 255);
        QVERIFY(window.rednessAt(-1) < 40);
        window.area.verticalScrollBar()->setValue(100);
        QVERIFY(window.rednessAt(0) < 40);
        QVERIFY(window.rednessAt(-1) < 40);
        window.area.verticalScrollBar()->setValue(window.area.verticalScrollBar()->maximum());
        QVERIFY(window.rednessAt(0) < 40);
        QCOMPARE(window.rednessAt(-1), 255);
    }

    void theFadeGrowsEvenlyTowardsTheEdgeAndEnds()
    {
        RedWindow window;
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.area.verticalScrollBar()->setValue(100);
        for (int y = 1; y < fadeHeight; ++y) {
            QVERIFY(window.rednessAt(y) > window.rednessAt(y - 1));
            QVERIFY(window.rednessAt(-1 - y) > window.rednessAt(-y));
        }
        QCOMPARE(window.rednessAt(fadeHeight), 255);
        QCOMPARE(window.rednessAt(-1 - fadeHeight), 255);
    }

    void whatDoesNotScrollDoesNotFade()
    {
        RedWindow window;
        window.area.widget()->resize(150, 200);
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.rednessAt(0), 255);
        QCOMPARE(window.rednessAt(199), 255);
    }
};

QTEST_MAIN(EdgeFadeTest)
#include "EdgeFadeTest.moc"
