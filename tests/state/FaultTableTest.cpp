#include "FlowFixture.h"
#include "api/HttpSession.h"
#include "api/HttpTransfer.h"

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

/// A request that the client makes, and the operation that makes it.
struct Stage
{
    const char *name;
    QByteArray method;
    QByteArray path;
    ScriptedReply good;
    std::function<QCoro::Task<>(AmbrelAppState &)> operation;
    const char *success; ///< what the user then reads
    bool isServerCheck = false;
    bool isSentOnce = false; ///< whatever happens to it
};

/// What a server or a network does instead of answering.
struct Fault
{
    const char *name;
    ScriptedReply reply;
    const char *sentence; ///< what the user then reads
};

constexpr const char *lost = "The network connection was lost.";
constexpr const char *silent = "The request timed out.";
constexpr const char *unreadable = "The server's answer could not be read.";
constexpr const char *tooLarge = "The server's answer is too large.";

const QByteArray announced = ScriptedReply::head(200, {"Content-Length: 500"});
const QByteArray chunked = ScriptedReply::head(200, {"Transfer-Encoding: chunked"});

QList<Fault> faults()
{
    const auto raw = [](const QByteArray &bytes) { return ScriptedReply().send(bytes); };
    return {
        // connection
        {"closed before the answer", ScriptedReply().close(), lost},
        {"reset before the answer", ScriptedReply().reset(), lost},
        {"closed in the headers", raw("HTTP/1.1 200 OK\r\nContent-").close(), lost},
        {"reset in the headers", raw("HTTP/1.1 200 OK\r\nContent-").reset(), lost},
        {"closed after the headers", raw(announced).close(), lost},
        {"closed in the body", raw(announced + "{\"ok\":true").close(), lost},
        {"reset in the body", raw(announced + "{\"ok\":true").reset(), lost},
        {"closed between chunks", raw(chunked + "b\r\n{\"ok\":true}\r\n").close(), lost},
        {"closed in a chunk", raw(chunked + "ff\r\n{\"ok\":true}").close(), lost},
        {"silent", ScriptedReply().hang(), silent},
        {"silent in the headers", raw("HTTP/1.1 200 OK\r\nContent-").hang(), silent},
        {"silent in the body", raw(announced + "{\"ok\":true").hang(), silent},
        {"a redirect to nobody", ScriptedReply::redirect(307, "http://127.0.0.1:1/"),
         "Could not connect to the server."},
        // HTTP
        {"headers without end", raw("HTTP/1.1 200 OK\r\n").flood("X-Filler: " + QByteArray(900, 'x') + "\r\n"),
         tooLarge},
        {"one header without end", raw("HTTP/1.1 200 OK\r\nX: ").flood(QByteArray(9000, 'x')), tooLarge},
        {"interim answers without end", ScriptedReply().flood("HTTP/1.1 103 Early Hints\r\n\r\n"), tooLarge},
        {"another protocol after all", raw("HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\n\r\n").close(),
         "Server returned 101."},
        {"no content", raw(ScriptedReply::head(204)), unreadable},
        {"an address for another kind of server", ScriptedReply::redirect(307, "ftp://127.0.0.1/"),
         "The server redirected to an address that is not supported."},
        {"a redirect in a circle", ScriptedReply::redirect(307, "?again"), "Too many redirects."},
        {"a redirect without an address", ScriptedReply::answer(307), "Server returned 307."},
        {"a redirect whose address comes behind the body",
         raw(ScriptedReply::head(307, {"Transfer-Encoding: chunked"}) + "0\r\nLocation: ?again\r\n\r\n"),
         "Server returned 307."},
        {"a negative length", raw("HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\n{\"ok\":true}").close(), unreadable},
        {"a length beyond all bounds", raw(ScriptedReply::head(200, {"Content-Length: 99999999999"}) + "{").hang(),
         tooLarge},
        {"a length that cuts the answer",
         raw(ScriptedReply::head(200, {"Content-Length: 9"}) + "{\"ok\":true}").close(), unreadable},
        {"a chunk of no length", raw(chunked + "zz\r\n{\"ok\":true}\r\n0\r\n\r\n").close(), lost},
        {"broken gzip", ScriptedReply::answer(200, "this is no gzip", {"Content-Encoding: gzip"}), unreadable},
        {"an unknown coding", ScriptedReply::answer(200, "{}", {"Content-Encoding: rot13"}), unreadable},
        {"a coding within a coding", ScriptedReply::answer(200, "{}", {"Content-Encoding: gzip, gzip"}), unreadable},
        {"a banner", raw("SSH-2.0-OpenSSH_9.2\r\n").close(), unreadable},
        {"noise", raw(QByteArray("\x15\x03\x01\x00\x02\x02\x28\r\n\r\n", 11)).close(), unreadable},
        // refusals
        {"a refusal in words", ScriptedReply::json(R"({"error":"Not today."})", 409), "Not today."},
        {"a refusal without words", ScriptedReply::json("{}", 401), "Server returned 401."},
        {"a refusal as a page", ScriptedReply::answer(500, "<h1>Oops</h1>"), "Server returned 500."},
        {"a refusal of a crowd", ScriptedReply::answer(429, {}, {"Retry-After: 100"}), "Server returned 429."},
        {"a refusal that ends early",
         raw(ScriptedReply::head(503, {"Content-Length: 500"}) + "{\"error\":\"Not").close(), lost},
        // JSON
        {"an empty answer", ScriptedReply::answer(200), unreadable},
        {"a page", ScriptedReply::answer(200, "<!doctype html><p>Welcome to the hotel</p>"), unreadable},
        {"half an answer", ScriptedReply::json("{\"ok\":tr"), unreadable},
        {"an answer with a tail", ScriptedReply::json("{\"ok\":true}{"), unreadable},
        {"bad UTF-8", ScriptedReply::json("{\"ok\":true,\"x\":\"\xff\"}"), unreadable},
        {"an abyss", ScriptedReply::json(QByteArray(100'000, '[')), unreadable},
        {"a list", ScriptedReply::json("[]"), "The server's answer could not be read: it is not an object."},
    };
}

QList<Stage> stages()
{
    const ScriptedReply ok = ScriptedReply::json(R"({"ok":true})");
    const auto post = [](const char *path) { return QByteArray("/api/") + path; };
    UserProfile profile;
    profile.userId = QStringLiteral("me");
    profile.displayName = QStringLiteral("Me");
    AppVersionResponse version;
    version.versionName = QStringLiteral("2");
    version.apkAvailable = true;
    const MatchResult near = matchNamed(QStringLiteral("b"), QStringLiteral("VERY_HOT"));
    return {
        {"sign up", "POST", post("signup"), ok, [](auto &state) { return state.signup(); }, "Signed up.", false, true},
        {"log in", "POST", post("login"), FlowFixture::record(UserProfileResponse{profile}),
         [](auto &state) { return state.login(); }, "Logged in."},
        {"health", "GET", "/health", ok, [](auto &state) { return state.checkServerStatus(); }, "Ambrel is online.",
         true},
        {"version", "GET", "/api/app-version", FlowFixture::record(version),
         [](auto &state) { return state.checkServerStatus(); }, "Ambrel is online.", true},
        {"position", "POST", post("location"), ok, [](auto &state) { return state.updateAndCheck(); }, "2 nearby."},
        {"people", "GET", "/api/check/me", FlowFixture::record(nearby({QStringLiteral("a"), QStringLiteral("b")})),
         [](auto &state) { return state.updateAndCheck(); }, "2 nearby."},
        {"inbox", "GET", "/api/see-me/me", FlowFixture::record(SeeMeMessagesResponse{true, {}, {}}),
         [](auto &state) { return state.pollSeeMe(); }, nullptr},
        {"dismiss", "POST", post("dismiss"), ok, [near](auto &state) { return state.dismiss(near); }, "Dismissed.",
         false, true},
        {"See Me", "POST", post("see-me"), ok, [near](auto &state) { return state.seeMe(near); },
         "Sent: Can you see me?", false, true},
    };
}

/// Everything that a failed request must leave alone, to compare.
QVariantList untouched(const AmbrelAppState &state)
{
    return {state.serverBaseURL.value(),
            state.userId.value(),
            state.displayName.value(),
            state.email.value(),
            state.phone.value(),
            state.profileBio.value(),
            state.latitudeText.value(),
            state.longitudeText.value(),
            state.discoverable.value(),
            idsOf(state.matches),
            state.selectedMatch.value()->userId,
            state.incomingSeeMe.value()->id,
            state.showSeeMeFlash.value(),
            state.isBusy.value(),
            state.isLive.value()};
}

} // namespace

/// Every fault at every request: what the user reads, what stays as it was, and that the next answer is taken.
class FaultTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        HttpSession::shared().setLimits({.maxSilence = 200ms});
        if (QDir(QStringLiteral("/dev/shm")).exists())
            qputenv("TMPDIR", "/dev/shm"); // each row saves several times, which a disk takes its time for
    }
    void cleanupTestCase() { HttpSession::shared().setLimits({}); }

    void aFaultIsToldAndDoesNoHarm_data()
    {
        QTest::addColumn<Stage>("stage");
        QTest::addColumn<Fault>("fault");
        for (const Stage &stage : stages()) {
            for (const Fault &fault : faults())
                QTest::addRow("%s: %s", stage.name, fault.name) << stage << fault;
        }
    }

    void aFaultIsToldAndDoesNoHarm()
    {
        QFETCH(const Stage, stage);
        QFETCH(const Fault, fault);
        FlowFixture fixture({.livePause = 1h, .seeMePause = 1h, .flashDuration = 1ms});
        AmbrelAppState &state = fixture.state;
        for (const Stage &each : stages())
            fixture.server.on(each.method, each.path, each.good);
        fixture.server.next("GET", "/api/see-me/me",
                            FlowFixture::record(SeeMeMessagesResponse{true, {messageWith(QStringLiteral("1"))}, {}}));
        fixture.run(state.pollSeeMe());
        fixture.run(state.updateAndCheck());
        fixture.run(state.checkServerStatus());
        const QVariantList before = untouched(state);
        const int sentBefore = fixture.server.count(stage.method, stage.path);

        fixture.server.on(stage.method, stage.path, fault.reply);
        fixture.run(stage.operation(state));
        const QString sentence = QString::fromUtf8(fault.sentence);
        QCOMPARE(stage.isServerCheck ? state.serverStatusText.value() : state.statusText.value(), sentence);
        QCOMPARE(stage.isServerCheck ? state.statusText.value() : state.serverStatusText.value(),
                 stage.isServerCheck ? QStringLiteral("2 nearby.") : QStringLiteral("Ambrel is online."));
        QCOMPARE(state.betaStatusText.value(), stage.isServerCheck ? QStringLiteral("Android beta status unavailable.")
                                                                   : QStringLiteral("Android beta 2 is available."));
        QCOMPARE(untouched(state), before);
        const bool isCircle = sentence == QLatin1String("Too many redirects.");
        if (stage.isSentOnce)
            QCOMPARE(fixture.server.count(stage.method, stage.path), sentBefore + (isCircle ? 21 : 1));

        fixture.server.on(stage.method, stage.path, stage.good);
        fixture.run(stage.operation(state));
        if (stage.success)
            QCOMPARE(stage.isServerCheck ? state.serverStatusText.value() : state.statusText.value(),
                     QString::fromUtf8(stage.success));
    }
};

QTEST_GUILESS_MAIN(FaultTableTest)
#include "FaultTableTest.moc"
