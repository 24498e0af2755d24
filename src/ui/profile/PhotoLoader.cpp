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
int maxAtOnce()
{
    return std::max(1, QThread::idealThreadCount() - 1);
}

/// Runs on the worker pool.
LoadedPhoto loaded(const PhotoText &photo, QSize frame, const std::optional<PhotoText> &shown,
                   const std::weak_ptr<const PhotoOrder> &order)
{
    if (shown && *shown == photo)
        return {.isUnchanged = true, .image = {}};
    return {.isUnchanged = false,
            .image = dataURLImage(photo.view(), frame, {.isWanted = [order] { return !order.expired(); }})};
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

std::shared_ptr<const PhotoOrder> PhotoLoader::takeNext()
{
    std::erase_if(m_waiting, [](const auto &order) { return order.expired(); }); // called off
    if (m_waiting.empty())
        return {};
    auto next =
        std::find_if(m_waiting.begin(), m_waiting.end(), [](const auto &order) { return order.lock()->isOnScreen(); });
    if (next == m_waiting.end())
        next = m_waiting.begin();
    auto order = next->lock();
    m_waiting.erase(next);
    return order;
}

void PhotoLoader::startNext()
{
    while (m_running < maxAtOnce()) {
        const auto order = takeNext();
        if (!order)
            return;
        ++m_running;
        const std::weak_ptr<const PhotoOrder> waiting = order;
        const bool isStarted = startOnWorker([loader = QPointer(this), home = CallQueue::ofThisThread(), waiting,
                                              photo = order->photo, frame = order->frame, shown = order->shown] {
            home->post([loader, waiting, result = loaded(photo, frame, shown, waiting)] {
                if (loader)
                    loader->finish(waiting, result);
            });
        });
        if (!isStarted)
            QMetaObject::invokeMethod(
                this, [this, waiting] { finish(waiting, {}); }, Qt::QueuedConnection);
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
