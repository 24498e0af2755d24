#include "ui/profile/PhotoFile.h"

#include <utility>

namespace ambrel {

std::optional<PhotoFile> vettedPhotoFile(QByteArray bytes)
{
    if (bytes.size() > maxPhotoMemory)
        return std::nullopt;
    if (bytes.startsWith("\xff\xd8\xff")) {
        if (!isModestJpeg(bytes))
            return std::nullopt;
        return PhotoFile{std::move(bytes), QByteArrayLiteral("jpeg")};
    }
    if (bytes.startsWith("\x89PNG\r\n\x1a\n")) {
        std::optional<QByteArray> png = plainPng(bytes);
        if (!png)
            return std::nullopt;
        return PhotoFile{*std::move(png), QByteArrayLiteral("png")};
    }
    // The toolkit's own readers of these two claim nothing but their pixels, and read the first frame alone.
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return PhotoFile{std::move(bytes), QByteArrayLiteral("gif")};
    if (bytes.startsWith("BM"))
        return PhotoFile{std::move(bytes), QByteArrayLiteral("bmp")};
    return std::nullopt;
}

} // namespace ambrel
