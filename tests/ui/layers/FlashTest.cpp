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

        COMPARE_COLORS(shownAt(*overlay, emptySpot), QColor(Qt::white));
        QVERIFY(!logo->isInverted());
        QCOMPARE(title->palette().color(QPalette::WindowText), theme::ambrelRed);
        COMPARE_COLORS(shownAt(*logo, {80, 20}), QColor(255, 248, 243));

        QTRY_VERIFY(logo->isInverted());
        COMPARE_COLORS(shownAt(*overlay, emptySpot), red);
        QCOMPARE(title->palette().color(QPalette::WindowText), QColor(Qt::white));
        COMPARE_COLORS(shownAt(*logo, {80, 20}), red);
    }

    void coloringSwapsEvery450Milliseconds()
    {
        Content content(windowSize);
        content.state().showSeeMeFlash = true;
        const auto start = FlipWitness::Clock::now();
        content.refresh();
        const FlipWitness witness(*overlayOf(content));
        QTRY_VERIFY(witness.flips.size() >= 3);
        auto shortest = FlipWitness::Clock::duration::max();
        auto last = start;
        for (int flip = 0; flip < 3; ++flip) {
            const auto moment = witness.flips.at(std::size_t(flip));
            QVERIFY(moment - start >= (flip + 1) * 450ms - 5ms); // timers count whole milliseconds
            shortest = std::min(shortest, moment - std::exchange(last, moment));
        }
        QVERIFY(shortest < 2 * 450ms); // a busy machine may delay some, but not all of them
    }

    void aClickInTheFirst450MillisecondsDismissesAtOnceAndNothingFlips()
    {
        Content content(windowSize);
        content.state().showSeeMeFlash = true;
        content.refresh();
        const auto overlay = overlayOf(content);
        const FlipWitness witness(*overlay);
        QVERIFY(!overlay->findChild<AmbrelLogo *>()->isInverted());
        QTest::mouseClick(overlay, Qt::LeftButton, {}, emptySpot);
        QCOMPARE(content.state().showSeeMeFlash.value(), false);
        QTRY_VERIFY(!overlay); // has faded out
        QVERIFY(witness.flips.empty());
        QVERIFY(!overlayOf(content));
    }

    void clearingTheFlagStopsTheFlippingAndShowingAgainStartsWhite()
    {
        Content content(windowSize);
        const auto first = showFlash(content);
        QTRY_VERIFY(first->findChild<AmbrelLogo *>()->isInverted());
        const FlipWitness witness(*first);
        content.state().showSeeMeFlash = false;
        content.refresh();
        QTRY_VERIFY(!first);
        QVERIFY(witness.flips.empty()); // it stayed red

        const auto second = showFlash(content);
        QVERIFY(!second->findChild<AmbrelLogo *>()->isInverted());
        COMPARE_COLORS(shownAt(*second, emptySpot), QColor(Qt::white));
    }

    void escapeSpaceAndEnterDismiss()
    {
        Content content(windowSize);
        for (const auto key : {Qt::Key_Escape, Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
            const auto overlay = showFlash(content);
            QVERIFY(overlay->hasFocus());
            QTest::keyClick(QApplication::focusWidget(), key);
            QCOMPARE(content.state().showSeeMeFlash.value(), false);
            QTRY_VERIFY(!overlay);
        }
    }

    void focusReturnsToWhereItWas()
    {
        Content content(windowSize);
        auto *const email = content.named<QLineEdit>(QStringLiteral("Email"));
        email->setFocus();
        QTest::keyClicks(email, QStringLiteral("sam"));
        const auto overlay = showFlash(content);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); // goes nowhere
        QVERIFY(overlay->hasFocus());
        QTest::keyClick(overlay, Qt::Key_Escape);
        QTRY_VERIFY(email->hasFocus());
        QTest::keyClicks(email, QStringLiteral("@"));
        QCOMPARE(content.state().email.value(), QStringLiteral("sam@"));
    }

    void fadesInUnlessMotionIsReduced()
    {
        Content content(windowSize);
        content.state().showSeeMeFlash = true;
        content.refresh();
        QVERIFY(!isMotionReduced());
        const QColor start = shownAt(content.window, emptySpot);
        QVERIFY(start != QColor(Qt::white)); // the content still shines through
        QTRY_COMPARE(shownAt(content.window, emptySpot), QColor(Qt::white));
    }

    void fadesOutThroughTheContent()
    {
        Content content(windowSize);
        const QColor ground = shownAt(content.window, emptySpot);
        const auto overlay = showFlash(content);
        content.state().showSeeMeFlash = false;
        content.refresh();
        auto *const fade = overlay->findChild<QVariantAnimation *>();
        QCOMPARE(fade->state(), QAbstractAnimation::Running);
        fade->pause(); // so that no slow machine misses the middle of it
        fade->setCurrentTime(fade->duration() / 2);
        COMPARE_COLORS(shownAt(content.window, emptySpot), over(QColor::fromRgbF(1, 1, 1, 0.5F), ground));
        fade->resume();
        QTRY_VERIFY(!overlay);
        COMPARE_COLORS(shownAt(content.window, emptySpot), ground);
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
