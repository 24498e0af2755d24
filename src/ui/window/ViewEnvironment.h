#pragma once

#include "state/AmbrelAppState.h"
#include "ui/window/ViewTimings.h"

#include <QObject>
#include <QWidget>
#include <memory>

namespace ambrel {

/// What every view of a window can reach: the state, how long things take, and one refresh per turn of the event loop
/// after the state has changed. Owned by the window's root widget. Main thread only.
class ViewEnvironment : public QObject
{
    Q_OBJECT

public:
    /// Gives `root` and all views beneath it this state.
    static ViewEnvironment &inject(QWidget &root, std::shared_ptr<AmbrelAppState> state,
                                   const ViewTimings &timings = {});
    /// The environment that `view` stands in. A view without one is a programming error and ends the program.
    static ViewEnvironment &of(const QWidget &view);

    AmbrelAppState &state() const { return *m_state; }
    const ViewTimings &timings() const { return m_timings; }

Q_SIGNALS:
    /// The state has changed since the last refresh; views re-read what they show.
    void stateDidChange();

private:
    ViewEnvironment(QWidget &root, std::shared_ptr<AmbrelAppState> state, const ViewTimings &timings);
    void scheduleRefresh();

    const std::shared_ptr<AmbrelAppState> m_state;
    const ViewTimings m_timings;
    bool m_isRefreshScheduled = false;
};

} // namespace ambrel
