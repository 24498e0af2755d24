#include "api/HttpTransfer.h"

#include "api/CurlErrors.h"
#include "api/TransportError.h"

#include <algorithm>
#include <new>

namespace ambrel {

namespace {

constexpr int maxHops = 20;
/// A refusal is read this far: more than any error text, less than a flood.
constexpr std::size_t maxRefusal = std::size_t{1024} * 1024;
/// The headers of all hops together.
constexpr std::size_t maxHead = std::size_t{256} * 1024;
/// An answer that inflates beyond both is a bomb. Replies without photos weigh less; photos hardly shrink, unless many
/// people share one.
constexpr std::size_t bombSize = std::size_t{64} * 1024 * 1024;
constexpr std::size_t bombRatio = 100;

// A list in libcurl's form, which it only reads.
char contentType[] = "Content-Type: application/json";
char noExpectation[] = "Expect:";
curl_slist otherHeaders{noExpectation, nullptr};
curl_slist postHeaders{contentType, &otherHeaders};

bool isSuccess(long status)
{
    return status >= 200 && status < 300;
}

/// True when OpenSSL reports that the peer hung up during the handshake, which libcurl does not tell apart from a
/// handshake that failed.
bool hungUpInHandshake(std::string_view errorText)
{
    constexpr std::string_view signs[] = {"SSL_ERROR_SYSCALL", "unexpected eof", "Connection reset", "Broken pipe"};
    return std::any_of(std::begin(signs), std::end(signs),
                       [errorText](std::string_view sign) { return errorText.find(sign) != std::string_view::npos; });
}

/// The value of the header, if this is its line.
std::optional<QByteArray> valueOf(const char *header, std::string_view line)
{
    const QByteArray whole(line.data(), static_cast<qsizetype>(line.size()));
    const qsizetype colon = whole.indexOf(':');
    if (colon < 0 || whole.first(colon).compare(header, Qt::CaseInsensitive) != 0)
        return std::nullopt;
    return whole.sliced(colon + 1).trimmed();
}

/// How many of the codings that a header names are compressions.
int codingsIn(const QByteArray &header)
{
    const QList<QByteArray> names = header.toLower().split(',');
    return static_cast<int>(std::count_if(names.begin(), names.end(), [](const QByteArray &name) {
        const QByteArray coding = name.trimmed();
        return !coding.isEmpty() && coding != "chunked" && coding != "identity";
    }));
}

/// As it is asked for: without a name and password, which this service knows nothing of.
QByteArray requestAddress(const QUrl &url)
{
    return url.toEncoded(QUrl::FullyEncoded | QUrl::RemoveUserInfo | QUrl::RemoveFragment);
}

} // namespace

bool isHttpAddress(const QUrl &url)
{
    const QString scheme = url.scheme();
    return url.isValid() && (scheme == QLatin1String("http") || scheme == QLatin1String("https")) &&
           !url.host().isEmpty();
}

HttpTransfer::HttpTransfer(const HttpRequest &request, TransferLimits limits, HttpReceiver receiver)
    : m_url(requestAddress(request.url)), m_isPost(request.method == HttpRequest::Method::Post), m_body(request.body),
      m_mayRepeat(request.repeat == HttpRequest::Repeat::Harmless), m_limits(std::move(limits)),
      m_receiver(std::move(receiver))
{
}

HttpTransfer::~HttpTransfer()
{
    if (m_handle)
        m_curl->easy_cleanup(m_handle);
}

CURL *HttpTransfer::prepare()
{
    m_curl = &Curl::library();
    if (m_handle)
        m_curl->easy_cleanup(m_handle); // of the hop before
    m_handle = m_curl->easy_init();
    if (!m_handle)
        return nullptr;

    set(CURLOPT_ERRORBUFFER, m_errorText);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // a name look-up that hangs delays nobody

    set(CURLOPT_URL, m_url.constData());
    set(CURLOPT_PATH_AS_IS, 1L); // a user ID of ".." is a user ID
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1)); // one exchange a socket: silence is its own
    set(CURLOPT_USERAGENT, "Ambrel/" AMBREL_VERSION);
    set(CURLOPT_ACCEPT_ENCODING, "");
    if (!m_mayRepeat)
        set(CURLOPT_FRESH_CONNECT, 1L); // libcurl repeats only what dies on a connection that was used before

    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (!m_limits.trustedCertificates.isEmpty()) {
        QByteArray &pem = m_limits.trustedCertificates;
        curl_blob blob{pem.data(), static_cast<std::size_t>(pem.size()), CURL_BLOB_COPY};
        set(CURLOPT_CAINFO_BLOB, &blob);
    }

    if (m_isPost)
        setRequestBody();
    setReceivers();
    m_hasHead = false;
    touch();
    return m_handle;
}

