#pragma once

#include "state/AlertSound.h"

#include <QTimer>
#include <memory>

namespace ambrel {

/// Plays the desktop's own sound for a new message; beeps where there is no sound theme or no sound server. A sound
/// server may take its time, or hang: only a thread of its own waits for it, holding at most one more sound, and the
/// program ends without waiting. Main thread.
class SystemAlertSound : public AlertSound
{
public:
    SystemAlertSound();
    ~SystemAlertSound() override;

    void play() override;

private:
    class Player;
    QTimer m_beep;
    std::shared_ptr<Player> m_player; ///< shared with the thread that plays; null before the first sound
};

} // namespace ambrel
