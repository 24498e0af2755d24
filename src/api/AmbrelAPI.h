#pragma once

#include "model/RequestRecords.h"
#include "model/ResponseRecords.h"

#include <QCoroTask>
#include <QUrl>

namespace ambrel {

/// The client of one server: one operation per endpoint. Main thread; decoding happens on the worker pool.
/// Every operation fails with AmbrelAPIError, TransportError, DecodingError or EncodingError; a reply that does
/// not fit the memory fails with std::bad_alloc.
/// The object may be released while its operations run.
class AmbrelAPI
{
public:
    /// Takes the server address as typed; always succeeds.
    explicit AmbrelAPI(const QString &baseURLString);

    QUrl baseURL() const { return m_baseURL; }
    void setBaseURL(const QUrl &url) { m_baseURL = url; }

    QCoro::Task<UserResponse> signup(const RegisterRequest &request) const;
    QCoro::Task<UserResponse> registerOrUpdate(const RegisterRequest &request) const;
    QCoro::Task<UserProfileResponse> login(const LoginRequest &request) const;
    QCoro::Task<UserResponse> logout(const LogoutRequest &request) const;
    QCoro::Task<UserResponse> updateLocation(const LocationUpdateRequest &request) const;
    QCoro::Task<CheckResponse> check(const QString &userId, const QString &deviceId) const;
    QCoro::Task<DismissResponse> dismiss(const DismissRequest &request) const;
    QCoro::Task<SeeMeResponse> seeMe(const SeeMeRequest &request) const;
    QCoro::Task<SeeMeMessagesResponse> seeMeMessages(const QString &userId, const QString &deviceId) const;
    QCoro::Task<HealthResponse> health() const;
    QCoro::Task<AppVersionResponse> appVersion() const;

private:
    QUrl m_baseURL;
};

} // namespace ambrel
