#include "state/AmbrelAppState.h"
#include "tasks/Sleep.h"

namespace ambrel {

void AmbrelAppState::flashSeeMeLogo()
{
    showSeeMeFlash = true;
    runDetached(endFlash());
}

QCoro::Task<> AmbrelAppState::endFlash()
{
    const auto self = shared_from_this();
    const std::stop_token exit = m_exit.get_token();
    co_await sleepFor(m_timings.flashDuration, exit);
    showSeeMeFlash = false;
}

} // namespace ambrel
