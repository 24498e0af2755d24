#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "api/HttpSession.h"
#include "api/HttpTransfer.h"
#include "support/ScriptedServer.h"
#include "support/Slowdown.h"

#include <QAbstractEventDispatcher>
#include <QFile>
#include <QTemporaryFile>
#include <QTest>
#include <cstdio>
#include <memory>

using namespace ambrel;

namespace {

constexpr std::size_t megabyte = 1024 * 1024;

const QByteArray chunkedHead = ScriptedReply::head(200, {"Transfer-Encoding: chunked"});

/// 64 KiB as one chunk.
QByteArray chunk()
{
    return "10000\r\n" + QByteArray(65536, ' ') + "\r\n";
}

/// What `command` prints, compressed. Not through QProcess, whose way to fork the thread checker does not follow.
QByteArray gzipped(const QByteArray &command)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> pipe(popen((command + " | gzip -c").constData(), "r"),
                                                                pclose);
    QFile output;
    return output.open(pipe.get(), QIODevice::ReadOnly) ? output.readAll() : QByteArray();
}

/// A line of /proc/self/status, in bytes.
std::size_t memory(const QByteArray &name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).trimmed().split(' ').first().toULongLong() * 1024;
    }
    return 0;
}

/// Lets the peak of the resident memory begin anew.
void forgetMemoryPeak()
{
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    QVERIFY(reset.open(QIODevice::WriteOnly) && reset.write("5") == 1);
}

/// The answer of a check with one match who has `photo`.
QByteArray checkWith(const QByteArray &photo)
{
    return R"({"active":true,"seeMeMessages":[],"matches":[{"userId":"m","displayName":"M",)"
           R"("distanceMeters":1,"aToB":2,"bToA":3,"heatLevel":"AMBREL","profilePhotos":[],"profilePhoto":")" +
           photo + "\"}]}";
}

QString failureOn(const ScriptedReply &reply)
{
    ScriptedServer server;
    server.on("GET", "/health", reply);
    return failureOf(AmbrelAPI(server.url()).call(endpoints::health));
}

} // namespace

class LargeAnswersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { HttpSession::shared().setLimits({}); }

    void anAnswerMayHave512MiB() { QCOMPARE(TransferLimits().maxAnswer, 512 * megabyte); }

    void anEndlessAnswerIsTooLarge()
    {
        HttpSession::shared().setLimits({.maxAnswer = 8 * megabyte});
        QCOMPARE(failureOn(ScriptedReply().send(chunkedHead).flood(chunk())),
                 transport("The server's answer is too large."));
    }

    void anAnswerThatAnnouncesTooMuchIsNotReceived()
    {
        const QByteArray head = ScriptedReply::head(200, {"Content-Length: 900000000000"});
        QCOMPARE(failureOn(ScriptedReply().send(head + "{").hang()), transport("The server's answer is too large."));
    }

    void aRefusalWithAnEndlessBodyShowsItsStatus()
    {
        const QByteArray head = ScriptedReply::head(503, {"Transfer-Encoding: chunked"});
        QCOMPARE(failureOn(ScriptedReply().send(head).flood(chunk())),
                 QStringLiteral("AmbrelAPIError: Server returned 503."));
    }

    void aLongRefusalIsShownWhole()
    {
        const QByteArray text(500000, 'x');
        QCOMPARE(failureOn(ScriptedReply::json("{\"error\":\"" + text + "\"}", 400)),
                 QStringLiteral("AmbrelAPIError: ") + QString::fromLatin1(text));
    }

    void largeHeadersEnd_data()
    {
        QTest::addColumn<ScriptedReply>("reply");
        const QByteArray line = "X-Filler: " + QByteArray(1000, 'x') + "\r\n";
        const QByteArray longLine = "X-Filler: " + QByteArray(300000, 'x') + "\r\n\r\n";
        const QByteArray status = "HTTP/1.1 200 OK\r\n";
        QTest::newRow("endless") << ScriptedReply(ScriptedReply().send(status).flood(line));
        QTest::newRow("one of 300 kB") << ScriptedReply(ScriptedReply().send(status + longLine).hang());
        QTest::newRow("one without an end")
            << ScriptedReply(ScriptedReply().send(status + "X-Filler: ").flood(QByteArray(1000, 'x')));
    }

    void largeHeadersEnd()
    {
        QFETCH(const ScriptedReply, reply);
        QCOMPARE(failureOn(reply), transport("The server's answer is too large."));
    }

    void aLargeAnswerArrivesWhole_data()
    {
        QTest::addColumn<bool>("announced");
        QTest::newRow("with its length") << true;
        QTest::newRow("in chunks") << false;
    }

    void aLargeAnswerArrivesWhole()
    {
        QFETCH(const bool, announced);
        const QByteArray photo = "data:image/jpeg;base64," + QByteArray(20000000, 'A');
        const QByteArray body = checkWith(photo);
        const QByteArray inChunks = chunkedHead + QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n0\r\n\r\n";
        ScriptedServer server;
        server.on("GET", "/api/check/u",
                  announced ? ScriptedReply::json(body) : ScriptedReply(ScriptedReply().send(inChunks)));
        const auto answer =
            recordOf(AmbrelAPI(server.url()).call(endpoints::check, QStringLiteral("u"), QStringLiteral("d")));
        QVERIFY(answer);
        QCOMPARE(answer->matches.first().profilePhoto->view(), std::string_view(photo.data(), photo.size()));
    }

    void aLargeAnswerWakesTheCallingThreadOnce()
    {
        ScriptedServer server;
        server.on("GET", "/health",
                  ScriptedReply::json("{\"ok\":true,\"name\":\"" + QByteArray(30000000, 'n') + "\"}"));
        const Awaited health(AmbrelAPI(server.url()).call(endpoints::health));
        QCoreApplication::processEvents();
        int turns = 0;
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
                [&turns] { ++turns; });
        QVERIFY(health.wait().record());
        disconnect(QAbstractEventDispatcher::instance(), nullptr, this, nullptr);
        QVERIFY2(turns <= 2, qPrintable(QString::number(turns))); // to wait for the answer, and to leave the loop
    }

    void aPictureThatManyPeopleShareMayShrinkFar()
    {
        QByteArray people;
        for (int person = 0; person < 400; ++person)
            people += checkWith(QByteArray(20000, 'A')).mid(people.isEmpty() ? 0 : 1);
        QTemporaryFile file;
        QVERIFY(file.open() && file.write("{\"ok\":true,\"name\":\"" + people.replace('"', '\'') + "\"}") > 8000000);
        file.close();
        const QByteArray zipped = gzipped("cat " + QFile::encodeName(file.fileName()));
        QVERIFY2(zipped.size() < people.size() / 200, qPrintable(QString::number(zipped.size())));
        QCOMPARE(failureOn(ScriptedReply::answer(200, zipped, {"Content-Encoding: gzip"})), QString());
    }

    void anAnswerIsCompressedOnce_data()
    {
        QTest::addColumn<QList<QByteArray>>("headers");
        QTest::addColumn<int>("layers");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("once") << QList<QByteArray>{"Content-Encoding: gzip"} << 1 << true;
        QTest::newRow("once, in two words") << QList<QByteArray>{"Content-Encoding: identity, gzip"} << 1 << true;
        QTest::newRow("twice") << QList<QByteArray>{"Content-Encoding: gzip, gzip"} << 2 << false;
        QTest::newRow("in two headers") << QList<QByteArray>{"Content-Encoding: gzip", "content-encoding: gzip"} << 2
                                        << false;
        QTest::newRow("on the way, too") << QList<QByteArray>{"Transfer-Encoding: gzip", "Content-Encoding: gzip"} << 2
                                         << false;
        QTest::newRow("four times") << QList<QByteArray>{"Content-Encoding: gzip, gzip, gzip, gzip"} << 4 << false;
    }

    void anAnswerIsCompressedOnce()
    {
        QFETCH(const QList<QByteArray>, headers);
        QFETCH(const int, layers);
        QFETCH(const bool, isRead);
        QByteArray command = "printf '{\"ok\":true}'";
        for (int layer = 1; layer < layers; ++layer)
            command += " | gzip -c";
        QCOMPARE(failureOn(ScriptedReply::answer(200, gzipped(command), headers)),
                 isRead ? QString() : transport("The server's answer could not be read."));
    }

    void aZippedBombIsUnreadableAndStaysSmall_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("nothing but zeros") << QByteArray("head -c 200000000 /dev/zero");
        QTest::newRow("empty texts") << QByteArray("(printf '{\"ok\":true,\"x\":['; yes '\"\",' | head -c 100000000)");
    }

    void aZippedBombIsUnreadableAndStaysSmall()
    {
        QFETCH(const QByteArray, command);
        const QByteArray bomb = gzipped(command);
        QVERIFY(bomb.size() > 10000);
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::answer(200, bomb, {"Content-Encoding: gzip"}));
        const std::size_t before = memory("VmRSS");
        forgetMemoryPeak();
        QCOMPARE(failureOf(AmbrelAPI(server.url()).call(endpoints::health)),
                 transport("The server's answer could not be read."));
        QVERIFY(before > 0);
        const std::size_t most = (slowdown > 1 ? 200 : 100) * megabyte; // the sanitizers keep what was freed
        QVERIFY2(memory("VmHWM") < before + most, qPrintable(QString::number(memory("VmHWM") - before)));
    }

    void badGzipIsUnreadable()
    {
        const QByteArray good = gzipped("printf '{\"ok\":true}'");
        const auto zipped = [](const QByteArray &body) {
            return ScriptedReply::answer(200, body, {"Content-Encoding: gzip"});
        };
        QCOMPARE(failureOn(zipped(good)), QString());
        const QString unreadable = transport("The server's answer could not be read.");
        QCOMPARE(failureOn(zipped("this is no gzip at all")), unreadable);
        QCOMPARE(failureOn(zipped(good.left(12) + "\xff\xff\xff\xff" + good.mid(16))), unreadable);
        QCOMPARE(failureOn(ScriptedReply::answer(200, good, {"Content-Encoding: unheard-of"})), unreadable);
    }
};

QTEST_GUILESS_MAIN(LargeAnswersTest)
#include "LargeAnswersTest.moc"
