#pragma once

#include <QString>
#include <QStringList>

namespace ambrel {

/// The statements of a C++ source that await in a form that GCC 12 compiles into corrupted memory. Only these are
/// safe, with every argument a name or the move of one:
///   co_await x;   const auto v = co_await f(a);   member = co_await f(a);   co_return co_await f(std::move(a));
/// `awaits`, when given, is raised by the number of awaits seen.
QStringList unsafeAwaits(const QString &source, int *awaits = nullptr);

} // namespace ambrel
