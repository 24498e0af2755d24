#include "toolkit/BidiIsolation.h"

#include <QList>

namespace ambrel {

namespace {

constexpr QChar firstStrongIsolate(u'\u2068');
constexpr QChar popIsolate(u'\u2069');

bool reordersItsSurroundings(QChar::Direction direction)
{
    switch (direction) {
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
    bool needsIsolation = false;
    qsizetype open = 0;      // isolates that the text opens and does not close
    qsizetype unmatched = 0; // closings in the text that would end our isolate
    for (const char32_t letter : text.toUcs4()) {
        const QChar::Direction direction = QChar::direction(letter);
        // The mark U+200E has the direction of letters, but is a control as well.
        needsIsolation = needsIsolation || reordersItsSurroundings(direction) || letter == 0x200e;
        if (direction == QChar::DirLRI || direction == QChar::DirRLI || direction == QChar::DirFSI)
            ++open;
        else if (direction == QChar::DirPDI && open > 0)
            --open;
        else if (direction == QChar::DirPDI)
            ++unmatched;
    }
    if (!needsIsolation)
        return text;
    return QString(1 + unmatched, firstStrongIsolate) + text + QString(1 + open, popIsolate);
}

} // namespace ambrel
