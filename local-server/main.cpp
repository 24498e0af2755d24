#include "local-server/LocalServer.h"
#include "model/LocalizedError.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

struct Arguments
{
    QHostAddress address;
    quint16 port = 0;
    ambrel::LocalServerOptions options;
};

/// The number that `text` stands for when it lies between 0 and `most`.
std::optional<int> numberUpTo(int most, const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= 0 && number <= most ? std::optional(number) : std::nullopt;
}

/// A reason not to start: one line for the user.
[[noreturn]] void fail(const QString &line)
{
    throw ambrel::LocalizedError(line);
}

Arguments parseArguments(const QCoreApplication &application)
{
    const QCommandLineOption portOption(QStringLiteral("port"),
                                        QStringLiteral("Port to listen on; 0 takes a free one."), QStringLiteral("N"),
                                        QStringLiteral("3000"));
    const QCommandLineOption listenOption(QStringLiteral("listen"),
                                          QStringLiteral("Address to listen on; 0.0.0.0 serves the local network."),
                                          QStringLiteral("ADDRESS"), QStringLiteral("127.0.0.1"));
    const QCommandLineOption peopleOption(QStringLiteral("people"),
                                          QStringLiteral("Simulated people around every user, 0 to 1000."),
                                          QStringLiteral("N"), QStringLiteral("6"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A development server for Ambrel, in memory, with people in it."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({portOption, listenOption, peopleOption});
    parser.process(application);

    const auto port = numberUpTo(65'535, parser.value(portOption));
    const auto people = numberUpTo(1000, parser.value(peopleOption));
    Arguments arguments;
    if (!parser.positionalArguments().isEmpty())
        fail(QStringLiteral("Unexpected argument: %1").arg(parser.positionalArguments().constFirst()));
    if (!port)
        fail(QStringLiteral("--port needs a number from 0 to 65535."));
    if (!people)
        fail(QStringLiteral("--people needs a number from 0 to 1000."));
    if (!arguments.address.setAddress(parser.value(listenOption)))
        fail(QStringLiteral("--listen needs an IP address."));
    arguments.port = quint16(*port);
    arguments.options.people = *people;
    return arguments;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ambrel-local-server"));
    QCoreApplication::setApplicationVersion(QStringLiteral(AMBREL_VERSION));

    try {
        const Arguments arguments = parseArguments(application);
        ambrel::LocalServer server(arguments.options);
        if (server.listen(arguments.address, arguments.port) == 0)
            fail(server.errorText());
        std::printf("Ambrel local server is ready at %s\n", qUtf8Printable(server.url().toString()));
        std::fflush(stdout);
        return QCoreApplication::exec();
    } catch (const ambrel::LocalizedError &error) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(error.errorDescription()));
        return EXIT_FAILURE;
    }
}
