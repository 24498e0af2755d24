#include "ui/profile/PhotoFile.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace ambrel {

namespace {

/// Cameras and image editors write about ten scans.
constexpr int maxScans = 100;
/// How many blocks of 8 x 8 samples all scans together may go over: those of the largest photo, thirty times or so.
constexpr qint64 maxBlockVisits = 50'000'000;
/// A decoder that needs several scans keeps all blocks.
constexpr qint64 bytesPerBlock = 128;

enum Marker : uchar {
    Temporary = 0x01,
    FirstFrame = 0xc0, ///< baseline; the others up to LastFrame name other ways of coding
    HuffmanTables = 0xc4,
    Reserved = 0xc8,
    ArithmeticTables = 0xcc,
    LastFrame = 0xcf,
    FirstRestart = 0xd0,
    StartOfImage = 0xd8,
    EndOfImage = 0xd9,
    StartOfScan = 0xda
};

bool isFrame(uchar marker)
{
    return marker >= FirstFrame && marker <= LastFrame && marker != HuffmanTables && marker != Reserved &&
           marker != ArithmeticTables;
}

bool hasLength(uchar marker)
{
    return marker != Temporary && (marker < FirstRestart || marker > StartOfImage);
}

struct Component
{
    uchar id = 0;
    qint64 blocks = 0;
};

/// The components of the picture.
struct Frame
{
    std::array<Component, 4> components;
    int count = 0;
    bool isProgressive = false;

    qint64 blocks() const
    {
        qint64 sum = 0;
        for (const Component &component : components)
            sum += component.blocks;
        return sum;
    }
};

using Segment = std::span<const uchar>; // without marker and length

std::optional<Frame> frameOf(uchar marker, Segment segment)
{
    constexpr std::size_t headLength = 6;
    constexpr std::size_t componentLength = 3;
    if (segment.size() < headLength)
        return std::nullopt;
    const qint64 height = qFromBigEndian<quint16>(&segment[1]);
    const qint64 width = qFromBigEndian<quint16>(&segment[3]);
    Frame frame{.components = {}, .count = segment[5], .isProgressive = (marker & 3) == 2};
    const auto count = std::size_t(frame.count);
    if (count == 0 || count > frame.components.size() || segment.size() != headLength + componentLength * count ||
        width * height == 0 || width * height > maxPhotoPixels)
        return std::nullopt;

    const Segment list = segment.subspan(headLength);
    const auto across = [list](std::size_t index) { return list[componentLength * index + 1] >> 4; };
    const auto down = [list](std::size_t index) { return list[componentLength * index + 1] & 15; };
    int maxAcross = 1;
    int maxDown = 1;
    for (std::size_t index = 0; index < count; ++index) {
        maxAcross = std::max(maxAcross, across(index));
        maxDown = std::max(maxDown, down(index));
    }
    const auto units = [](qint64 length, int most) { return (length + 8LL * most - 1) / (8LL * most); };
    for (std::size_t index = 0; index < count; ++index)
        frame.components[index] = {list[componentLength * index],
                                   units(width, maxAcross) * across(index) * units(height, maxDown) * down(index)};
    return frame;
}

/// Where the first byte from `start` on stands that may begin a marker; the end if there is none.
std::size_t markerFrom(std::size_t start, Segment bytes)
{
    if (start >= bytes.size())
        return bytes.size();
    const void *const found = std::memchr(&bytes[start], 0xff, bytes.size() - start);
    return found ? std::size_t(static_cast<const uchar *>(found) - bytes.data()) : bytes.size();
}

/// How many blocks the scan goes over.
qint64 blocksOf(Segment scan, const Frame &frame)
{
    qint64 blocks = 0;
    for (std::size_t index = 0; index < scan.front() && 2 * index + 1 < scan.size(); ++index) {
        for (const Component &component : frame.components)
            blocks += component.id == scan[2 * index + 1] ? component.blocks : 0;
    }
    return blocks;
}

} // namespace

bool isModestJpeg(const QByteArray &file)
{
    const Segment bytes(reinterpret_cast<const uchar *>(file.constData()), std::size_t(file.size()));
    std::optional<Frame> frame;
    int scans = 0;
    qint64 blockVisits = 0;
    bool keepsBlocks = false;
    for (std::size_t at = markerFrom(2, bytes); at + 1 < bytes.size(); at = markerFrom(at + 1, bytes)) {
        // Between segments stands the coded picture, where 0xff is followed by 0.
        const uchar marker = bytes[at + 1];
        if (marker == 0xff || marker == 0)
            continue;
        if (marker == EndOfImage)
            break;
        ++at; // the marker
        if (!hasLength(marker))
            continue;
        if (at + 2 >= bytes.size())
            break;
        const std::size_t length = qFromBigEndian<quint16>(&bytes[at + 1]);
        if (length < 2)
            return false;
        if (at + length >= bytes.size())
            break; // cut short
        const Segment segment = bytes.subspan(at + 3, length - 2);
        at += length;
        if (isFrame(marker)) {
            if (frame)
                return false;
            frame = frameOf(marker, segment);
            if (!frame)
                return false;
        } else if (marker == StartOfScan) {
            if (!frame || segment.empty())
                return false;
            blockVisits += blocksOf(segment, *frame);
            keepsBlocks = keepsBlocks || frame->isProgressive || segment.front() < frame->count;
            if (++scans > maxScans || blockVisits > maxBlockVisits)
                return false;
        }
    }
    return frame && scans > 0 && (!keepsBlocks || frame->blocks() * bytesPerBlock + file.size() <= maxPhotoMemory);
}

} // namespace ambrel
