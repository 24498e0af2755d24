#include "ui/window/Arrivals.h"
#include "ui/MatchViews.h"

#include <QTest>

using namespace ambrel;

static QList<MatchResult> people(const QString &names)
{
    QList<MatchResult> people;
    for (const QString &name : names.split(u' ', Qt::SkipEmptyParts))
        people += person(name);
    return people;
}

class ArrivalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newcomersAreToldEvenWhenTheNumberStays_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("now");
        QTest::addColumn<QString>("told");
        QTest::newRow("first") << QString() << QStringLiteral("Ana") << QStringLiteral("Ana is nearby.");
        QTest::newRow("several") << QString() << QStringLiteral("Ana Ben Eve")
                                 << QStringLiteral("Ana is nearby, and 2 more.");
        QTest::newRow("exchanged") << QStringLiteral("Ana Ben") << QStringLiteral("Ana Eve")
                                   << QStringLiteral("Eve is nearby.");
        QTest::newRow("another order") << QStringLiteral("Ana Ben") << QStringLiteral("Ben Ana") << QString();
        QTest::newRow("gone") << QStringLiteral("Ana Ben") << QStringLiteral("Ben") << QString();
        QTest::newRow("right to left") << QString() << QStringLiteral("נור")
                                       << QStringLiteral("\u2068נור\u2069 is nearby.");
    }

    void newcomersAreToldEvenWhenTheNumberStays()
    {
        QFETCH(const QString, before);
        QFETCH(const QString, now);
        QFETCH(const QString, told);
        QCOMPARE(arrivalsText(people(before), people(now)), told);
    }
};

QTEST_APPLESS_MAIN(ArrivalsTest)
#include "ArrivalsTest.moc"
