// libcurl, loaded when the first request is made. It brings twenty-seven libraries along (TLS, LDAP, Kerberos, ...):
// linked in the usual way they are an eighth of the time from exec to the first frame and three megabytes.
// These functions stand in for its own and look up theirs when they are first called, on the network thread.

#define CURL_DISABLE_TYPECHECK // the checks are macros with the functions' names
#include <curl/curl.h>

#include <QtGlobal>
#include <cstdarg>
#include <dlfcn.h>

// libcurl declares these with an enumeration before the "...": not ours to change.
#pragma GCC diagnostic ignored "-Wvarargs"

// Every value that travels through a "..." below is handed on as a pointer.
static_assert(sizeof(void *) == sizeof(long) && sizeof(void *) == sizeof(curl_off_t));

namespace {

/// A missing library ends the program, as it would have at start.
template <typename Function>
Function *late(const char *name)
{
    static void *const library = dlopen("libcurl.so.4", RTLD_LAZY | RTLD_LOCAL);
    void *const found = library ? dlsym(library, name) : nullptr;
    if (!found)
        qFatal("%s", dlerror()); // NOLINT(concurrency-mt-unsafe): glibc keeps one text a thread
    return reinterpret_cast<Function *>(found);
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)

CURLcode curl_global_init(long flags)
{
    static auto *const original = late<decltype(curl_global_init)>("curl_global_init");
    return original(flags);
}

void curl_global_cleanup()
{
    static auto *const original = late<decltype(curl_global_cleanup)>("curl_global_cleanup");
    original();
}

CURL *curl_easy_init()
{
    static auto *const original = late<decltype(curl_easy_init)>("curl_easy_init");
    return original();
}

void curl_easy_reset(CURL *handle)
{
    static auto *const original = late<decltype(curl_easy_reset)>("curl_easy_reset");
    original(handle);
}

void curl_easy_cleanup(CURL *handle)
{
    static auto *const original = late<decltype(curl_easy_cleanup)>("curl_easy_cleanup");
    original(handle);
}

CURLcode(curl_easy_setopt)(CURL *handle, CURLoption option, ...)
{
    static auto *const original = late<CURLcode(CURL *, CURLoption, ...)>("curl_easy_setopt");
    std::va_list values;
    va_start(values, option);
    void *const value = va_arg(values, void *);
    va_end(values);
    return original(handle, option, value);
}

CURLcode(curl_easy_getinfo)(CURL *handle, CURLINFO info, ...)
{
    static auto *const original = late<CURLcode(CURL *, CURLINFO, ...)>("curl_easy_getinfo");
    std::va_list values;
    va_start(values, info);
    void *const value = va_arg(values, void *);
    va_end(values);
    return original(handle, info, value);
}

CURLM *curl_multi_init()
{
    static auto *const original = late<decltype(curl_multi_init)>("curl_multi_init");
    return original();
}

CURLMcode curl_multi_cleanup(CURLM *multi)
{
    static auto *const original = late<decltype(curl_multi_cleanup)>("curl_multi_cleanup");
    return original(multi);
}

CURLMcode(curl_multi_setopt)(CURLM *multi, CURLMoption option, ...)
{
    static auto *const original = late<CURLMcode(CURLM *, CURLMoption, ...)>("curl_multi_setopt");
    std::va_list values;
    va_start(values, option);
    void *const value = va_arg(values, void *);
    va_end(values);
    return original(multi, option, value);
}

CURLMcode curl_multi_add_handle(CURLM *multi, CURL *handle)
{
    static auto *const original = late<decltype(curl_multi_add_handle)>("curl_multi_add_handle");
    return original(multi, handle);
}

CURLMcode curl_multi_remove_handle(CURLM *multi, CURL *handle)
{
    static auto *const original = late<decltype(curl_multi_remove_handle)>("curl_multi_remove_handle");
    return original(multi, handle);
}

CURLMsg *curl_multi_info_read(CURLM *multi, int *waiting)
{
    static auto *const original = late<decltype(curl_multi_info_read)>("curl_multi_info_read");
    return original(multi, waiting);
}

CURLMcode curl_multi_socket_action(CURLM *multi, curl_socket_t socket, int events, int *running)
{
    static auto *const original = late<decltype(curl_multi_socket_action)>("curl_multi_socket_action");
    return original(multi, socket, events, running);
}

curl_slist *curl_slist_append(curl_slist *list, const char *text)
{
    static auto *const original = late<decltype(curl_slist_append)>("curl_slist_append");
    return original(list, text);
}

void curl_slist_free_all(curl_slist *list)
{
    static auto *const original = late<decltype(curl_slist_free_all)>("curl_slist_free_all");
    original(list);
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)
