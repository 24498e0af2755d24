#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace ambrel {

/// A person as far as the model looks.
struct ModelPerson
{
    QString id;
    double distance;
    QString heat;

    QString text() const { return QStringLiteral("%1/%2/%3").arg(id).arg(distance).arg(heat); }
};

/// A request that waits for its answer.
struct ModelRequest
{
    enum class Kind { SignUp, LogIn, Health, Version, Location, Check, Dismiss, SeeMe, Inbox };
    Kind kind;
    QString prefix;        ///< the path of the server's address
    QString path;          ///< what follows the prefix
    QJsonObject body = {}; ///< empty for a GET
    QString note = {};     ///< whom a dismissal takes away; what a healthy server's line will be
    bool isFromLoop = false;

    /// True when the server cannot tell them apart.
    bool looksLike(const ModelRequest &other) const
    {
        return prefix + path == other.prefix + other.path && body == other.body;
    }
};

/// What the server says to one request.
struct ModelReply
{
    QString error = {}; ///< the text for the user; empty for success
    QList<ModelPerson> people = {};
    QStringList messages = {};
    bool isGood = true;    ///< a healthy server; an app to download; a profile with an e-mail address
    QString latitude = {}; ///< of a profile
};

/// What the application's state must be, told by the rules of its behaviour alone: no coroutines, no network, one
/// function for each action and each answer.
class StateModel
{
public:
    explicit StateModel(const QString &address) : m_address(address), m_stored{address, QStringLiteral("me")}
    {
        start();
    }

    // What the user does.
    void signUp()
    {
        const QString name = displayName.trimmed();
        if (name.isEmpty()) {
            statusText = QStringLiteral("Add a display name.");
            return;
        }
        isBusy = true;
        if (userId.isEmpty()) {
            for (const QChar character : name.toLower())
                userId += character.isLetterOrNumber() ? QString(character) : QString();
        }
        const QJsonArray codes{0, 1, 2};
        send({.kind = Kind::SignUp,
              .prefix = m_prefix,
              .path = QStringLiteral("/api/signup"),
              .body = {{QStringLiteral("userId"), userId},
                       {QStringLiteral("deviceId"), deviceId()},
                       {QStringLiteral("displayName"), name},
                       {QStringLiteral("email"), email},
                       {QStringLiteral("phone"), QString()},
                       {QStringLiteral("latitude"), latitude()},
                       {QStringLiteral("longitude"), -84.5086},
                       {QStringLiteral("discoverable"), discoverable},
                       {QStringLiteral("aboutMe"), codes},
                       {QStringLiteral("lookingFor"), codes},
                       {QStringLiteral("profileBio"), QString()},
                       {QStringLiteral("profilePhotos"), QJsonArray()}}});
    }

    void logIn()
    {
        if (!isSignedIn()) {
            statusText = QStringLiteral("Enter your user ID.");
            return;
        }
        isBusy = true;
        send({.kind = Kind::LogIn, .prefix = m_prefix, .path = QStringLiteral("/api/login"), .body = identity()});
    }

    void checkServer()
    {
        save();
        isBusy = true;
        send({.kind = Kind::Health, .prefix = m_prefix, .path = QStringLiteral("/health")});
    }

    void startLive()
    {
        if (m_hasEnded)
            return;
        if (!isSignedIn()) {
            statusText = QStringLiteral("Sign up or log in first.");
            return;
        }
        save();
        discoverable = true;
        isLive = true;
        m_loopsStart = true;
    }

    void stopLive()
    {
        discoverable = false;
        isLive = false;
        m_loopsStart = false;
        statusText = QStringLiteral("Paused.");
    }

    void updateAndCheck(bool isFromLoop = false)
    {
        if (!isSignedIn())
            return;
        QJsonObject body = identity();
        body.insert(QStringLiteral("latitude"), latitude());
        body.insert(QStringLiteral("longitude"), -84.5086);
        body.insert(QStringLiteral("discoverable"), discoverable);
        send({.kind = Kind::Location,
              .prefix = m_prefix,
              .path = QStringLiteral("/api/location"),
              .body = body,
              .isFromLoop = isFromLoop});
    }

