#pragma once

#include "state/AmbrelAppState.h"

#include <QObject>
#include <QWidget>
#include <memory>

namespace ambrel {

/// What every view of a window can reach: the state, and one refresh per turn of the event loop after it changed.
/// Owned by the window's root widget. Main thread only.
class ViewEnvironment : public QObject
{
    Q_OBJECT

public:
    /// Gives `root` and all views beneath it this state.
    static ViewEnvironment &inject(QWidget &root, std::shared_ptr<AmbrelAppState> state);
    /// The environment that `view` stands in. A view without one is a programming error and ends the program.
    static ViewEnvironment &of(const QWidget &view);

    AmbrelAppState &state() const { return *m_state; }

Q_SIGNALS:
    /// The state has changed since the last refresh; views re-read what they show.
    void stateDidChange();

private:
    ViewEnvironment(QWidget &root, std::shared_ptr<AmbrelAppState> state);
    void scheduleRefresh();

    std::shared_ptr<AmbrelAppState> m_state;
    bool m_isRefreshScheduled = false;
};

} // namespace ambrel
