#pragma once

#include "api/AmbrelAPI.h"
#include "model/ResponseRecords.h"
#include "state/LiveTimings.h"
#include "state/Published.h"
#include "state/SettingsStore.h"
#include "tasks/BackgroundTask.h"

#include <QCoroTask>
#include <QObject>
#include <memory>
#include <optional>

namespace ambrel {

class AlertSound;

/// The one state object of the application: what the user typed, what the server last said, and every operation
/// that the user can start. Lives on the main thread. Operations never fail towards their caller: each outcome
/// becomes a status text.
class AmbrelAppState : public QObject, public std::enable_shared_from_this<AmbrelAppState>
{
    Q_OBJECT
    template <typename Value>
    using Observable = Published<AmbrelAppState, Value>;

public:
    /// Reads the settings and makes the device ID on first launch. `sound` must outlive `shutDown`.
    static std::shared_ptr<AmbrelAppState> create(AlertSound &sound, const LiveTimings &timings = {});
    ~AmbrelAppState() override;

    Observable<QString> serverBaseURL{this, {}}; ///< as typed; normalised by saveSettings
    Observable<QString> userId{this, {}};
    Observable<QString> displayName{this, {}};
    Observable<QString> email{this, {}};
    Observable<QString> phone{this, {}};
    Observable<QString> profileBio{this, {}};
    Observable<QString> latitudeText{this, {}};  ///< degrees as typed
    Observable<QString> longitudeText{this, {}}; ///< degrees as typed
    Observable<bool> discoverable{this, true};
    Observable<QList<MatchResult>> matches{this, {}}; ///< in the server's order
    Observable<QString> statusText{this, QStringLiteral("Ready.")};
    Observable<bool> showSeeMeFlash{this, false};
    Observable<std::optional<SeeMeMessage>> incomingSeeMe{this, {}};
    Observable<std::optional<MatchResult>> selectedMatch{this, {}};
    Observable<bool> isBusy{this, false}; ///< disables buttons; it is no lock
    Observable<bool> isLive{this, false};
    Observable<QString> serverStatusText{this, QStringLiteral("Server not checked.")};
    Observable<QString> betaStatusText{this, QStringLiteral("Android beta not checked.")};

    /// Degrees; 39.0458 when the text does not parse.
    double latitude() const;
    /// Degrees; -84.5086 when the text does not parse.
    double longitude() const;
    /// True when the user ID is not blank.
    bool isSignedIn() const;

    /// Normalises the server address, rebuilds the server client and stores the eight user settings in the background.
    void saveSettings();

    // Account
    /// Signs up with what is typed, under an ID made of the name if none is, saves and goes live.
    QCoro::Task<> signup();
    /// Fetches the profile of the typed user ID into the fields and saves. Does not go live.
    QCoro::Task<> login();

    // Server status
    /// Saves, then asks the server how it is and for the latest app version.
    QCoro::Task<> checkServerStatus();

    // Live loop
    /// Starts both loops, or restarts them.
    void startLive();
    /// Ends both loops after their current cycle; nothing tells the server.
    void stopLive();
    /// One cycle of the live loop.
    QCoro::Task<> updateAndCheck();

    // Match actions
    /// Makes `match` the selected one.
    void keep(const MatchResult &match);
    /// Tells the server never to show `match` again and takes it off the list.
    QCoro::Task<> dismiss(MatchResult match);
    /// Sends `match` a See Me message and flashes, where its tier allows that.
    QCoro::Task<> seeMe(MatchResult match);

    // See Me
    /// One cycle of the See Me loop.
    QCoro::Task<> pollSeeMe();
    /// Shows the flash for its fixed duration.
    void flashSeeMeLogo();

    // Exit
    /// Asks the loops and the flash to end, which they do when the event loop turns next; nothing starts or sounds any
    /// more. Requests in flight end by themselves or with the HTTP session, which may be after this state's other
    /// owners have gone.
    void shutDown();

Q_SIGNALS:
    /// Emitted right before any observable field changes.
    void objectWillChange();

private:
    AmbrelAppState(AlertSound &sound, const LiveTimings &timings);

    void readSettings();
    RegisterRequest registration(const QString &name) const;
    void adopt(const UserProfile &profile);
    void cancelLoops();
    void accept(const CheckResponse &reply);
    void replaceMatches(QList<MatchResult> list);
    bool isListed(const QString &matchUserId) const;
    void selectFirstMatch();
    /// Lets go of an old reply that only the selection's photos keep alive.
    QCoro::Task<> ownSelectedPhotos();
    void removeFromMatches(const QString &matchUserId);
    void receive(const SeeMeMessage &message);
    QCoro::Task<> endFlash();

    AlertSound &m_sound;
    const LiveTimings m_timings;
    SettingsStore m_settings;
    const QString deviceId;
    std::shared_ptr<AmbrelAPI> api; ///< shared: a request in flight keeps the client it started on
    std::optional<BackgroundTask> liveTask;
    std::optional<BackgroundTask> seeMeTask;
    std::stop_source m_exit; ///< stopped by shutDown; cuts the flash short
};

} // namespace ambrel