    void pollInbox(bool isFromLoop = false)
    {
        if (isSignedIn())
            send({.kind = Kind::Inbox,
                  .prefix = m_prefix,
                  .path = QStringLiteral("/api/see-me/") + userId,
                  .isFromLoop = isFromLoop});
    }

    void keep(const ModelPerson &person)
    {
        selected = person;
        statusText = QStringLiteral("Keeping %1 visible.").arg(person.id.toUpper());
    }

    void dismiss(const ModelPerson &person)
    {
        QJsonObject body = identity();
        body.insert(QStringLiteral("dismissedUserId"), person.id);
        send({.kind = Kind::Dismiss,
              .prefix = m_prefix,
              .path = QStringLiteral("/api/dismiss"),
              .body = body,
              .note = person.id});
    }

    void seeMe(const ModelPerson &person)
    {
        if (person.heat != QLatin1String("VERY_HOT")) {
            statusText = QStringLiteral("See Me unlocks at 100 m.");
            return;
        }
        QJsonObject body = identity();
        body.insert(QStringLiteral("targetUserId"), person.id);
        send({.kind = Kind::SeeMe, .prefix = m_prefix, .path = QStringLiteral("/api/see-me"), .body = body});
    }

    void end() { m_hasEnded = true; }
    /// The program starts again.
    void start() { *this = StateModel(m_address, m_stored); }

    /// The event loop turns: loops that have been started run their first cycle.
    void turn()
    {
        if (!std::exchange(m_loopsStart, false))
            return;
        updateAndCheck(true);
        pollInbox(true);
    }

    // What the server answers to the request at `index`.
    void receive(qsizetype index, const ModelReply &reply)
    {
        const ModelRequest request = requests.takeAt(index);
        switch (request.kind) {
        case Kind::SignUp:
            if (hasFailed(reply, statusText)) {
                isBusy = false;
                return;
            }
            save();
            statusText = QStringLiteral("Signed up.");
            startLive();
            isBusy = false;
            return;
        case Kind::LogIn:
            if (!hasFailed(reply, statusText))
                adopt(reply);
            isBusy = false;
            return;
        case Kind::Health:
            if (hasFailed(reply, serverStatusText)) {
                betaStatusText = QStringLiteral("Android beta status unavailable.");
                isBusy = false;
                return;
            }
            send({.kind = Kind::Version,
                  .prefix = request.prefix,
                  .path = QStringLiteral("/api/app-version"),
                  .note = reply.isGood ? QStringLiteral("Core v2 is online.")
                                       : QStringLiteral("Core responded, but is not healthy.")});
            return;
        case Kind::Version:
            betaStatusText = QStringLiteral("Android beta status unavailable.");
            if (!hasFailed(reply, serverStatusText)) {
                serverStatusText = request.note;
                betaStatusText = reply.isGood
                                     ? QStringLiteral("Android beta 1.4 is available.")
                                     : QStringLiteral("Android beta 1.4 is advertised, but no APK is uploaded.");
            }
            isBusy = false;
            return;
        case Kind::Location:
            if (!hasFailed(reply, statusText))
                send({.kind = Kind::Check,
                      .prefix = m_prefix,
                      .path = QStringLiteral("/api/check/") + userId,
                      .isFromLoop = request.isFromLoop});
            return;
        case Kind::Check:
            if (!hasFailed(reply, statusText))
                accept(reply);
            return;
        case Kind::Inbox:
            if (!hasFailed(reply, statusText))
                show(reply.messages);
            return;
        case Kind::Dismiss:
            if (hasFailed(reply, statusText))
                return;
            matches.removeIf([&request](const ModelPerson &person) { return person.id == request.note; });
            if (selected && selected->id == request.note)
                selectFirst();
            statusText = QStringLiteral("Dismissed.");
            return;
        case Kind::SeeMe:
            if (hasFailed(reply, statusText))
                return;
            showSeeMeFlash = !m_hasEnded;
            flashes += m_hasEnded ? 0 : 1;
            statusText = QStringLiteral("Sent: Can you see me?");
            return;
        }
    }

