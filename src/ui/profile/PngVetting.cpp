#include "ui/profile/PhotoFile.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <vector>
#include <zlib.h>

namespace ambrel {

namespace {

constexpr qsizetype signatureLength = 8;
constexpr qsizetype chunkFrame = 12; ///< length, name and checksum
constexpr int maxSide = 1'000'000;   ///< libpng's own limit
constexpr std::size_t maxColorProfile = 1 << 20;

/// A chunk of the file.
struct Chunk
{
    const uchar *start = nullptr;
    qsizetype length = 0; ///< of the data alone

    std::string_view name() const { return {reinterpret_cast<const char *>(start) + 4, 4}; }
    const uchar *data() const { return start + 8; }
    bool isWhole() const { return crc32(0, start + 4, uInt(length + 4)) == qFromBigEndian<quint32>(data() + length); }
};

/// The chunk at `at`, which moves behind it; nothing where the file holds less than the chunk claims.
std::optional<Chunk> takeChunk(const QByteArray &file, qsizetype &at)
{
    if (file.size() - at < chunkFrame)
        return std::nullopt;
    const auto *const start = reinterpret_cast<const uchar *>(file.constData()) + at;
    const Chunk chunk{start, qsizetype(qFromBigEndian<quint32>(start))};
    if (chunk.length > file.size() - at - chunkFrame)
        return std::nullopt;
    at += chunk.length + chunkFrame;
    return chunk;
}

void append(QByteArray &file, const Chunk &chunk)
{
    file.append(reinterpret_cast<const char *>(chunk.start), chunk.length + chunkFrame);
}

/// Rows of one length. A picture that is not interlaced has one such pass, an interlaced one seven.
struct Pass
{
    qint64 rows = 0;
    qint64 rowLength = 0; ///< bytes, the number of the filter included
};

/// What the header says.
struct Header
{
    qint64 width = 0;
    qint64 height = 0;
    int depth = 0;
    int colorType = 0;
    bool isInterlaced = false;

    int bitsPerPixel() const
    {
        constexpr std::array channels{1, 0, 3, 1, 2, 0, 4};
        return channels[std::size_t(colorType)] * depth;
    }
    bool isSound() const
    {
        if (colorType > 6 || width < 1 || height < 1 || width > maxSide || height > maxSide)
            return false;
        const bool isWholeBytes = depth == 8 || (depth == 16 && colorType != 3);
        const bool isParts = (depth == 1 || depth == 2 || depth == 4) && (colorType == 0 || colorType == 3);
        return (isWholeBytes || isParts) && bitsPerPixel() > 0 && width * height <= maxPhotoPixels;
    }
    Pass pass(int firstColumn, int columnStep, int firstRow, int rowStep) const
    {
        const qint64 columns = (width - firstColumn + columnStep - 1) / columnStep;
        const qint64 rows = (height - firstRow + rowStep - 1) / rowStep;
        return columns > 0 && rows > 0 ? Pass{rows, 1 + (columns * bitsPerPixel() + 7) / 8} : Pass{};
    }
    std::vector<Pass> passes() const
    {
        if (!isInterlaced)
            return {pass(0, 1, 0, 1)};
        return {pass(0, 8, 0, 8), pass(4, 8, 0, 8), pass(0, 4, 4, 8), pass(2, 4, 0, 4),
                pass(0, 2, 2, 4), pass(1, 2, 0, 2), pass(0, 1, 1, 2)};
    }
};

std::optional<Header> headerOf(const Chunk &chunk)
{
    const uchar *const data = chunk.data();
    if (chunk.name() != "IHDR" || chunk.length != 13 || !chunk.isWhole() || data[10] != 0 || data[11] != 0 ||
        data[12] > 1)
        return std::nullopt;
    const Header header{qFromBigEndian<quint32>(data), qFromBigEndian<quint32>(data + 4), data[8], data[9],
                        data[12] == 1};
    return header.isSound() ? std::optional(header) : std::nullopt;
}

/// Inflates a stream that comes in several parts.
class Inflater
{
public:
    Inflater() { m_isSound = inflateInit(&m_stream) == Z_OK; }
    ~Inflater() { inflateEnd(&m_stream); }
    Q_DISABLE_COPY_MOVE(Inflater)

