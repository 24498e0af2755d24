#include "toolkit/FontSearch.h"

#include <QCoreApplication>
#include <QTextLayout>
#include <QTimer>
#include <algorithm>
#include <utility>

namespace ambrel {

namespace {

// Of the processor, in one turn of the event loop. The first character of a script takes 20 to 100 ms: texts in
// ordinary use are shown whole at once.
constexpr std::clock_t maxSearch = CLOCKS_PER_SEC / 10;
constexpr qsizetype maxRemembered = 50'000; // characters of one font

/// Whether any font has this character, or nothing needs to be drawn for it.
bool isEverywhere(QChar character)
{
    constexpr char16_t endOfLatin = 0x250;
    return character < endOfLatin || (character >= u'\u2000' && character <= u'\u206f') ||
           character == QChar::ReplacementCharacter;
}

QChar::Script scriptOf(const QString &character)
{
    return QChar::script(character.toUcs4().constFirst());
}

/// Characters of no script of their own are drawn in the fonts of the script that they stand in.
bool hasOwnScript(const QString &character)
{
    return scriptOf(character) != QChar::Script_Common && scriptOf(character) != QChar::Script_Inherited;
}

/// The character that begins at `start`, as one or two code units.
QString characterAt(const QString &text, qsizetype start)
{
    const bool isPair = start + 1 < text.size() && text[start].isHighSurrogate() && text[start + 1].isLowSurrogate();
    return text.mid(start, isPair ? 2 : 1);
}

} // namespace

FontSearch &FontSearch::instance()
{
    QCoreApplication &application = *QCoreApplication::instance();
    auto *search = application.findChild<FontSearch *>(QString(), Qt::FindDirectChildrenOnly);
    return search ? *search : *new FontSearch(&application);
}

QString FontSearch::shownFor(const QString &text, const QFont &font)
{
    if (std::all_of(text.begin(), text.end(), isEverywhere))
        return text;
    QString neighbour; // of the script that characters without one belong to
    for (qsizetype i = 0; i < text.size() && neighbour.isEmpty(); ++i) {
        const QString character = characterAt(text, i);
        neighbour = hasOwnScript(character) ? character : QString();
    }
    const QString unknown = QChar(QChar::ReplacementCharacter);
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        const QString character = characterAt(text, i);
        i += character.size();
        if (hasOwnScript(character))
            neighbour = character;
        shown += isEverywhere(character.front()) || isFound(character, neighbour, font) ? character : unknown;
    }
    return shown;
}

bool FontSearch::isFound(const QString &character, const QString &neighbour, const QFont &font)
{
    const QString key = QChar(char16_t(neighbour.isEmpty() ? QChar::Script_Common : scriptOf(neighbour))) + character;
    QSet<QString> &found = m_found[font];
    if (found.contains(key))
        return true;
    if (!m_isScheduled) {
        m_isScheduled = true;
        QTimer::singleShot(0, this, &FontSearch::goOn);
    }
    if (m_spent >= maxSearch) {
        m_hasWaiting = true;
        return false;
    }
    const std::clock_t start = std::clock();
    QTextLayout layout(character == neighbour ? character : neighbour + character, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    m_spent += std::clock() - start;
    if (found.size() >= maxRemembered)
        found.clear();
    found.insert(key);
    return true;
}

void FontSearch::goOn()
{
    m_spent = 0;
    m_isScheduled = false;
    if (std::exchange(m_hasWaiting, false))
        Q_EMIT goneOn();
}

} // namespace ambrel
