// Decoding check replies into records, beside QJsonDocument into the same records and beside a plain copy of the body.

#include "model/Json.h"
#include "model/ResponseRecords.h"
#include "support/CheckReplies.h"
#include "support/Interleaved.h"
#include "support/Noise.h"
#include "support/Row.h"
#include "tasks/Worker.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <sys/resource.h>

using namespace ambrel;

namespace {

/// A reply in which every photo has `photoBytes` bytes; none when that is 0.
QByteArray reply(int matchCount, qsizetype photoBytes, bool escapesSolidus = false)
{
    QByteArray text = dataUrlOf(noisyBytes(photoBytes));
    if (escapesSolidus)
        text.replace('/', "\\/");
    return checkReply(matchCount, photoBytes ? QList<QByteArray>{text} : QList<QByteArray>());
}

CheckResponse decodeWithToolkit(const QByteArray &json)
{
    const QJsonObject reply = QJsonDocument::fromJson(json).object();
    CheckResponse record;
    record.active = reply.value(QLatin1String("active")).toBool();
    record.thresholdPercent = reply.value(QLatin1String("thresholdPercent")).toInteger();
    const QJsonArray matches = reply.value(QLatin1String("matches")).toArray();
    for (const QJsonValue &value : matches) {
        const QJsonObject object = value.toObject();
        MatchResult &match = record.matches.emplaceBack();
        match.userId = object.value(QLatin1String("userId")).toString();
        match.displayName = object.value(QLatin1String("displayName")).toString();
        match.distanceMeters = object.value(QLatin1String("distanceMeters")).toDouble();
        match.aToB = object.value(QLatin1String("aToB")).toDouble();
        match.bToA = object.value(QLatin1String("bToA")).toDouble();
        match.heatLevel = object.value(QLatin1String("heatLevel")).toString();
        match.profileBio = object.value(QLatin1String("profileBio")).toString();
        match.updatedAt = object.value(QLatin1String("updatedAt")).toString();
        const QJsonArray photos = object.value(QLatin1String("profilePhotos")).toArray();
        for (const QJsonValue &photo : photos)
            match.profilePhotos += PhotoText(photo.toString());
    }
    return record;
}

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// Where the allocator's own threshold for fresh blocks ends up in a program that handles large ones.
constexpr int settledThreshold = 32 * 1024 * 1024;

double residentPeakOverBody(const QByteArray &json)
{
    QFile::exists(QString());               // settles lazily loaded code before the first reading
    waitForWorkers();                       // who may still be freeing an earlier body
    malloc_trim(0);                         // what an earlier record has left would be used again and not counted
    mallopt(M_MMAP_THRESHOLD, 1024 * 1024); // the body is a fresh block, so that all its pages are counted
    const auto resident = [](const char *key) {
        QFile status(QStringLiteral("/proc/self/status"));
        (void)status.open(QIODevice::ReadOnly);
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith(key))
                return line.split(':').at(1).trimmed().split(' ').first().toDouble() * 1024;
        }
        return 0.0;
    };
    const double before = resident("VmRSS");
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (!clear.open(QIODevice::WriteOnly) || clear.write("5") != 1)
        return 0;
    clear.close();
    const auto body = std::make_shared<Bytes>(view(json));
    const auto record = readRecord<CheckResponse>(body);
    if (record.matches.isEmpty())
        std::abort();
    mallopt(M_MMAP_THRESHOLD, settledThreshold);
    return (resident("VmHWM") - before) / static_cast<double>(json.size());
}

struct Figures
{
    double overToolkit;  ///< how many times as fast
    double overCopy;     ///< how many times as long
    double residentPeak; ///< over the size of the body
    QByteArray measured;
};

Figures compare(const char *name, const QByteArray &json, int rounds)
{
    std::vector<char> copy(static_cast<std::size_t>(json.size()));
    std::vector<std::shared_ptr<Bytes>> bodies;
    for (int i = 0; i < rounds; ++i)
        bodies.push_back(std::make_shared<Bytes>(view(json)));
    std::size_t next = 0;
    CheckResponse kept;
    const auto [ours, copying] = interleavedMedians(
        rounds, [&] { kept = readRecord<CheckResponse>(bodies[next++]); },
        [&] { std::memcpy(copy.data(), json.constData(), copy.size()); });
    bodies.clear();
    next = 0;
    const auto [toolkits, unused] = interleavedMedians(
        3, [&] { kept = decodeWithToolkit(json); }, [] {});
    (void)unused;
    kept = {};
    const double gigabytes = static_cast<double>(json.size()) / 1e9;
    const Figures figures{toolkits / ours, ours / copying, residentPeakOverBody(json), figure(ours * 1e3, " ms")};
    std::printf("%-16s %10lld bytes: %7.3f ms %6.2f GB/s | toolkit / ours %6.1f | ours / memcpy %5.2f | "
                "resident peak / body %4.2f\n",
                name, static_cast<long long>(json.size()), ours * 1e3, gigabytes / ours, figures.overToolkit,
                figures.overCopy, figures.residentPeak);
    return figures;
}

void reportSmall(const Figures &figures)
{
    print({.what = "decode 50 matches without photos",
           .toReach = "at least 3 x QJsonDocument",
           .floor = "QJsonDocument",
           .measured = figures.measured,
           .ratio = figure(figures.overToolkit),
           .isReached = figures.overToolkit >= 3});
}

void reportLarge(const char *size, const Figures &plain, const Figures &escaped)
{
    print({.what = QByteArray("decode ") + size + " with photos",
           .toReach = "10 x QJsonDocument, 1.8 x memcpy, resident peak 1.2 x the body",
           .floor = "QJsonDocument; memcpy",
           .measured = plain.measured,
           .ratio = figure(plain.overToolkit) + "; " + figure(plain.overCopy) + "; peak " + figure(plain.residentPeak),
           .isReached = plain.overToolkit >= 10 && plain.overCopy <= 1.8 && plain.residentPeak <= 1.2});
    print({.what = QByteArray("the same, with \\/ for /"),
           .toReach = "10 x memcpy",
           .floor = "memcpy",
           .measured = escaped.measured,
           .ratio = figure(escaped.overCopy),
           .isReached = escaped.overCopy <= 10});
}

} // namespace

int main()
{
    mallopt(M_MMAP_THRESHOLD, settledThreshold);
    reportSmall(compare("50, no photos", reply(50, 0), 201));
    compare("10,000, no photos", reply(10'000, 0), 21);
    reportLarge("30 MB", compare("30 MB", reply(20, 1'125'000), 15),
                compare("30 MB, \\/", reply(20, 1'125'000, true), 15));
    reportLarge("160 MB", compare("160 MB", reply(100, 1'200'000), 7),
                compare("160 MB, \\/", reply(100, 1'200'000, true), 7));
}