    /// Fills `to`, taking parts from `nextPart` as they are needed; false when the stream is broken or ends before.
    template <typename NextPart>
    bool read(std::span<uchar> to, NextPart nextPart)
    {
        m_stream.next_out = to.data();
        m_stream.avail_out = uInt(to.size());
        while (m_isSound && m_stream.avail_out > 0) {
            if (m_stream.avail_in == 0) {
                const std::optional<std::span<const uchar>> part = nextPart();
                if (!part)
                    return false;
                m_stream.next_in = const_cast<uchar *>(part->data()); // zlib only reads there
                m_stream.avail_in = uInt(part->size());
            }
            const int result = inflate(&m_stream, Z_NO_FLUSH);
            m_isSound = result == Z_OK || (result == Z_BUF_ERROR && m_stream.avail_in == 0);
        }
        return m_stream.avail_out == 0;
    }
    /// How many bytes were read since the stream's start.
    std::size_t count() const { return m_stream.total_out; }

private:
    z_stream m_stream{};
    bool m_isSound = false;
};

/// True when the colour profile is as long as it says, and no longer than any needs to be.
bool isSoundProfile(std::span<const uchar> chunk)
{
    const auto name = std::find(chunk.begin(), chunk.end(), 0);
    if (chunk.size() > maxColorProfile || chunk.end() - name < 2)
        return false;
    std::optional<std::span<const uchar>> stream(std::in_place, name + 2, chunk.end());
    const auto takeStream = [&stream] { return std::exchange(stream, std::nullopt); };
    Inflater inflater;
    std::array<uchar, 4> head{};
    if (!inflater.read(head, takeStream))
        return false;
    const std::size_t claimed = qFromBigEndian<quint32>(head.data());
    if (claimed < head.size() || claimed > maxColorProfile)
        return false;
    std::vector<uchar> rest(claimed - head.size() + 1);
    inflater.read(rest, takeStream);
    return inflater.count() == claimed;
}

/// What of the file besides its pixels goes into the plain one.
bool isNeeded(const Chunk &chunk, const Header &header)
{
    constexpr int palette = 3;
    const std::string_view name = chunk.name();
    if (name == "PLTE")
        return header.colorType == palette && chunk.length > 0 && chunk.length <= 768 && chunk.length % 3 == 0;
    if (name == "tRNS")
        return header.colorType == palette ? chunk.length <= 256
                                           : chunk.length == (header.colorType == 0   ? 2
                                                              : header.colorType == 2 ? 6
                                                                                      : -1);
    if (name == "gAMA")
        return chunk.length == 4;
    if (name == "cHRM")
        return chunk.length == 32;
    if (name == "sRGB")
        return chunk.length == 1;
    return name == "iCCP" && isSoundProfile({chunk.data(), std::size_t(chunk.length)});
}

/// Writes a chunk whose data is a compressed stream that compresses nothing.
class StoredChunk
{
public:
    StoredChunk(QByteArray &file, qint64 maxData) : m_file(file), m_start(file.size())
    {
        deflateInit(&m_stream, Z_NO_COMPRESSION);
        const auto bound = qsizetype(deflateBound(&m_stream, uLong(maxData)));
        file.resize(m_start + chunkFrame + bound);
        m_stream.next_out = at(8);
        m_stream.avail_out = uInt(bound);
    }
    ~StoredChunk() { deflateEnd(&m_stream); }
    Q_DISABLE_COPY_MOVE(StoredChunk)

    void write(std::span<uchar> bytes, int flush = Z_NO_FLUSH)
    {
        m_stream.next_in = bytes.data();
        m_stream.avail_in = uInt(bytes.size());
        deflate(&m_stream, flush);
    }
    void finish()
    {
        write({}, Z_FINISH);
        const auto length = quint32(m_stream.total_out);
        qToBigEndian(length, at(0));
        std::copy_n("IDAT", 4, at(4));
        qToBigEndian(quint32(crc32(0, at(4), length + 4)), at(8 + qsizetype(length)));
        m_file.resize(m_start + chunkFrame + qsizetype(length));
    }

private:
    uchar *at(qsizetype offset) { return reinterpret_cast<uchar *>(m_file.data()) + m_start + offset; }

    QByteArray &m_file;
    const qsizetype m_start;
    z_stream m_stream{};
};

/// Copies the pixels, uncompressed; false when there is something wrong with them.
template <typename NextPart>
bool copyPixels(const Header &header, NextPart nextPart, QByteArray &png, DecodingWatch &watch)
{
    constexpr int lastFilter = 4;
    constexpr qint64 bytesBetweenLooks = 1 << 16;
    const std::vector<Pass> passes = header.passes();
    qint64 size = 0;
    qint64 longestRow = 0;
    for (const Pass &pass : passes) {
        size += pass.rows * pass.rowLength;
        longestRow = std::max(longestRow, pass.rowLength);
    }
    if (size > maxImageMemory)
        return false;
    Inflater inflater;
    StoredChunk pixels(png, size);
    std::vector<uchar> row(static_cast<std::size_t>(longestRow));
    qint64 unwatched = 0;
    for (const Pass &pass : passes) {
        const std::span bytes(row.data(), std::size_t(pass.rowLength));
        for (qint64 y = 0; y < pass.rows; ++y) {
            if (!inflater.read(bytes, nextPart) || bytes.front() > lastFilter)
                return false;
            pixels.write(bytes);
            unwatched += pass.rowLength;
            if (unwatched >= bytesBetweenLooks && watch.isOver())
                return false;
            unwatched %= bytesBetweenLooks;
        }
    }
    pixels.finish();
    return true;
}

} // namespace

std::optional<QByteArray> plainPng(const QByteArray &file, DecodingWatch &watch)
{
    qsizetype at = signatureLength;
    std::optional<Chunk> chunk = takeChunk(file, at);
    const std::optional<Header> header = chunk ? headerOf(*chunk) : std::nullopt;
    if (!header)
        return std::nullopt;
    QByteArray png = file.left(signatureLength);
    append(png, *chunk);
    std::set<std::string_view> taken;
    for (chunk = takeChunk(file, at); chunk && chunk->name() != "IDAT"; chunk = takeChunk(file, at)) {
        if (!isNeeded(*chunk, *header) || !taken.insert(chunk->name()).second)
            continue;
        if (!chunk->isWhole())
            return std::nullopt;
        append(png, *chunk);
    }
    const auto nextPixels = [&file, &at, &chunk]() -> std::optional<std::span<const uchar>> {
        if (!chunk || chunk->name() != "IDAT" || !chunk->isWhole())
            return std::nullopt;
        const Chunk part = *std::exchange(chunk, takeChunk(file, at));
        return std::span(part.data(), std::size_t(part.length));
    };
    const bool hasColors = header->colorType != 3 || taken.contains("PLTE");
    if (!hasColors || !copyPixels(*header, nextPixels, png, watch))
        return std::nullopt;
    while (chunk && chunk->name() != "IEND")
        chunk = takeChunk(file, at);
    if (!chunk)
        return std::nullopt; // cut short
    png.append("\0\0\0\0IEND\xae\x42\x60\x82", chunkFrame);
    return png;
}

} // namespace ambrel
