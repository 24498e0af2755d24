#include "AssignmentJournal.h"
#include "FlowFixture.h"

using namespace ambrel;

class ServerStatusTest : public QObject
{
    Q_OBJECT

    static ScriptedReply version(bool apkAvailable)
    {
        AppVersionResponse record;
        record.versionName = QStringLiteral("1.4");
        record.apkAvailable = apkAvailable;
        return FlowFixture::record(record);
    }

private Q_SLOTS:
    void healthWithoutNameAndVersionReadsAmbrelIsOnline()
    {
        FlowFixture fixture;
        fixture.server.on("GET", "/health", ScriptedReply::json("{\"ok\":true}"));
        fixture.server.on("GET", "/api/app-version", version(true));
        fixture.run(fixture.state.checkServerStatus());
        QCOMPARE(fixture.state.serverStatusText.value(), QStringLiteral("Ambrel is online."));
        QCOMPARE(fixture.state.betaStatusText.value(), QStringLiteral("Android beta 1.4 is available."));
    }

    void unhealthyServerIsNamedWithoutItsVersion()
    {
        FlowFixture fixture;
        fixture.server.on("GET", "/health", ScriptedReply::json(R"({"ok":false,"name":"Core","version":"2.0"})"));
        fixture.server.on("GET", "/api/app-version", version(false));
        fixture.run(fixture.state.checkServerStatus());
        QCOMPARE(fixture.state.serverStatusText.value(), QStringLiteral("Core responded, but is not healthy."));
        QCOMPARE(fixture.state.betaStatusText.value(),
                 QStringLiteral("Android beta 1.4 is advertised, but no APK is uploaded."));
    }

    void unreachableServerShowsTheTransportErrorAndIsNotBusy()
    {
        FlowFixture fixture;
        QString address;
        {
            const ScriptedServer closed;
            address = closed.url();
        }
        fixture.state.serverBaseURL = address;
        fixture.run(fixture.state.checkServerStatus());
        QCOMPARE(fixture.state.serverStatusText.value(), QStringLiteral("Could not connect to the server."));
        QCOMPARE(fixture.state.betaStatusText.value(), QStringLiteral("Android beta status unavailable."));
        QVERIFY(!fixture.state.isBusy);
    }

    void trailingSlashIsGoneEvenWhenTheServerCannotBeReached()
    {
        FlowFixture fixture;
        fixture.server.on("GET", "/health", ScriptedReply().close());
        fixture.state.serverBaseURL = fixture.server.url();
        const auto check = fixture.state.checkServerStatus();
        QCOMPARE(fixture.state.serverBaseURL.value(), fixture.server.url().chopped(1));
        QTRY_VERIFY(!fixture.state.isBusy);
        QCOMPARE(fixture.state.serverStatusText.value(), QStringLiteral("The network connection was lost."));
    }

    void nameAndVersionStandInTheLineInOrder()
    {
        FlowFixture fixture;
        fixture.server.on("GET", "/health", ScriptedReply::json(R"({"ok":true,"name":"Core","version":"2.0"})"));
        fixture.server.on("GET", "/api/app-version", version(true));
        AssignmentJournal journal(fixture.state);
        fixture.run(fixture.state.checkServerStatus());
        QCOMPARE(journal.entries(),
                 (QStringList{QStringLiteral("serverBaseURL=") + fixture.server.url().chopped(1),
                              QStringLiteral("isBusy=true"), QStringLiteral("serverStatusText=Core v2.0 is online."),
                              QStringLiteral("betaStatusText=Android beta 1.4 is available."),
                              QStringLiteral("isBusy=false")}));
        QVERIFY(!fixture.server.requests("GET", "/health").first().target.contains('?'));
    }

    void failedVersionReplacesTheHealthResult()
    {
        FlowFixture fixture;
        fixture.server.on("GET", "/health", ScriptedReply::json("{\"ok\":true}"));
        fixture.server.on("GET", "/api/app-version", ScriptedReply::answer(500, "<html>"));
        fixture.run(fixture.state.checkServerStatus());
        QCOMPARE(fixture.state.serverStatusText.value(), QStringLiteral("Server returned 500."));
        QCOMPARE(fixture.state.betaStatusText.value(), QStringLiteral("Android beta status unavailable."));
    }

    void failedHealthAsksForNoVersion()
    {
        FlowFixture fixture;
        fixture.server.on("GET", "/health", ScriptedReply::json("{}"));
        fixture.run(fixture.state.checkServerStatus());
        QCOMPARE(fixture.state.serverStatusText.value(),
                 QStringLiteral("The server's answer could not be read: \"ok\" is missing."));
        QCOMPARE(fixture.server.requests().size(), 1);
    }

    void typedAddressIsUsedAtOnce()
    {
        FlowFixture fixture;
        ScriptedServer other;
        other.on("GET", "/v1/health", ScriptedReply::json("{\"ok\":true,\"name\":\"Other\"}"));
        other.on("GET", "/v1/api/app-version", version(true));
        fixture.state.serverBaseURL = QStringLiteral(" %1v1/ ").arg(other.url());
        fixture.run(fixture.state.checkServerStatus());
        QCOMPARE(fixture.state.serverStatusText.value(), QStringLiteral("Other is online."));
    }
};

QTEST_GUILESS_MAIN(ServerStatusTest)
#include "ServerStatusTest.moc"
