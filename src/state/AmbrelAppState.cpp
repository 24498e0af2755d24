#include "state/AmbrelAppState.h"

namespace ambrel {

std::shared_ptr<AmbrelAppState> AmbrelAppState::create(AlertSound &sound, const LiveTimings &timings)
{
    return std::shared_ptr<AmbrelAppState>(new AmbrelAppState(sound, timings)); // owned by the pointer
}

AmbrelAppState::AmbrelAppState(AlertSound &sound, const LiveTimings &timings)
    : m_sound(sound), m_timings(timings), deviceId(m_settings.deviceId())
{
    readSettings();
    api = std::make_shared<AmbrelAPI>(serverBaseURL);
}

AmbrelAppState::~AmbrelAppState() = default;

bool AmbrelAppState::isSignedIn() const
{
    return !userId->trimmed().isEmpty();
}

void AmbrelAppState::shutDown()
{
    cancelLoops();
    m_exit.request_stop();
}

} // namespace ambrel
