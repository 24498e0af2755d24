#pragma once

#include <QString>

namespace ambrel {

// People of the tests, in the order in which they are listed.
inline const QString ana = QStringLiteral("Ana");
inline const QString ben = QStringLiteral("Ben");
inline const QString cleo = QStringLiteral("Cleo");
inline const QString dan = QStringLiteral("Dan");
inline const QString eve = QStringLiteral("Eve");
inline const QString fay = QStringLiteral("Fay");

} // namespace ambrel
