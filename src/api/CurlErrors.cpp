#include "api/CurlErrors.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace ambrel {

namespace {

constexpr const char *connectFailed = "Could not connect to the server.";
constexpr const char *connectionLost = "The network connection was lost.";
constexpr const char *notTrusted = "The certificate for this server is not trusted.";
constexpr const char *notSecure = "A secure connection to the server could not be made.";
constexpr const char *offline = "The Internet connection appears to be offline.";
constexpr const char *tooLarge = "The server's answer is too large.";
constexpr const char *unreadable = "The server's answer could not be read.";

constexpr auto headersTooLarge = static_cast<CURLcode>(100); // CURLE_TOO_LARGE, which libcurl 8.6 brought

struct Row
{
    CURLcode code;
    const char *sentence;
};

constexpr Row rows[] = {
    // getting there
    {CURLE_URL_MALFORMAT, "The server address cannot be used."},
    {CURLE_COULDNT_RESOLVE_HOST, "The server could not be found."},
    {CURLE_COULDNT_RESOLVE_PROXY, "The proxy server could not be found."},
    {CURLE_PROXY, "The proxy server refused the connection."},
    {CURLE_COULDNT_CONNECT, connectFailed},
    {CURLE_INTERFACE_FAILED, offline},
    {CURLE_FAILED_INIT, "The network library could not be loaded."},
    {CURLE_NO_CONNECTION_AVAILABLE, "The system has no resources left for a request."},
    // a connection that ends early
    {CURLE_OPERATION_TIMEDOUT, "The request timed out."},
    {CURLE_GOT_NOTHING, connectionLost},
    {CURLE_SEND_ERROR, connectionLost},
    {CURLE_RECV_ERROR, connectionLost},
    {CURLE_SEND_FAIL_REWIND, connectionLost},
    {CURLE_PARTIAL_FILE, connectionLost},
    {CURLE_SSL_SHUTDOWN_FAILED, connectionLost},
    {CURLE_ABORTED_BY_CALLBACK, "The request was cancelled."},
    // security
    {CURLE_PEER_FAILED_VERIFICATION, notTrusted},
    {CURLE_SSL_ISSUER_ERROR, notTrusted},
    {CURLE_SSL_INVALIDCERTSTATUS, notTrusted},
    {CURLE_SSL_PINNEDPUBKEYNOTMATCH, notTrusted},
    {CURLE_SSL_CONNECT_ERROR, notSecure},
    {CURLE_SSL_CERTPROBLEM, notSecure},
    {CURLE_SSL_CIPHER, notSecure},
    {CURLE_SSL_CACERT_BADFILE, notSecure},
    {CURLE_SSL_CRL_BADFILE, notSecure},
    {CURLE_SSL_ENGINE_NOTFOUND, notSecure},
    {CURLE_SSL_ENGINE_SETFAILED, notSecure},
    {CURLE_SSL_ENGINE_INITFAILED, notSecure},
    {CURLE_SSL_CLIENTCERT, notSecure},
    {CURLE_USE_SSL_FAILED, notSecure},
    // an answer that cannot be used
    {CURLE_UNSUPPORTED_PROTOCOL, unreadable}, // an answer without a status line
    {CURLE_WEIRD_SERVER_REPLY, unreadable},
    {CURLE_BAD_CONTENT_ENCODING, unreadable},
    {CURLE_CHUNK_FAILED, unreadable},
    {CURLE_WRITE_ERROR, unreadable},
    {CURLE_FILESIZE_EXCEEDED, tooLarge},
    {headersTooLarge, tooLarge},
    {CURLE_TOO_MANY_REDIRECTS, "Too many redirects."},
    {CURLE_OUT_OF_MEMORY, "There is not enough memory for the server's answer."},
};

} // namespace

QString sentenceFor(CURLcode code)
{
    const auto row = std::find_if(std::begin(rows), std::end(rows), [code](const Row &r) { return r.code == code; });
    return QString::fromLatin1(row == std::end(rows) ? "The exchange with the server failed." : row->sentence);
}

QString connectSentenceFor(long systemError)
{
    switch (systemError) {
    case ENETUNREACH:
    case ENETDOWN:
        return QString::fromLatin1(offline);
    case ECONNRESET: // it was there for a moment
        return QString::fromLatin1(connectionLost);
    default:
        return QString::fromLatin1(connectFailed);
    }
}

} // namespace ambrel
