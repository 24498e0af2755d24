#include "ui/profile/PhotoFile.h"

#include <QtEndian>
#include <algorithm>

namespace ambrel {

namespace {

constexpr qsizetype signatureLength = 8;
constexpr qsizetype chunkFrame = 12; ///< length, name and checksum

/// A kind of chunk that a picture needs, and the most bytes of data that a sound one has.
struct ChunkKind
{
    const char *name;
    qsizetype maxLength;
};
constexpr ChunkKind neededChunks[] = {
    {"IHDR", 13}, {"PLTE", 768}, {"tRNS", 256},     {"gAMA", 4},
    {"cHRM", 32}, {"sRGB", 1},   {"iCCP", 1 << 20}, {"IDAT", maxPhotoMemory},
    {"IEND", 0},
};

} // namespace

std::optional<QByteArray> plainPng(const QByteArray &file)
{
    QByteArray png = file.left(signatureLength);
    for (qsizetype at = signatureLength; file.size() - at >= chunkFrame;) {
        const QByteArrayView rest = QByteArrayView(file).sliced(at);
        const qsizetype length = qFromBigEndian<quint32>(rest.data());
        if (length > rest.size() - chunkFrame)
            break;
        const QByteArrayView name = rest.sliced(4, 4);
        const auto isSame = [name](const ChunkKind &kind) { return name == kind.name; };
        const auto *const kind = std::find_if(std::begin(neededChunks), std::end(neededChunks), isSame);
        if (kind != std::end(neededChunks) && length <= kind->maxLength)
            png += rest.first(length + chunkFrame);
        if (name == "IEND")
            return png;
        at += length + chunkFrame;
    }
    return std::nullopt; // cut short
}

} // namespace ambrel
