#include "state/Coordinates.h"

#include <QByteArray>
#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>

namespace ambrel {

double parsedCoordinate(const QString &text, double fallback)
{
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const QByteArray number = text.trimmed().toUtf8();
    char *end = nullptr;
    const double value = strtod_l(number.constData(), &end, cLocale);
    const bool isWhole = !number.isEmpty() && end == number.constData() + number.size();
    return isWhole ? value : fallback;
}

QString coordinateText(double degrees)
{
    const double magnitude = std::abs(degrees);
    const bool isOrdinary = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
    std::array<char, 64> digits;
    const auto format = isOrdinary ? std::chars_format::fixed : std::chars_format::scientific;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), degrees, format).ptr;
    const QString text = QString::fromLatin1(digits.data(), end - digits.data());
    return isOrdinary && !text.contains(u'.') ? text + QStringLiteral(".0") : text;
}

} // namespace ambrel
