// Decoding check replies into records, beside QJsonDocument into the same records and beside a plain copy of the body.

#include "model/Json.h"
#include "model/ResponseRecords.h"
#include "support/Interleaved.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>

using namespace ambrel;

namespace {

QByteArray checkReply(int matchCount, qsizetype photoBytes, bool escapesSolidus)
{
    QByteArray photo(photoBytes, Qt::Uninitialized);
    unsigned value = 1;
    for (char &byte : photo)
        byte = static_cast<char>((value = value * 1664525 + 1013904223) >> 24);
    QByteArray text = "data:image/jpeg;base64," + photo.toBase64();
    if (escapesSolidus)
        text.replace('/', "\\/");
    QByteArray matches;
    for (int i = 0; i < matchCount; ++i) {
        matches += (i ? ",{" : "{") + QByteArray("\"userId\":\"user-") + QByteArray::number(i) +
                   "\",\"displayName\":\"Person " + QByteArray::number(i) +
                   "\",\"distanceMeters\":123.456,\"aToB\":72.5,\"bToA\":64,\"heatLevel\":\"VERY_HOT\","
                   "\"profileBio\":\"Likes long walks, short films and caf\xC3\xA9s.\",\"profilePhotos\":[" +
                   (photoBytes ? '"' + text + '"' : QByteArray()) + "],\"updatedAt\":\"2026-01-01T00:00:00Z\"}";
    }
    return "{\"active\":true,\"thresholdPercent\":70,\"matches\":[" + matches + "],\"seeMeMessages\":[]}";
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

double residentPeakOverBody(const QByteArray &json)
{
    QFile::exists(QString()); // settles lazily loaded code before the first reading
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
    return (resident("VmHWM") - before) / static_cast<double>(json.size());
}

void compare(const char *name, const QByteArray &json, int rounds)
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
    std::printf("%-16s %10lld bytes: %7.3f ms %6.2f GB/s | toolkit / ours %6.1f | ours / memcpy %5.2f | "
                "resident peak / body %4.2f\n",
                name, static_cast<long long>(json.size()), ours * 1e3, gigabytes / ours, toolkits / ours,
                ours / copying, residentPeakOverBody(json));
}

} // namespace

int main()
{
    compare("50, no photos", checkReply(50, 0, false), 201);
    compare("10,000, no photos", checkReply(10'000, 0, false), 21);
    compare("30 MB", checkReply(20, 1'125'000, false), 15);
    compare("30 MB, \\/", checkReply(20, 1'125'000, true), 15);
    compare("160 MB", checkReply(100, 1'200'000, false), 7);
    compare("160 MB, \\/", checkReply(100, 1'200'000, true), 7);
}
