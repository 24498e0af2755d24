#include "StateModel.h"
#include "FlowFixture.h"
#include "PatientServer.h"

#include <QJsonDocument>
#include <QRandomGenerator>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

/// One thing that happens. What does not apply at its moment does nothing, so that any part of a sequence can be left
/// out.
struct Step
{
    enum class Kind {
        TypeAddress,
        TypeUserId,
        TypeName,
        TypeEmail,
        TypeLatitude,
        Discoverable,
        SignUp,
        LogIn,
        CheckServer,
        GoLive,
        Pause,
        Cycle,
        Poll,
        Keep,
        Dismiss,
        SeeMe,
        Select,
        CloseAlert,
        CloseFlash,
        Restart,
        Answer,
    };
    Kind kind;
    quint32 choice; ///< among what such a step can be

    QString text() const
    {
        static const char *const names[]{
            "type address", "type user ID", "type name", "type e-mail", "type latitude", "discoverable", "sign up",
            "log in",       "check server", "go live",   "pause",       "cycle",         "poll",         "keep",
            "dismiss",      "see me",       "select",    "close alert", "close flash",   "restart",      "answer"};
        return QStringLiteral("%1 %2").arg(QLatin1String(names[static_cast<int>(kind)])).arg(choice);
    }
};
using Sequence = QList<Step>;

QString pick(quint32 choice, std::initializer_list<const char *> texts)
{
    return QString::fromLatin1(texts.begin()[choice % texts.size()]);
}

ModelPerson personFor(quint32 choice)
{
    return {pick(choice, {"a", "b", "c", "A"}), double(choice / 4 % 7), pick(choice / 4, {"VERY_HOT", "HOT", "COLD"})};
}

MatchResult recordOf(const ModelPerson &person)
{
    MatchResult match = matchNamed(person.id, person.heat);
    match.distanceMeters = person.distance;
    return match;
}

QString textOf(const MatchResult &match)
{
    return ModelPerson{match.userId, match.distanceMeters, match.heatLevel}.text();
}

ModelReply replyFor(quint32 choice)
{
    if (choice % 4 == 0)
        return {.error = choice % 8 == 0 ? QStringLiteral("Not now.") : QStringLiteral("Server returned 500.")};
    ModelReply reply{.isGood = choice % 3 != 0, .latitude = pick(choice, {"39.1", "-7.0"})};
    for (quint32 i = 0; i < choice / 16 % 4; ++i)
        reply.people += personFor(choice / 64 + i * 5);
    for (quint32 i = 0; i < choice / 8 % 3; ++i)
        reply.messages += pick(choice / 24 + i, {"m1", "m2", "m3"});
    return reply;
}

/// The reply as the server sends it to a request of this kind.
ScriptedReply wireReply(ModelRequest::Kind kind, const ModelReply &reply)
{
    using Kind = ModelRequest::Kind;
    if (reply.error == QLatin1String("Not now."))
        return ScriptedReply::json("{\"error\":\"Not now.\"}", 409);
    if (!reply.error.isEmpty())
        return ScriptedReply::json("<html>", 500);
    QList<SeeMeMessage> messages;
    for (const QString &id : reply.messages)
        messages += messageWith(id);
    switch (kind) {
    case Kind::Health:
        return FlowFixture::record(HealthResponse{reply.isGood, QStringLiteral("Core"), QStringLiteral("2"), {}});
    case Kind::Version: {
        AppVersionResponse version;
        version.versionName = QStringLiteral("1.4");
        version.apkAvailable = reply.isGood;
        return FlowFixture::record(version);
    }
    case Kind::LogIn: {
        UserProfile profile;
        profile.displayName = QStringLiteral("Stored");
        if (reply.isGood)
            profile.email = QStringLiteral("stored@b.example");
        profile.discoverable = reply.isGood;
        profile.latitude = reply.latitude.toDouble();
        profile.longitude = -84.5086;
        return FlowFixture::record(UserProfileResponse{profile});
    }
    case Kind::Check: {
        CheckResponse check;
        for (const ModelPerson &person : reply.people)
            check.matches += recordOf(person);
        check.seeMeMessages = messages;
        return FlowFixture::record(check);
    }
    case Kind::Inbox:
        return FlowFixture::record(SeeMeMessagesResponse{true, messages, {}});
    case Kind::SignUp:
    case Kind::Location:
    case Kind::Dismiss:
    case Kind::SeeMe:
        break;
    }
    return ScriptedReply::json("{\"ok\":true}");
}

bool isSame(const ReceivedRequest &received, const ModelRequest &expected)
{
    const bool isGet = expected.body.isEmpty();
    const bool hasId = expected.kind == ModelRequest::Kind::Check || expected.kind == ModelRequest::Kind::Inbox;
    const QByteArray query = hasId ? "?deviceId=mac-1" : "";
    return received.method == (isGet ? "GET" : "POST") &&
           QByteArray::fromPercentEncoding(received.target) == (expected.prefix + expected.path).toUtf8() + query &&
           QJsonDocument::fromJson(received.body).object() == expected.body;
}

