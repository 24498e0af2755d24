#pragma once

#include "StateFixture.h"
#include "model/Json.h"
#include "support/ScriptedServer.h"

#include <QCoroTask>

namespace ambrel {

/// A signed-in state that talks to a scripted server.
class FlowFixture
{
public:
    explicit FlowFixture(const LiveTimings &timings = {})
        : m_state({{QStringLiteral("serverBaseURL"), server.url()},
                   {QStringLiteral("userId"), QStringLiteral("me")},
                   {QStringLiteral("deviceId"), QStringLiteral("mac-1")},
                   {QStringLiteral("displayName"), QStringLiteral("Me")}},
                  timings),
          state(*m_state.state), sound(m_state.sound)
    {
    }

    /// What the server answers to the two requests of a live cycle and to an inbox poll, from now on.
    void answerLocation(const ScriptedReply &reply = ScriptedReply::json("{\"ok\":true}"))
    {
        server.on("POST", "/api/location", reply);
    }
    void answerCheck(const CheckResponse &reply) { server.on("GET", "/api/check/me", record(reply)); }
    void answerInbox(const QList<SeeMeMessage> &messages)
    {
        server.on("GET", "/api/see-me/me", record(SeeMeMessagesResponse{true, messages, {}}));
    }
    /// All three, with nobody near.
    void answerEverything()
    {
        answerLocation();
        answerCheck({});
        answerInbox({});
    }

    template <WireRecord Record>
    static ScriptedReply record(const Record &reply)
    {
        return ScriptedReply::json(writeRecord(reply));
    }

    /// Runs one operation to its end.
    static void run(QCoro::Task<> operation) { QCoro::waitFor(std::move(operation)); }

    ScriptedServer server;

private:
    StateFixture m_state;

public:
    AmbrelAppState &state;
    CountingSound &sound;
};

/// A match in the tier next to the nearest.
inline MatchResult matchNamed(const QString &userId, const QString &heatLevel = QStringLiteral("HOT"))
{
    return {.userId = userId,
            .displayName = userId.toUpper(),
            .distanceMeters = 150,
            .aToB = 72.5,
            .bToA = 64,
            .heatLevel = heatLevel,
            .profileBio = {},
            .profilePhoto = {},
            .profilePhotos = {},
            .updatedAt = {}};
}

/// A check reply with these people in it.
inline CheckResponse nearby(const QStringList &userIds)
{
    CheckResponse reply;
    reply.active = true;
    for (const QString &userId : userIds)
        reply.matches += matchNamed(userId);
    return reply;
}

/// A See Me message to the user of a FlowFixture.
inline SeeMeMessage messageWith(const QString &id, const QString &body = QStringLiteral("Here!"))
{
    return {id, QStringLiteral("b"), QStringLiteral("me"), body, {}};
}

/// The user IDs of a list, in order.
inline QStringList idsOf(const QList<MatchResult> &matches)
{
    QStringList ids;
    for (const MatchResult &match : matches)
        ids += match.userId;
    return ids;
}

} // namespace ambrel
