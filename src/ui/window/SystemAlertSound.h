#pragma once

#include "state/AlertSound.h"

#include <memory>

namespace ambrel {

/// Plays the desktop's own sound for a new message; beeps where there is no sound theme or no sound server.
/// The sound library is loaded for the first sound, on a worker thread: connecting to a sound server can take seconds.
class SystemAlertSound : public AlertSound
{
public:
    SystemAlertSound();
    ~SystemAlertSound() override;

    void play() override;

private:
    class Player;
    std::shared_ptr<Player> m_player; ///< shared with the worker that plays
};

} // namespace ambrel
