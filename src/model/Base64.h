#pragma once

#include <QByteArray>
#include <optional>
#include <string_view>

namespace ambrel {

/// The code that decodes base64; all give the same results.
enum class Base64Code {
    Portable, ///< four look-up tables
    Avx2,     ///< 32 letters a step; ask `fastestBase64Code()` before naming it
};

/// The fastest code that this processor runs.
Base64Code fastestBase64Code();

/// Decodes standard base64, strictly: no blanks or line breaks, whole groups of four with their padding.
/// Left-over bits before the padding may have any value. Nothing when `text` is anything else. Any thread.
std::optional<QByteArray> decodeBase64(std::string_view text, Base64Code code = fastestBase64Code());

} // namespace ambrel
