// Stands in for the sound library with a sound server that is hard to reach: a call counts up FAKE_CANBERRA_ASKED in
// the environment and takes until FAKE_CANBERRA_MAY_PLAY is set there, then notes which event it has played. Where
// FAKE_CANBERRA_FAILS is set it finds nothing to play it with. FAKE_CANBERRA_CLOSED tells that it is done with.
#include <QByteArray>
#include <canberra.h>
#include <chrono>
#include <cstdarg>
#include <string_view>
#include <thread>

namespace {

int theOnlyContext = 0;

} // namespace

int ca_context_create(ca_context **context)
{
    *context = reinterpret_cast<ca_context *>(&theOnlyContext);
    return CA_SUCCESS;
}

int ca_context_destroy(ca_context *)
{
    qputenv("FAKE_CANBERRA_CLOSED", "1");
    return CA_SUCCESS;
}

int ca_context_play(ca_context *, uint32_t id, ...)
{
    qputenv("FAKE_CANBERRA_ASKED", QByteArray::number(qEnvironmentVariableIntValue("FAKE_CANBERRA_ASKED") + 1));
    while (!qEnvironmentVariableIsSet("FAKE_CANBERRA_MAY_PLAY"))
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    if (qEnvironmentVariableIsSet("FAKE_CANBERRA_FAILS"))
        return CA_ERROR_NODRIVER;
    std::va_list properties;
    va_start(properties, id);
    while (const char *const key = va_arg(properties, const char *)) {
        const char *const value = va_arg(properties, const char *);
        if (std::string_view(key) == CA_PROP_EVENT_ID)
            qputenv("FAKE_CANBERRA_PLAYED", QByteArray(value));
    }
    va_end(properties);
    return CA_SUCCESS;
}
