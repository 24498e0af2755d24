#include "toolkit/ReducedMotion.h"
#include "ui/Pixels.h"
#include "ui/ViewFixture.h"
#include "ui/layers/SeeMeFlashOverlay.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/look/Theme.h"
#include "ui/window/ContentView.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QVariantAnimation>
#include <chrono>
#include <vector>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

using Content = ViewFixture<ContentView>;
constexpr QSize windowSize{980, 680};
constexpr QPoint emptySpot{60, 60};
const QColor red(200, 63, 50);

QPointer<SeeMeFlashOverlay> overlayOf(Content &content)
{
    return content.window.findChild<SeeMeFlashOverlay *>();
}

/// Notes when the colouring of an overlay changes: it looks with every event, of which each painting is one.
class FlipWitness : public QObject
{
public:
    using Clock = std::chrono::steady_clock;

    explicit FlipWitness(SeeMeFlashOverlay &overlay)
        : m_logo(overlay.findChild<AmbrelLogo *>()), m_wasInverted(m_logo->isInverted())
    {
        overlay.installEventFilter(this);
    }

    std::vector<Clock::time_point> flips;

protected:
    bool eventFilter(QObject *, QEvent *) override
    {
        if (m_logo && m_logo->isInverted() != m_wasInverted) {
            m_wasInverted = !m_wasInverted;
            flips.push_back(Clock::now());
        }
        return false;
    }

private:
    const QPointer<AmbrelLogo> m_logo;
    bool m_wasInverted;
};

/// Raises the flag and waits until the overlay has faded in.
QPointer<SeeMeFlashOverlay> showFlash(Content &content)
{
    content.state().showSeeMeFlash = true;
    content.refresh();
    const auto overlay = overlayOf(content);
    [&overlay] { QTRY_VERIFY(overlay->findChild<AmbrelLogo *>()->isVisible()); }();
    return overlay;
}

/// A window in which the flash flips and fades in these times.
struct TimedContent : Content
{
    TimedContent(std::chrono::milliseconds flip, std::chrono::milliseconds fade)
        : Content(windowSize, {}, {.flashFlip = flip, .flashFade = fade, .keyQuiet = 0ms})
    {
    }
};

} // namespace

class FlashTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void bothColoringsAreExact()
    {
        Content content(windowSize);
        const auto overlay = showFlash(content);
        auto *const logo = overlay->findChild<AmbrelLogo *>();
        auto *const title = overlay->findChild<QLabel *>();
        QCOMPARE(logo->size(), QSize(160, 160));
        QCOMPARE(title->font().pixelSize(), 52);
        QCOMPARE(title->y() - (logo->y() + logo->height()), 16);
        QCOMPARE(logo->x() + 80, 490);
        QVERIFY(std::abs((logo->y() + title->y() + title->height()) / 2 - 340) <= 1);

        QTRY_VERIFY(!logo->isInverted());
        COMPARE_COLORS(shownAt(*overlay, emptySpot), QColor(Qt::white));
        QCOMPARE(title->palette().color(QPalette::WindowText), theme::ambrelRed);
        COMPARE_COLORS(shownAt(*logo, {80, 20}), QColor(255, 248, 243));

        QTRY_VERIFY(logo->isInverted());
        COMPARE_COLORS(shownAt(*overlay, emptySpot), red);
        QCOMPARE(title->palette().color(QPalette::WindowText), QColor(Qt::white));
        COMPARE_COLORS(shownAt(*logo, {80, 20}), red);
    }

    void coloringSwapsAtEveryInterval()
    {
        QCOMPARE(ViewTimings().flashFlip, 450ms);
        constexpr auto interval = 20ms;
        TimedContent content(interval, 1ms);
        content.state().showSeeMeFlash = true;
        const auto start = FlipWitness::Clock::now();
        QCoreApplication::sendPostedEvents(); // no timer goes off meanwhile
        const FlipWitness witness(*overlayOf(content));
        QTRY_VERIFY(witness.flips.size() >= 3);
        for (int flip = 0; flip < 3; ++flip)
            QVERIFY(witness.flips.at(std::size_t(flip)) - start >= (flip + 1) * interval - 1ms); // whole milliseconds
    }

    void aClickDismissesAtOnceAndNothingFlipsAnyMore()
    {
        TimedContent content(10ms, 180ms);
        content.state().showSeeMeFlash = true;
        QCoreApplication::sendPostedEvents();
        const auto overlay = overlayOf(content);
        const FlipWitness witness(*overlay);
        QVERIFY(!overlay->findChild<AmbrelLogo *>()->isInverted());
        QTest::mouseClick(overlay, Qt::LeftButton, {}, emptySpot);
        QCOMPARE(content.state().showSeeMeFlash.value(), false);
        QCoreApplication::sendPostedEvents();
        const auto flips = witness.flips.size();
        QTRY_VERIFY(!overlay); // has faded out, which takes many intervals
        QCOMPARE(witness.flips.size(), flips);
        QVERIFY(!overlayOf(content));
    }

    void clearingTheFlagStopsTheFlippingAndShowingAgainStartsWhite()
    {
        TimedContent content(10ms, 180ms);
        const auto first = showFlash(content);
        QTRY_VERIFY(first->findChild<AmbrelLogo *>()->isInverted());
        content.state().showSeeMeFlash = false;
        QCoreApplication::sendPostedEvents();
        const FlipWitness witness(*first);
        QTRY_VERIFY(!first);
        QVERIFY(witness.flips.empty());

        content.state().showSeeMeFlash = true;
        QCoreApplication::sendPostedEvents();
        QVERIFY(!overlayOf(content)->findChild<AmbrelLogo *>()->isInverted());
    }

    void fadesInAndOutThroughTheContent()
    {
        QCOMPARE(ViewTimings().flashFade, 180ms);
        TimedContent content(1h, 1h);
        QVERIFY(!isMotionReduced());
        const QColor ground = shownAt(content.window, emptySpot);
        content.state().showSeeMeFlash = true;
        content.refresh();
        const auto overlay = overlayOf(content);
        auto *const fade = overlay->findChild<QVariantAnimation *>();
        for (const bool isIn : {true, false}) {
            QCOMPARE(fade->state(), QAbstractAnimation::Running);
            fade->setCurrentTime(fade->duration() / 2);
            COMPARE_COLORS(shownAt(content.window, emptySpot), over(QColor::fromRgbF(1, 1, 1, 0.5F), ground));
            fade->setCurrentTime(fade->duration());
            COMPARE_COLORS(shownAt(content.window, emptySpot), isIn ? QColor(Qt::white) : ground);
            content.state().showSeeMeFlash = false;
            content.refresh();
        }
        QTRY_VERIFY(!overlay);
    }

    void coversTheWindowAtEverySize()
    {
        Content content(windowSize);
        const auto overlay = showFlash(content);
        QCOMPARE(overlay->geometry(), QRect(0, 0, 980, 680));
        content.window.resize(1200, 900);
        QTRY_COMPARE(overlay->geometry(), QRect(0, 0, 1200, 900));
        QCOMPARE(content.window.childAt(10, 10), overlay.data());
    }

    void screenReadersSeeAPaneWithMarkAndWords()
    {
        Content content(windowSize);
        const auto overlay = showFlash(content);
        auto *const accessible = QAccessible::queryAccessibleInterface(overlay);
        QCOMPARE(accessible->role(), QAccessible::Pane);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("See Me flash"));
        QStringList children;
        for (int i = 0; i < accessible->childCount(); ++i)
            children << accessible->child(i)->text(QAccessible::Name);
        QCOMPARE(children, QStringList({QStringLiteral("Ambrel"), QStringLiteral("SEE ME")}));
    }
};

QTEST_MAIN(FlashTest)
#include "FlashTest.moc"
