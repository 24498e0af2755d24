#pragma once

#include <QString>

namespace ambrel {

/// A user ID made from a display name: its first 24 letters and numbers (as a reader counts them) in lower case, or a
/// new random UUID when it has none.
QString suggestedUserId(const QString &name);

} // namespace ambrel
