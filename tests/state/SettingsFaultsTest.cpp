#include "StateFixture.h"
#include "state/SettingsStore.h"
#include "support/ChildProcess.h"

#include <QElapsedTimer>
#include <QLockFile>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace ambrel;

namespace {

QString deviceIdKey()
{
    return QStringLiteral("deviceId");
}

/// What this process writes to its standard error meanwhile.
class StandardError
{
public:
    StandardError() : m_before(dup(STDERR_FILENO))
    {
        int ends[2] = {};
        if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
            qFatal("no pipe");
        m_read = ends[0];
        dup2(ends[1], STDERR_FILENO);
        close(ends[1]);
    }
    ~StandardError()
    {
        dup2(m_before, STDERR_FILENO);
        close(m_before);
        close(m_read);
    }
    Q_DISABLE_COPY_MOVE(StandardError)

    /// All lines so far.
    QByteArrayList lines()
    {
        char part[4096];
        for (ssize_t size; (size = read(m_read, part, sizeof part)) > 0;)
            m_text.append(part, size);
        QByteArrayList all = m_text.split('\n');
        all.removeLast();
        return all;
    }

private:
    int m_before;
    int m_read = -1;
    QByteArray m_text;
};

/// No file may grow beyond `bytes`, as on a disk that is full.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    rlimit m_before{};
};

/// A state on the store as it is; its end waits for what is being saved.
class Client
{
public:
    AmbrelAppState *operator->() const { return m_state.get(); }
    /// Saves with this user ID; how long that kept the main thread, in ms.
    qint64 saveAs(const QString &userId) const
    {
        m_state->userId = userId;
        QElapsedTimer timer;
        timer.start();
        m_state->saveSettings();
        return timer.elapsed();
    }

private:
    CountingSound m_sound;
    std::shared_ptr<AmbrelAppState> m_state = AmbrelAppState::create(m_sound);
};

