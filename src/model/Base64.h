#pragma once

#include <QByteArray>
#include <optional>
#include <string_view>

namespace ambrel {

/// Decodes standard base64, strictly: no blanks or line breaks, whole groups of four with their padding.
/// Left-over bits before the padding may have any value. Nothing when `text` is anything else. Any thread.
std::optional<QByteArray> decodeBase64(std::string_view text);

} // namespace ambrel
