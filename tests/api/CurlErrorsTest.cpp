#include "api/CurlErrors.h"

#include <QSet>
#include <QTest>
#include <cerrno>

using namespace ambrel;

class CurlErrorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFailureHasOneSentence()
    {
        for (int code = CURLE_OK + 1; code < CURL_LAST; ++code) {
            const QString sentence = sentenceFor(static_cast<CURLcode>(code));
            QVERIFY2(sentence.size() > 10 && sentence.size() < 80, qPrintable(QString::number(code)));
            QVERIFY(sentence.front().isUpper());
            QVERIFY(sentence.endsWith(u'.'));
            QCOMPARE(sentence.count(u'.'), 1);
        }
    }

    void whatAnHttpExchangeCanEndWithHasASentenceOfItsOwn()
    {
        const QString general = sentenceFor(CURLE_FTP_ACCEPT_FAILED);
        for (const CURLcode code :
             {CURLE_COULDNT_RESOLVE_HOST, CURLE_COULDNT_RESOLVE_PROXY, CURLE_COULDNT_CONNECT, CURLE_OPERATION_TIMEDOUT,
              CURLE_GOT_NOTHING, CURLE_SEND_ERROR, CURLE_RECV_ERROR, CURLE_PARTIAL_FILE, CURLE_PEER_FAILED_VERIFICATION,
              CURLE_SSL_CONNECT_ERROR, CURLE_WEIRD_SERVER_REPLY, CURLE_BAD_CONTENT_ENCODING, CURLE_FILESIZE_EXCEEDED,
              CURLE_TOO_MANY_REDIRECTS, CURLE_OUT_OF_MEMORY, CURLE_ABORTED_BY_CALLBACK, CURLE_PROXY})
            QVERIFY2(sentenceFor(code) != general, qPrintable(QString::number(code)));
    }

    void aNetworkThatIsDownIsToldFromAServerThatIs()
    {
        const QString offline = QStringLiteral("The Internet connection appears to be offline.");
        QCOMPARE(connectSentenceFor(ENETUNREACH), offline);
        QCOMPARE(connectSentenceFor(ENETDOWN), offline);
        QCOMPARE(connectSentenceFor(ECONNRESET), sentenceFor(CURLE_RECV_ERROR));
        for (const int error : {0, ECONNREFUSED, EHOSTUNREACH, ETIMEDOUT})
            QCOMPARE(connectSentenceFor(error), QStringLiteral("Could not connect to the server."));
    }
};

QTEST_GUILESS_MAIN(CurlErrorsTest)
#include "CurlErrorsTest.moc"
