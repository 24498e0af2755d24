#pragma once

#include "ui/profile/DecodingLimits.h"

#include <QImage>
#include <QSize>
#include <optional>
#include <string_view>

namespace ambrel {

/// Decodes a photo for a frame of `frame` device pixels: upright, scaled to fill it, the overflow cut off evenly.
/// `text` is a data URL, of which only what follows the first comma counts, or bare base64. Nothing when that is no
/// strict base64, or no sound JPEG, PNG, GIF or BMP image, or one that costs more than 200 MiB of memory or than
/// `limits` allow. A JPEG that was cut short shows what came. Never throws. Any thread; takes milliseconds.
std::optional<QImage> dataURLImage(std::string_view text, QSize frame, const DecodingLimits &limits = {});

} // namespace ambrel
