#include "toolkit/WindowEdge.h"

#include "support/ChildProcess.h"

#include <QApplication>
#include <QScreen>
#include <QTest>
#include <optional>

using namespace ambrel;

namespace {

constexpr QRect place(200, 150, 400, 300);

class EdgedWindow : public QWidget
{
public:
    EdgedWindow()
    {
        setWindowFlag(Qt::FramelessWindowHint);
        setGeometry(place);
        new WindowEdge(*this, 10, Qt::black); // owned by the window
        m_content.setAutoFillBackground(true);
        m_content.setPalette(QColor(Qt::yellow));
        m_content.resize(2000, 2000);
        show();
        [this] { QVERIFY(QTest::qWaitForWindowExposed(this)); }();
    }

    QColor at(const QPoint &point) { return grab().toImage().pixelColor(point); }
    bool isSquareAndPlain()
    {
        return at({0, 0}) == Qt::yellow && at({width() / 2, 0}) == Qt::yellow &&
               at({width() - 1, height() - 1}) == Qt::yellow;
    }
    bool isRoundWithALine()
    {
        return at({0, 0}).alpha() == 0 && at({width() - 1, height() - 1}).alpha() == 0 &&
               at({width() / 2, 0}) == Qt::black && at({0, height() / 2}) == Qt::black &&
               at({width() / 2, height() / 2}) == Qt::yellow && at({12, 12}) == Qt::yellow;
    }

private:
    QWidget m_content{this};
};

} // namespace

class WindowEdgeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutACompositorTheWindowIsSquareAndPlain()
    {
        EdgedWindow window;
        QVERIFY(window.isSquareAndPlain());
        QVERIFY(!window.testAttribute(Qt::WA_TranslucentBackground));
    }

    void underACompositorItHasRoundCornersAndALine()
    {
        startCompositor();
        EdgedWindow window;
        QTRY_VERIFY(window.isRoundWithALine());
        window.resize(500, 350);
        QTRY_VERIFY(window.width() == 500 && window.isRoundWithALine());
        QVERIFY(!qobject_cast<WindowEdge *>(window.childAt(2, 150))); // clicks go through it
    }

    void maximisedOrTiledItIsSquareAndPlain()
    {
        EdgedWindow window;
        QTRY_VERIFY(window.isRoundWithALine());
        const QRect screen = window.screen()->availableGeometry();
        window.setGeometry(QRect(screen.topLeft(), QSize(screen.width() / 2, screen.height())));
        QTRY_VERIFY(window.isSquareAndPlain());
        window.setGeometry(place);
        QTRY_VERIFY(window.isRoundWithALine());
        window.showMaximized();
        QTRY_VERIFY(window.isSquareAndPlain());
        window.showNormal();
        QTRY_VERIFY(window.isRoundWithALine());
        m_compositor.reset();
        window.resize(450, 300);
        QTRY_VERIFY(window.width() == 450 && window.isSquareAndPlain());
    }

private:
    void startCompositor()
    {
        m_compositor.emplace("xcompmgr");
        QTRY_VERIFY(isCompositorThere());
    }
    static bool isCompositorThere()
    {
        QWidget window;
        new WindowEdge(window, 10, Qt::black); // owned by the window
        return window.testAttribute(Qt::WA_TranslucentBackground);
    }

    std::optional<ChildProcess> m_compositor;
};

QTEST_MAIN(WindowEdgeTest)
#include "WindowEdgeTest.moc"
