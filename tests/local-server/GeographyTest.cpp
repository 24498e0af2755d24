#include "local-server/Geography.h"

#include <QTest>
#include <cmath>

using namespace ambrel::local;

class GeographyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knownDistancesAreRight_data()
    {
        QTest::addColumn<double>("fromLatitude");
        QTest::addColumn<double>("fromLongitude");
        QTest::addColumn<double>("toLatitude");
        QTest::addColumn<double>("toLongitude");
        QTest::addColumn<double>("meters");
        const double quarter = 6'371'008.8 * M_PI / 2;
        QTest::newRow("same place") << 39.0458 << -84.5086 << 39.0458 << -84.5086 << 0.0;
        QTest::newRow("one degree north") << 10.0 << 20.0 << 11.0 << 20.0 << quarter / 90;
        QTest::newRow("one degree east at 60 north") << 60.0 << 0.0 << 60.0 << 1.0 << 55'597.0;
        QTest::newRow("pole to equator") << 90.0 << 0.0 << 0.0 << 123.0 << quarter;
        QTest::newRow("opposite points") << 37.3 << 12.0 << -37.3 << -168.0 << quarter * 2;
        QTest::newRow("across the date line") << 0.0 << 179.9995 << 0.0 << -179.9995 << quarter / 90 / 1000;
        QTest::newRow("Berlin to Paris") << 52.52 << 13.405 << 48.8566 << 2.3522 << 877'460.0;
    }
    void knownDistancesAreRight()
    {
        QFETCH(double, fromLatitude);
        QFETCH(double, fromLongitude);
        QFETCH(double, toLatitude);
        QFETCH(double, toLongitude);
        QFETCH(double, meters);
        const double measured = distanceMeters({fromLatitude, fromLongitude}, {toLatitude, toLongitude});
        QVERIFY2(std::abs(measured - meters) <= meters * 1e-5, qPrintable(QString::number(measured, 'f', 2)));
    }

    void aPlaceIsAsFarAwayAsAsked()
    {
        for (const Coordinates origin : {Coordinates{39.0458, -84.5086}, {0, 180}, {89.9999, 10}, {-90, 0}}) {
            for (double bearing = 0; bearing < 6.3; bearing += 0.7) {
                for (const double meters : {0.5, 100.0, 804.67, 1609.34}) {
                    const Coordinates place = placeAt(origin, bearing, meters);
                    QVERIFY(std::abs(place.latitude) <= 90 && std::abs(place.longitude) <= 180);
                    QVERIFY(std::abs(distanceMeters(origin, place) - meters) < 0.01);
                }
            }
        }
    }

    void northAndEastAreWhereTheyBelong()
    {
        const Coordinates north = placeAt({10, 20}, 0, 1000);
        QVERIFY(north.latitude > 10 && std::abs(north.longitude - 20) < 1e-9);
        const Coordinates east = placeAt({10, 20}, M_PI / 2, 1000);
        QVERIFY(east.longitude > 20 && std::abs(east.latitude - 10) < 1e-4);
    }

    void everyTierIncludesItsOuterEdge_data()
    {
        QTest::addColumn<double>("edge");
        QTest::addColumn<QString>("inside");
        QTest::addColumn<QString>("outside");
        QTest::newRow("100 m") << 100.0 << QStringLiteral("VERY_HOT") << QStringLiteral("HOT");
        QTest::newRow("200 m") << 200.0 << QStringLiteral("HOT") << QStringLiteral("AMBREL");
        QTest::newRow("half a mile") << 804.67 << QStringLiteral("AMBREL") << QStringLiteral("WARM");
        QTest::newRow("a mile") << 1609.34 << QStringLiteral("WARM") << QString();
    }
    void everyTierIncludesItsOuterEdge()
    {
        QFETCH(double, edge);
        QFETCH(QString, inside);
        QFETCH(QString, outside);
        QCOMPARE(heatLevel(heatTier(edge)), inside);
        QCOMPARE(heatLevel(heatTier(std::nextafter(edge, 1e9))), outside);
    }

    void zeroDistanceIsTheNearestTier() { QCOMPARE(heatTier(0), HeatTier::VeryHot); }
};

QTEST_GUILESS_MAIN(GeographyTest)
#include "GeographyTest.moc"
