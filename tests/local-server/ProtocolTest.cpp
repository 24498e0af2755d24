#include "TestServer.h"

#include <QFile>

using namespace ambrel;

namespace {

/// The same JSON with one member to a line.
QByteArray indented(const QByteArray &json)
{
    QByteArray text;
    qsizetype depth = 0;
    bool isInText = false;
    const auto startLine = [&text, &depth] { text += '\n' + QByteArray(2 * depth, ' '); };
    for (qsizetype index = 0; index < json.size(); ++index) {
        const char character = json.at(index);
        const bool isQuote = character == '"' && (index == 0 || json.at(index - 1) != '\\');
        isInText = isQuote ? !isInText : isInText;
        const bool isOpening = !isInText && (character == '{' || character == '[');
        const bool isClosing = !isInText && (character == '}' || character == ']');
        const bool isEmpty = isClosing && index > 0 && (json.at(index - 1) == '{' || json.at(index - 1) == '[');
        depth += isOpening ? 1 : isClosing ? -1 : 0;
        if (isClosing && !isEmpty)
            startLine();
        text += character;
        const char next = index + 1 < json.size() ? json.at(index + 1) : '\0';
        if ((isOpening && next != '}' && next != ']') || (!isInText && character == ','))
            startLine();
        else if (!isInText && character == ':')
            text += ' ';
    }
    return text;
}

/// A document with blocks of requests, each followed by the block of its answer.
class Document
{
public:
    explicit Document(const QString &path) : m_path(path)
    {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            m_text = file.readAll();
    }

    /// Moves to the next request; false at the end.
    bool next()
    {
        const qsizetype start = m_text.indexOf(requestFence, m_end);
        if (start < 0)
            return false;
        const qsizetype request = start + qsizetype(requestFence.size());
        const qsizetype requestEnd = m_text.indexOf(fenceEnd, request);
        m_request = m_text.mid(request, requestEnd - request);
        m_answer = m_text.indexOf(answerFence, requestEnd) + qsizetype(answerFence.size());
        m_end = m_text.indexOf(fenceEnd, m_answer);
        return true;
    }
    QByteArray request() const { return m_request; }
    QByteArray answer() const { return m_text.mid(m_answer, m_end - m_answer); }
    void setAnswer(const QByteArray &answer)
    {
        m_text.replace(m_answer, m_end - m_answer, answer);
        m_end = m_answer + answer.size();
    }
    bool save() const
    {
        QFile file(m_path);
        return file.open(QIODevice::WriteOnly) && file.write(m_text) == m_text.size();
    }

private:
    static constexpr QByteArrayView requestFence = "```request\n";
    static constexpr QByteArrayView answerFence = "```answer\n";
    static constexpr QByteArrayView fenceEnd = "\n```\n";

    QString m_path;
    QByteArray m_text;
    QByteArray m_request;
    qsizetype m_answer = 0;
    qsizetype m_end = 0;
};

} // namespace

/// docs/protocol.md against the server. Started with AMBREL_RENEW_PROTOCOL set it writes down the answers instead.
class ProtocolTest : public QObject
{
    Q_OBJECT

    static QByteArray answerTo(TestServer &server, const QByteArray &request)
    {
        const QByteArray firstLine = request.split('\n').constFirst();
        const QByteArrayList line = firstLine.split(' ');
        const QByteArray body = request.sliced(firstLine.size()).trimmed();
        const Reply reply = server.send(line.at(0), line.at(1).mid(1), body);
        QByteArray json = reply.body;
        json.replace(':' + QByteArray::number(server.port()) + '/', ":3000/");
        return QByteArray::number(reply.status) + "\n\n" + indented(json);
    }

private Q_SLOTS:
    void everyExchangeIsAsWritten()
    {
        TestServer server(0);
        Document document(QStringLiteral(AMBREL_PROTOCOL));
        const bool isRenewing = qEnvironmentVariableIsSet("AMBREL_RENEW_PROTOCOL");
        int exchanges = 0;
        for (; document.next(); ++exchanges) {
            server.advance(std::chrono::seconds(1));
            const QByteArray answer = answerTo(server, document.request());
            if (isRenewing)
                document.setAnswer(answer);
            QCOMPARE(document.answer(), answer);
        }
        QVERIFY(exchanges >= 15);
        QVERIFY(!isRenewing || document.save());
    }
};

QTEST_GUILESS_MAIN(ProtocolTest)
#include "ProtocolTest.moc"
