// What people type and strangers send as text: addresses, numbers, names, base64; and all of it as JSON.

#include "api/BaseUrl.h"
#include "model/Base64.h"
#include "model/Json.h"
#include "model/RequestRecords.h"
#include "state/Coordinates.h"
#include "state/UserIdSuggestion.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

using namespace ambrel;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// The toolkit's strict decoder accepts missing padding; in all else the two agree.
void checkBase64(std::string_view text)
{
    const QByteArray bytes(text.data(), qsizetype(text.size()));
    const auto expected = QByteArray::fromBase64Encoding(bytes, QByteArray::AbortOnBase64DecodingErrors);
    const auto decoded = decodeBase64(text);
    require(decoded.has_value() ==
            (expected.decodingStatus == QByteArray::Base64DecodingStatus::Ok && bytes.size() % 4 == 0));
    require(!decoded || *decoded == expected.decoded);
}

/// What is appended to an address stays beneath it.
void checkAddress(const QString &text)
{
    const QUrl base = baseURLFromText(text);
    const QUrl below = appendingPath(base, text);
    const bool isHttp = base.scheme().startsWith(QLatin1String("http")) && !base.host().isEmpty();
    require(!isHttp || (below.isValid() && below.scheme() == base.scheme() && below.authority() == base.authority() &&
                        below.path(QUrl::FullyEncoded).startsWith(base.path(QUrl::FullyEncoded))));
}

void checkCoordinate(const QString &text)
{
    const double degrees = parsedCoordinate(text, 0);
    require(!std::isfinite(degrees) || parsedCoordinate(coordinateText(degrees), 500) == degrees);
}

/// With U+FFFD for each half of a surrogate pair that stands alone.
QString repaired(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

void checkRecord(const QString &text)
{
    const LoginRequest written{text, QStringLiteral("mac-1")};
    const QByteArray json = writeRecord(written);
    const auto bytes = std::make_shared<Bytes>(std::string_view(json.constData(), std::size_t(json.size())));
    const auto read = readRecord<LoginRequest>(bytes);
    require(read.deviceId == written.deviceId && read.userId == repaired(text));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    const std::string_view view(reinterpret_cast<const char *>(bytes), size);
    checkBase64(view);
    const QString utf8 = QString::fromUtf8(view.data(), qsizetype(size));
    QString utf16(qsizetype(size / sizeof(QChar)), u' '); // with halves of surrogate pairs
    std::memcpy(utf16.data(), bytes, std::size_t(utf16.size()) * sizeof(QChar));
    for (const QString &text : {utf8, utf16}) {
        checkAddress(text);
        checkCoordinate(text);
        checkRecord(text);
        require(!suggestedUserId(text).isEmpty());
    }
    return 0;
}
