#include "state/UserIdSuggestion.h"

#include <QRegularExpression>
#include <QTest>

using namespace ambrel;

class UserIdSuggestionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("id");
        QTest::newRow("punctuation") << QStringLiteral("Mary-Ann O'Neil") << QStringLiteral("maryannoneil");
        QTest::newRow("accents") << QStringLiteral("Zoë Çelik") << QStringLiteral("zoëçelik");
        QTest::newRow("separate accent") << QStringLiteral("Zoe\u0308!") << QStringLiteral("zoe\u0308");
        QTest::newRow("numbers") << QStringLiteral("Sam 2 ½ Ⅷ") << QStringLiteral("sam2½ⅷ");
        QTest::newRow("Greek") << QStringLiteral("Ελένη") << QStringLiteral("ελένη");
        QTest::newRow("Chinese") << QStringLiteral("王 小明") << QStringLiteral("王小明");
        QTest::newRow("Arabic") << QStringLiteral("ليلى (١)") << QStringLiteral("ليلى١");
        QTest::newRow("emoji") << QStringLiteral("Kim \U0001F469\u200D\U0001F680\u2764\uFE0F") << QStringLiteral("kim");
        QTest::newRow("letter beyond the first plane") << QStringLiteral("\U00010400!") << QStringLiteral("\U00010428");
    }
    void names()
    {
        QFETCH(QString, name);
        QFETCH(QString, id);
        QCOMPARE(suggestedUserId(name), id);
    }

    void thirtyLettersGiveTwentyFour()
    {
        const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyzabcd");
        QCOMPARE(suggestedUserId(letters), letters.first(24));
    }

    void lettersAreCountedAsAReaderCountsThem()
    {
        const QString letter = QStringLiteral("e\u0301"); // one letter of two code points
        QCOMPARE(suggestedUserId(letter.repeated(30)), letter.repeated(24));
        QCOMPARE(suggestedUserId(QStringLiteral("\U00010428").repeated(30)), QStringLiteral("\U00010428").repeated(24));
    }

    void nothingUsableGivesALowerCaseUuid()
    {
        static const QRegularExpression uuid(
            QStringLiteral("^[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}$"));
        const QString first = suggestedUserId(QStringLiteral("\U0001F600 ...!"));
        QVERIFY2(uuid.match(first).hasMatch(), qPrintable(first));
        QVERIFY(suggestedUserId(QStringLiteral("***")) != first);
    }
};

QTEST_APPLESS_MAIN(UserIdSuggestionTest)
#include "UserIdSuggestionTest.moc"
