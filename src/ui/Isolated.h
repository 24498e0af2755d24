#pragma once

#include <QString>

namespace ambrel {

/// A stranger's text for use inside a sentence of ours: right-to-left letters and bidirectional controls in it cannot
/// reorder what stands around it. Text without any is returned as it is. Any thread.
QString isolated(const QString &text);

} // namespace ambrel
