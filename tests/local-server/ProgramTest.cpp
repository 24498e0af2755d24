#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QUrl>
#include <memory>
#include <vector>

/// The real program, asked by curl.
class ProgramTest : public QObject
{
    Q_OBJECT

    static void start(QProcess &server, const QStringList &arguments)
    {
        server.setProgram(QStringLiteral(SERVER_PROGRAM));
        server.setArguments(arguments);
        server.start();
    }

    /// Starts the program and returns the address that it prints.
    static QString startedAddress(QProcess &server, const QStringList &arguments)
    {
        start(server, arguments);
        if (!QTest::qWaitFor([&server] { return server.canReadLine(); }, 20'000))
            return {};
        static const QRegularExpression line(QStringLiteral("^Ambrel local server is ready at (http://\\S+/)\n$"));
        return line.match(QString::fromUtf8(server.readLine())).captured(1);
    }

    /// Runs the program to its end and returns its standard error.
    static QByteArray failure(const QStringList &arguments)
    {
        QProcess server;
        start(server, arguments);
        if (!QTest::qWaitFor([&server] { return server.state() == QProcess::NotRunning; }, 20'000))
            return "still running";
        if (server.exitStatus() != QProcess::NormalExit || server.exitCode() != 1)
            return "exit code " + QByteArray::number(server.exitCode());
        return server.readAllStandardOutput().isEmpty() ? server.readAllStandardError() : "talks";
    }

    static QByteArray curl(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral("curl"),
                      QStringList({QStringLiteral("--silent"), QStringLiteral("--max-time"), QStringLiteral("20"),
                                   QStringLiteral("--noproxy"), QStringLiteral("*")}) +
                          arguments);
        if (!QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, 30'000))
            return "curl does not end";
        return process.readAllStandardOutput();
    }

    static void stop(QProcess &server)
    {
        server.terminate();
        QTRY_COMPARE(server.state(), QProcess::NotRunning);
    }

private Q_SLOTS:
    void curlGoesThroughAVisit()
    {
        QProcess server;
        const QString address = startedAddress(server, {QStringLiteral("--port"), QStringLiteral("0")});
        QVERIFY(!address.isEmpty());
        QVERIFY(address.startsWith(QStringLiteral("http://127.0.0.1:")));

        QVERIFY(curl({address + QStringLiteral("health")}).startsWith("{\"ok\":true,\"name\":\"Ambrel local server\""));
        const QString person = QStringLiteral(
            R"({"userId":"zoë b","deviceId":"d","displayName":"Zoë","email":"","phone":"","latitude":39.0458,)"
            R"("longitude":-84.5086,"discoverable":true,"aboutMe":[0,1,2],"lookingFor":[0,1,2],"profilePhotos":[]})");
        QVERIFY(curl({QStringLiteral("--data"), person, address + QStringLiteral("api/signup")})
                    .startsWith("{\"ok\":true,\"serverTime\":"));
        const QByteArray checked = curl({address + QStringLiteral("api/check/zo%C3%AB%20b?deviceId=d")});
        QVERIFY(checked.startsWith("{\"active\":true,"));
        QCOMPARE(checked.count("\"heatLevel\":"), 6);
        QVERIFY(checked.contains("\"heatLevel\":\"VERY_HOT\""));
        QVERIFY(checked.contains("data:image/jpeg;base64,"));
        stop(server);
    }

    void curlSeesTheStatusOfARefusal()
    {
        QProcess server;
        const QString address = startedAddress(
            server, {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--people"), QStringLiteral("0")});
        QVERIFY(!address.isEmpty());
        const QStringList withStatus = {QStringLiteral("--write-out"), QStringLiteral(" %{http_code}")};
        QCOMPARE(curl(withStatus + QStringList{address + QStringLiteral("api/check/x?deviceId=d")}),
                 "{\"error\":\"Unknown user. Sign up first.\"} 404");
        QCOMPARE(curl(withStatus + QStringList{address + QStringLiteral("api/login")}),
                 "{\"error\":\"This address needs POST.\"} 405");
        QCOMPARE(curl(withStatus + QStringList{QStringLiteral("--data"), QStringLiteral("{\"userId\":\"a\"}"),
                                               address + QStringLiteral("api/login")}),
                 "{\"error\":\"The request cannot be read: \\\"deviceId\\\" is missing.\"} 400");
        stop(server);
    }

    void fewDescriptorsAreEnough()
    {
        QProcess server;
        server.start(QStringLiteral("sh"),
                     {QStringLiteral("-c"), QStringLiteral("ulimit -n 48 && exec \"$0\" --port 0"),
                      QStringLiteral(SERVER_PROGRAM)});
        QVERIFY(QTest::qWaitFor([&server] { return server.canReadLine(); }, 20'000));
        const QString address = QString::fromUtf8(server.readLine()).trimmed().section(u' ', -1);
        std::vector<std::unique_ptr<QTcpSocket>> silent;
        for (int number = 0; number < 100; ++number) {
            silent.push_back(std::make_unique<QTcpSocket>());
            silent.back()->connectToHost(QHostAddress::LocalHost, quint16(QUrl(address).port()));
            QTRY_VERIFY(silent.back()->state() == QAbstractSocket::ConnectedState);
        }
        QVERIFY(curl({address + QStringLiteral("health")}).startsWith("{\"ok\":true"));
        stop(server);
    }

    void aTakenPortIsOneLine()
    {
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost));
        const QByteArray port = QByteArray::number(other.serverPort());
        QCOMPARE(failure({QStringLiteral("--port"), QString::fromLatin1(port)}),
                 "127.0.0.1 port " + port + " is taken: another program listens there.\n");
    }

    void theAddressCanBeChosen()
    {
        QProcess server;
        const QString address = startedAddress(
            server, {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--listen"), QStringLiteral("::1")});
        QVERIFY(address.startsWith(QStringLiteral("http://[::1]:")));
        QVERIFY(curl({QStringLiteral("--globoff"), address + QStringLiteral("health")}).startsWith("{\"ok\":true"));
        stop(server);
    }

    void wrongOptionsAreOneLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("line");
        const auto row = [](const char *option, const char *value, const QByteArray &line) {
            QTest::addRow("%s %s", option, value) << QStringList{QLatin1String(option), QLatin1String(value)} << line;
        };
        row("--port", "x", "--port needs a number from 0 to 65535.\n");
        row("--port", "65536", "--port needs a number from 0 to 65535.\n");
        row("--port", "-1", "--port needs a number from 0 to 65535.\n");
        row("--people", "1001", "--people needs a number from 0 to 1000.\n");
        row("--people", "", "--people needs a number from 0 to 1000.\n");
        row("--listen", "example", "--listen needs an IP address.\n");
        QTest::newRow("argument") << QStringList{QStringLiteral("now")} << QByteArray("Unexpected argument: now\n");
    }
    void wrongOptionsAreOneLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, line);
        QCOMPARE(failure(arguments), line);
    }
};

QTEST_GUILESS_MAIN(ProgramTest)
#include "ProgramTest.moc"
