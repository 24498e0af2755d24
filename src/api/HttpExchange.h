#pragma once

#include "model/Bytes.h"
#include "tasks/HandOff.h"

#include <QByteArray>
#include <QUrl>
#include <functional>
#include <memory>

namespace ambrel {

/// One request. A POST carries `body` as JSON; a GET has none.
struct HttpRequest
{
    enum class Method { Get, Post };
    /// Whether a request that may have reached the server may be sent again.
    enum class Repeat { Harmless, Never };

    Method method = Method::Get;
    QUrl url;
    QByteArray body = {};
    Repeat repeat = Repeat::Harmless;
};

/// One answer with its whole body, inflated. The body of a refusal may be cut short.
struct HttpReply
{
    int status = 0;              ///< the HTTP status of the last hop
    std::shared_ptr<Bytes> body; ///< never null, and of this exchange alone
};

/// Receives the end of one exchange: its answer, or the TransportError or AmbrelAPIError it failed with.
using HttpReceiver = std::function<void(Outcome<HttpReply>)>;

} // namespace ambrel
