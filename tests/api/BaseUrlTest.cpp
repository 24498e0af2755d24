#include "api/BaseUrl.h"
#include "api/AmbrelAPI.h"

#include <QTest>

using namespace ambrel;

class BaseUrlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyOrBlankTextMeansTheProductionServer()
    {
        QCOMPARE(normalizedBaseURL(QString()), productionServer());
        QCOMPARE(normalizedBaseURL(QStringLiteral(u" \t\r\n\u00a0\u2003\u2028 ")), productionServer());
        QCOMPARE(baseURLFromText(QStringLiteral(" \n")), QUrl(productionServer()));
    }

    void blanksAtBothEndsGoAndASlashIsAdded()
    {
        QCOMPARE(normalizedBaseURL(QStringLiteral(" http://host:3000 ")), QStringLiteral("http://host:3000/"));
    }

    void aTextThatEndsInSlashesStaysAsItIs()
    {
        for (const QString &text : {QStringLiteral("http://host:3000/"), QStringLiteral("http://host//")}) {
            QCOMPARE(normalizedBaseURL(text), text);
            QCOMPARE(baseURLFromText(text).toString(), text);
        }
    }

    void aTextWithoutASchemeGetsNone()
    {
        QCOMPARE(normalizedBaseURL(QStringLiteral("host.example")), QStringLiteral("host.example/"));
        const AmbrelAPI api(QStringLiteral("host.example"));
        QCOMPARE(api.baseURL().toString(), QStringLiteral("host.example/"));
        QVERIFY(api.baseURL().scheme().isEmpty());
    }

    void aTextThatIsNoUrlMeansTheDevelopmentServer()
    {
        const AmbrelAPI api(QStringLiteral("http://ho st/"));
        QCOMPARE(api.baseURL(), QUrl(developmentServer()));
    }

    void anEndpointPathFollowsTheBaseDirectly()
    {
        QCOMPARE(appendingPath(QUrl(QStringLiteral("http://host:3000/")), QStringLiteral("api/signup")).toString(),
                 QStringLiteral("http://host:3000/api/signup"));
    }

    void theBuiltInServersAreWholeAddresses()
    {
        const QUrl production(productionServer(), QUrl::StrictMode);
        QCOMPARE(production.scheme(), QStringLiteral("https"));
        QCOMPARE(production.path(), QStringLiteral("/"));
        const QUrl development(developmentServer(), QUrl::StrictMode);
        QCOMPARE(development.scheme(), QStringLiteral("http"));
        QCOMPARE(development.port(), 3000);
        QCOMPARE(development.path(), QStringLiteral("/"));
    }

    void nothingElseIsChangedInTheText()
    {
        QCOMPARE(normalizedBaseURL(QStringLiteral("HTTP://Host/A b//C")), QStringLiteral("HTTP://Host/A b//C/"));
    }

    void theClientTakesTheTextAndItsBaseCanBeReplaced()
    {
        AmbrelAPI api(QStringLiteral("http://one"));
        QCOMPARE(api.baseURL(), QUrl(QStringLiteral("http://one/")));
        api.setBaseURL(QUrl(QStringLiteral("http://two/")));
        QCOMPARE(api.baseURL(), QUrl(QStringLiteral("http://two/")));
    }

    void aPathIsAddedBeneathThePathOfTheBase_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QByteArray>("joined");
        QTest::newRow("path") << QStringLiteral("http://h/v1/") << QByteArray("http://h/v1/health");
        QTest::newRow("path without slash") << QStringLiteral("http://h/v1") << QByteArray("http://h/v1/health");
        QTest::newRow("no path") << QStringLiteral("http://h") << QByteArray("http://h/health");
        QTest::newRow("encoded path") << QStringLiteral("http://h/a%2Fb%25%20c/")
                                      << QByteArray("http://h/a%2Fb%25%20c/health");
        QTest::newRow("dots") << QStringLiteral("http://h/a/../") << QByteArray("http://h/a/../health");
        QTest::newRow("query") << QStringLiteral("http://h/?x=1/") << QByteArray("http://h/health?x=1/");
        QTest::newRow("two slashes") << QStringLiteral("http://h//") << QByteArray("http://h//health");
    }

    void aPathIsAddedBeneathThePathOfTheBase()
    {
        QFETCH(const QString, base);
        QFETCH(const QByteArray, joined);
        QCOMPARE(appendingPath(QUrl(base), QStringLiteral("health")).toEncoded(), joined);
    }
};

QTEST_GUILESS_MAIN(BaseUrlTest)
#include "BaseUrlTest.moc"
