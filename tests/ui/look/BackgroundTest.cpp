#include "ui/Pixels.h"
#include "ui/look/AmbrelBackground.h"

#include <QTest>

using namespace ambrel;

class BackgroundTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gradientRunsFromCornerToCornerThroughItsThreeStops_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("smallest") << QSize(980, 680);
        QTest::newRow("comfortable") << QSize(1280, 860);
        QTest::newRow("large") << QSize(1600, 1000);
    }

    void gradientRunsFromCornerToCornerThroughItsThreeStops()
    {
        QFETCH(QSize, size);
        AmbrelBackground background;
        background.resize(size);
        const QImage image = background.grab().toImage();
        COMPARE_COLORS(image.pixelColor(0, 0), QColor::fromRgbF(1.0F, 0.95F, 0.9F));
        COMPARE_COLORS(image.pixelColor(size.width() / 2, size.height() / 2), QColor::fromRgbF(0.98F, 0.86F, 0.76F));
        COMPARE_COLORS(image.pixelColor(size.width() - 1, size.height() - 1), QColor::fromRgbF(0.95F, 0.4F, 0.3F));
    }

    void gradientIsLinearBetweenItsStops()
    {
        AmbrelBackground background;
        background.resize(1000, 800);
        const QImage image = background.grab().toImage();
        for (const QPoint &point : {QPoint(120, 700), QPoint(900, 30), QPoint(700, 650), QPoint(999, 0)}) {
            const double t = (point.x() * 1000.0 + point.y() * 800.0) / (1000.0 * 1000.0 + 800.0 * 800.0);
            const auto mix = [t](double start, double middle, double end) {
                return float(t < 0.5 ? start + (middle - start) * t * 2 : middle + (end - middle) * (t * 2 - 1));
            };
            COMPARE_COLORS(image.pixelColor(point),
                           QColor::fromRgbF(mix(1.0, 0.98, 0.95), mix(0.95, 0.86, 0.4), mix(0.9, 0.76, 0.3)));
        }
    }
};

QTEST_MAIN(BackgroundTest)
#include "BackgroundTest.moc"
