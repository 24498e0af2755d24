#include "ui/look/Painting.h"
#include "ui/Pixels.h"

#include <QImage>
#include <QSemaphore>
#include <QTest>
#include <QThreadPool>
#include <atomic>

using namespace ambrel;

namespace {

constexpr QRectF shape{7, 9, 240, 180};
const QColor ground(200, 220, 240);
const QColor translucent(180, 40, 60, 150);

/// What `draw` paints of `shape` at so many pixels a unit.
template <typename Draw>
QImage painted(qreal scale, Draw draw)
{
    QImage image((QSizeF(260, 200) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(ground);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    draw(painter);
    return image;
}

/// The largest difference of any pixel, in steps of 1/255.
int largestDistance(const QImage &a, const QImage &b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            largest = std::max(largest, distance(a.pixelColor(x, y), b.pixelColor(x, y)));
    }
    return largest;
}

/// A picture in which no pixel is like its neighbours, as large as `shape` at that scale.
QImage colourful(qreal scale)
{
    QImage image((shape.size() * scale).toSize(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 7 % 256, y * 11 % 256, (x + y) * 5 % 256));
    }
    return image;
}

/// Occupies every thread of the toolkit's pool until this is gone, or ten seconds have passed.
class BusyPool
{
public:
    BusyPool()
    {
        for (int i = 0; i < m_threads; ++i) {
            m_pool.start([this] {
                m_started.release();
                if (!m_gate.tryAcquire(1, 10'000))
                    m_gaveUp = true;
            });
        }
        m_started.acquire(m_threads);
    }
    ~BusyPool()
    {
        m_gate.release(m_threads);
        m_pool.waitForDone();
    }
    Q_DISABLE_COPY_MOVE(BusyPool)

    /// Whether somebody has waited for the pool so long that it was let go.
    bool gaveUp() const { return m_gaveUp; }

private:
    QThreadPool &m_pool = *QThreadPool::globalInstance();
    const int m_threads = m_pool.maxThreadCount();
    QSemaphore m_started;
    QSemaphore m_gate;
    std::atomic_bool m_gaveUp = false;
};

} // namespace

class PaintingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void roundedRectanglesLookLikeTheToolkits_data()
    {
        QTest::addColumn<qreal>("scale");
        QTest::addColumn<QRectF>("rect");
        for (const qreal scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
            const auto add = [scale](const char *kind, const QRectF &rect) {
                QTest::addRow("%s at %g", kind, scale) << scale << rect;
            };
            add("card", shape);
            add("uneven", shape.translated(0.3, 0.6));
            add("button", QRectF(7, 9, 120, 40));
            add("pill", QRectF(7, 9, 70, 16));
            add("narrower than its corners", QRectF(7, 9, 10, 60));
            add("smaller than its corners", QRectF(7, 9, 10, 7));
        }
    }

    void roundedRectanglesLookLikeTheToolkits()
    {
        QFETCH(qreal, scale);
        QFETCH(QRectF, rect);
        constexpr qreal radius = 8;

        const auto distanceFilled = [&](const QBrush &brush) {
            const QImage expected = painted(scale, [&](QPainter &painter) {
                painter.setRenderHint(QPainter::Antialiasing);
                painter.setPen(Qt::NoPen);
                painter.setBrush(brush);
                painter.drawRoundedRect(rect, radius, radius);
            });
            return largestDistance(
                painted(scale, [&](QPainter &painter) { fillRounded(painter, rect, brush, radius); }), expected);
        };
        // Where an edge crosses pixels, the toolkit rounds what it covers of them differently for a rectangle.
        const QRectF pixels(rect.topLeft() * scale, rect.size() * scale);
        const int rounding = pixels == pixels.toRect() ? 0 : 3;
        QVERIFY(distanceFilled(Qt::red) <= rounding);
        QVERIFY(distanceFilled(translucent) <= rounding);
        QBrush picture(colourful(scale));
        picture.setTransform(QTransform::fromScale(1 / scale, 1 / scale) *
                             QTransform::fromTranslate(rect.x(), rect.y()));
        QVERIFY(distanceFilled(picture) <= rounding);

        for (const qreal width : {1.0, 2.5, 10.0}) {
            if (2 * width > rect.width())
                continue; // no outline
            const qreal inset = width / 2;
            const QImage expected = painted(scale, [&](QPainter &painter) {
                painter.setRenderHint(QPainter::Antialiasing);
                painter.setPen(QPen(translucent, width));
                painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
            });
            const QImage actual =
                painted(scale, [&](QPainter &painter) { strokeRounded(painter, rect, translucent, width, radius); });
            QVERIFY(largestDistance(actual, expected) <= 2);
        }
    }

    void nothingWaitsForTheToolkitsThreads_data()
    {
        QTest::addColumn<qreal>("scale");
        for (const qreal scale : {1.0, 1.5, 2.0})
            QTest::addRow("%g", scale) << scale;
    }

    void nothingWaitsForTheToolkitsThreads()
    {
        QFETCH(qreal, scale);
        QBrush picture(colourful(scale));
        picture.setTransform(QTransform::fromScale(1 / scale, 1 / scale));
        const BusyPool pool;
        painted(scale, [&](QPainter &painter) {
            fillRounded(painter, shape, translucent);
            fillRounded(painter, shape, picture);
            strokeRounded(painter, shape, translucent);
            strokeFocusRing(painter, shape);
            fillRounded(painter, QRectF(0, 0, 120, 40), Qt::red);
        });
        QVERIFY(!pool.gaveUp());
    }

    void theClipOfThePainterHolds()
    {
        const QImage image = painted(1, [](QPainter &painter) {
            painter.setClipRect(QRect(50, 0, 50, 200));
            fillRounded(painter, shape, Qt::red);
            strokeRounded(painter, shape, Qt::blue);
        });
        for (const int y : {9, 12, 100, 188}) {
            COMPARE_COLORS(image.pixelColor(49, y), ground);
            COMPARE_COLORS(image.pixelColor(100, y), ground);
        }
        COMPARE_COLORS(image.pixelColor(75, 100), QColor(Qt::red));
        COMPARE_COLORS(image.pixelColor(75, 9), QColor(Qt::blue));
    }
};

QTEST_MAIN(PaintingTest)
#include "PaintingTest.moc"