/// Every observable field, one line each.
QStringList fieldsOf(const StateModel &model, int sounds)
{
    QStringList people;
    for (const ModelPerson &person : model.matches)
        people += person.text();
    const auto flag = [](bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); };
    return {QStringLiteral("serverBaseURL=") + model.serverBaseURL,
            QStringLiteral("userId=") + model.userId,
            QStringLiteral("displayName=") + model.displayName,
            QStringLiteral("email=") + model.email,
            QStringLiteral("phone="),
            QStringLiteral("profileBio="),
            QStringLiteral("latitudeText=") + model.latitudeText,
            QStringLiteral("longitudeText=-84.5086"),
            QStringLiteral("discoverable=") + flag(model.discoverable),
            QStringLiteral("matches=") + people.join(u' '),
            QStringLiteral("statusText=") + model.statusText,
            QStringLiteral("showSeeMeFlash=") + flag(model.showSeeMeFlash),
            QStringLiteral("incomingSeeMe=") + model.incomingSeeMe,
            QStringLiteral("selectedMatch=") + (model.selected ? model.selected->text() : QString()),
            QStringLiteral("isBusy=") + flag(model.isBusy),
            QStringLiteral("isLive=") + flag(model.isLive),
            QStringLiteral("serverStatusText=") + model.serverStatusText,
            QStringLiteral("betaStatusText=") + model.betaStatusText,
            QStringLiteral("sounds=%1").arg(sounds)};
}

QStringList fieldsOf(const AmbrelAppState &state, int sounds)
{
    QStringList people;
    for (const MatchResult &match : *state.matches.operator->())
        people += textOf(match);
    const auto flag = [](bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); };
    return {QStringLiteral("serverBaseURL=") + state.serverBaseURL.value(),
            QStringLiteral("userId=") + state.userId.value(),
            QStringLiteral("displayName=") + state.displayName.value(),
            QStringLiteral("email=") + state.email.value(),
            QStringLiteral("phone=") + state.phone.value(),
            QStringLiteral("profileBio=") + state.profileBio.value(),
            QStringLiteral("latitudeText=") + state.latitudeText.value(),
            QStringLiteral("longitudeText=") + QString::number(state.longitudeText->toDouble()),
            QStringLiteral("discoverable=") + flag(state.discoverable),
            QStringLiteral("matches=") + people.join(u' '),
            QStringLiteral("statusText=") + state.statusText.value(),
            QStringLiteral("showSeeMeFlash=") + flag(state.showSeeMeFlash),
            QStringLiteral("incomingSeeMe=") +
                (state.incomingSeeMe.value() ? state.incomingSeeMe.value()->id : QString()),
            QStringLiteral("selectedMatch=") +
                (state.selectedMatch.value() ? textOf(*state.selectedMatch.value()) : QString()),
            QStringLiteral("isBusy=") + flag(state.isBusy),
            QStringLiteral("isLive=") + flag(state.isLive),
            QStringLiteral("serverStatusText=") + state.serverStatusText.value(),
            QStringLiteral("betaStatusText=") + state.betaStatusText.value(),
            QStringLiteral("sounds=%1").arg(sounds)};
}

} // namespace

/// A state beside the model, with the server between them. The loops run one cycle; later ones are steps.
class Experiment
{
public:
    /// `patience` is how long the two may take to agree.
    explicit Experiment(std::chrono::milliseconds patience)
        : m_patience(patience), m_model(m_server.address()),
          m_fixture({{QStringLiteral("serverBaseURL"), m_server.address()},
                     {QStringLiteral("userId"), QStringLiteral("me")},
                     {QStringLiteral("deviceId"), QStringLiteral("mac-1")}},
                    timings())
    {
    }

    /// What differed first, or nothing.
    QString run(const Sequence &sequence)
    {
        for (const Step &step : sequence) {
            take(step);
            const QString difference = settle();
            if (!difference.isEmpty())
                return QStringLiteral("after \"%1\": %2").arg(step.text(), difference);
        }
        return {};
    }

