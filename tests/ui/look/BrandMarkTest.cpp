#include "ui/Pixels.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/look/Painting.h"
#include "ui/look/PinShapes.h"

#include <QAccessible>
#include <QPainter>
#include <QTest>
#include <vector>

using namespace ambrel;

namespace {

using Cubic = std::array<QPointF, 4>;

/// The mark computed from first principles, sharing nothing with the code under test.
class ExpectedMark
{
public:
    ExpectedMark(double size, bool inverted) : m_size(size), m_inverted(inverted)
    {
        m_heart = polygon({{{{0.5, 0.76}, {0.43, 0.65}, {0.24, 0.53}, {0.25, 0.38}}},
                           {{{0.25, 0.38}, {0.26, 0.25}, {0.42, 0.2}, {0.5, 0.34}}},
                           {{{0.5, 0.34}, {0.58, 0.2}, {0.74, 0.25}, {0.75, 0.38}}},
                           {{{0.75, 0.38}, {0.76, 0.53}, {0.57, 0.65}, {0.5, 0.76}}}},
                          QRectF(0.22, 0.22, 0.56, 0.56));
        m_pin = polygon({{{{0.5, 0.94}, {0.2, 0.58}, {0.12, 0.42}, {0.12, 0.22}}},
                         {{{0.12, 0.22}, {0.12, 0.08}, {0.34, 0.02}, {0.5, 0.02}}},
                         {{{0.5, 0.02}, {0.66, 0.02}, {0.88, 0.08}, {0.88, 0.22}}},
                         {{{0.88, 0.22}, {0.88, 0.42}, {0.8, 0.58}, {0.5, 0.94}}}},
                        QRectF(0.38, 0.36 - 0.045, 0.24, 0.28));
    }

    /// The colour of a point given as a fraction of the size, laid over `ground`.
    QColor at(const QPointF &point, const QColor &ground) const
    {
        const QColor red = QColor::fromRgbF(0.784F, 0.247F, 0.196F);
        const QColor cream = QColor::fromRgbF(1.0F, 0.973F, 0.953F);
        const QColor white = Qt::white;
        const double radius = std::hypot(point.x() - 0.5, point.y() - 0.5);
        QColor color = ground;
        if (radius < 0.5)
            color = m_inverted ? red : cream;
        if (std::abs(radius - 0.46) < 0.0275)
            color = over(m_inverted ? QColor::fromRgbF(1, 1, 1, 0.95F) : QColor::fromRgbF(1.0F, 0.84F, 0.79F), color);
        if (radius < 0.3 && m_heart.containsPoint(point, Qt::WindingFill))
            color = m_inverted ? white : red;
        if (radius < 0.2 && m_pin.containsPoint(point, Qt::WindingFill))
            color = m_inverted ? red : cream;
        if (std::hypot(point.x() - 0.5, point.y() - 0.42) < 0.035)
            color = m_inverted ? white : red;
        return color;
    }

    /// The mean of 6 by 6 samples within one pixel; fewer where all of it has one colour.
    std::array<double, 3> pixel(int column, int row, const QColor &ground) const
    {
        const auto sample = [&](double x, double y) { return at(QPointF(column + x, row + y) / m_size, ground); };
        const QColor middle = sample(0.5, 0.5);
        if (sample(0, 0) == middle && sample(1, 0) == middle && sample(0, 1) == middle && sample(1, 1) == middle)
            return {middle.redF() * 255.0, middle.greenF() * 255.0, middle.blueF() * 255.0};

        constexpr int samples = 6;
        std::array<double, 3> sum{};
        for (int i = 0; i < samples * samples; ++i) {
            const QColor color = sample((i % samples + 0.5) / samples, (i / samples + 0.5) / samples);
            sum[0] += color.redF() * 255;
            sum[1] += color.greenF() * 255;
            sum[2] += color.blueF() * 255;
        }
        for (double &channel : sum)
            channel /= samples * samples;
        return sum;
    }

private:
    static QPolygonF polygon(const std::vector<Cubic> &curves, const QRectF &frame)
    {
        constexpr int pieces = 40;
        QPolygonF polygon;
        for (const Cubic &curve : curves) {
            for (int i = 0; i < pieces; ++i) {
                const double t = double(i) / pieces;
                const double u = 1 - t;
                const QPointF point =
                    u * u * u * curve[0] + 3 * u * u * t * curve[1] + 3 * u * t * t * curve[2] + t * t * t * curve[3];
                polygon << QPointF(frame.x() + point.x() * frame.width(), frame.y() + point.y() * frame.height());
            }
        }
        return polygon;
    }

