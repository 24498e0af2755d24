#pragma once

#include <QByteArray>
#include <cstdio>

namespace ambrel {

/// One row of the table that scripts/bench writes. All but `isReached` are texts for people.
struct Row
{
    QByteArray what;
    QByteArray toReach;
    QByteArray floor; ///< what it is compared with, as measured in the same run
    QByteArray measured;
    QByteArray ratio; ///< to the floor, or "-" where the figure is absolute
    bool isReached = false;
};

/// Prints the row as a line of a Markdown table; every other line that a benchmark prints is commentary.
inline void print(const Row &row)
{
    std::printf("| %s | %s | %s | %s | %s | %s |\n", row.what.constData(), row.toReach.constData(),
                row.floor.constData(), row.measured.constData(), row.ratio.constData(),
                row.isReached ? "yes" : "**no**");
    std::fflush(stdout);
}

/// `value` with two decimals and its unit.
inline QByteArray figure(double value, const char *unit = "")
{
    return QByteArray::number(value, 'f', 2) + unit;
}

} // namespace ambrel
