#include "ui/Isolated.h"

#include <QList>
#include <algorithm>

namespace ambrel {

namespace {

constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popDirectionalIsolate(0x2069);

bool canReorder(char32_t letter)
{
    switch (QChar::direction(letter)) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

} // namespace

QString isolated(const QString &text)
{
    const auto letters = text.toUcs4();
    if (std::none_of(letters.begin(), letters.end(), [](uint letter) { return canReorder(letter); }))
        return text;
    // A stray end of isolation inside would close ours.
    QString inner = text;
    return firstStrongIsolate + inner.remove(popDirectionalIsolate) + popDirectionalIsolate;
}

} // namespace ambrel