void HttpTransfer::setRequestBody()
{
    set(CURLOPT_POST, 1L);
    set(CURLOPT_HTTPHEADER, &postHeaders);
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_body.size()));
    set(CURLOPT_POSTFIELDS, m_body.constData());
}

void HttpTransfer::setReceivers()
{
    set(CURLOPT_BUFFERSIZE, 512L * 1024);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_HEADERFUNCTION, &HttpTransfer::receiveHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &HttpTransfer::receiveBody);
    set(CURLOPT_WRITEDATA, this);
}

bool HttpTransfer::isRedirected() const
{
    const long status = number(CURLINFO_RESPONSE_CODE);
    const bool isRedirect = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    return isRedirect && m_hasHead && !m_location.isEmpty();
}

// Redirects are followed here and not by libcurl, which reads the body of each to its end, stalled or endless as it may
// be, and leads from https to http.
bool HttpTransfer::followRedirect(CURLcode code)
{
    if (code == CURLE_ABORTED_BY_CALLBACK || m_refusal || !isRedirected())
        return false;
    const long status = number(CURLINFO_RESPONSE_CODE);

    const QUrl target = QUrl::fromEncoded(m_location);
    const QUrl url = target.isValid() ? QUrl::fromEncoded(m_url).resolved(target) : QUrl();
    const bool losesSecurity = m_url.startsWith("https:") && url.scheme() == QLatin1String("http");
    if (++m_hops > maxHops)
        refuse(sentenceFor(CURLE_TOO_MANY_REDIRECTS));
    else if (!isHttpAddress(url))
        refuse(QStringLiteral("The server redirected to an address that is not supported."));
    else if (losesSecurity)
        refuse(QStringLiteral("The server redirected to an address that is not secure."));
    if (m_refusal)
        return false;

    m_url = requestAddress(url);
    if (status != 307 && status != 308)
        m_isPost = false; // as every browser does
    m_answer.reset();
    return true;
}

void HttpTransfer::finish(CURLcode code)
{
    if (code == CURLE_OK && !m_hasHead)
        code = CURLE_PARTIAL_FILE; // libcurl takes a connection that ends among the headers for an answer
    const auto status = static_cast<int>(m_handle ? number(CURLINFO_RESPONSE_CODE) : 0);
    // A connection that ends after an interim answer has answered with that.
    const bool onlyInterim = code == CURLE_GOT_NOTHING && status > 100 && status < 200;
    const bool isAnswer = (code == CURLE_OK || m_isCut || onlyInterim) && !m_refusal;
    const auto receiver = std::exchange(m_receiver, nullptr);
    if (isAnswer) {
        if (!m_answer)
            m_answer = makeSharedBytes();
        receiver(HttpReply{status, std::move(m_answer)});
    } else {
        const QString sentence = m_refusal ? *m_refusal : failureSentence(code);
        receiver(std::make_exception_ptr(TransportError(sentence)));
    }
}

QString HttpTransfer::failureSentence(CURLcode code) const
{
    if (code == CURLE_COULDNT_CONNECT)
        return connectSentenceFor(number(CURLINFO_OS_ERRNO));
    if (code == CURLE_OUT_OF_MEMORY && !m_hasHead) // libcurl's word for a header line beyond 100 kB
        return sentenceFor(CURLE_FILESIZE_EXCEEDED);
    if (code == CURLE_SSL_CONNECT_ERROR && hungUpInHandshake(m_errorText))
        return sentenceFor(CURLE_RECV_ERROR);
    if (code == CURLE_RECV_ERROR && number(CURLINFO_HTTP_CONNECTCODE) >= 300)
        return sentenceFor(CURLE_PROXY);
    return sentenceFor(code);
}

