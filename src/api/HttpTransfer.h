#pragma once

#include "api/Curl.h"
#include "api/HttpExchange.h"

#include <QString>
#include <chrono>
#include <optional>

namespace ambrel {

/// What bounds an exchange.
struct TransferLimits
{
    std::chrono::milliseconds maxSilence{12'000};           ///< without a byte in or out, at any stage
    std::size_t maxAnswer = std::size_t{512} * 1024 * 1024; ///< bytes, inflated
    QByteArray trustedCertificates = {};                    ///< PEM; empty means the platform's store
};

/// True for an address that HTTP can be talked to: http or https, and a host.
bool isHttpAddress(const QUrl &url);

/// One exchange on its way: the hop being made, the answer as far as it has come, and who waits for it.
/// Made on any thread, then used on the network thread alone.
class HttpTransfer
{
public:
    using Clock = std::chrono::steady_clock;

    HttpTransfer(const HttpRequest &request, TransferLimits limits, HttpReceiver receiver);
    ~HttpTransfer();
    HttpTransfer(const HttpTransfer &) = delete;
    HttpTransfer &operator=(const HttpTransfer &) = delete;

    /// A libcurl handle set up for the current hop, which begins now; owned by the transfer.
    CURL *prepare();
    /// Whom the current hop goes to: scheme, host and port.
    QByteArray server() const { return m_url.left(m_url.indexOf('/', std::string_view("https://").size())); }

    /// Notes that the server is alive.
    void touch() { m_lastSign = Clock::now(); }
    /// When the silence has lasted too long, unless the transfer is touched again.
    Clock::time_point deadline() const { return m_lastSign + m_limits.maxSilence; }

    /// Moves on to the address that the ended hop points to. False when the exchange is over.
    bool followRedirect(CURLcode code);
    /// Tells the receiver how the exchange ended. Once.
    void finish(CURLcode code);

private:
    template <typename Value>
    void set(CURLoption option, Value value)
    {
        m_curl->easy_setopt(m_handle, option, value);
    }
    void setRequestBody();
    void setReceivers();
    static std::size_t receiveHeader(char *data, std::size_t size, std::size_t count, void *self);
    static std::size_t receiveBody(char *data, std::size_t size, std::size_t count, void *self);
    bool acceptHeader(std::string_view line);
    bool acceptBlankLine();
    bool isRedirected() const;
    bool acceptBody(std::string_view more);
    void makeRoom();
    void refuse(const QString &sentence) { m_refusal = sentence; }
    long number(CURLINFO info) const;
    curl_off_t amount(CURLINFO info) const;
    QString failureSentence(CURLcode code) const;

    // the hop
    QByteArray m_url;
    bool m_isPost;
    QByteArray m_body;
    bool m_mayRepeat;
    int m_hops = 0;

    TransferLimits m_limits;
    HttpReceiver m_receiver;
    const Curl *m_curl = nullptr; ///< null until the exchange begins
    CURL *m_handle = nullptr;
    char m_errorText[CURL_ERROR_SIZE] = {};
    Clock::time_point m_lastSign;

    // the answer
    std::size_t m_headSize = 0;
    bool m_hasHead = false; ///< the headers of the final answer have come to their end
    int m_codings = 0;      ///< how often the body is compressed
    bool m_isEmpty = false; ///< no body follows
    QByteArray m_location;  ///< where a redirect points to
    std::shared_ptr<Bytes> m_answer;
    bool m_isCut = false;             ///< a refusal whose body was not read to the end
    std::optional<QString> m_refusal; ///< why this client ended the exchange
};

} // namespace ambrel
