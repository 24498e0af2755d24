#include "state/AlertSound.h"
#include "state/AmbrelAppState.h"
#include "state/ErrorDescription.h"

namespace ambrel {

QCoro::Task<> AmbrelAppState::pollSeeMe()
{
    const auto self = shared_from_this();
    if (!isSignedIn())
        co_return;

    const auto client = api;
    const QString polledUserId = userId;
    try {
        const auto reply = co_await client->call(endpoints::seeMeMessages, polledUserId, deviceId);
        if (!reply.seeMeMessages.isEmpty())
            receive(reply.seeMeMessages.first());
    } catch (...) {
        statusText = currentErrorDescription();
    }
}

void AmbrelAppState::receive(const SeeMeMessage &message)
{
    incomingSeeMe = message;
    if (!m_exit.stop_requested())
        m_sound.play();
}

} // namespace ambrel
