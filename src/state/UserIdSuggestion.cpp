#include "state/UserIdSuggestion.h"

#include <QTextBoundaryFinder>
#include <QUuid>

namespace ambrel {

namespace {

constexpr int maxLength = 24;

/// A letter keeps the marks on it, so the first code point of what the reader sees as one character decides.
bool isLetterOrNumber(QStringView character)
{
    const QChar first = character.front();
    const char32_t codePoint = first.isHighSurrogate() && character.size() > 1
                                   ? QChar::surrogateToUcs4(first, character.at(1))
                                   : char32_t(first.unicode());
    return QChar::isLetterOrNumber(codePoint);
}

} // namespace

QString suggestedUserId(const QString &name)
{
    const QString lower = name.toLower();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, lower);
    QString id;
    int length = 0;
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end >= 0 && length < maxLength; end = finder.toNextBoundary()) {
        const QStringView character = QStringView(lower).sliced(start, end - start);
        if (isLetterOrNumber(character)) {
            id += character;
            ++length;
        }
        start = end;
    }
    return id.isEmpty() ? QUuid::createUuid().toString(QUuid::WithoutBraces) : id;
}

} // namespace ambrel