    /// Answers what still waits until nothing holds the state any more. Differences do not matter then.
    ~Experiment()
    {
        state().shutDown();
        while (m_fixture.state.use_count() > 1) {
            while (m_server.answer([](const ReceivedRequest &) { return true; }, ScriptedReply::json("{}", 500))) {
            }
            m_server.count(500us);
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
    }
    Q_DISABLE_COPY_MOVE(Experiment)

private:
    static LiveTimings timings() { return {1h, 1h, 1h}; }
    AmbrelAppState &state() { return *m_fixture.state; }

    /// Does the same to both.
    void take(const Step &step)
    {
        using Kind = Step::Kind;
        const quint32 choice = step.choice;
        const bool isListed = !m_model.matches.isEmpty() && choice % 4 != 0; // whom a card shows, or somebody gone
        const ModelPerson person =
            isListed ? m_model.matches.at(qsizetype(choice / 4 % quint32(m_model.matches.size()))) : personFor(choice);
        // A server gets six requests at once, and each sign-up that is answered makes two of one.
        const bool isCrowded = m_model.requests.size() > 2;
        switch (isCrowded && step.kind != Kind::Restart ? Kind::Answer : step.kind) {
        case Kind::TypeAddress:
            type(state().serverBaseURL, m_model.serverBaseURL,
                 pick(choice, {"%1", "%1/", " %1/v1 ", "%1/v2//"}).replace(QStringLiteral("%1"), m_server.address()));
            return;
        case Kind::TypeUserId:
            type(state().userId, m_model.userId, pick(choice, {"", "  ", "ann", " me ", "me"}));
            return;
        case Kind::TypeName:
            type(state().displayName, m_model.displayName, pick(choice, {"", " \n", " Ann ", "Bo-B 2"}));
            return;
        case Kind::TypeEmail:
            type(state().email, m_model.email, pick(choice, {"", " x ", "y"}));
            return;
        case Kind::TypeLatitude:
            type(state().latitudeText, m_model.latitudeText, pick(choice, {"", " 41 ", "40.5", "40,5"}));
            return;
        case Kind::Discoverable:
            state().discoverable = m_model.discoverable = choice % 2 != 0;
            return;
        case Kind::SignUp:
            m_model.signUp();
            start(state().signup());
            return;
        case Kind::LogIn:
            m_model.logIn();
            start(state().login());
            return;
        case Kind::CheckServer:
            m_model.checkServer();
            start(state().checkServerStatus());
            return;
        case Kind::GoLive:
            m_model.startLive();
            state().startLive();
            return;
        case Kind::Pause:
            m_model.stopLive();
            state().stopLive();
            return;
        case Kind::Cycle:
            m_model.updateAndCheck();
            start(state().updateAndCheck());
            return;
        case Kind::Poll:
            m_model.pollInbox();
            start(state().pollSeeMe());
            return;
        case Kind::Keep:
            m_model.keep(person);
            state().keep(recordOf(person));
            return;
        case Kind::Dismiss:
            m_model.dismiss(person);
            start(state().dismiss(recordOf(person)));
            return;
        case Kind::SeeMe:
            m_model.seeMe(person);
            start(state().seeMe(recordOf(person)));
            return;
        case Kind::Select:
            m_model.selected = person;
            state().selectedMatch = recordOf(person);
            return;
        case Kind::CloseAlert:
            m_model.incomingSeeMe.clear();
            state().incomingSeeMe = std::nullopt;
            return;
        case Kind::CloseFlash:
            closeFlash();
            return;
        case Kind::Restart:
            restart(choice);
            return;
        case Kind::Answer:
            if (!m_model.requests.isEmpty())
                answer(qsizetype(choice % quint32(m_model.requests.size())), replyFor(choice / 16));
            return;
        }
    }

    static void type(Published<AmbrelAppState, QString> &field, QString &modelField, const QString &text)
    {
        field = text;
        modelField = text;
    }

    void closeFlash()
    {
        m_model.showSeeMeFlash = false;
        state().showSeeMeFlash = false;
    }

    static void start(QCoro::Task<> operation) { Q_UNUSED(operation) } // runs on by itself

    /// Of requests that look the same the oldest is answered, on both sides.
    void answer(qsizetype index, const ModelReply &reply)
    {
        const ModelRequest request = m_model.requests.at(index);
        const auto oldest = std::find_if(m_model.requests.cbegin(), m_model.requests.cend(),
                                         [&request](const ModelRequest &other) { return other.looksLike(request); });
        if (request.kind == ModelRequest::Kind::SeeMe)
            closeFlash(); // a flash holds the state as its request did: only where none is can it be seen to come
        m_model.receive(oldest - m_model.requests.cbegin(), reply);
        m_server.answer([&request](const ReceivedRequest &received) { return isSame(received, request); },
                        wireReply(request.kind, reply));
    }

    /// The program ends while requests are in flight, which are still answered, and starts again.
    void restart(quint32 choice)
    {
        m_model.end();
        state().shutDown();
        m_model.flashes = 0;
        if (m_model.showSeeMeFlash) {
            QCoreApplication::processEvents();
            m_model.showSeeMeFlash = false;
        }
        while (!m_model.requests.isEmpty() && m_difference.isEmpty()) {
            answer(0, replyFor(choice++));
            m_difference = settle();
        }
        if (!m_difference.isEmpty())
            return;
        m_fixture.restart(timings());
        const int count = m_model.requestCount;
        const int sounds = m_model.sounds;
        m_model.start();
        m_model.requestCount = count;
        m_model.sounds = sounds;
    }

    /// Turns the event loop until both agree; what still differs in the end, or nothing.
    QString settle()
    {
        m_model.turn();
        if (!m_difference.isEmpty())
            return m_difference;
        QElapsedTimer timer;
        timer.start();
        QString found;
        do {
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            found = difference(m_server.count(50us));
        } while (!found.isEmpty() && timer.elapsed() < m_patience.count());
        return found;
    }

    QString difference(int count)
    {
        long holders = 1 + m_model.flashes; // each operation keeps the state while it runs
        for (const ModelRequest &request : std::as_const(m_model.requests))
            holders += request.isFromLoop ? 2 : 1;
        if (count != m_model.requestCount)
            return QStringLiteral("%1 requests instead of %2").arg(count).arg(m_model.requestCount);
        for (const ModelRequest &request : std::as_const(m_model.requests)) {
            const int waiting =
                m_server.waiting([&request](const ReceivedRequest &received) { return isSame(received, request); });
            const auto same = std::count_if(m_model.requests.cbegin(), m_model.requests.cend(),
                                            [&request](const ModelRequest &other) { return other.looksLike(request); });
            if (waiting != same)
                return QStringLiteral("%1 times %2%3 instead of %4")
                    .arg(waiting)
                    .arg(request.prefix, request.path)
                    .arg(same);
        }
        const QStringList expected = fieldsOf(m_model, m_model.sounds);
        const QStringList found = fieldsOf(state(), m_fixture.sound.count);
        for (qsizetype i = 0; i < found.size(); ++i) {
            if (found.at(i) != expected.at(i))
                return QStringLiteral("%1 instead of %2").arg(found.at(i), expected.at(i));
        }
        if (m_fixture.state.use_count() != holders)
            return QStringLiteral("%1 holders instead of %2").arg(m_fixture.state.use_count()).arg(holders);
        return {};
    }

    PatientServer m_server;
    const std::chrono::milliseconds m_patience;
    StateModel m_model;
    StateFixture m_fixture;
    QString m_difference;
};

class StateModelTest : public QObject
{
    Q_OBJECT

