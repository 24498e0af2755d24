#include "state/AmbrelAppState.h"
#include "state/ErrorDescription.h"
#include "state/OwnedPhotos.h"
#include "tasks/Sleep.h"
#include "tasks/Worker.h"

#include <algorithm>

namespace ambrel {

namespace {

using Cycle = QCoro::Task<> (AmbrelAppState::*)();

/// Runs `cycle` again and again, `pause` after each end, until it is stopped. Only a stop ends it: while the state
/// is gone it idles.
QCoro::Task<> repeat(std::weak_ptr<AmbrelAppState> weakState, Cycle cycle, std::chrono::milliseconds pause,
                     std::stop_token stop)
{
    const std::chrono::milliseconds nextTurn{0};
    co_await sleepFor(nextTurn, stop); // whoever starts a loop finishes first
    while (!stop.stop_requested()) {
        if (const auto state = weakState.lock()) {
            const auto work = ((*state).*cycle)();
            co_await work;
        }
        co_await sleepFor(pause, stop);
    }
}

} // namespace

void AmbrelAppState::startLive()
{
    if (m_exit.stop_requested())
        return; // a sign-up was answered late
    if (!isSignedIn()) {
        statusText = QStringLiteral("Sign up or log in first.");
        return;
    }
    saveSettings();
    discoverable = true;
    isLive = true;
    cancelLoops();

    const auto loop = [this](Cycle cycle, std::chrono::milliseconds pause) {
        return BackgroundTask(
            [=, weak = weak_from_this()](std::stop_token stop) { return repeat(weak, cycle, pause, std::move(stop)); });
    };
    liveTask = loop(&AmbrelAppState::updateAndCheck, m_timings.livePause);
    seeMeTask = loop(&AmbrelAppState::pollSeeMe, m_timings.seeMePause);
}

void AmbrelAppState::stopLive()
{
    discoverable = false;
    isLive = false;
    cancelLoops();
    liveTask.reset();
    seeMeTask.reset();
    statusText = QStringLiteral("Paused.");
}

void AmbrelAppState::cancelLoops()
{
    if (liveTask)
        liveTask->cancel();
    if (seeMeTask)
        seeMeTask->cancel();
}

QCoro::Task<> AmbrelAppState::updateAndCheck()
{
    const auto self = shared_from_this();
    if (!isSignedIn())
        co_return;

    const LocationUpdateRequest position{userId, deviceId, latitude(), longitude(), discoverable};
    try {
        const auto positionClient = api;
        co_await positionClient->call(endpoints::updateLocation, position);

        // The user may have edited the ID or the address meanwhile.
        const auto checkClient = api;
        const QString checkedUserId = userId;
        const auto reply = co_await checkClient->call(endpoints::check, checkedUserId, deviceId);
        accept(reply);
    } catch (...) {
        statusText = currentErrorDescription();
    }
}

void AmbrelAppState::accept(const CheckResponse &reply)
{
    replaceMatches(reply.matches);
    if (!selectedMatch.value() || !isListed(selectedMatch.value()->userId))
        selectFirstMatch();
    else if (!ownsPhotos(*selectedMatch.value()))
        runDetached(ownSelectedPhotos());

    if (!reply.seeMeMessages.isEmpty())
        receive(reply.seeMeMessages.first());

    statusText = reply.matches.isEmpty() ? QStringLiteral("No matches nearby.")
                                         : QString::number(reply.matches.size()) + QStringLiteral(" nearby.");
}

void AmbrelAppState::replaceMatches(QList<MatchResult> list)
{
    // The views let go of the old list when they refresh, which comes before this call; a worker then frees it.
    QMetaObject::invokeMethod(
        this, [outdated = matches.exchange(std::move(list))]() mutable { destroyOnWorker(std::move(outdated)); },
        Qt::QueuedConnection);
}

bool AmbrelAppState::isListed(const QString &matchUserId) const
{
    return std::any_of(matches->cbegin(), matches->cend(),
                       [&matchUserId](const MatchResult &match) { return match.userId == matchUserId; });
}

void AmbrelAppState::selectFirstMatch()
{
    selectedMatch = matches->isEmpty() ? std::optional<MatchResult>() : matches->first();
}

QCoro::Task<> AmbrelAppState::ownSelectedPhotos()
{
    const auto self = shared_from_this();
    const MatchResult selected = *selectedMatch.value();
    const auto copying = runOnWorker([selected] { return withOwnedPhotos(selected); });
    const auto owned = co_await copying;
    if (selectedMatch.value() && hasSamePhotos(*selectedMatch.value(), selected))
        selectedMatch = owned;
}

} // namespace ambrel
