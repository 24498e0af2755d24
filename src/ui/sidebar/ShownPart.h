#pragma once

#include <QString>

namespace ambrel {

/// How much of a text an editor shows at first; so much is laid out in a few milliseconds.
inline constexpr qsizetype maxShown = 5000;

/// Where to cut `text` so that what comes before counts for `most` characters or less, and no character is cut in two.
/// An emoji costs about a millisecond, as its picture is unpacked whenever it is measured: each counts for a hundred.
qsizetype cutAt(const QString &text, qsizetype most);

} // namespace ambrel
