#include "local-server/Service.h"

#include "local-server/Encounter.h"
#include "local-server/People.h"
#include "local-server/ServiceError.h"

#include <algorithm>
#include <tuple>

namespace ambrel::local {

namespace {

// Whoever moves farther than this has walked out of the neighbourhood and finds other people.
constexpr double neighbourhoodRadius = 400;

QList<PhotoText> photosOf(const UserProfile &profile)
{
    if (profile.profilePhotos.isEmpty() && profile.profilePhoto)
        return {*profile.profilePhoto};
    return profile.profilePhotos;
}

} // namespace

Service::Service(const LocalServerOptions &options)
    : m_options(options), m_neighbours(options.people, options.seed, options.walkingPace)
{
}

Service::~Service() = default;

UserResponse Service::signup(const RegisterRequest &request)
{
    Account &account = m_accounts.signUp(request);
    report(account, request.latitude, request.longitude, request.discoverable);
    return acknowledgement();
}

UserProfileResponse Service::login(const LoginRequest &request)
{
    return {m_accounts.authenticate(request.userId, request.deviceId).profile};
}

UserResponse Service::logout(const LogoutRequest &request)
{
    m_accounts.authenticate(request.userId, request.deviceId).reportedAt.reset();
    return acknowledgement();
}

UserResponse Service::updateLocation(const LocationUpdateRequest &request)
{
    Account &account = m_accounts.authenticate(request.userId, request.deviceId);
    report(account, request.latitude, request.longitude, request.discoverable);
    return acknowledgement();
}

CheckResponse Service::check(const QString &userId, const QString &deviceId)
{
    Account &account = m_accounts.authenticate(userId, deviceId);
    CheckResponse response;
    response.active = account.isLive(now());
    response.thresholdPercent = leastScore;
    response.maxDistanceMeters = reachMeters;
    response.checkedAt = isoTime(now());
    if (response.active) {
        for (const Encounter &encounter : around(account))
            response.matches.append(matchFrom(account, encounter));
    }
    if (!response.active)
        response.reason = QStringLiteral("Report your position to see who is near.");
    else if (response.matches.isEmpty())
        response.reason = QStringLiteral("Nobody is within a mile right now.");
    response.seeMeMessages = takeMessages(account);
    return response;
}

DismissResponse Service::dismiss(const DismissRequest &request)
{
    Account &account = m_accounts.authenticate(request.userId, request.deviceId);
    if (request.dismissedUserId == request.userId)
        throw ServiceError(400, QStringLiteral("You cannot dismiss yourself."));
    if (!m_accounts.find(request.dismissedUserId) && !neighbourWithId(request.dismissedUserId, m_neighbours.count()))
        throw ServiceError(404, QStringLiteral("There is nobody with this user ID."));
    account.dismissed.insert(request.dismissedUserId);
    return {true, request.dismissedUserId, isoTime(now())};
}

SeeMeResponse Service::seeMe(const SeeMeRequest &request)
{
    const Account &sender = m_accounts.authenticate(request.userId, request.deviceId);
    if (request.targetUserId == request.userId)
        throw ServiceError(400, QStringLiteral("You cannot send See Me to yourself."));
    if (!sender.isLive(now()))
        throw ServiceError(409, QStringLiteral("Go live before you send See Me."));

    const std::vector<Encounter> encounters = around(sender);
    const auto target = std::find_if(encounters.begin(), encounters.end(),
                                     [&request](const Encounter &e) { return e.userId == request.targetUserId; });
    if (target == encounters.end() || (target->account && target->account->dismissed.contains(request.userId)))
        throw ServiceError(404, QStringLiteral("That person is not nearby any more."));
    if (heatTier(target->meters) != HeatTier::VeryHot)
        throw ServiceError(403, QStringLiteral("See Me unlocks at 100 m."));
    // A neighbour has no inbox; what has to fit somewhere is the answer.
    if (m_messages.isFull(target->account ? request.targetUserId : request.userId))
        throw ServiceError(429, QStringLiteral("Too many messages are waiting. Try again later."));

    const SeeMeMessage message =
        m_messages.compose(request.userId, request.targetUserId, QStringLiteral("Can you see me?"), now());
    if (target->account) {
        m_messages.deliver(message, now());
    } else {
        const Moment due = now() + m_options.answerDelay;
        const QString answer = personAt(target->neighbour).answer.toString();
        m_messages.deliver(m_messages.compose(request.targetUserId, request.userId, answer, due), due);
    }
    return {true, message, isoTime(now())};
}

SeeMeMessagesResponse Service::seeMeMessages(const QString &userId, const QString &deviceId)
{
    return {true, takeMessages(m_accounts.authenticate(userId, deviceId)), isoTime(now())};
}

HealthResponse Service::health() const
{
    return {true, QStringLiteral("Ambrel local server"), QStringLiteral(AMBREL_VERSION), isoTime(now())};
}

AppVersionResponse Service::appVersion() const
{
    AppVersionResponse response;
    response.versionCode = 17;
    response.versionName = QStringLiteral("0.9.2");
    response.downloadUrl = m_address.resolved(QUrl(QStringLiteral("download/ambrel-beta.apk"))).toString();
    response.apkAvailable = true;
    response.apkSizeBytes = 18'874'368;
    response.apkUpdatedAt = QStringLiteral("2024-05-04T12:00:00.000Z");
    return response;
}

UserResponse Service::acknowledgement() const
{
    return {true, isoTime(now())};
}

void Service::report(Account &account, double latitude, double longitude, bool discoverable)
{
    const bool wasLive = account.isLive(now());
    account.report(latitude, longitude, discoverable, now());

    std::optional<Neighbourhood> &home = account.neighbourhood;
    if (wasLive && home && distanceMeters(home->centre, account.position()) <= neighbourhoodRadius)
        return;
    const Moment nextSeeMe = home ? home->nextSeeMe : Moment::min();
    home.reset(); // so that it is not found again
    home = neighbourhoodAt(account.position());
    home->nextSeeMe = std::max(nextSeeMe, now() + m_options.firstSeeMeDelay);
}

Neighbourhood Service::neighbourhoodAt(const Coordinates &place) const
{
    // Users who are near each other see the same people in the same places.
    for (const Account &other : m_accounts.all()) {
        if (other.isLive(now()) && other.neighbourhood &&
            distanceMeters(other.neighbourhood->centre, place) <= neighbourhoodRadius)
            return *other.neighbourhood;
    }
    return {place, now(), Moment::min()};
}

std::vector<Encounter> Service::around(const Account &viewer) const
{
    std::vector<Encounter> encounters;
    const auto meet = [&encounters, &viewer](Encounter encounter, const Coordinates &position) {
        encounter.meters = distanceMeters(viewer.position(), position);
        if (encounter.meters <= reachMeters && !viewer.dismissed.contains(encounter.userId))
            encounters.push_back(std::move(encounter));
    };
    for (const Account &other : m_accounts.all()) {
        if (&other != &viewer && other.profile.discoverable && other.isLive(now()))
            meet({.userId = other.profile.userId, .account = &other}, other.position());
    }
    if (viewer.neighbourhood) {
        for (int index = 0; index < m_neighbours.count(); ++index)
            meet({.userId = neighbourId(index), .neighbour = index},
                 m_neighbours.position(*viewer.neighbourhood, index, now()));
    }
    std::sort(encounters.begin(), encounters.end(), [](const Encounter &a, const Encounter &b) {
        return std::tie(a.meters, a.userId) < std::tie(b.meters, b.userId);
    });
    return encounters;
}

MatchResult Service::matchFrom(const Account &viewer, const Encounter &encounter)
{
    const HeatTier tier = heatTier(encounter.meters);
    MatchResult match;
    match.userId = encounter.userId;
    match.distanceMeters = encounter.meters;
    match.aToB = score(viewer.profile.userId, encounter.userId);
    match.bToA = score(encounter.userId, viewer.profile.userId);
    match.heatLevel = heatLevel(tier);
    if (encounter.account) {
        const UserProfile &profile = encounter.account->profile;
        const QList<PhotoText> photos = photosOf(profile);
        match.displayName = profile.displayName;
        match.profileBio = profile.profileBio;
        match.profilePhotos = photos.mid(0, photosShown(photos.size(), tier));
        match.updatedAt = isoTime(*encounter.account->reportedAt);
    } else {
        const Person &person = personAt(encounter.neighbour);
        match.displayName = person.name.toString();
        match.profileBio = person.bio.toString();
        match.profilePhotos = m_portraits.photos(person, photosShown(person.photoCount, tier));
        match.updatedAt = isoTime(now());
    }
    if (!match.profilePhotos.isEmpty())
        match.profilePhoto = match.profilePhotos.constFirst();
    return match;
}

void Service::letNeighboursCall(Account &account)
{
    const bool canBeSeen = account.isLive(now()) && account.profile.discoverable && account.neighbourhood;
    if (!canBeSeen || now() < account.neighbourhood->nextSeeMe || m_messages.isFull(account.profile.userId))
        return;
    const std::vector<Encounter> encounters = around(account);
    const auto nearest =
        std::find_if(encounters.begin(), encounters.end(), [](const Encounter &e) { return !e.account; });
    if (nearest == encounters.end() || heatTier(nearest->meters) != HeatTier::VeryHot)
        return;
    const QString question = personAt(nearest->neighbour).question.toString();
    m_messages.deliver(m_messages.compose(nearest->userId, account.profile.userId, question, now()), now());
    account.neighbourhood->nextSeeMe = now() + m_options.seeMeInterval;
}

QList<SeeMeMessage> Service::takeMessages(Account &account)
{
    letNeighboursCall(account);
    return m_messages.take(account.profile.userId, now());
}

} // namespace ambrel::local
