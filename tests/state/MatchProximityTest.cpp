#include "state/MatchProximity.h"
#include "support/EndsTheProgram.h"

#include <QTest>
#include <clocale>
#include <limits>

using namespace ambrel;

namespace {

const PhotoText first{QStringLiteral("data:,first")};
const PhotoText second{QStringLiteral("data:,second")};
const PhotoText third{QStringLiteral("data:,third")};
const QList<PhotoText> threePhotos{first, second, third};

MatchResult matchAt(const QString &heatLevel, const QList<PhotoText> &photos = threePhotos)
{
    MatchResult match;
    match.heatLevel = heatLevel;
    match.profilePhotos = photos;
    return match;
}

QString distanceText(double metres)
{
    MatchResult match;
    match.distanceMeters = metres;
    return friendlyDistance(match);
}

} // namespace

class MatchProximityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void veryHotShowsEveryPhotoOpensThemAndAllowsSeeMe()
    {
        const MatchResult match = matchAt(QStringLiteral("VERY_HOT"));
        QVERIFY(isPhotoVisible(match));
        QVERIFY(visiblePhotos(match) == threePhotos);
        QVERIFY(canOpenPhoto(match));
        QVERIFY(canSeeMe(match));
        QCOMPARE(heatLabel(match), QStringLiteral("100 m"));
    }

    void hotShowsTheFirstPhotoAndOpensItWithoutSeeMe()
    {
        const MatchResult match = matchAt(QStringLiteral("HOT"));
        QVERIFY(isPhotoVisible(match));
        QVERIFY(visiblePhotos(match) == QList{first});
        QVERIFY(canOpenPhoto(match));
        QVERIFY(!canSeeMe(match));
        QCOMPARE(heatLabel(match), QStringLiteral("200 m"));
    }

    void ambrelShowsTheFirstPhotoClosed()
    {
        const MatchResult match = matchAt(QStringLiteral("AMBREL"));
        QVERIFY(isPhotoVisible(match));
        QVERIFY(visiblePhotos(match) == QList{first});
        QVERIFY(!canOpenPhoto(match));
        QVERIFY(!canSeeMe(match));
        QCOMPARE(heatLabel(match), QStringLiteral("1/2 mi"));
    }

    void anUnknownLevelHidesPhotosYetStillListsTheFirst_data()
    {
        QTest::addColumn<QString>("heatLevel");
        QTest::newRow("another word") << QStringLiteral("SCORCHING");
        QTest::newRow("lower case") << QStringLiteral("hot");
        QTest::newRow("blank after it") << QStringLiteral("HOT ");
        QTest::newRow("empty") << QString();
    }
    void anUnknownLevelHidesPhotosYetStillListsTheFirst()
    {
        QFETCH(const QString, heatLevel);
        const MatchResult match = matchAt(heatLevel);
        QVERIFY(!isPhotoVisible(match));
        QVERIFY(visiblePhotos(match) == QList{first});
        QVERIFY(!canOpenPhoto(match));
        QVERIFY(!canSeeMe(match));
        QCOMPARE(heatLabel(match), QStringLiteral("1 mi"));
    }

    void hotWithoutAnyPhotoHasNothingToOpen()
    {
        const MatchResult match = matchAt(QStringLiteral("HOT"), {});
        QVERIFY(isPhotoVisible(match));
        QVERIFY(visiblePhotos(match).isEmpty());
        QVERIFY(!canOpenPhoto(match));
    }

    void theProfilePhotoStandsInForAnEmptyList_data()
    {
        QTest::addColumn<QString>("heatLevel");
        QTest::newRow("VERY_HOT") << QStringLiteral("VERY_HOT");
        QTest::newRow("HOT") << QStringLiteral("HOT");
        QTest::newRow("AMBREL") << QStringLiteral("AMBREL");
        QTest::newRow("other") << QStringLiteral("COLD");
    }
    void theProfilePhotoStandsInForAnEmptyList()
    {
        QFETCH(const QString, heatLevel);
        MatchResult match = matchAt(heatLevel, {});
        match.profilePhoto = second;
        QVERIFY(visiblePhotos(match) == QList{second});
        match.profilePhoto = PhotoText(); // an empty text counts as a photo
        QVERIFY(visiblePhotos(match) == QList{PhotoText()});
        match.profilePhotos = {third};
        QVERIFY(visiblePhotos(match) == QList{third});
    }

    void distancesReadAsMetresBelowAKilometreAndAsMilesFromThere_data()
    {
        QTest::addColumn<double>("metres");
        QTest::addColumn<QString>("text");
        const auto row = [](double metres, const char *text) {
            QTest::newRow(text) << metres << QString::fromLatin1(text);
        };
        row(0.4, "0 m");
        row(42.4, "42 m");
        row(999.4, "999 m");
        row(999.5, "1000 m");
        row(1000, "0.6 mi");
        row(1609.34, "1.0 mi");
        row(5000, "3.1 mi");
    }
    void distancesReadAsMetresBelowAKilometreAndAsMilesFromThere()
    {
        QFETCH(const double, metres);
        QFETCH(const QString, text);
        QCOMPARE(distanceText(metres), text);
    }

    void halfMetresRoundAwayFromZero()
    {
        QCOMPARE(distanceText(0.5), QStringLiteral("1 m"));
        QCOMPARE(distanceText(2.5), QStringLiteral("3 m"));
        QCOMPARE(distanceText(-0.6), QStringLiteral("-1 m"));
        QCOMPARE(distanceText(-2.5), QStringLiteral("-3 m"));
        QCOMPARE(distanceText(-0.4), QStringLiteral("0 m"));
        QCOMPARE(distanceText(-0.0), QStringLiteral("0 m"));
    }

    void milesRoundAsTheCLibraryRounds()
    {
        // 0.25 lies exactly between two texts: C rounds half to even
        QCOMPARE(distanceText(1609.34 * 1.25), QStringLiteral("1.2 mi"));
        for (double metres = 1000; metres < 20'000; metres += 7.3)
            QCOMPARE(distanceText(metres), QString::asprintf("%.1f mi", metres / 1609.34));
    }

    void distancesThatAreNoNumbersReadAsTheCLibraryPrintsThem()
    {
        QCOMPARE(distanceText(std::numeric_limits<double>::quiet_NaN()), QStringLiteral("nan mi"));
        QCOMPARE(distanceText(std::numeric_limits<double>::infinity()), QStringLiteral("inf mi"));
        QCOMPARE(distanceText(1e308).size(), 305 + 5);
    }

    void theDecimalPointDoesNotFollowTheLocale()
    {
        const QByteArray before = std::setlocale(LC_ALL, nullptr);
        for (const char *name : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"}) {
            std::setlocale(LC_ALL, name); // where it is installed
            QCOMPARE(distanceText(5000), QStringLiteral("3.1 mi"));
        }
        std::setlocale(LC_ALL, before.constData());
    }

    void aDistanceBelowThe64BitIntegersEndsTheProgram()
    {
        QCOMPARE(distanceText(-9223372036854775808.0), QStringLiteral("-9223372036854775808 m"));
        QVERIFY(endsTheProgram([] { distanceText(-9.3e18); }));
        QVERIFY(endsTheProgram([] { distanceText(-std::numeric_limits<double>::infinity()); }));
        QVERIFY(!endsTheProgram([] { distanceText(-9.2e18); }));
    }
};

QTEST_APPLESS_MAIN(MatchProximityTest)
#include "MatchProximityTest.moc"
