#pragma once

#include "api/HttpExchange.h"
#include "model/RequestRecords.h"
#include "model/ResponseRecords.h"

namespace ambrel {

/// An endpoint that takes a record and answers with one.
template <typename Request, typename Response>
struct PostEndpoint
{
    const char *path; ///< relative to the base URL
    HttpRequest::Repeat repeat;
};

/// An endpoint that is asked by its address alone.
template <typename Response>
struct GetEndpoint
{
    const char *path; ///< relative to the base URL
};

/// An endpoint that is asked for one user, whose ID follows the path; the device ID goes along as "deviceId".
template <typename Response>
struct UserEndpoint
{
    const char *path; ///< relative to the base URL
};

/// Every endpoint of the server, for AmbrelAPI::call. What must not happen twice is never repeated.
namespace endpoints {

using enum HttpRequest::Repeat;

// clang-format off
inline constexpr PostEndpoint<RegisterRequest, UserResponse>       signup{"api/signup", Never};
inline constexpr PostEndpoint<RegisterRequest, UserResponse>       registerOrUpdate{"api/registerOrUpdate", Harmless};
inline constexpr PostEndpoint<LoginRequest, UserProfileResponse>   login{"api/login", Harmless};
inline constexpr PostEndpoint<LogoutRequest, UserResponse>         logout{"api/logout", Harmless};
inline constexpr PostEndpoint<LocationUpdateRequest, UserResponse> updateLocation{"api/location", Harmless};
inline constexpr UserEndpoint<CheckResponse>                       check{"api/check/"};
inline constexpr PostEndpoint<DismissRequest, DismissResponse>     dismiss{"api/dismiss", Never};
inline constexpr PostEndpoint<SeeMeRequest, SeeMeResponse>         seeMe{"api/see-me", Never};
inline constexpr UserEndpoint<SeeMeMessagesResponse>               seeMeMessages{"api/see-me/"};
inline constexpr GetEndpoint<HealthResponse>                       health{"health"};
inline constexpr GetEndpoint<AppVersionResponse>                   appVersion{"api/app-version"};
// clang-format on

} // namespace endpoints

} // namespace ambrel
