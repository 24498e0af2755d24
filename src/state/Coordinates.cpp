#include "state/Coordinates.h"

#include <QByteArray>
#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#if __has_include(<xlocale.h>)
#include <xlocale.h> // on macOS
#endif

namespace ambrel {

namespace {

/// C's strtod as it is without a locale.
double readNumber(const char *text, char **end)
{
#if defined(Q_OS_WIN)
    static const _locale_t cLocale = _create_locale(LC_ALL, "C");
    return _strtod_l(text, end, cLocale);
#else
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text, end, cLocale);
#endif
}

} // namespace

double parsedCoordinate(const QString &text, double fallback)
{
    const QByteArray number = text.trimmed().toUtf8();
    char *end = nullptr;
    const double value = readNumber(number.constData(), &end);
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
