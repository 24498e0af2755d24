#include "state/AlertSound.h"
#include "state/AmbrelAppState.h"
#include "state/ErrorDescription.h"
#include "tasks/Sleep.h"

namespace ambrel {

QCoro::Task<> AmbrelAppState::pollSeeMe()
{
    const auto self = shared_from_this();
    if (!isSignedIn())
        co_return;

    const auto client = api;
    const QString polledUserId = userId;
    try {
        const auto reply = co_await client->seeMeMessages(polledUserId, deviceId);
        if (!reply.seeMeMessages.isEmpty())
            receive(reply.seeMeMessages.first());
    } catch (...) {
        statusText = currentErrorDescription();
    }
}

void AmbrelAppState::receive(const SeeMeMessage &message)
{
    incomingSeeMe = message;
    if (!m_end.stop_requested())
        m_sound.play();
}

void AmbrelAppState::flashSeeMeLogo()
{
    showSeeMeFlash = true;
    endFlash();
}

QCoro::Task<> AmbrelAppState::endFlash()
{
    const auto self = shared_from_this();
    const std::stop_token end = m_end.get_token();
    co_await sleepFor(m_timings.flashDuration, end);
    showSeeMeFlash = false;
}

} // namespace ambrel
