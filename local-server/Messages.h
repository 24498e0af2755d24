#pragma once

#include "local-server/Time.h"
#include "model/ResponseRecords.h"

#include <QHash>
#include <QList>

namespace ambrel::local {

/// The See Me messages on their way to their addressees.
class Messages
{
public:
    /// Writes a message as of `created`, with an ID of its own.
    SeeMeMessage compose(const QString &from, const QString &to, const QString &body, Moment created);
    /// Puts a message into its addressee's inbox; it can be fetched from `due` on.
    void deliver(const SeeMeMessage &message, Moment due);
    /// True while no more messages should be delivered to `userId`.
    bool isFull(const QString &userId) const;
    /// Hands over what is due for `userId`, oldest first, and forgets it: a message is fetched once.
    QList<SeeMeMessage> take(const QString &userId, Moment now);

private:
    struct Waiting
    {
        SeeMeMessage message;
        Moment due;
    };
    QHash<QString, QList<Waiting>> m_inboxes;
    quint64 m_lastId = 0;
};

} // namespace ambrel::local
