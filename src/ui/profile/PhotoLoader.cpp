#include "ui/profile/PhotoLoader.h"

#include "tasks/Worker.h"
#include "ui/profile/DataUrlImage.h"
#include "ui/window/ViewEnvironment.h"

#include <QPointer>
#include <QThread>
#include <algorithm>

namespace ambrel {

namespace {

/// One core stays free for replies and for the window.
int mostAtOnce()
{
    return std::max(1, QThread::idealThreadCount() - 1);
}

/// Runs on the worker pool.
LoadedPhoto loaded(const PhotoText &photo, QSize frame, const std::optional<PhotoText> &shown)
{
    if (shown && *shown == photo)
        return {.isUnchanged = true, .image = {}};
    return {.isUnchanged = false, .image = dataURLImage(photo.view(), frame)};
}

} // namespace

PhotoLoader &PhotoLoader::of(const QWidget &view)
{
    ViewEnvironment &environment = ViewEnvironment::of(view);
    auto *loader = environment.findChild<PhotoLoader *>(QString(), Qt::FindDirectChildrenOnly);
    return loader ? *loader : *new PhotoLoader(&environment); // owned by the environment
}

std::shared_ptr<const PhotoOrder> PhotoLoader::load(PhotoOrder order)
{
    auto kept = std::make_shared<const PhotoOrder>(std::move(order));
    m_waiting.push_back(kept);
    startNext();
    return kept;
}

void PhotoLoader::startNext()
{
    while (m_running < mostAtOnce() && !m_waiting.empty()) {
        const std::weak_ptr<const PhotoOrder> waiting = std::move(m_waiting.front());
        m_waiting.pop_front();
        const auto order = waiting.lock();
        if (!order)
            continue; // called off
        ++m_running;
        const bool isStarted = startOnWorker([loader = QPointer(this), home = CallQueue::ofThisThread(), waiting,
                                              photo = order->photo, frame = order->frame, shown = order->shown] {
            home->post([loader, waiting, result = loaded(photo, frame, shown)] {
                if (loader)
                    loader->finish(waiting, result);
            });
        });
        if (!isStarted)
            finish(waiting, {});
    }
}

void PhotoLoader::finish(const std::weak_ptr<const PhotoOrder> &order, const LoadedPhoto &photo)
{
    --m_running;
    if (const auto wanted = order.lock())
        wanted->receive(photo);
    startNext();
}

} // namespace ambrel
