#include "ui/window/Arrivals.h"

#include "toolkit/BidiIsolation.h"

#include <QSet>

namespace ambrel {

QString arrivalsText(const QList<MatchResult> &before, const QList<MatchResult> &now)
{
    QSet<QString> known;
    for (const MatchResult &match : before)
        known.insert(match.userId);
    QString first;
    int more = -1;
    for (const MatchResult &match : now) {
        if (!known.contains(match.userId) && ++more == 0)
            first = isolated(match.displayName) + QStringLiteral(" is nearby");
    }
    if (more < 0)
        return {};
    return first + (more > 0 ? QStringLiteral(", and %1 more.").arg(more) : QStringLiteral("."));
}

} // namespace ambrel