std::size_t HttpTransfer::receiveHeader(char *data, std::size_t size, std::size_t count, void *self)
{
    const std::string_view line(data, size * count);
    return static_cast<HttpTransfer *>(self)->acceptHeader(line) ? line.size() : 0;
}

/// Watches the headers go by; false ends the hop.
bool HttpTransfer::acceptHeader(std::string_view line)
{
    m_headSize += line.size();
    if (m_headSize > maxHead)
        refuse(sentenceFor(CURLE_FILESIZE_EXCEEDED));
    if (m_refusal || m_hasHead) // what comes behind the body is of no use
        return !m_refusal;
    if (line == "\r\n" || line == "\n")
        return acceptBlankLine();
    if (line.starts_with("HTTP/")) { // what came before was an interim answer
        m_location.clear();
        m_isEmpty = false;
        m_codings = 0;
    } else if (const auto location = valueOf("Location", line)) {
        m_location = *location;
    } else if (const auto length = valueOf("Content-Length", line)) {
        m_isEmpty = *length == "0";
    } else if (const auto content = valueOf("Content-Encoding", line)) {
        m_codings += codingsIn(*content);
    } else if (const auto transfer = valueOf("Transfer-Encoding", line)) {
        m_codings += codingsIn(*transfer);
    }
    return true;
}

/// The headers of an answer are over; false ends the hop.
bool HttpTransfer::acceptBlankLine()
{
    const long status = number(CURLINFO_RESPONSE_CODE);
    m_hasHead = status >= 200 || status == 101; // 101 is followed by no other answer
    if (isRedirected())
        return m_isEmpty; // nobody reads the body; without one the connection stays
    if (m_codings > 1)    // inflated to nothing, layers of them keep a processor busy for ever
        refuse(sentenceFor(CURLE_BAD_CONTENT_ENCODING));
    return !m_refusal;
}

std::size_t HttpTransfer::receiveBody(char *data, std::size_t size, std::size_t count, void *self)
{
    const std::string_view more(data, size * count);
    return static_cast<HttpTransfer *>(self)->acceptBody(more) ? more.size() : 0;
}

/// Keeps the next bytes of the body; false ends the exchange.
bool HttpTransfer::acceptBody(std::string_view more)
{
    try {
        if (!m_answer)
            makeRoom();
        const std::size_t size = m_answer->size() + more.size();
        if (!isSuccess(number(CURLINFO_RESPONSE_CODE))) {
            m_isCut = size > maxRefusal;
        } else if (size > m_limits.maxAnswer) {
            refuse(sentenceFor(CURLE_FILESIZE_EXCEEDED));
        } else if (size > bombSize) {
            const auto received = static_cast<std::size_t>(amount(CURLINFO_SIZE_DOWNLOAD_T));
            if (size / bombRatio > received)
                refuse(sentenceFor(CURLE_BAD_CONTENT_ENCODING));
        }
        if (m_isCut || m_refusal)
            return false;
        m_answer->append(more);
        return true;
    } catch (const std::bad_alloc &) {
        refuse(sentenceFor(CURLE_OUT_OF_MEMORY));
        return false;
    }
}

/// Makes the body as large as the server announces, so that it never moves while it grows.
void HttpTransfer::makeRoom()
{
    m_answer = makeSharedBytes();
    const curl_off_t announced = std::max<curl_off_t>(0, amount(CURLINFO_CONTENT_LENGTH_DOWNLOAD_T));
    const auto size = static_cast<std::size_t>(announced);
    if (!isSuccess(number(CURLINFO_RESPONSE_CODE)))
        return;
    if (size > m_limits.maxAnswer)
        refuse(sentenceFor(CURLE_FILESIZE_EXCEEDED));
    else
        m_answer->reserve(size);
}

long HttpTransfer::number(CURLINFO info) const
{
    long value = 0;
    m_curl->easy_getinfo(m_handle, info, &value);
    return value;
}

curl_off_t HttpTransfer::amount(CURLINFO info) const
{
    curl_off_t value = 0;
    m_curl->easy_getinfo(m_handle, info, &value);
    return value;
}

} // namespace ambrel
