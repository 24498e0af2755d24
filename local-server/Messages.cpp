#include "local-server/Messages.h"

#include <algorithm>

namespace ambrel::local {

SeeMeMessage Messages::compose(const QString &from, const QString &to, const QString &body, Moment created)
{
    SeeMeMessage message;
    message.id = QStringLiteral("see-me-%1").arg(++m_lastId);
    message.fromUserId = from;
    message.toUserId = to;
    message.body = body;
    message.createdAt = isoTime(created);
    return message;
}

void Messages::deliver(const SeeMeMessage &message, Moment due)
{
    QList<Waiting> &inbox = m_inboxes[message.toUserId];
    const auto isBefore = [](Moment moment, const Waiting &waiting) { return moment < waiting.due; };
    inbox.insert(std::upper_bound(inbox.cbegin(), inbox.cend(), due, isBefore), Waiting{message, due});
}

bool Messages::isFull(const QString &userId) const
{
    constexpr qsizetype mostMessages = 50;
    const auto found = m_inboxes.constFind(userId);
    return found != m_inboxes.constEnd() && found->size() >= mostMessages;
}

QList<SeeMeMessage> Messages::take(const QString &userId, Moment now)
{
    const auto found = m_inboxes.find(userId);
    if (found == m_inboxes.end())
        return {};

    QList<SeeMeMessage> taken;
    while (!found->isEmpty() && found->constFirst().due <= now)
        taken.append(found->takeFirst().message);
    if (found->isEmpty())
        m_inboxes.remove(userId);
    return taken;
}

} // namespace ambrel::local
