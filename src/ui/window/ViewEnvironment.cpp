#include "ui/window/ViewEnvironment.h"

#include <QMetaObject>

namespace ambrel {

ViewEnvironment &ViewEnvironment::inject(QWidget &root, std::shared_ptr<AmbrelAppState> state,
                                         const ViewTimings &timings)
{
    return *new ViewEnvironment(root, std::move(state), timings); // owned by root
}

ViewEnvironment &ViewEnvironment::of(const QWidget &view)
{
    for (const QWidget *ancestor = &view; ancestor; ancestor = ancestor->parentWidget()) {
        if (auto *const environment = ancestor->findChild<ViewEnvironment *>(QString(), Qt::FindDirectChildrenOnly))
            return *environment;
    }
    qFatal("%s stands in no view environment", view.metaObject()->className());
}

ViewEnvironment::ViewEnvironment(QWidget &root, std::shared_ptr<AmbrelAppState> state, const ViewTimings &timings)
    : QObject(&root), m_state(std::move(state)), m_timings(timings)
{
    connect(m_state.get(), &AmbrelAppState::objectWillChange, this, &ViewEnvironment::scheduleRefresh);
}

void ViewEnvironment::scheduleRefresh()
{
    if (std::exchange(m_isRefreshScheduled, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isRefreshScheduled = false;
            Q_EMIT stateDidChange();
        },
        Qt::QueuedConnection);
}

} // namespace ambrel
