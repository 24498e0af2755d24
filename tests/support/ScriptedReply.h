#pragma once

#include <QByteArray>
#include <QList>
#include <chrono>

namespace ambrel {

/// What a ScriptedServer does with one request, step by step. Without an end of its own the connection is kept alive.
class ScriptedReply
{
public:
    /// One thing to do.
    struct Step
    {
        enum class Kind { Send, Drip, Flood, Pause, Hold, Hang, Close, Reset };
        Kind kind;
        QByteArray bytes = {};
        std::chrono::milliseconds time{0};
    };

    /// A whole HTTP answer with `body` as JSON.
    static ScriptedReply json(const QByteArray &body, int status = 200);
    /// A whole HTTP answer. `headers` are lines without their ends; the length is added.
    static ScriptedReply answer(int status, const QByteArray &body = {}, const QList<QByteArray> &headers = {});
    /// A redirect to `location`.
    static ScriptedReply redirect(int status, const QByteArray &location);
    /// The head of an HTTP answer, with the empty line that ends it.
    static QByteArray head(int status, const QList<QByteArray> &headers = {});

    /// Sends `bytes` as they stand.
    ScriptedReply &&send(const QByteArray &bytes) &&;
    /// Sends `bytes` one by one with `interval` before each.
    ScriptedReply &&drip(const QByteArray &bytes, std::chrono::milliseconds interval) &&;
    /// Sends `bytes` over and over until the client leaves.
    ScriptedReply &&flood(const QByteArray &bytes) &&;
    /// Does nothing for `time`.
    ScriptedReply &&pause(std::chrono::milliseconds time) &&;
    /// Says nothing more, but reads on.
    ScriptedReply &&hang() &&;
    /// Ends the connection in good order.
    ScriptedReply &&close() &&;
    /// Ends the connection with a reset.
    ScriptedReply &&reset() &&;
    /// Puts a wait before everything else, until the server's `release()`.
    ScriptedReply &&held() &&;

    const QList<Step> &steps() const { return m_steps; }

private:
    QList<Step> m_steps;
};

} // namespace ambrel
