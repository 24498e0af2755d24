#include "gallery/SceneWindow.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/people/LivePill.h"
#include "ui/people/WarmthMeter.h"
#include "ui/profile/LargeProfilePhoto.h"
#include "ui/sidebar/SidebarView.h"

#include <QLabel>
#include <QTest>

using namespace ambrel;

namespace {

/// How steep the edges are: the squares of all steps from one pixel to the next, summed up. Smearing a step over two
/// pixels halves its part.
double steepness(const QImage &picture)
{
    double sum = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 1; x < picture.width(); ++x) {
            const int step = qGray(picture.pixel(x, y)) - qGray(picture.pixel(x - 1, y));
            sum += step * step;
        }
    }
    return sum;
}

} // namespace

/// Runs at several scale factors.
class SharpnessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsBlurredAtThisScale()
    {
        SceneWindow window(sceneNamed(QStringLiteral("live-3")));
        const QImage sharp = window.picture();
        const qreal scale = sharp.devicePixelRatio();
        QCOMPARE(scale, qEnvironmentVariable("QT_SCALE_FACTOR").toDouble());

        // What it would look like if it were drawn for scale 1 and enlarged.
        QImage small(window.widget().size(), QImage::Format_RGB32);
        window.widget().render(&small);
        const QImage blurred = small.scaled(sharp.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);

        const auto &sidebar = window.find<SidebarView>();
        for (const QWidget *const view :
             {static_cast<const QWidget *>(sidebar.findChild<QLabel *>()),
              static_cast<const QWidget *>(window.find<WarmthMeter>().findChild<AmbrelLogo *>()),
              static_cast<const QWidget *>(&window.find<LivePill>()),
              static_cast<const QWidget *>(&window.find<LargeProfilePhoto>())}) {
            const QRect place = window.placeOf(*view);
            const QRect pixels(place.topLeft() * scale, place.size() * scale);
            const double gain = steepness(sharp.copy(pixels)) / steepness(blurred.copy(pixels));
            QVERIFY2(
                gain > 1.15,
                qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(view->metaObject()->className())).arg(gain)));
        }
    }
};

int main(int argc, char **argv)
{
    SceneApplication application(argc, argv);
    SharpnessTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SharpnessTest.moc"
