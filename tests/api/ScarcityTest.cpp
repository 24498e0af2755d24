#include "api/AmbrelAPI.h"
#include "api/Awaited.h"
#include "support/ChildProcess.h"
#include "support/ScriptedServer.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>
#include <atomic>
#include <cstdio>
#include <dlfcn.h>
#include <limits>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace ambrel;

namespace {

std::atomic<int> threadsLeft = std::numeric_limits<int>::max();

/// No descriptor beyond the next `count` can be opened.
void limitDescriptors(rlim_t count)
{
    const int next = dup(STDIN_FILENO);
    close(next);
    const rlimit limit{static_cast<rlim_t>(next) + count, static_cast<rlim_t>(next) + count};
    setrlimit(RLIMIT_NOFILE, &limit);
}

/// The client in a process of its own, where `scarce` says what there is little of: prints how two requests end, the
/// second after there are threads again.
int runClient(int &argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QByteArray scarce = qgetenv("AMBREL_SCARCE");
    const int left = qEnvironmentVariableIntValue("AMBREL_LEFT");
    if (scarce == "descriptors")
        limitDescriptors(static_cast<rlim_t>(left));
    if (scarce == "threads")
        threadsLeft = left;
    const AmbrelAPI api(qEnvironmentVariable("AMBREL_TEST_SERVER"));
    std::printf("%s\n", qPrintable(failureOf(api.call(endpoints::health))));
    threadsLeft = std::numeric_limits<int>::max();
    std::printf("%s\n", qPrintable(failureOf(api.call(endpoints::health))));
    return 0;
}

} // namespace

/// Stands before the C library's: no thread is to be had once `threadsLeft` have been made.
extern "C" [[gnu::visibility("default")]] int pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                                                             void *(*start)(void *), void *argument)
{
    static const auto original = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return threadsLeft-- > 0 ? original(thread, attributes, start, argument) : EAGAIN;
}

/// What becomes of a request, and of the program, where the system runs out of something.
class ScarcityTest : public QObject
{
    Q_OBJECT

    static constexpr const char *noResources = "TransportError: The system has no resources left for a request.";

    /// How two requests of a client end that lacks something; a third entry tells its exit code.
    static QList<QByteArray> endsOf(const QList<QByteArray> &environment)
    {
        ScriptedServer server;
        server.on("GET", "/health", ScriptedReply::json(R"({"ok":true})"));
        ChildProcess client(QFile::encodeName(QCoreApplication::applicationFilePath()), {},
                            environment + QList<QByteArray>{"AMBREL_TEST_SERVER=" + server.url().toLatin1()});
        const QByteArray first = client.readLine();
        const QByteArray second = client.readLine();
        return {first, second, QByteArray::number(client.wait())};
    }

private Q_SLOTS:
    void withoutAThreadARequestFailsAndTheNextOneWorks_data()
    {
        QTest::addColumn<int>("threads");
        QTest::newRow("none") << 0;
        QTest::newRow("the network thread alone") << 1;
    }

    void withoutAThreadARequestFailsAndTheNextOneWorks()
    {
        QFETCH(const int, threads);
        const auto ends = endsOf({"AMBREL_SCARCE=threads", "AMBREL_LEFT=" + QByteArray::number(threads)});
        QCOMPARE(ends, (QList<QByteArray>{noResources, "", "0"}));
    }

    void oneWorkerIsEnough()
    {
        QCOMPARE(endsOf({"AMBREL_SCARCE=threads", "AMBREL_LEFT=2"}), (QList<QByteArray>{"", "", "0"}));
    }

    void fewDescriptorsNeverEndTheProgram()
    {
#if defined(__SANITIZE_ADDRESS__)
        QSKIP("The sanitizer opens a pipe to see whether memory can be read, and takes it for bad where it can't.");
#endif
        int successes = 0;
        for (int left = 0; left < 24; ++left) {
            const auto ends = endsOf({"AMBREL_SCARCE=descriptors", "AMBREL_LEFT=" + QByteArray::number(left)});
            QCOMPARE(ends.last(), "0");
            const bool isRead = ends.first().isEmpty();
            QVERIFY2(isRead || ends.first().startsWith("TransportError: "), ends.first().constData());
            successes += isRead ? 1 : 0;
        }
        QVERIFY2(successes > 0 && successes < 24, qPrintable(QString::number(successes)));
    }

    void withoutItsLibraryARequestFails()
    {
        const QTemporaryDir folder;
        QFile library(folder.filePath(QStringLiteral("libcurl.so.4")));
        QVERIFY(library.open(QIODevice::WriteOnly) && library.write("no library") > 0);
        library.close();
        const QByteArray missing = "TransportError: The network library could not be loaded.";
        QCOMPARE(endsOf({"LD_LIBRARY_PATH=" + QFile::encodeName(folder.path())}),
                 (QList<QByteArray>{missing, missing, "0"}));
    }
};

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsSet("AMBREL_TEST_SERVER"))
        return runClient(argc, argv);
    QCoreApplication application(argc, argv);
    ScarcityTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ScarcityTest.moc"
