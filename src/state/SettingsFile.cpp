#include "state/SettingsFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QScopeGuard>
#include <QSettings>
#include <QUuid>
#include <filesystem>

namespace ambrel {

namespace {

/// Age at which a lock counts as left over. A writer that still holds it is safe: the file system knows.
constexpr std::chrono::milliseconds maxLockAge{250};
constexpr qint64 maxFileSize = qint64{256} * 1024 * 1024; ///< bytes; what is larger is none of ours

QString nativePath()
{
#if defined(Q_OS_WIN) || defined(Q_OS_DARWIN)
    return {};
#else
    // A store reads every file that it may fall back to, and a pipe among them would hold it up for ever. So the
    // folder is asked of a store that has no file.
    const QSettings nobody(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Ambrel.none"));
    const QString path = QFileInfo(nobody.fileName()).path() + QStringLiteral("/Ambrel/Ambrel.conf");
    const QString linked = QFileInfo(path).canonicalFilePath();
    return linked.isEmpty() ? path : linked;
#endif
}

/// The toolkit's store on `path` alone, or the platform's service.
QSettings storeOn(const QString &path)
{
    const QString name = QStringLiteral("Ambrel");
    return path.isEmpty() ? QSettings(QSettings::NativeFormat, QSettings::UserScope, name, name)
                          : QSettings(path, QSettings::NativeFormat);
}

std::filesystem::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

enum class Presence { Absent, Readable, Unreadable };

/// The toolkit takes what it cannot read for absent.
Presence presenceOf(const QString &path)
{
    if (path.isEmpty())
        return Presence::Readable;
    std::error_code error;
    const auto type = std::filesystem::status(native(path), error).type();
    if (type == std::filesystem::file_type::not_found)
        return Presence::Absent;
    if (type != std::filesystem::file_type::regular)
        return Presence::Unreadable;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maxFileSize)
        return Presence::Unreadable;
    file.readAll();
    return file.error() == QFile::NoError ? Presence::Readable : Presence::Unreadable;
}

/// A comma in a hand-edited file makes a list of what was one text.
QString textOf(const QVariant &value)
{
    return value.toStringList().join(QStringLiteral(", "));
}

bool fill(QSettings &store, const SettingsFile::Texts &texts, const SettingsFile::Texts &onlyIfAbsent)
{
    for (auto text = onlyIfAbsent.cbegin(); text != onlyIfAbsent.cend(); ++text) {
        if (!store.value(text.key()).isValid())
            store.setValue(text.key(), text.value());
    }
    for (auto text = texts.cbegin(); text != texts.cend(); ++text)
        store.setValue(text.key(), text.value());
    store.sync();
    return store.status() != QSettings::AccessError;
}

/// Readable by its user alone, whatever the process's mask says.
void makeFolder(const QString &path)
{
    const QFileInfo folder(QFileInfo(path).path());
    QDir().mkpath(folder.path());
    QDir(folder.path()).mkdir(folder.fileName(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// The toolkit's store replaces a file with one of the same permissions.
bool makePrivateFile(const QString &path)
{
    QFile::remove(path); // of a writer that was killed
    QFile::remove(path + QStringLiteral(".lock"));
    return QFile(path).open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner);
}

/// What writers that were killed have left.
void removeOldCopies(const QFileInfo &file)
{
    const QDir folder = file.dir();
    const QDateTime old = QDateTime::currentDateTime().addSecs(-60);
    for (const QFileInfo &copy : folder.entryInfoList({file.fileName() + QStringLiteral(".new*")}, QDir::Files)) {
        if (copy.lastModified() < old)
            QFile::remove(copy.filePath());
    }
}

/// Puts `copy` in the place of `path`. An absent file may have been made by another client meanwhile: then fails.
bool putInPlace(const QString &copy, const QString &path, Presence presence)
{
    std::error_code error;
    if (presence == Presence::Absent) {
        std::filesystem::create_hard_link(native(copy), native(path), error); // never overwrites
        if (!error || error == std::errc::file_exists)
            return !error;
    }
    std::filesystem::rename(native(copy), native(path), error);
    return !error;
}

} // namespace

SettingsFile::SettingsFile() : m_path(nativePath()) {}

std::optional<SettingsFile::Texts> SettingsFile::read() const
{
    if (presenceOf(m_path) == Presence::Unreadable)
        return std::nullopt;
    QSettings store = storeOn(m_path);
    store.setFallbacksEnabled(false);
    Texts texts;
    for (const QString &key : store.allKeys()) {
        const QVariant value = store.value(key);
        if (value.isValid())
            texts.insert(key, textOf(value));
    }
    return texts;
}

bool SettingsFile::write(const Texts &texts, const Texts &onlyIfAbsent, std::chrono::milliseconds maxWait) const
{
    if (m_path.isEmpty()) {
        QSettings service = storeOn(m_path);
        service.setFallbacksEnabled(false);
        return fill(service, texts, onlyIfAbsent);
    }
    makeFolder(m_path);
    QLockFile lock(m_path + QStringLiteral(".lock")); // the toolkit's own name for it
    lock.setStaleLockTime(static_cast<int>(maxLockAge.count()));
    QString copyPath = m_path + QStringLiteral(".new");
    if (lock.tryLock(static_cast<int>(maxWait.count())))
        removeOldCopies(QFileInfo(m_path));
    else
        copyPath += u'-' + QUuid::createUuid().toString(QUuid::Id128); // others may be writing a copy of their own

    constexpr int maxTries = 3;
    for (int i = 0; i < maxTries; ++i) {
        const Presence presence = presenceOf(m_path);
        if (presence == Presence::Unreadable || !makePrivateFile(copyPath))
            return false;
        const auto removal = qScopeGuard([&copyPath] { QFile::remove(copyPath); });
        QSettings next(copyPath, QSettings::NativeFormat);
        const QSettings current(m_path, QSettings::NativeFormat);
        for (const QString &key : current.allKeys())
            next.setValue(key, current.value(key));
        if (!fill(next, texts, onlyIfAbsent))
            return false;
        if (putInPlace(copyPath, m_path, presence))
            return true;
    }
    return false;
}

QString SettingsFile::name() const
{
    return m_path.isEmpty() ? storeOn(m_path).fileName() : m_path;
}

} // namespace ambrel
