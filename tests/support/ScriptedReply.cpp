#include "support/ScriptedReply.h"

namespace ambrel {

using Kind = ScriptedReply::Step::Kind;

ScriptedReply ScriptedReply::json(const QByteArray &body, int status)
{
    return answer(status, body, {"Content-Type: application/json"});
}

ScriptedReply ScriptedReply::answer(int status, const QByteArray &body, const QList<QByteArray> &headers)
{
    const QByteArray length = "Content-Length: " + QByteArray::number(body.size());
    return ScriptedReply().send(head(status, headers + QList<QByteArray>{length}) + body);
}

ScriptedReply ScriptedReply::redirect(int status, const QByteArray &location)
{
    return answer(status, {}, {"Location: " + location});
}

QByteArray ScriptedReply::head(int status, const QList<QByteArray> &headers)
{
    QByteArray text = "HTTP/1.1 " + QByteArray::number(status) + " Scripted\r\n";
    for (const QByteArray &line : headers)
        text += line + "\r\n";
    return text + "\r\n";
}

ScriptedReply &&ScriptedReply::send(const QByteArray &bytes) &&
{
    m_steps.append({Kind::Send, bytes});
    return std::move(*this);
}

ScriptedReply &&ScriptedReply::drip(const QByteArray &bytes, std::chrono::milliseconds interval) &&
{
    m_steps.append({Kind::Drip, bytes, interval});
    return std::move(*this);
}

ScriptedReply &&ScriptedReply::flood(const QByteArray &bytes) &&
{
    m_steps.append({Kind::Flood, bytes});
    return std::move(*this);
}

ScriptedReply &&ScriptedReply::pause(std::chrono::milliseconds time) &&
{
    m_steps.append({Kind::Pause, {}, time});
    return std::move(*this);
}

ScriptedReply &&ScriptedReply::hang() &&
{
    m_steps.append({Kind::Hang});
    return std::move(*this);
}

ScriptedReply &&ScriptedReply::close() &&
{
    m_steps.append({Kind::Close});
    return std::move(*this);
}

ScriptedReply &&ScriptedReply::reset() &&
{
    m_steps.append({Kind::Reset});
    return std::move(*this);
}

ScriptedReply &&ScriptedReply::held() &&
{
    m_steps.prepend({Kind::Hold});
    return std::move(*this);
}

} // namespace ambrel
