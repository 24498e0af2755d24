#pragma once

#include <QLibrary>
#include <curl/curl.h>

namespace ambrel {

/// libcurl's functions, found when the first request is made: linked in the usual way, it and the twenty-seven
/// libraries that it needs are an eighth of the time from exec to the first frame and three megabytes. Any thread.
class Curl
{
    /// Becomes the type that libcurl's header declares.
    struct Address
    {
        QFunctionPointer found;
        template <typename Function> // NOLINTNEXTLINE: that is all it is for
        operator Function *() const
        {
            return reinterpret_cast<Function *>(found);
        }
    };

    QLibrary m_library{QStringLiteral("curl"), 4}; // the version of its interface
    bool m_isWhole = true;

    Address find(const char *name)
    {
        const QFunctionPointer found = m_library.resolve(name);
        m_isWhole = m_isWhole && found;
        return {found};
    }

public:
    /// False when the library, or one of these, is missing: then none of them may be called.
    bool isLoaded() const { return m_isWhole; }

    decltype(&curl_global_init) global_init = find("curl_global_init");
    decltype(&curl_global_cleanup) global_cleanup = find("curl_global_cleanup");
    decltype(&curl_easy_init) easy_init = find("curl_easy_init");
    decltype(&curl_easy_cleanup) easy_cleanup = find("curl_easy_cleanup");
    decltype(&curl_easy_setopt) easy_setopt = find("curl_easy_setopt");
    decltype(&curl_easy_getinfo) easy_getinfo = find("curl_easy_getinfo");
    decltype(&curl_multi_init) multi_init = find("curl_multi_init");
    decltype(&curl_multi_cleanup) multi_cleanup = find("curl_multi_cleanup");
    decltype(&curl_multi_setopt) multi_setopt = find("curl_multi_setopt");
    decltype(&curl_multi_add_handle) multi_add_handle = find("curl_multi_add_handle");
    decltype(&curl_multi_remove_handle) multi_remove_handle = find("curl_multi_remove_handle");
    decltype(&curl_multi_info_read) multi_info_read = find("curl_multi_info_read");
    decltype(&curl_multi_socket_action) multi_socket_action = find("curl_multi_socket_action");
    decltype(&curl_multi_poll) multi_poll = find("curl_multi_poll");
    decltype(&curl_multi_wakeup) multi_wakeup = find("curl_multi_wakeup");

    static const Curl &library()
    {
        static const Curl curl;
        return curl;
    }
};

} // namespace ambrel
