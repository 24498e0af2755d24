// A photo's text to the pixels that are drawn, beside libjpeg-turbo's own scaled decode of the same file.

#include "model/Base64.h"
#include "support/CheckReplies.h"
#include "support/Interleaved.h"
#include "support/Row.h"
#include "ui/profile/DataUrlImage.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <turbojpeg.h>

using namespace ambrel;

namespace {

/// libjpeg-turbo's scaled decode to the smallest size that fills `frame`; no cropping, no last resampling.
QImage decodedByRival(const QByteArray &file, QSize frame)
{
    const tjhandle decoder = tjInitDecompress();
    const auto *const bytes = reinterpret_cast<const unsigned char *>(file.constData());
    const auto size = static_cast<unsigned long>(file.size());
    int width = 0;
    int height = 0;
    int subsampling = 0;
    int colorspace = 0;
    tjDecompressHeader3(decoder, bytes, size, &width, &height, &subsampling, &colorspace);
    const double scale = std::max(double(frame.width()) / width, double(frame.height()) / height);
    const int eighths = std::clamp(int(std::ceil(scale * 8)), 1, 8);
    QImage image((width * eighths + 7) / 8, (height * eighths + 7) / 8, QImage::Format_RGB32);
    if (tjDecompress2(decoder, bytes, size, image.bits(), image.width(), int(image.bytesPerLine()), image.height(),
                      TJPF_BGRX, 0) != 0)
        std::abort();
    tjDestroy(decoder);
    return image;
}

struct Ratios
{
    double whole; ///< our time over libjpeg-turbo's
    double withoutBase64;
};

Ratios compare(QSize photo, QSize frame)
{
    const QByteArray file = noisyPhotoFile(photo);
    const PhotoText text = photoTextOf(file);
    const auto [ours, rivals] = interleavedMedians(
        21,
        [&] {
            if (!dataURLImage(text.view(), frame))
                std::abort();
        },
        [&] { decodedByRival(file, frame); });
    const double base64 = interleavedMedians(
                              21, [&] { (void)decodeBase64(text.view().substr(text.view().find(',') + 1)); }, [] {})
                              .first;
    std::printf("%4.1f MP (%5.0f kB) to %3dx%3d: %6.2f ms of which base64 %4.2f, libjpeg-turbo %6.2f ms, "
                "ratio %.2f, without base64 %.2f\n",
                photo.width() * photo.height() / 1e6, double(file.size()) / 1000, frame.width(), frame.height(),
                ours * 1e3, base64 * 1e3, rivals * 1e3, ours / rivals, (ours - base64) / rivals);
    return {ours / rivals, (ours - base64) / rivals};
}

void report(const char *what, double limit, const std::vector<double> &ratios)
{
    print({.what = what,
           .toReach = "at most " + QByteArray::number(limit) + " x libjpeg-turbo's scaled decode",
           .floor = "libjpeg-turbo",
           .measured = "median of all sizes; largest " + figure(largestOf(ratios)),
           .ratio = figure(medianOf(ratios)),
           .isReached = largestOf(ratios) <= limit});
}

} // namespace

int main()
{
    std::vector<double> whole;
    std::vector<double> withoutBase64;
    for (const QSize photo : {QSize(480, 640), QSize(960, 1280), QSize(1536, 2048), QSize(3000, 4000)}) {
        for (const QSize frame : {QSize(86, 104), QSize(294, 250)}) {
            const Ratios ratios = compare(photo, frame);
            whole.push_back(ratios.whole);
            withoutBase64.push_back(ratios.withoutBase64);
        }
    }
    report("photo to pixels at the size drawn, 0.3 to 12 megapixels", 1.15, withoutBase64);
    report("the same, base64 included", 1.25, whole);
}
