#pragma once

#include "local-server/LocalServer.h"
#include "model/Json.h"
#include "model/RequestRecords.h"
#include "model/ResponseRecords.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>
#include <memory>

/// What came back for one request.
struct Reply
{
    int status = 0;
    QByteArray body;
    QByteArray allowed;

    /// The body as a record; an unreadable one fails the test by throwing.
    template <typename Record>
    Record as() const
    {
        const std::string_view json(body.constData(), std::size_t(body.size()));
        return ambrel::readRecord<Record>(std::make_shared<ambrel::Bytes>(json));
    }
    QString error() const { return as<ambrel::APIErrorResponse>().error; }
};

/// A local server in this process with a clock that the test moves, and Qt's HTTP client to speak to it.
class TestServer
{
public:
    using Duration = std::chrono::milliseconds;

    explicit TestServer(int people)
        : TestServer([people] {
              ambrel::LocalServerOptions options;
              options.people = people;
              return options;
          }())
    {
    }
    explicit TestServer(ambrel::LocalServerOptions options)
    {
        options.clock = [this] { return m_now; };
        m_server = std::make_unique<ambrel::LocalServer>(options);
        m_server->listen();
    }

    QUrl url() const { return m_server->url(); }
    quint16 port() const { return quint16(m_server->url().port()); }
    void advance(Duration duration) { m_now += duration; }

    Reply send(const QByteArray &method, const QByteArray &path, const QByteArray &body = {})
    {
        QNetworkRequest request(QUrl::fromEncoded(url().toEncoded() + path));
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
        const std::unique_ptr<QNetworkReply> reply(m_network.sendCustomRequest(request, method, body));
        // A spy waits in an event loop of its own; qWaitFor() would sleep between two looks.
        if (!QSignalSpy(reply.get(), &QNetworkReply::finished).wait())
            qFatal("no answer");
        return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), reply->readAll(),
                reply->rawHeader("Allow")};
    }
    Reply get(const QByteArray &path) { return send("GET", path); }
    Reply post(const QByteArray &path, const QByteArray &body) { return send("POST", path, body); }
    template <ambrel::WireRecord Record>
    Reply post(const QByteArray &path, const Record &record)
    {
        return post(path, ambrel::writeRecord(record));
    }

private:
    ambrel::local::Moment m_now = std::chrono::seconds(1'700'000'000);
    std::unique_ptr<ambrel::LocalServer> m_server;
    QNetworkAccessManager m_network;
};

inline constexpr double homeLatitude = 39.0458;
inline constexpr double homeLongitude = -84.5086;

/// A sign-up of `userId` from the device "device-" + `userId`.
inline ambrel::RegisterRequest registration(const QString &userId, double latitude = homeLatitude,
                                            double longitude = homeLongitude)
{
    ambrel::RegisterRequest request;
    request.userId = userId;
    request.deviceId = QStringLiteral("device-") + userId;
    request.displayName = userId.toUpper();
    request.latitude = latitude;
    request.longitude = longitude;
    request.discoverable = true;
    request.aboutMe = {0, 1, 2};
    request.lookingFor = {0, 1, 2};
    return request;
}

/// The position report of a user made by registration().
inline ambrel::LocationUpdateRequest location(const QString &userId, double latitude = homeLatitude,
                                              double longitude = homeLongitude)
{
    return {userId, QStringLiteral("device-") + userId, latitude, longitude, true};
}

/// What the server shows to a user made by registration().
inline ambrel::CheckResponse check(TestServer &server, const QString &userId)
{
    const QByteArray id = QUrl::toPercentEncoding(userId);
    return server.get("api/check/" + id + "?deviceId=device-" + id).as<ambrel::CheckResponse>();
}

/// The messages that wait for a user made by registration().
inline QList<ambrel::SeeMeMessage> inbox(TestServer &server, const QString &userId)
{
    const QByteArray id = QUrl::toPercentEncoding(userId);
    return server.get("api/see-me/" + id + "?deviceId=device-" + id).as<ambrel::SeeMeMessagesResponse>().seeMeMessages;
}