    double m_size;
    bool m_inverted;
    QPolygonF m_heart;
    QPolygonF m_pin;
};

} // namespace

class BrandMarkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyLayerStandsWhereItsGeometrySays_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<qreal>("scale");
        QTest::addColumn<bool>("inverted");
        for (const int size : {52, 82, 94, 160}) {
            for (const qreal scale : {1.0, 1.25, 1.5, 2.0}) {
                for (const bool inverted : {false, true})
                    QTest::addRow("%d at %g%s", size, scale, inverted ? " inverted" : "") << size << scale << inverted;
            }
        }
    }

    void everyLayerStandsWhereItsGeometrySays()
    {
        QFETCH(int, size);
        QFETCH(qreal, scale);
        QFETCH(bool, inverted);

        const QColor ground(20, 200, 90);
        AmbrelLogo logo(size, inverted);
        QImage image((QSizeF(logo.size()) * scale).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(ground);
        logo.render(&image, {}, {}, QWidget::DrawChildren);

        const ExpectedMark expected(size * scale, inverted);
        double total = 0;
        for (int row = 0; row < image.height(); ++row) {
            for (int column = 0; column < image.width(); ++column) {
                const QColor shown = image.pixelColor(column, row);
                const auto wanted = expected.pixel(column, row, ground);
                const double difference =
                    std::max({std::abs(shown.red() - wanted[0]), std::abs(shown.green() - wanted[1]),
                              std::abs(shown.blue() - wanted[2])});
                QVERIFY2(difference < 45,
                         qPrintable(QStringLiteral("%1 at %2, %3").arg(difference).arg(column).arg(row)));
                total += difference;
            }
        }
        QVERIFY(total / (image.width() * image.height()) < 2); // nothing but the smoothing of edges differs
    }

    void shapesDrawFromZeroWhateverTheOriginOfTheirRectangle()
    {
        const QRectF atZero(0, 0, 40, 60);
        const QRectF elsewhere = atZero.translated(17, -5);
        QCOMPARE(HeartPinShape().path(elsewhere), HeartPinShape().path(atZero));
        QCOMPARE(PinCutoutShape().path(elsewhere), PinCutoutShape().path(atZero));
        QCOMPARE(HeartPinShape().path(elsewhere).elementAt(0), QPointF(20, 0.76 * 60));
        QCOMPARE(PinCutoutShape().path(elsewhere).elementAt(0), QPointF(20, 0.94 * 60));
    }

    void outlinesAreMirrorSymmetric()
    {
        for (const QPainterPath &path : {HeartPinShape().path({0, 0, 1, 1}), PinCutoutShape().path({0, 0, 1, 1})}) {
            for (double t = 0; t <= 0.5; t += 0.05) {
                const QPointF left = path.pointAtPercent(t);
                const QPointF right = path.pointAtPercent(1 - t);
                QVERIFY(std::abs(left.x() + right.x() - 1) < 0.01);
                QVERIFY(std::abs(left.y() - right.y()) < 0.01);
            }
        }
    }

    void shadowFadesAroundAPointSevenPixelsBelowTheMark()
    {
        QImage image(160, 160, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paintDiscShadow(painter, QRectF(40, 40, 80, 80), theme::logoShadow, theme::logoShadowBlur,
                        theme::logoShadowOffset);
        painter.end();
        const auto alpha = [&image](int x, int y) { return image.pixelColor(x, y).alphaF(); };

        QVERIFY(std::abs(alpha(80, 87) - 0.13) < 0.01);                    // full strength inside
        QVERIFY(std::abs(alpha(80, 87 + 40) - 0.065) < 0.012);             // half at the rim
        QVERIFY(std::abs(alpha(80, 87 + 40) - alpha(80, 87 - 41)) < 0.01); // centred 7 pixels down
        QCOMPARE(alpha(80, 87 + 40 + 15), 0.0F);                           // gone after the blur
        QVERIFY(alpha(80, 87 + 36) > alpha(80, 87 + 44));
    }

    void screenReadersSeeAGraphicNamedAmbrel()
    {
        AmbrelLogo logo(52);
        auto *const accessible = QAccessible::queryAccessibleInterface(&logo);
        QCOMPARE(accessible->role(), QAccessible::Graphic);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Ambrel"));
    }
};

QTEST_MAIN(BrandMarkTest)
#include "BrandMarkTest.moc"
