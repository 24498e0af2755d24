#pragma once

#include <QImage>
#include <QSize>
#include <optional>
#include <string_view>

namespace ambrel {

/// Decodes a photo for a frame of `frame` device pixels: upright, scaled to fill it, the overflow cut off evenly.
/// `text` is a data URL, of which only what follows the first comma counts, or bare base64. Nothing when that is
/// no strict base64, no JPEG, PNG, GIF or BMP image (or WebP, where the toolkit has its plug-in), or too large
/// an image. A JPEG that was cut short shows
/// what came. Any thread; takes milliseconds.
std::optional<QImage> dataURLImage(std::string_view text, QSize frame);

} // namespace ambrel
