#pragma once

#include <QByteArray>
#include <optional>

namespace ambrel {

/// The most pixels that a photo may have in its file.
inline constexpr qint64 maxPhotoPixels = 50'000'000;
/// The most bytes that one decoding may hold at a time: the file, and what its decoder keeps of it.
inline constexpr qint64 maxPhotoMemory = 160LL << 20;
/// The most bytes that the decoded image may take.
inline constexpr qint64 maxImageMemory = 64LL << 20;

/// A photo that came from a stranger, in a container that was looked through, so that no decoder meets a claim that
/// the file cannot keep.
struct PhotoFile
{
    QByteArray bytes;
    QByteArray format; ///< the name of the image reader to use
};

/// Looks through a JPEG, PNG, GIF or BMP file, told by its first bytes, and leaves out what its picture does not need.
/// Nothing when it is something else, unsound, or would cost too much to decode. Any thread.
std::optional<PhotoFile> vettedPhotoFile(QByteArray bytes);

/// True when the segments of a JPEG file promise no more memory and work than a photo may cost. A file that was cut
/// short passes.
bool isModestJpeg(const QByteArray &file);

/// The PNG file without the chunks that its picture does not need. Nothing when a chunk claims more bytes than there
/// are.
std::optional<QByteArray> plainPng(const QByteArray &file);

} // namespace ambrel