/// What a child process does until it is killed: it saves one number under two keys, again and again.
[[noreturn]] void keepSaving(int number)
{
    const Client client;
    std::cout << "saving" << std::endl;
    while (true) {
        client->displayName = QString::number(number);
        client.saveAs(QString::number(number));
        ++number;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

} // namespace

class SettingsFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatCannotBeReadIsLeftAlone_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("folder") << int(S_IFDIR);
        QTest::newRow("pipe") << int(S_IFIFO);
        QTest::newRow("file beyond all measure") << int(S_IFREG);
    }
    void whatCannotBeReadIsLeftAlone()
    {
        QFETCH(const int, type);
        const SettingsFolder folder;
        folder.makeFolder();
        const QByteArray path = QFile::encodeName(folder.file());
        QCOMPARE(mknod(path.constData(), mode_t(type == S_IFDIR ? S_IFREG : type) | 0600, 0), 0);
        if (type == S_IFREG)
            QCOMPARE(truncate(path.constData(), off_t(1) << 40), 0);
        if (type == S_IFDIR)
            QVERIFY(QFile::remove(folder.file()) && QDir().mkdir(folder.file()));
        struct stat before = {};
        QCOMPARE(stat(path.constData(), &before), 0);

        StandardError errors;
        {
            const Client client;
            QCOMPARE(client->latitudeText.value(), QStringLiteral("39.0458"));
            client.saveAs(QStringLiteral("ann"));
            QCOMPARE(client->statusText.value(), QStringLiteral("Ready."));
        }
        QCOMPARE(errors.lines().size(), 1);
        QVERIFY2(errors.lines().first().contains(path), errors.lines().first().constData());
        struct stat after = {};
        QCOMPARE(stat(path.constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
        QCOMPARE(after.st_size, before.st_size);
    }

    void filesThatTheStoreMightFallBackToDoNotMatter()
    {
        const SettingsFolder folder;
        const QByteArray organisationWide = QFile::encodeName(folder.path(QStringLiteral("Ambrel.conf")));
        QCOMPARE(mkfifo(organisationWide.constData(), 0600), 0);
        StandardError errors;
        Client().saveAs(QStringLiteral("ann"));
        QCOMPARE(errors.lines(), QByteArrayList());
        QCOMPARE(QSettings(folder.file(), QSettings::NativeFormat).value(QStringLiteral("userId")).toString(),
                 QStringLiteral("ann"));
    }

    void aDeviceIdForAllUsersOfAMachineIsNotTaken()
    {
        const SettingsFolder folder;
        QSettings(folder.path(QStringLiteral("Ambrel.conf")), QSettings::NativeFormat)
            .setValue(deviceIdKey(), QStringLiteral("everybody's"));
        QVERIFY(SettingsStore().deviceId().startsWith(QStringLiteral("mac-")));
    }

    void aFileThatGoesMeanwhileComesBackWhole_data()
    {
        QTest::addColumn<bool>("withItsFolder");
        QTest::newRow("file") << false;
        QTest::newRow("folder") << true;
    }
    void aFileThatGoesMeanwhileComesBackWhole()
    {
        QFETCH(const bool, withItsFolder);
        const SettingsFolder folder;
        const Client client;
        const QString deviceId = StoredSettings::text(deviceIdKey());
        QVERIFY(!deviceId.isEmpty());
        QVERIFY(withItsFolder ? QFileInfo(folder.file()).dir().removeRecursively() : QFile::remove(folder.file()));
        client.saveAs(QStringLiteral("ann"));
        QTRY_COMPARE(StoredSettings::keys(), everyKey());
        QCOMPARE(StoredSettings::text(deviceIdKey()), deviceId);
    }

    void theDeviceIdOnTheDiskIsNeverReplaced()
    {
        const SettingsFolder folder;
        const Client client;
        StoredSettings().setValue(deviceIdKey(), QStringLiteral("restored"));
        client.saveAs(QStringLiteral("ann"));
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
        QCOMPARE(StoredSettings::text(deviceIdKey()), QStringLiteral("restored"));
    }

    void settingsOfLaterVersionsStay()
    {
        const SettingsFolder folder;
        StoredSettings().setValue(QStringLiteral("later/list"), QStringList{QStringLiteral("a"), QStringLiteral("b")});
        Client().saveAs(QStringLiteral("ann"));
        QCOMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
        QCOMPARE(StoredSettings().value(QStringLiteral("later/list")).toStringList().size(), 2);
    }

    void brokenLinesAreSkipped()
    {
        const SettingsFolder folder;
        folder.makeFolder();
        QFile file(folder.file());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[General]\nno setting at all\ndeviceId=mac-1\nemail=@Invalid()\n\xff\xfe\nphone=12\n");
        file.close();
        StandardError errors;
        {
            const Client client;
            QCOMPARE(client->phone.value(), QStringLiteral("12"));
            QCOMPARE(client->email.value(), QString());
            client.saveAs(QStringLiteral("ann"));
        }
        QCOMPARE(errors.lines(), QByteArrayList());
        QCOMPARE(StoredSettings::text(deviceIdKey()), QStringLiteral("mac-1"));
        QCOMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
    }

    void aLinkToTheFileStaysALink()
    {
        const SettingsFolder folder;
        folder.makeFolder();
        const QString elsewhere = folder.path(QStringLiteral("elsewhere.conf"));
        QSettings(elsewhere, QSettings::NativeFormat).setValue(deviceIdKey(), QStringLiteral("mac-1"));
        QVERIFY(QFile::link(elsewhere, folder.file()));
        Client().saveAs(QStringLiteral("ann"));
        QVERIFY(QFileInfo(folder.file()).isSymLink());
        QCOMPARE(QSettings(elsewhere, QSettings::NativeFormat).value(QStringLiteral("userId")).toString(),
                 QStringLiteral("ann"));
    }

    void theLastOfManySavesWins()
    {
        const SettingsFolder folder;
        {
            const Client client;
            for (int i = 0; i < 200; ++i)
                client.saveAs(QString::number(i));
        }
        QCOMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("199"));
    }

    void aLeftOverLockHoldsNothingUp_data()
    {
        QTest::addColumn<qint64>("process");
        QTest::addColumn<bool>("isOld");
        QTest::newRow("of a process that runs") << QCoreApplication::applicationPid() << true;
        QTest::newRow("made just now") << QCoreApplication::applicationPid() << false;
        QTest::newRow("of a process that has ended") << qint64(4'194'305) << false;
    }
    void aLeftOverLockHoldsNothingUp()
    {
        QFETCH(const qint64, process);
        QFETCH(const bool, isOld);
        const SettingsFolder folder;
        const Client client;
        QFile lock(folder.file() + QStringLiteral(".lock"));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.write(QStringLiteral("%1\ntest-settings-faults\n%2\n\n\n")
                       .arg(process)
                       .arg(QSysInfo::machineHostName())
                       .toUtf8());
        lock.close();
        if (isOld)
            std::filesystem::last_write_time(lock.fileName().toStdString(),
                                             std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
        QVERIFY(client.saveAs(QStringLiteral("ann")) < 50);
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
    }

    void aWriterThatHangsHoldsNothingUp()
    {
        const SettingsFolder folder;
        const Client client;
        QLockFile lock(folder.file() + QStringLiteral(".lock"));
        QVERIFY(lock.lock());
        QVERIFY(client.saveAs(QStringLiteral("ann")) < 50);
        QVERIFY(StoredSettings::text(QStringLiteral("userId")).isEmpty()); // it has not waited in secret
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
    }

    void whatIsNotYetSavedAtTheEndIsSaved()
    {
        const SettingsFolder folder;
        QLockFile lock(folder.file() + QStringLiteral(".lock"));
        {
            const Client client;
            QVERIFY(lock.lock());
            client.saveAs(QStringLiteral("ann"));
        }
        QCOMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
    }

    void aDiskThatHangsDoesNotHoldUpTheEnd()
    {
        const SettingsFolder folder;
        const QByteArray lock = QFile::encodeName(folder.file() + QStringLiteral(".lock"));
        StandardError errors;
        QElapsedTimer timer;
        {
            const Client client;
            QCOMPARE(mkfifo(lock.constData(), 0600), 0); // whoever opens it waits
            QVERIFY(client.saveAs(QStringLiteral("ann")) < 50);
            timer.start();
        }
        QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(errors.lines().size(), 1);
        const int otherEnd = open(lock.constData(), O_RDWR | O_CLOEXEC); // the disk works again
        QVERIFY(QFile::remove(QFile::decodeName(lock)));
        close(otherEnd);
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
    }

    void aFullDiskKeepsTheOldFile()
    {
        const SettingsFolder folder;
        const Client client;
        client.saveAs(QStringLiteral("ann"));
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
        StandardError errors;
        {
            const FullDisk full(16);
            client.saveAs(QStringLiteral("bob"));
            QTRY_COMPARE(errors.lines().size(), 1);
        }
        QCOMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
        QCOMPARE(client->statusText.value(), QStringLiteral("Ready."));
        client.saveAs(QStringLiteral("bob"));
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("bob"));
        QCOMPARE(errors.lines().size(), 1);
    }

    void simultaneousFirstStartsAgreeOnOneDeviceId()
    {
        for (int round = 0; round < 40; ++round) {
            const SettingsFolder folder;
            std::array<QString, 4> ids;
            std::atomic<int> ready = 0;
            {
                std::vector<std::jthread> clients;
                for (QString &id : ids)
                    clients.emplace_back([&id, &ready] {
                        ++ready;
                        while (ready < 4)
                            std::this_thread::yield();
                        id = SettingsStore().deviceId();
                    });
            }
            for (const QString &id : ids)
                QCOMPARE(id, StoredSettings::text(deviceIdKey()));
        }
    }

    void fileAndFolderArePrivateFromTheirFirstMoment()
    {
        const mode_t before = umask(0);
        std::atomic<bool> hasEnded = false;
        std::atomic<int> open = 0;
        std::atomic<int> seen = 0;
        const QTemporaryDir directory;
        const std::string root = directory.path().toStdString();
        std::jthread watcher([&] {
            while (!hasEnded) {
                std::error_code error;
                for (auto entry = std::filesystem::recursive_directory_iterator(root, error);
                     !error && entry != std::filesystem::recursive_directory_iterator(); entry.increment(error)) {
                    struct stat status = {};
                    if (stat(entry->path().c_str(), &status) != 0 || entry->path().extension() == ".lock")
                        continue; // a lock holds nothing of the user
                    ++seen;
                    if ((status.st_mode & 077) != 0)
                        ++open;
                }
            }
        });
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, directory.path());
        for (int i = 0; i < 100; ++i) {
            Client().saveAs(QStringLiteral("ann"));
            QVERIFY(QDir(directory.filePath(QStringLiteral("Ambrel"))).removeRecursively());
        }
        hasEnded = true;
        watcher.join();
        umask(before);
        QVERIFY(seen > 0);
        QCOMPARE(open.load(), 0);
    }

    void whatKilledWritersHaveLeftDoesNotPileUp()
    {
        const SettingsFolder folder;
        const Client client;
        for (const char *const name : {".new", ".new.lock", ".new.AbCdEf", ".new-1234"}) {
            QFile left(folder.file() + QLatin1String(name));
            QVERIFY(left.open(QIODevice::WriteOnly));
            left.close();
            std::filesystem::last_write_time(left.fileName().toStdString(),
                                             std::filesystem::file_time_type::clock::now() - std::chrono::minutes(2));
        }
        client.saveAs(QStringLiteral("ann"));
        QTRY_COMPARE(StoredSettings::text(QStringLiteral("userId")), QStringLiteral("ann"));
        QTRY_COMPARE(QFileInfo(folder.file()).dir().entryList(QDir::Files), QStringList{QStringLiteral("Ambrel.conf")});
    }

    void killsNeitherHalveTheFileNorLoseTheDeviceId()
    {
        const SettingsFolder folder;
        const QString deviceId = SettingsStore().deviceId();
        const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
        const QByteArray configuration = "XDG_CONFIG_HOME=" + QFile::encodeName(folder.path());
        for (int i = 0; i < 200; ++i) {
            {
                ChildProcess child(program, {"--keep-saving", QByteArray::number(i * 1000)}, {configuration});
                QCOMPARE(child.readLine(), QByteArray("saving"));
                if (i % 10 == 0) // now and then a later save is met
                    QTRY_VERIFY(StoredSettings::text(QStringLiteral("userId")).toInt() > i * 1000);
                // At every moment of a save and of the next.
                std::this_thread::sleep_for(std::chrono::microseconds(i * 100));
                kill(child.id(), SIGKILL);
            }
            const StoredSettings stored;
            QCOMPARE(stored.status(), QSettings::NoError);
            QCOMPARE(stored.value(deviceIdKey()).toString(), deviceId);
            QCOMPARE(stored.value(QStringLiteral("displayName")), stored.value(QStringLiteral("userId")));
            QCOMPARE(StoredSettings::keys(), everyKey());
        }
    }
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().value(1) == QLatin1String("--keep-saving"))
        keepSaving(QCoreApplication::arguments().value(2).toInt());
    SettingsFaultsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SettingsFaultsTest.moc"
