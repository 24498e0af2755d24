#include "ui/Pixels.h"
#include "ui/look/AmbrelBackground.h"

#include <QTest>

using namespace ambrel;

class BackgroundTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gradientIsLinearFromCornerToCornerThroughItsThreeStops()
    {
        for (const QSize size : {QSize(980, 680), QSize(1280, 860), QSize(1600, 1000)}) {
            AmbrelBackground background;
            background.resize(size);
            const QImage image = background.grab().toImage();
            const int right = size.width() - 1;
            const int bottom = size.height() - 1;
            for (const QPoint point : {QPoint(0, 0), QPoint(size.width() / 2, size.height() / 2), QPoint(right, bottom),
                                       QPoint(120, bottom), QPoint(900, 30), QPoint(700, 650), QPoint(right, 0)})
                COMPARE_COLORS(image.pixelColor(point), expectedAt(point, size));
        }
    }

private:
    static QColor expectedAt(const QPoint &point, const QSize &size)
    {
        const double width = size.width();
        const double height = size.height();
        const double t = (point.x() * width + point.y() * height) / (width * width + height * height);
        const auto mix = [t](double start, double middle, double end) {
            return float(t < 0.5 ? start + (middle - start) * t * 2 : middle + (end - middle) * (t * 2 - 1));
        };
        return QColor::fromRgbF(mix(1.0, 0.98, 0.95), mix(0.95, 0.86, 0.4), mix(0.9, 0.76, 0.3));
    }
};

QTEST_MAIN(BackgroundTest)
#include "BackgroundTest.moc"
