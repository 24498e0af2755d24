#pragma once

#include "state/AmbrelAppState.h"

#include <QStringList>

namespace ambrel {

/// Writes down how the texts and flags of a state change, in order, as "name=value".
class AssignmentJournal
{
public:
    explicit AssignmentJournal(AmbrelAppState &state) : m_state(state), m_last(snapshot())
    {
        QObject::connect(&state, &AmbrelAppState::objectWillChange, &m_context, [this] { note(); });
    }

    /// Everything that has changed so far.
    QStringList entries()
    {
        note();
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
        for (qsizetype i = 0; i < now.size(); ++i) {
            if (now.at(i) != m_last.at(i))
                m_entries += now.at(i);
        }
        m_last = now;
    }

    AmbrelAppState &m_state;
    QObject m_context;
    QStringList m_last;
    QStringList m_entries;
};

} // namespace ambrel
