#pragma once

#include "state/AmbrelAppState.h"

#include <QStringList>

namespace ambrel {

/// Writes down what a state assigns, in order, as "name=value"; "unchanged" where the value was the same before. What
/// changes together, or unannounced, says so.
class AssignmentJournal
{
public:
    explicit AssignmentJournal(AmbrelAppState &state) : m_state(state), m_last(snapshot())
    {
        QObject::connect(&state, &AmbrelAppState::objectWillChange, &m_context, [this] {
            note();
            m_isAnnounced = true;
        });
    }

    /// Everything that has been assigned so far.
    QStringList entries()
    {
        note();
        m_isAnnounced = false;
        return m_entries;
    }

private:
    QStringList snapshot() const
    {
        const auto flag = [](bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); };
        return {QStringLiteral("serverBaseURL=") + m_state.serverBaseURL.value(),
                QStringLiteral("userId=") + m_state.userId.value(),
                QStringLiteral("displayName=") + m_state.displayName.value(),
                QStringLiteral("email=") + m_state.email.value(),
                QStringLiteral("phone=") + m_state.phone.value(),
                QStringLiteral("profileBio=") + m_state.profileBio.value(),
                QStringLiteral("latitudeText=") + m_state.latitudeText.value(),
                QStringLiteral("longitudeText=") + m_state.longitudeText.value(),
                QStringLiteral("discoverable=") + flag(m_state.discoverable),
                QStringLiteral("statusText=") + m_state.statusText.value(),
                QStringLiteral("isBusy=") + flag(m_state.isBusy),
                QStringLiteral("isLive=") + flag(m_state.isLive),
                QStringLiteral("showSeeMeFlash=") + flag(m_state.showSeeMeFlash),
                QStringLiteral("matches=") + QString::number(m_state.matches->size()),
                QStringLiteral("selectedMatch=") +
                    (m_state.selectedMatch.value() ? m_state.selectedMatch.value()->userId : QString()),
                QStringLiteral("incomingSeeMe=") +
                    (m_state.incomingSeeMe.value() ? m_state.incomingSeeMe.value()->id : QString()),
                QStringLiteral("serverStatusText=") + m_state.serverStatusText.value(),
                QStringLiteral("betaStatusText=") + m_state.betaStatusText.value()};
    }

    void note()
    {
        const QStringList now = snapshot();
        QStringList changes;
        for (qsizetype i = 0; i < now.size(); ++i) {
            if (now.at(i) != m_last.at(i))
                changes += now.at(i);
        }
        m_last = now;
        if (m_isAnnounced)
            m_entries +=
                changes.isEmpty() ? QStringLiteral("unchanged") : changes.join(QStringLiteral(" together with "));
        else if (!changes.isEmpty())
            m_entries += QStringLiteral("unannounced ") + changes.join(u' ');
    }

    AmbrelAppState &m_state;
    QObject m_context;
    QStringList m_last;
    QStringList m_entries;
    bool m_isAnnounced = false;
};

} // namespace ambrel