    QString serverBaseURL;
    QString userId;
    QString displayName;
    QString email;
    QString latitudeText;
    bool discoverable = true;
    QList<ModelPerson> matches;
    QString statusText = QStringLiteral("Ready.");
    bool showSeeMeFlash = false;
    QString incomingSeeMe; ///< its ID
    std::optional<ModelPerson> selected;
    bool isBusy = false;
    bool isLive = false;
    QString serverStatusText = QStringLiteral("Server not checked.");
    QString betaStatusText = QStringLiteral("Android beta not checked.");

    int sounds = 0;
    int flashes = 0;      ///< that have not ended
    int requestCount = 0; ///< ever sent
    QList<ModelRequest> requests;

private:
    using Kind = ModelRequest::Kind;
    struct Stored
    {
        QString serverBaseURL;
        QString userId = {};
        QString displayName = {};
        QString email = {};
        QString latitudeText = QStringLiteral("39.0458");
    };

    StateModel(const QString &address, const Stored &stored)
        : serverBaseURL(stored.serverBaseURL), userId(stored.userId), displayName(stored.displayName),
          email(stored.email), latitudeText(stored.latitudeText), m_address(address), m_stored(stored),
          m_prefix(stored.serverBaseURL.mid(address.size()))
    {
    }

    static QString deviceId() { return QStringLiteral("mac-1"); }
    QJsonObject identity() const
    {
        return {{QStringLiteral("userId"), userId}, {QStringLiteral("deviceId"), deviceId()}};
    }
    bool isSignedIn() const { return !userId.trimmed().isEmpty(); }
    double latitude() const
    {
        bool isNumber = false;
        const double degrees = latitudeText.trimmed().toDouble(&isNumber);
        return isNumber ? degrees : 39.0458;
    }

    void send(const ModelRequest &request)
    {
        requests += request;
        ++requestCount;
    }

    void save()
    {
        serverBaseURL = serverBaseURL.trimmed();
        while (serverBaseURL.endsWith(u'/'))
            serverBaseURL.chop(1);
        m_prefix = serverBaseURL.mid(m_address.size());
        m_stored = {serverBaseURL, userId, displayName, email, latitudeText};
    }

    static bool hasFailed(const ModelReply &reply, QString &line)
    {
        if (!reply.error.isEmpty())
            line = reply.error;
        return !reply.error.isEmpty();
    }

    void adopt(const ModelReply &reply)
    {
        displayName = QStringLiteral("Stored");
        if (reply.isGood)
            email = QStringLiteral("stored@b.example");
        discoverable = reply.isGood;
        latitudeText = reply.latitude;
        save();
        statusText = QStringLiteral("Logged in.");
    }

    void accept(const ModelReply &reply)
    {
        matches = reply.people;
        const bool isListed =
            selected && std::any_of(matches.begin(), matches.end(),
                                    [this](const ModelPerson &person) { return person.id == selected->id; });
        if (!isListed)
            selectFirst();
        show(reply.messages);
        statusText =
            matches.isEmpty() ? QStringLiteral("No matches nearby.") : QStringLiteral("%1 nearby.").arg(matches.size());
    }

    void selectFirst()
    {
        selected.reset();
        if (!matches.isEmpty())
            selected = matches.first();
    }

    void show(const QStringList &messages)
    {
        if (messages.isEmpty())
            return;
        incomingSeeMe = messages.first();
        sounds += m_hasEnded ? 0 : 1;
    }

    QString m_address;
    Stored m_stored;
    QString m_prefix;
    bool m_loopsStart = false;
    bool m_hasEnded = false;
};

} // namespace ambrel
