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

    void aTextThatIsNoUrlMeansTheDevelopmentServer_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *const text :
             {"http://ho st/",    "http://host/a b",  "http://h/\"quoted\"", "http://h/<a>", "http://h/{a}",
              "http://h/a|b",     "http://h/a\\b",    "http://h/%",          "http://h/%4",  "http://h/%zz",
              "http://h:30o0/",   "http://[::1/",     "http://[::1z]/",      "http://h]/",   "http://h/[a]",
              "http://h/#a#b",    "127.0.0.1:3000",   "1http://h/",          ":3000",        "ho\u00a0st",
              "http://a\u2003b/", "http://h/\u0085x", "http://h/\x7f",       "http://h\n/",  "http://a@b@c/"})
            QTest::newRow(text) << QString::fromUtf8(text);
        QTest::newRow("half a character") << QStringLiteral("http://h") + QChar(0xd83e) + u'/';
    }

    void aTextThatIsNoUrlMeansTheDevelopmentServer()
    {
        QFETCH(const QString, text);
        const AmbrelAPI api(text);
        QCOMPARE(api.baseURL(), QUrl(developmentServer()));
    }

    void anAddressThatCannotBeUsedIsNoOther_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *const text :
             {"http://h:99999/", "http://h:123456789012345678901234567890/", "http://h-/", "http://-h/", "http://a..b/",
              "http://h%41/", "http://h%E2%80%8Bi/", "http://exa\u200bmple.org/", "http://exa\u200dmple.org/",
              "http://exa\u00admple.org/", "http://exa\ufeffmple.org/", "http://exa\u2060mple.org/",
              "http://exa\ufe0fmple.org/", "http://exa\u034fmple.org/", "http://exa\u202emple.org/",
              "http://exa\u2066mple.org/", "http://u@exa\u200bmple.org:3000/x?y#z", "//exa\u200bmple.org/",
              "http://[1.2.3.4]/"})
            QTest::newRow(text) << QString::fromUtf8(text);
    }

    void anAddressThatCannotBeUsedIsNoOther()
    {
        QFETCH(const QString, text);
        QVERIFY(!AmbrelAPI(text).baseURL().isValid());
    }

    void everyAddressThatCanBeUsedIsTaken_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *const text : {"http://h/",
                                       "HTTPS://H:443/",
                                       "http://h:/",
                                       "http://[::1]:3000/",
                                       "http://[2001:db8::1.2.3.4]/",
                                       "http://user:pass@h/",
                                       "http://h/v1/a;b=c,d@e:f/",
                                       "http://h/%41%20/",
                                       "http://h/?a=b/?c/",
                                       "http://h/#a/?b/",
                                       "http://b\u00fccher.example/stra\u00dfe/",
                                       "http://\u4e2d\u6587.example/",
                                       "http://h_x/",
                                       "http://h./",
                                       "host.example/",
                                       "./",
                                       "../a:b/",
                                       "//h/",
                                       "ftp://h/",
                                       "localhost:3000/",
                                       "mailto:a@b/",
                                       "http:/h/"})
            QTest::newRow(text) << QString::fromUtf8(text);
    }

    void everyAddressThatCanBeUsedIsTaken()
    {
        QFETCH(const QString, text);
        QVERIFY(AmbrelAPI(text).baseURL().isValid());
        QCOMPARE(AmbrelAPI(text).baseURL(), QUrl(text, QUrl::StrictMode));
    }

    void aHugeAddressIsJudgedAtOnce()
    {
        const QString many(1000000, u'a');
        QVERIFY(AmbrelAPI(QStringLiteral("http://h/") + many).baseURL().isValid());
        QCOMPARE(AmbrelAPI(QStringLiteral("http://h/") + many + u' ' + many).baseURL(), QUrl(developmentServer()));
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
