#include "toolkit/FontSearch.h"

#include <QCoreApplication>
#include <QTextLayout>
#include <QTimer>
#include <algorithm>
#include <utility>

namespace ambrel {

namespace {

// Of the processor, in one turn of the event loop. The first letter of a script takes 20 to 100 ms: texts in ordinary
// use are shown whole at once.
constexpr std::clock_t maxSearch = CLOCKS_PER_SEC / 10;
constexpr qsizetype maxRemembered = 50'000; // letters of one font

/// Whether any font has this letter, or nothing needs to be drawn for it.
bool isEverywhere(QChar letter)
{
    constexpr char16_t endOfLatin = 0x250;
    return letter < endOfLatin || (letter >= u'\u2000' && letter <= u'\u206f') || letter == QChar::ReplacementCharacter;
}

QChar::Script scriptOf(const QString &letter)
{
    return QChar::script(letter.toUcs4().constFirst());
}

/// Letters of no script of their own are drawn in the fonts of the script that they stand in.
bool hasOwnScript(const QString &letter)
{
    return scriptOf(letter) != QChar::Script_Common && scriptOf(letter) != QChar::Script_Inherited;
}

/// The letter that begins at `start`, as one or two code units.
QString letterAt(const QString &text, qsizetype start)
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
    QString neighbour; // of the script that letters without one belong to
    for (qsizetype i = 0; i < text.size() && neighbour.isEmpty(); ++i) {
        const QString letter = letterAt(text, i);
        neighbour = hasOwnScript(letter) ? letter : QString();
    }
    const QString unknown = QChar(QChar::ReplacementCharacter);
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        const QString letter = letterAt(text, i);
        i += letter.size();
        if (hasOwnScript(letter))
            neighbour = letter;
        shown += isEverywhere(letter.front()) || isFound(letter, neighbour, font) ? letter : unknown;
    }
    return shown;
}

bool FontSearch::isFound(const QString &letter, const QString &neighbour, const QFont &font)
{
    const QString key = QChar(char16_t(neighbour.isEmpty() ? QChar::Script_Common : scriptOf(neighbour))) + letter;
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
    QTextLayout layout(letter == neighbour ? letter : neighbour + letter, font);
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
