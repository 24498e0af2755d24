#include "state/Coordinates.h"

#include <QTest>
#include <clocale>
#include <cmath>
#include <limits>

using namespace ambrel;

class CoordinatesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typedTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("degrees");
        const double fallback = 7;
        QTest::newRow("plain") << QStringLiteral("40.5") << 40.5;
        QTest::newRow("signed") << QStringLiteral("-84.5086") << -84.5086;
        QTest::newRow("plus") << QStringLiteral("+1") << 1.0;
        QTest::newRow("no whole part") << QStringLiteral(".5") << 0.5;
        QTest::newRow("no fraction") << QStringLiteral("5.") << 5.0;
        QTest::newRow("exponent") << QStringLiteral("4.05e1") << 40.5;
        QTest::newRow("hexadecimal") << QStringLiteral("0x1p4") << 16.0;
        QTest::newRow("infinity") << QStringLiteral("-INFINITY") << -std::numeric_limits<double>::infinity();
        QTest::newRow("beyond the poles") << QStringLiteral("123") << 123.0;
        QTest::newRow("no-break space") << QStringLiteral("\u00a040.5\u2003") << 40.5;
        QTest::newRow("comma") << QStringLiteral("40,5") << fallback;
        QTest::newRow("empty") << QString() << fallback;
        QTest::newRow("blank") << QStringLiteral(" \n") << fallback;
        QTest::newRow("word") << QStringLiteral("north") << fallback;
        QTest::newRow("unit") << QStringLiteral("40.5 N") << fallback;
        QTest::newRow("degree sign") << QStringLiteral("40.5°") << fallback;
        QTest::newRow("two numbers") << QStringLiteral("40 5") << fallback;
        QTest::newRow("NUL") << QString(QStringLiteral("40.5") + QChar(0) + QStringLiteral("1")) << fallback;
        QTest::newRow("Arabic digits") << QStringLiteral("٤٠") << fallback;
    }
    void typedTexts()
    {
        QFETCH(QString, text);
        QFETCH(double, degrees);
        QVERIFY(parsedCoordinate(text, 7) == degrees);
    }

    void notANumberIsAccepted() { QVERIFY(std::isnan(parsedCoordinate(QStringLiteral("nan"), 7))); }

    void aCommaLocaleChangesNothing()
    {
        // Whatever of these a machine has; the C locale at least is always there.
        for (const char *const locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "C"}) {
            std::setlocale(LC_ALL, locale);
            QCOMPARE(parsedCoordinate(QStringLiteral("40.5"), 7), 40.5);
            QCOMPARE(coordinateText(40.5), QStringLiteral("40.5"));
        }
        std::setlocale(LC_ALL, "C");
    }

    void shortestTexts_data()
    {
        QTest::addColumn<double>("degrees");
        QTest::addColumn<QString>("text");
        QTest::newRow("whole") << 40.0 << QStringLiteral("40.0");
        QTest::newRow("hundred") << 100.0 << QStringLiteral("100.0");
        QTest::newRow("tenth") << 39.1 << QStringLiteral("39.1");
        QTest::newRow("negative") << -84.5086 << QStringLiteral("-84.5086");
        QTest::newRow("zero") << 0.0 << QStringLiteral("0.0");
        QTest::newRow("negative zero") << -0.0 << QStringLiteral("-0.0");
        QTest::newRow("all digits") << 1.0 / 3 << QStringLiteral("0.3333333333333333");
        QTest::newRow("large") << 123456789012.0 << QStringLiteral("123456789012.0");
        QTest::newRow("tiny") << 1.5e-7 << QStringLiteral("1.5e-07");
        QTest::newRow("huge") << 2e20 << QStringLiteral("2e+20");
    }
    void shortestTexts()
    {
        QFETCH(double, degrees);
        QFETCH(QString, text);
        QCOMPARE(coordinateText(degrees), text);
        QVERIFY(parsedCoordinate(text, 7) == degrees);
    }
};

QTEST_APPLESS_MAIN(CoordinatesTest)
#include "CoordinatesTest.moc"
