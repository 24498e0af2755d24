#include "ui/people/LivePill.h"
#include "ui/Pixels.h"
#include "ui/look/AmbrelStyle.h"
#include "ui/look/Theme.h"

#include <QAccessible>
#include <QTest>

using namespace ambrel;

namespace {

const QColor ground(40, 90, 160);

/// A pill on a plain ground.
struct PillOnGround
{
    QWidget window;
    LivePill *pill;

    explicit PillOnGround(bool isLive) : pill(new LivePill(isLive, &window))
    {
        QPalette colors;
        colors.setColor(QPalette::Window, ground);
        window.setPalette(colors);
        pill->adjustSize();
    }
};

} // namespace

class LivePillTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void readsLiveInWhiteOnRedAndPausedInGreyOnTranslucentWhite()
    {
        PillOnGround shownPill(true);
        LivePill &pill = *shownPill.pill;
        QCOMPARE(pill.text(), QStringLiteral("LIVE"));
        QCOMPARE(pill.palette().color(QPalette::WindowText), QColor(Qt::white));
        const QPoint besideText(8, pill.height() / 2);
        COMPARE_COLORS(shownAt(pill, besideText), QColor(200, 63, 50));

        pill.setLive(false);
        pill.adjustSize();
        QCOMPARE(pill.text(), QStringLiteral("PAUSED"));
        QCOMPARE(pill.palette().color(QPalette::WindowText), theme::secondaryText);
        COMPARE_COLORS(shownAt(pill, besideText), over(QColor::fromRgbF(1, 1, 1, 0.62F), ground));
    }

    void isACapsuleAroundItsPaddedText()
    {
        PillOnGround shownPill(true);
        LivePill &pill = *shownPill.pill;
        const QFontMetrics metrics(pill.font());
        QCOMPARE(pill.height(), metrics.height() + 2 * 7);
        QVERIFY(std::abs(pill.width() - metrics.horizontalAdvance(QStringLiteral("LIVE")) - 2 * 12) <= 1);
        COMPARE_COLORS(shownAt(pill, {1, 3}), ground); // fully rounded ends
        COMPARE_COLORS(shownAt(pill, {pill.height() / 2, 1}), QColor(200, 63, 50));
    }

    void screenReadersHearItsWord()
    {
        LivePill pill(false);
        QCOMPARE(QAccessible::queryAccessibleInterface(&pill)->text(QAccessible::Name), QStringLiteral("PAUSED"));
    }
};

QTEST_MAIN(LivePillTest)
#include "LivePillTest.moc"
