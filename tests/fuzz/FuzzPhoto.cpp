// The whole road of a photo, from base64 to the pixels that are drawn.

#include "ui/profile/DataUrlImage.h"

#include <QByteArray>
#include <QLoggingCategory>
#include <QtEndian>
#include <cstdlib>
#include <zlib.h>

using namespace ambrel;

namespace {

/// Gives every chunk of a PNG file its right checksum, which mutations hardly ever hit.
void repairChecksums(QByteArray &file)
{
    qsizetype at = 8;
    while (file.size() - at >= 12) {
        auto *const chunk = reinterpret_cast<uchar *>(file.data()) + at;
        const qsizetype length = qFromBigEndian<quint32>(chunk);
        if (length > file.size() - at - 12)
            return;
        qToBigEndian(quint32(crc32(0, chunk + 4, uInt(length + 4))), chunk + 8 + length);
        at += length + 12;
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, std::size_t size)
{
    QByteArray file(reinterpret_cast<const char *>(bytes), qsizetype(size));
    if (file.startsWith("\x89PNG"))
        repairChecksums(file);
    const QByteArray text = file.toBase64();
    constexpr QSize frame(86, 104);
    const auto image = dataURLImage({text.constData(), std::size_t(text.size())}, frame);
    if (image && image->size() != frame)
        std::abort();
    return 0;
}
