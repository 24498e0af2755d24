#include "toolkit/LazyColumn.h"
#include "toolkit/WindowControls.h"
#include "ui/Pixels.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/look/Theme.h"
#include "ui/people/LivePill.h"
#include "ui/people/MainPanelView.h"
#include "ui/people/WarmthMeter.h"
#include "ui/profile/ProfilePanel.h"
#include "ui/sidebar/SidebarView.h"
#include "ui/window/AmbrelMacApp.h"
#include "ui/window/ContentView.h"
#include "ui/window/ViewEnvironment.h"

#include "support/EndsTheProgram.h"

#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>
#include <QToolTip>
#include <QWindow>
#include <clocale>

using namespace ambrel;

namespace {

AmbrelMacApp &application()
{
    return *static_cast<AmbrelMacApp *>(QCoreApplication::instance());
}

/// The application's window at a size, with nothing hovered.
std::unique_ptr<QWidget> openAt(const QSize &size)
{
    auto window = application().openWindow();
    window->resize(size);
    QCursor::setPos(1910, 1190);
    [&window] { QVERIFY(QTest::qWaitForWindowExposed(window.get())); }();
    [&] { QTRY_COMPARE(window->size(), size); }();
    return window;
}

template <typename View>
QRect placeOf(const QWidget &window)
{
    const auto *const view = window.findChild<View *>();
    return {view->mapTo(&window, QPoint()), view->size()};
}

} // namespace

class WindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesToShrinkBelow980By680AndGivesExtraWidthToTheMainPanel()
    {
        const auto window = openAt({1280, 860});
        const int sidebarWidth = placeOf<SidebarView>(*window).width();
        const int panelWidth = placeOf<MainPanelView>(*window).width();
        QCOMPARE(sidebarWidth, 340);

        window->resize(1480, 860);
        QTRY_COMPARE(placeOf<MainPanelView>(*window).width(), panelWidth + 200);
        QCOMPARE(placeOf<SidebarView>(*window).width(), 340);

        window->resize(300, 200);
        QTRY_COMPARE(window->size(), QSize(980, 680));
        QCOMPARE(window->windowHandle()->minimumSize(), QSize(980, 680)); // what the window manager is told
        QCOMPARE(placeOf<SidebarView>(*window).width(), 340);
    }

    void opensAtAComfortableSizeWithItsTitleForTheWindowManager()
    {
        const auto window = application().openWindow();
        QCOMPARE(window->size(), QSize(1280, 900));
        QVERIFY(window->screen()->availableGeometry().contains(window->geometry()));
        QCOMPARE(window->windowTitle(), QStringLiteral("Ambrel"));
        QVERIFY(window->windowFlags() & Qt::FramelessWindowHint);
        for (const auto *const area : window->findChild<SidebarView *>()->findChildren<QScrollArea *>())
            QCOMPARE(area->verticalScrollBar()->maximum(), 0); // all forms are in sight
    }

    void mainPanelScrollsSidewaysInTheSmallestWindow()
    {
        const auto window = openAt({980, 680});
        auto *const panel = window->findChild<MainPanelView *>();
        auto *const area = qobject_cast<QScrollArea *>(panel->parentWidget()->parentWidget());
        QCOMPARE(area->horizontalScrollBar()->maximum(), panel->width() - area->viewport()->width());
        area->horizontalScrollBar()->setValue(area->horizontalScrollBar()->maximum());
        QVERIFY(window->rect().contains(placeOf<ProfilePanel>(*window))); // within reach, whole
    }

    void theSidewaysScrollBarIsSeenOnlyWhileItScrollsOrIsPointedAt()
    {
        const auto window = openAt({980, 680});
        auto *const area =
            qobject_cast<QScrollArea *>(window->findChild<MainPanelView *>()->parentWidget()->parentWidget());
        auto *const bar = area->horizontalScrollBar();
        const QRect place(bar->mapTo(window.get(), QPoint()), bar->size());
        QVERIFY(place.height() < theme::scrollBarThickness);
        QVERIFY(place.top() > placeOf<MainPanelView>(*window).bottom()); // never over anything
        const QPoint handle(place.left() + 20, place.center().y());
        const QColor atRest = shownAt(*window, handle);
        COMPARE_COLORS(atRest, shownAt(*window, handle - QPoint(0, bar->height() - 1)));
        bar->setValue(3);
        QVERIFY(distance(shownAt(*window, handle), atRest) > 20);
        QTRY_VERIFY(distance(shownAt(*window, handle), atRest) < 5);
        QCursor::setPos(window->mapToGlobal(handle));
        QTRY_VERIFY(distance(shownAt(*window, handle), atRest) > 20);
        QCursor::setPos(1910, 1190);
        QTRY_VERIFY(distance(shownAt(*window, handle), atRest) < 5);
    }

    void theFocusRingOfTheMainPanelStaysClearOfTheWindowControls()
    {
        const auto window = openAt({980, 680});
        auto *const area =
            qobject_cast<QScrollArea *>(window->findChild<MainPanelView *>()->parentWidget()->parentWidget());
        window->activateWindow();
        QTRY_VERIFY(QApplication::focusWidget());
        const QRect controls = placeOf<WindowControls>(*window);
        const QImage before = window->grab(controls).toImage();
        const QImage around = window->grab().toImage();
        area->setFocus(Qt::TabFocusReason);
        QCOMPARE(window->grab(controls).toImage(), before);
        QVERIFY(window->grab().toImage() != around);
    }

    void withoutAnybodyNearbyTheKeyboardScrollsSidewaysToo()
    {
        const auto window = openAt({980, 680});
        auto *const area =
            qobject_cast<QScrollArea *>(window->findChild<MainPanelView *>()->parentWidget()->parentWidget());
        window->activateWindow();
        QTRY_VERIFY(QApplication::focusWidget());
        for (int stop = 0; stop < 40 && QApplication::focusWidget() != area; ++stop)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), area);
        while (area->horizontalScrollBar()->value() < area->horizontalScrollBar()->maximum()) {
            const int before = area->horizontalScrollBar()->value();
            QTest::keyClick(area, Qt::Key_Right);
            QVERIFY(area->horizontalScrollBar()->value() > before);
        }
    }

    void inAMirroredLayoutEverythingStandsInItsMirroredPlace()
    {
        const auto places = [] {
            const auto window = openAt({1280, 860});
            return QList<QRect>{placeOf<SidebarView>(*window),   placeOf<AmbrelLogo>(*window),
                                placeOf<MainPanelView>(*window), placeOf<LivePill>(*window),
                                placeOf<WarmthMeter>(*window),   placeOf<LazyColumn>(*window),
                                placeOf<ProfilePanel>(*window),  placeOf<WindowControls>(*window)};
        };
        QList<QRect> expected = places();
        for (QRect &place : expected)
            place.moveLeft(1280 - 1 - place.right());
        QApplication::setLayoutDirection(Qt::RightToLeft);
        const QList<QRect> mirrored = places();
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QCOMPARE(mirrored, expected);
    }

    void materialsAndDividerLieOnTheGradient()
    {
        const auto window = openAt({1000, 800});
        const auto gradientAt = [](double x, double y) {
            const double t = 2 * (x * 1000 + y * 800) / (1000.0 * 1000 + 800.0 * 800);
            const auto mix = [t](double start, double middle, double end) {
                return float(t < 1 ? start + (middle - start) * t : middle + (end - middle) * (t - 1));
            };
            return QColor::fromRgbF(mix(1.0, 0.98, 0.95), mix(0.95, 0.86, 0.4), mix(0.9, 0.76, 0.3));
        };
        COMPARE_COLORS(shownAt(*window, {5, 400}), gradientAt(5, 400));
        COMPARE_COLORS(shownAt(*window, {25, 400}), over(theme::regularMaterial, gradientAt(25, 400)));
        COMPARE_COLORS(shownAt(*window, {358, 400}), over(theme::divider, gradientAt(358, 400)));
        COMPARE_COLORS(shownAt(*window, {18, 18}), gradientAt(18, 18)); // the corner is round
        COMPARE_COLORS(shownAt(*window, {390, 120}), over(theme::ultraThinMaterial, gradientAt(390, 120)));
        QVERIFY(std::abs(theme::divider.alphaF() - 0.35F) < 0.001F);
    }

    void nothingIsSentWhenTheWindowOpens()
    {
        const auto window = openAt({1280, 860});
        const auto &state = ViewEnvironment::of(*window).state();
        QVERIFY(!state.isBusy);
        QVERIFY(!state.isLive);
        QCOMPARE(state.statusText.value(), QStringLiteral("Ready."));
    }

    void everythingIsLightOnADarkDesktop()
    {
        // main() has written a dark desktop's settings before the application started.
        const auto isLight = [](const QPalette &palette) {
            return palette.color(QPalette::Window).lightness() > 200 &&
                   palette.color(QPalette::Base).lightness() > 200 &&
                   palette.color(QPalette::Button).lightness() > 200 &&
                   palette.color(QPalette::ToolTipBase).lightness() > 200 &&
                   palette.color(QPalette::Text).lightness() < 100 &&
                   palette.color(QPalette::WindowText).lightness() < 100 &&
                   palette.color(QPalette::ToolTipText).lightness() < 100;
        };
        QVERIFY(isLight(QApplication::palette()));
        QVERIFY(isLight(QToolTip::palette()));
        QVERIFY(isLight(QMenu().palette()));
        QVERIFY(isLight(QApplication::palette("QMenu")));
        const auto window = openAt({1280, 860});
        for (const auto *const widget : window->findChildren<QWidget *>())
            QVERIFY2(widget->palette().color(QPalette::Text).lightness() < 100, widget->metaObject()->className());
    }

    void decimalsKeepTheirPointWhateverTheLocale()
    {
        // The toolkit has adopted the environment's locale for everything; numbers alone are taken back from it.
        QVERIFY(QByteArray(setlocale(LC_CTYPE, nullptr)) != "C");
        QCOMPARE(QByteArray(setlocale(LC_NUMERIC, nullptr)), QByteArray("C"));
    }

    void closingTheWindowKeepsTheState()
    {
        auto window = openAt({980, 680});
        auto &state = ViewEnvironment::of(*window).state();
        state.displayName = QStringLiteral("Sam");
        window->close();
        window.reset();
        QCOMPARE(state.displayName.value(), QStringLiteral("Sam"));
        const auto next = openAt({980, 680});
        QCOMPARE(&ViewEnvironment::of(*next).state(), &state);
    }

    void aViewWithoutAStateEndsTheProgram()
    {
        QVERIFY(endsTheProgram([] {
            QWidget orphanage;
            const ContentView orphan(&orphanage);
        }));
    }
};

int main(int argc, char **argv)
{
    // A dark KDE desktop.
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    qputenv("KDE_SESSION_VERSION", "5");
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QSettings desktop(config + QStringLiteral("/kdeglobals"), QSettings::IniFormat);
    for (const char *const group : {"Window", "View", "Button", "Tooltip", "Selection"}) {
        const QString colors = QStringLiteral("Colors:") + QString::fromLatin1(group);
        desktop.setValue(colors + QStringLiteral("/BackgroundNormal"),
                         QStringList{QStringLiteral("30"), QStringLiteral("30"), QStringLiteral("34")});
        desktop.setValue(colors + QStringLiteral("/ForegroundNormal"),
                         QStringList{QStringLiteral("240"), QStringLiteral("240"), QStringLiteral("240")});
    }
    desktop.sync();

    AmbrelMacApp app(argc, argv);
    WindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "WindowTest.moc"
