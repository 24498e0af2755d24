#pragma once

#include <QString>

namespace ambrel {

/// A stranger's text made safe to stand inside a sentence of ours: wrapped in U+2068 and U+2069 if it holds
/// right-to-left letters or bidirectional controls, which would otherwise reorder the words around it. Any other text
/// is returned as it is.
QString isolated(const QString &text);

} // namespace ambrel
