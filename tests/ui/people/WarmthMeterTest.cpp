#include "ui/people/WarmthMeter.h"
#include "ui/Pixels.h"
#include "ui/look/AmbrelStyle.h"
#include "ui/look/Theme.h"

#include "toolkit/ElidedLabel.h"

#include <QTest>
#include <QVBoxLayout>

using namespace ambrel;

namespace {

MatchResult matchNamed(const QString &name)
{
    MatchResult match;
    match.displayName = name;
    match.distanceMeters = 120;
    match.heatLevel = QStringLiteral("HOT");
    return match;
}

/// A shown meter of the width it has in a comfortable window.
struct Meter : WarmthMeter
{
    Meter()
    {
        setFixedWidth(519);
        show();
        const bool isShown = QTest::qWaitForWindowExposed(this);
        Q_ASSERT(isShown);
    }
    QStringList texts() const
    {
        QStringList texts;
        for (const auto *const label : findChildren<ElidedLabel *>())
            texts << label->text();
        return texts;
    }
    QRect mark() const { return findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly)->geometry(); }
};

} // namespace

class WarmthMeterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AmbrelStyle::install(); }

    void namesTheHeatAndTheDistanceOfItsMatch()
    {
        Meter meter;
        meter.setMatch(matchNamed(QStringLiteral("Sam")));
        QCOMPARE(meter.texts(), QStringList({QStringLiteral("200 m"), QStringLiteral("Sam is 120 m away")}));
    }

    void searchesWithoutAMatch()
    {
        Meter meter;
        meter.setMatch(matchNamed(QStringLiteral("Sam")));
        meter.setMatch(std::nullopt);
        QCOMPARE(meter.texts(),
                 QStringList({QStringLiteral("Searching"), QStringLiteral("Go live to look for a match.")}));
    }

    void strangersNamesAreShownAsTheyStandAndInTheirPlace()
    {
        Meter meter;
        meter.setMatch(matchNamed(QStringLiteral("<b>x</b><img src=\"file:///etc/passwd\">")));
        QCOMPARE(meter.texts().last(), QStringLiteral("<b>x</b><img src=\"file:///etc/passwd\"> is 120 m away"));
        meter.setMatch(matchNamed(QStringLiteral("\u05D3\u05E0\u05D4")));
        QCOMPARE(meter.texts().last(), QStringLiteral("\u2068\u05D3\u05E0\u05D4\u2069 is 120 m away"));
    }

    void longNamesWrapInsideTheCard()
    {
        QWidget column;
        auto *const layout = new QVBoxLayout(&column);
        layout->setContentsMargins(0, 0, 0, 0);
        auto *const meter = new WarmthMeter(&column);
        layout->addWidget(meter);
        layout->addStretch();
        column.resize(519, 600);
        column.show();
        QVERIFY(QTest::qWaitForWindowExposed(&column));
        const int height = meter->height();

        meter->setMatch(matchNamed(QStringLiteral("W").repeated(150)));
        const auto *const line = meter->findChildren<ElidedLabel *>().last();
        QTRY_VERIFY(line->height() > 3 * QFontMetrics(line->font()).height());
        QVERIFY(meter->height() > height);
        QCOMPARE(meter->width(), 519);
        QVERIFY(meter->rect().adjusted(18, 18, -18, -18).contains(line->geometry()));
        QTRY_COMPARE(line->height(), line->heightForWidth(line->width())); // nothing is cut off
    }
};

QTEST_MAIN(WarmthMeterTest)
#include "WarmthMeterTest.moc"