    static Sequence randomSequence(QRandomGenerator &random)
    {
        Sequence sequence;
        const int length = random.bounded(4, 30);
        for (int i = 0; i < length; ++i) {
            const int kind = random.bounded(static_cast<int>(Step::Kind::Answer) + 12); // an answer is the likeliest
            sequence += Step{static_cast<Step::Kind>(std::min(kind, static_cast<int>(Step::Kind::Answer))),
                             random.bounded(1U << 16)};
        }
        return sequence;
    }

    static QString differenceIn(const Sequence &sequence, std::chrono::milliseconds patience)
    {
        return Experiment(patience).run(sequence);
    }

    /// Leaves out whatever the difference does not need.
    static Sequence shrunk(Sequence sequence)
    {
        for (qsizetype size = sequence.size() / 2; size > 0; size = size == 1 ? 0 : (size + 1) / 2) {
            for (qsizetype start = 0; start + size <= sequence.size();) {
                Sequence shorter = sequence;
                shorter.remove(start, size);
                if (differenceIn(shorter, 1s).isEmpty())
                    start += size;
                else
                    sequence = shorter;
            }
        }
        return sequence;
    }

private Q_SLOTS:
    /// AMBREL_MODEL_SEQUENCES and AMBREL_MODEL_SEED ask for another number of sequences and for known ones.
    void stateAndModelAgreeAfterEveryStep()
    {
        const auto number = [](const char *name, quint32 fallback) {
            return qEnvironmentVariableIsSet(name) ? qgetenv(name).toUInt() : fallback;
        };
        const quint32 seed = number("AMBREL_MODEL_SEED", QRandomGenerator::system()->generate());
        const quint32 sequences = number("AMBREL_MODEL_SEQUENCES", 300);
        qInfo("%u sequences from seed %u", sequences, seed);
        QRandomGenerator random(seed);
        for (quint32 i = 0; i < sequences; ++i) {
            const Sequence sequence = randomSequence(random);
            const QString difference = differenceIn(sequence, 30s); // a busy machine may starve us
            if (difference.isEmpty())
                continue;
            const Sequence shortest = shrunk(sequence);
            QStringList lines;
            for (const Step &step : shortest)
                lines += step.text();
            const QString report = lines.join(u'\n') + u'\n' + differenceIn(shortest, 1s);
            QFAIL(qPrintable(
                QStringLiteral("seed %1, sequence %2, %3; shortened:\n%4").arg(seed).arg(i).arg(difference, report)));
        }
    }
};

QTEST_GUILESS_MAIN(StateModelTest)
#include "StateModelTest.moc"
