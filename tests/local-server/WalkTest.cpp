#include "local-server/Walk.h"
#include "local-server/Neighbourhood.h"
#include "local-server/People.h"

#include <QSet>
#include <QTest>

using namespace ambrel;
using namespace ambrel::local;
using std::chrono::seconds;

class WalkTest : public QObject
{
    Q_OBJECT

    static constexpr Coordinates home{39.0458, -84.5086};
    static constexpr Neighbourhood neighbourhood{home, seconds(1'700'000'000), {}};

    static double metersAfter(const Neighbours &neighbours, int index, std::chrono::milliseconds time)
    {
        return distanceMeters(home, neighbours.position(neighbourhood, index, neighbourhood.since + time));
    }

private Q_SLOTS:
    void theFirstNeighbourStartsWithinAHundredMetres()
    {
        for (quint32 seed = 0; seed < 500; ++seed)
            QVERIFY(metersAfter(Neighbours(1, seed, 1), 0, {}) <= 100);
    }

    void somebodyPassesThroughAllTiersWithinAMinute()
    {
        for (quint32 seed = 0; seed < 100; ++seed) {
            const Neighbours neighbours(6, seed, 1);
            int passedThroughAll = 0;
            for (int index = 0; index < 6; ++index) {
                QSet<QString> levels;
                for (seconds time(0); time <= seconds(60); time += seconds(1))
                    levels.insert(heatLevel(heatTier(metersAfter(neighbours, index, time))));
                passedThroughAll += levels.size() == 4 && !levels.contains(QString());
            }
            QVERIFY(passedThroughAll >= 2);
        }
    }

    void nobodyJumps()
    {
        const Neighbours neighbours(12, 7, 1);
        for (int index = 0; index < 12; ++index) {
            Coordinates last = neighbours.position(neighbourhood, index, neighbourhood.since);
            for (std::chrono::milliseconds time(100); time <= seconds(240); time += std::chrono::milliseconds(100)) {
                const Coordinates next = neighbours.position(neighbourhood, index, neighbourhood.since + time);
                QVERIFY(distanceMeters(last, next) < 10);
                last = next;
            }
        }
    }

    void everybodyStaysWithinAMile()
    {
        const Neighbours neighbours(40, 3, 1);
        for (int index = 0; index < 40; ++index) {
            for (seconds time(0); time <= seconds(600); time += seconds(1))
                QVERIFY(metersAfter(neighbours, index, time) <= reachMeters);
        }
    }

    void theSameSeedGivesTheSameWays()
    {
        const Neighbours one(6, 42, 1);
        const Neighbours same(6, 42, 1);
        const Neighbours other(6, 43, 1);
        QCOMPARE(metersAfter(one, 3, seconds(17)), metersAfter(same, 3, seconds(17)));
        QVERIFY(metersAfter(one, 3, seconds(17)) != metersAfter(other, 3, seconds(17)));
    }

    void thePaceScalesTheTime()
    {
        const Neighbours walking(2, 1, 1);
        const Neighbours running(2, 1, 2);
        const Neighbours standing(2, 1, 0);
        QCOMPARE(metersAfter(running, 1, seconds(10)), metersAfter(walking, 1, seconds(20)));
        QCOMPARE(metersAfter(standing, 1, seconds(10)), metersAfter(walking, 1, seconds(0)));
    }

    void everyNeighbourHasAnIdOfTheirOwn()
    {
        constexpr int people = 100;
        QSet<QString> ids;
        for (int index = 0; index < people; ++index) {
            ids.insert(neighbourId(index));
            QCOMPARE(neighbourWithId(neighbourId(index), people), std::optional(index));
            QVERIFY(isNeighbourId(neighbourId(index)));
        }
        QCOMPARE(ids.size(), people);
        QCOMPARE(neighbourWithId(neighbourId(people), people), std::nullopt);
        QVERIFY(!isNeighbourId(QStringLiteral("amelie")));
    }
};

QTEST_GUILESS_MAIN(WalkTest)
#include "WalkTest.moc"
