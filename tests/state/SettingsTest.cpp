#include "FlowFixture.h"

#include "api/BaseUrl.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>

using namespace ambrel;

class SettingsTest : public QObject
{
    Q_OBJECT

    static QString stored(const QString &key) { return StoredSettings::text(key); }

private Q_SLOTS:
    void firstLaunchStartsWithDefaultsAndMakesADeviceId()
    {
        const StateFixture fixture;
        const auto &state = *fixture.state;
        for (const auto *field : {&state.userId, &state.displayName, &state.email, &state.phone, &state.profileBio})
            QCOMPARE(field->value(), QString());
        QCOMPARE(state.serverBaseURL.value(), productionServer());
        QCOMPARE(state.latitudeText.value(), QStringLiteral("39.0458"));
        QCOMPARE(state.longitudeText.value(), QStringLiteral("-84.5086"));
        QVERIFY(state.discoverable);
        static const QRegularExpression deviceId(
            QStringLiteral("^mac-[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}$"));
        QVERIFY2(deviceId.match(stored(QStringLiteral("deviceId"))).hasMatch(),
                 qPrintable(stored(QStringLiteral("deviceId"))));
    }

    void everythingElseStartsAfresh()
    {
        const StateFixture fixture;
        const auto &state = *fixture.state;
        QVERIFY(state.matches->isEmpty());
        QCOMPARE(state.statusText.value(), QStringLiteral("Ready."));
        QVERIFY(!state.showSeeMeFlash);
        QVERIFY(!state.incomingSeeMe.value());
        QVERIFY(!state.selectedMatch.value());
        QVERIFY(!state.isBusy);
        QVERIFY(!state.isLive);
        QCOMPARE(state.serverStatusText.value(), QStringLiteral("Server not checked."));
        QCOMPARE(state.betaStatusText.value(), QStringLiteral("Android beta not checked."));
    }

    void secondLaunchReadsTheSameDeviceIdAndDoesNotRewriteIt()
    {
        StateFixture fixture;
        const QString first = stored(QStringLiteral("deviceId"));
        QFile file(StoredSettings().fileName());
        const QDateTime longAgo = QDateTime::currentDateTime().addYears(-1);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(longAgo, QFile::FileModificationTime));
        file.close();
        const QDateTime before = QFileInfo(file).lastModified();
        fixture.restart();
        QCOMPARE(stored(QStringLiteral("deviceId")), first);
        QCOMPARE(QFileInfo(file.fileName()).lastModified(), before);
    }

    void storedDeviceIdIsUsedUnchanged()
    {
        const StateFixture fixture({{QStringLiteral("deviceId"), QStringLiteral("OLD")}});
        QCOMPARE(stored(QStringLiteral("deviceId")), QStringLiteral("OLD"));
    }

    void theStoredDeviceIdIsTheOneThatIsSent()
    {
        ScriptedServer server;
        server.on("GET", "/api/see-me/me", FlowFixture::record(SeeMeMessagesResponse()));
        const StateFixture fixture(
            {{QStringLiteral("serverBaseURL"), server.url()}, {QStringLiteral("userId"), QStringLiteral("me")}});
        FlowFixture::run(fixture.state->pollSeeMe());
        QCOMPARE(server.requests().first().target,
                 "/api/see-me/me?deviceId=" + stored(QStringLiteral("deviceId")).toLatin1());
    }

    void userIdOfSpacesIsNotSignedIn()
    {
        const StateFixture fixture;
        fixture.state->userId = QStringLiteral("   \n");
        QVERIFY(!fixture.state->isSignedIn());
        fixture.state->userId = QStringLiteral(" a ");
        QVERIFY(fixture.state->isSignedIn());
    }

    void latitudeIsTrimmedAndFallsBackWhenItDoesNotParse()
    {
        const StateFixture fixture;
        fixture.state->latitudeText = QStringLiteral(" 40.5\n");
        QCOMPARE(fixture.state->latitude(), 40.5);
        fixture.state->latitudeText = QStringLiteral("40,5");
        QCOMPARE(fixture.state->latitude(), 39.0458);
        fixture.state->latitudeText = QString();
        QCOMPARE(fixture.state->latitude(), 39.0458);
        fixture.state->longitudeText = QStringLiteral("west");
        QCOMPARE(fixture.state->longitude(), -84.5086);
    }

    void savingStripsSlashesFromFieldStoreAndClient()
    {
        FlowFixture fixture;
        ScriptedServer other;
        other.on("GET", "/v1/api/see-me/me", FlowFixture::record(SeeMeMessagesResponse()));
        const QString address = other.url() + QStringLiteral("v1");
        fixture.state.serverBaseURL = u' ' + address + QStringLiteral("// ");
        fixture.state.saveSettings();
        QCOMPARE(fixture.state.serverBaseURL.value(), address);
        QTRY_COMPARE(stored(QStringLiteral("serverBaseURL")), address);
        fixture.run(fixture.state.pollSeeMe());
        QCOMPARE(other.count("GET", "/v1/api/see-me/me"), 1);
    }

    void savingWritesExactlyTheEightUserKeysBesideTheDeviceId()
    {
        const StateFixture fixture;
        fixture.state->displayName = QStringLiteral("  Ann, \"B\"; [c] \u202Eא\U0001F600\n%20 ");
        fixture.state->saveSettings();
        QTRY_COMPARE(StoredSettings::keys(), everyKey());
        QCOMPARE(stored(QStringLiteral("displayName")), fixture.state->displayName.value());
    }

    void settingsComeBackAfterARestart()
    {
        StateFixture fixture;
        fixture.state->userId = QStringLiteral("ann");
        fixture.state->email = QStringLiteral("a@b.example");
        fixture.state->profileBio = QStringLiteral("two\nlines");
        fixture.state->latitudeText = QStringLiteral("garbage");
        fixture.state->discoverable = false;
        fixture.state->saveSettings();
        fixture.restart();
        QCOMPARE(fixture.state->userId.value(), QStringLiteral("ann"));
        QCOMPARE(fixture.state->email.value(), QStringLiteral("a@b.example"));
        QCOMPARE(fixture.state->profileBio.value(), QStringLiteral("two\nlines"));
        QCOMPARE(fixture.state->latitudeText.value(), QStringLiteral("garbage"));
        QVERIFY(fixture.state->discoverable);
    }

    void handEditedCommaListReadsAsOneText()
    {
        const StateFixture fixture(
            {{QStringLiteral("displayName"), QStringList{QStringLiteral("a"), QStringLiteral("b")}}});
        QCOMPARE(fixture.state->displayName.value(), QStringLiteral("a, b"));
    }

    void everyAssignmentIsAnnouncedBeforehandEvenOfAnEqualValue()
    {
        const StateFixture fixture;
        auto &state = *fixture.state;
        QStringList seen;
        QObject::connect(&state, &AmbrelAppState::objectWillChange, &state, [&] { seen += state.email.value(); });
        state.email = QStringLiteral("x");
        state.email = QStringLiteral("x");
        state.email = QString();
        QCOMPARE(seen, (QStringList{QString(), QStringLiteral("x"), QStringLiteral("x")}));
    }

    void destructionLeavesNothingBehind()
    {
        CountingSound sound;
        const StateFixture fixture;
        std::weak_ptr<AmbrelAppState> watch;
        {
            const auto state = AmbrelAppState::create(sound);
            watch = state;
        }
        QVERIFY(watch.expired());
    }
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "SettingsTest.moc"
