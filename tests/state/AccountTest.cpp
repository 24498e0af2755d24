#include "AssignmentJournal.h"
#include "FlowFixture.h"

#include <QRegularExpression>

using namespace ambrel;

class AccountTest : public QObject
{
    Q_OBJECT

    static RegisterRequest onlySignUpAt(const ScriptedServer &server)
    {
        const QList<ReceivedRequest> requests = server.requests("POST", "/api/signup");
        if (requests.size() != 1)
            return {};
        const QByteArray body = requests.first().body;
        return readRecord<RegisterRequest>(
            std::make_shared<Bytes>(std::string_view(body.constData(), static_cast<std::size_t>(body.size()))));
    }

    static ScriptedReply accepted() { return ScriptedReply::json("{\"ok\":true}"); }
    static ScriptedReply refused(const char *text)
    {
        return ScriptedReply::json(QByteArray("{\"error\":\"") + text + "\"}", 409);
    }

    static UserProfile storedProfile()
    {
        return {.userId = QStringLiteral("other"),
                .displayName = QStringLiteral("Stored"),
                .email = QStringLiteral("stored@b.example"),
                .phone = QStringLiteral("123"),
                .discoverable = false,
                .latitude = 39.1,
                .longitude = -84,
                .aboutMe = {4},
                .lookingFor = {5},
                .profileBio = QStringLiteral("Stored bio"),
                .profilePhoto = {},
                .profilePhotos = {}};
    }

private Q_SLOTS:
    void signUpSendsTheTrimmedNameAndAnIdMadeOfItWhileTheFieldKeepsItsBlanks()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/signup", accepted());
        fixture.answerLocation();
        fixture.server.on("GET", "/api/check/ann", FlowFixture::record(CheckResponse()));
        fixture.server.on("GET", "/api/see-me/ann", FlowFixture::record(SeeMeMessagesResponse()));
        fixture.state.userId = QString();
        fixture.state.displayName = QStringLiteral("  Ann  ");
        fixture.run(fixture.state.signup());
        QCOMPARE(onlySignUpAt(fixture.server).displayName, QStringLiteral("Ann"));
        QCOMPARE(onlySignUpAt(fixture.server).userId, QStringLiteral("ann"));
        QCOMPARE(fixture.state.displayName.value(), QStringLiteral("  Ann  "));
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("displayName")), QStringLiteral("  Ann  "));
    }

    void nameOfThirtyLettersGivesAnIdOfTwentyFour()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/signup", refused("Later"));
        fixture.state.userId = QString();
        fixture.state.displayName = QStringLiteral("Abcdefghijklmnopqrstuvwxyzabcd");
        fixture.run(fixture.state.signup());
        QCOMPARE(onlySignUpAt(fixture.server).userId, QStringLiteral("abcdefghijklmnopqrstuvwx"));
    }

    void nameOfPunctuationOrEmojiGivesALowerCaseUuid()
    {
        static const QRegularExpression uuid(QStringLiteral("^[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}$"));
        for (const QString &name : {QStringLiteral("?!-..."), QStringLiteral("\U0001F600\u2764\uFE0F")}) {
            FlowFixture fixture;
            fixture.server.on("POST", "/api/signup", refused("Later"));
            fixture.state.userId = QString();
            fixture.state.displayName = name;
            fixture.run(fixture.state.signup());
            QVERIFY(uuid.match(onlySignUpAt(fixture.server).userId).hasMatch());
        }
    }

    void idOfBlanksIsSentAsItIsAndTheLoopRefusesToStart()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/signup", accepted());
        fixture.state.userId = QStringLiteral("   ");
        fixture.run(fixture.state.signup());
        QCOMPARE(onlySignUpAt(fixture.server).userId, QStringLiteral("   "));
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Sign up or log in first."));
        QVERIFY(!fixture.state.isLive);

        fixture.run(fixture.state.login());
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Enter your user ID."));
        QCOMPARE(fixture.server.requests().size(), 1);
    }

    void logInLeavesTheTypedEmailWhenTheProfileHasNoneAndCopiesTheShortLatitude()
    {
        FlowFixture fixture;
        UserProfile profile = storedProfile();
        profile.email.reset();
        fixture.server.on("POST", "/api/login", FlowFixture::record(UserProfileResponse{profile}));
        fixture.state.email = QStringLiteral("typed@b.example");
        fixture.run(fixture.state.login());
        QCOMPARE(fixture.state.email.value(), QStringLiteral("typed@b.example"));
        QCOMPARE(fixture.state.latitudeText.value(), QStringLiteral("39.1"));
    }

    void failedLogInLeavesEveryFieldAndIsNotBusy()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/login", refused("No such user"));
        AssignmentJournal journal(fixture.state);
        fixture.run(fixture.state.login());
        QCOMPARE(journal.entries(),
                 (QStringList{QStringLiteral("isBusy=true"), QStringLiteral("statusText=No such user"),
                              QStringLiteral("isBusy=false")}));
    }

    void blankNameSendsNothing()
    {
        FlowFixture fixture;
        fixture.state.displayName = QStringLiteral(" \t\n");
        AssignmentJournal journal(fixture.state);
        fixture.run(fixture.state.signup());
        QCOMPARE(journal.entries(), QStringList{QStringLiteral("statusText=Add a display name.")});
    }

    void signUpSendsEverythingTyped()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/signup", refused("Later"));
        fixture.state.email = QStringLiteral(" a@b.example ");
        fixture.state.profileBio = QString();
        fixture.state.latitudeText = QStringLiteral("12.5");
        fixture.state.longitudeText = QStringLiteral("?");
        fixture.state.discoverable = false;
        fixture.run(fixture.state.signup());
        const RegisterRequest expected{.userId = QStringLiteral("me"),
                                       .deviceId = QStringLiteral("mac-1"),
                                       .displayName = QStringLiteral("Me"),
                                       .email = QStringLiteral(" a@b.example "),
                                       .phone = {},
                                       .latitude = 12.5,
                                       .longitude = -84.5086,
                                       .discoverable = false,
                                       .aboutMe = {0, 1, 2},
                                       .lookingFor = {0, 1, 2},
                                       .profileBio = QString(),
                                       .profilePhoto = {},
                                       .profilePhotos = {}};
        QCOMPARE(onlySignUpAt(fixture.server), expected);
    }

    void signUpGoesLiveBeforeItStopsBeingBusy()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/signup", accepted());
        fixture.answerEverything();
        fixture.state.discoverable = false;
        AssignmentJournal journal(fixture.state);
        fixture.run(fixture.state.signup());
        const QString address = fixture.server.url().chopped(1);
        QCOMPARE(journal.entries(),
                 (QStringList{QStringLiteral("isBusy=true"), QStringLiteral("serverBaseURL=") + address,
                              QStringLiteral("statusText=Signed up."), QStringLiteral("unchanged"), // saved once more
                              QStringLiteral("discoverable=true"), QStringLiteral("isLive=true"),
                              QStringLiteral("isBusy=false")}));
        QTRY_COMPARE(fixture.state.statusText.value(), QStringLiteral("No matches nearby."));
    }

    void refusedSignUpKeepsTheMadeUpIdUnsaved()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/signup", refused("Name taken"));
        fixture.state.userId = QString();
        fixture.state.displayName = QStringLiteral("Me 2");
        fixture.run(fixture.state.signup());
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Name taken"));
        QCOMPARE(fixture.state.userId.value(), QStringLiteral("me2"));
        QVERIFY(fixture.state.serverBaseURL->endsWith(u'/')); // saving would have taken it off
        QVERIFY(!fixture.state.isBusy);
        QVERIFY(!fixture.state.isLive);
    }

    void editedAddressTakesEffectOnlyAfterSuccess()
    {
        FlowFixture fixture;
        ScriptedServer other;
        fixture.server.on("POST", "/api/login", FlowFixture::record(UserProfileResponse{storedProfile()}));
        other.on("POST", "/api/login", refused("I am the other one"));
        fixture.state.serverBaseURL = other.url();
        fixture.run(fixture.state.login());
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Logged in."));
        QCOMPARE(other.requests().size(), 0);
        fixture.run(fixture.state.login());
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("I am the other one"));
    }

    void logInCopiesTheProfileInOrderAndDoesNotGoLive()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/login", FlowFixture::record(UserProfileResponse{storedProfile()}));
        AssignmentJournal journal(fixture.state);
        fixture.run(fixture.state.login());
        QCOMPARE(journal.entries(),
                 (QStringList{QStringLiteral("isBusy=true"), QStringLiteral("displayName=Stored"),
                              QStringLiteral("email=stored@b.example"), QStringLiteral("phone=123"),
                              QStringLiteral("profileBio=Stored bio"), QStringLiteral("discoverable=false"),
                              QStringLiteral("latitudeText=39.1"), QStringLiteral("longitudeText=-84.0"),
                              QStringLiteral("serverBaseURL=") + fixture.server.url().chopped(1),
                              QStringLiteral("statusText=Logged in."), QStringLiteral("isBusy=false")}));
        QCOMPARE(fixture.state.userId.value(), QStringLiteral("me"));
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("phone")), QStringLiteral("123"));
    }

    void signUpAnsweredDuringExitIsSavedAndStartsNothing()
    {
        FlowFixture fixture;
        fixture.server.on("POST", "/api/signup", ScriptedReply::json("{\"ok\":true}").held());
        fixture.state.userId = QStringLiteral("ann");
        const auto signUp = fixture.state.signup();
        QTRY_COMPARE(fixture.server.count("POST", "/api/signup"), 1);
        fixture.state.shutDown();
        fixture.server.release("POST", "/api/signup");
        QTRY_VERIFY(!fixture.state.isBusy);
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("Signed up."));
        QVERIFY(!fixture.state.isLive);
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
    }

    void coordinatesThatAreNoNumberEndInASentence()
    {
        FlowFixture fixture;
        fixture.state.latitudeText = QStringLiteral("nan");
        fixture.run(fixture.state.signup());
        QCOMPARE(fixture.state.statusText.value(), QStringLiteral("\"latitude\" is not a finite number."));
        QVERIFY(!fixture.state.isBusy);
    }
};

QTEST_GUILESS_MAIN(AccountTest)
#include "AccountTest.moc"
