#pragma once

#include "SettingsFolder.h"
#include "state/AlertSound.h"
#include "state/AmbrelAppState.h"

#include <QTest>
#include <memory>

namespace ambrel {

/// Counts instead of sounding.
class CountingSound : public AlertSound
{
public:
    void play() override { ++count; }
    int count = 0;
};

/// A state with settings of its own. Ends its loops before it goes.
class StateFixture
{
public:
    /// `stored` is what the preference store holds before the state is made.
    explicit StateFixture(const QVariantMap &stored = {}, const LiveTimings &timings = {})
    {
        for (auto entry = stored.cbegin(); entry != stored.cend(); ++entry)
            StoredSettings().setValue(entry.key(), entry.value());
        state = AmbrelAppState::create(sound, timings);
    }
    ~StateFixture() { end(); }
    Q_DISABLE_COPY_MOVE(StateFixture)

    /// Makes a second state on the same settings, as a restart of the application does.
    void restart(const LiveTimings &timings = {})
    {
        end();
        state = AmbrelAppState::create(sound, timings);
    }

    CountingSound sound;
    std::shared_ptr<AmbrelAppState> state;

private:
    void end()
    {
        state->shutDown();
        QCoreApplication::processEvents(); // what sleeps wakes up and ends
        QTRY_VERIFY_WITH_TIMEOUT(state.use_count() == 1, 5000);
        state.reset();
    }

    const SettingsFolder m_folder;
};

} // namespace ambrel
