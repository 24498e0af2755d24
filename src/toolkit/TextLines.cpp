#include "toolkit/TextLines.h"

#include "toolkit/ColorEmoji.h"
#include "toolkit/FontSearch.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <limits>

namespace ambrel {

namespace {

constexpr QChar ellipsis(u'\u2026');

// Laying out a paragraph in one piece takes time that grows with the square of its length. Pieces of this many
// characters keep it linear; a piece grows up to the larger size only while it does not fill a line.
constexpr qsizetype pieceCharacters = 512;
constexpr qsizetype maxPieceCharacters = 2 * pieceCharacters;

// Layouts of drawn lines are kept for texts of up to this many lines, for repainting while scrolling.
constexpr std::size_t keptLayouts = 200;

// No visible character is narrower than a pixel; the constant leaves room for marks and controls without a width.
qsizetype charactersThatCouldFit(qreal width, int lines)
{
    constexpr qsizetype spare = 64;
    constexpr qreal widest = 16384;
    return (qsizetype(std::clamp<qreal>(width, 0, widest)) + spare) * lines;
}

qsizetype withoutHalfCharacter(QStringView text, qsizetype end)
{
    return end > 0 && end < text.size() && text[end - 1].isHighSurrogate() && text[end].isLowSurrogate() ? end - 1
                                                                                                         : end;
}

bool isLineBreak(QChar character)
{
    return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator || character == QChar(0x85);
}

bool isBlank(QChar character)
{
    return character.isSpace();
}

/// The first characters of `text` as they are shown: line breaks as '\n', or as blanks if they are not kept.
QString sanitized(QStringView text, qsizetype characters, bool keepsBreaks)
{
    QString clean;
    const qsizetype end = withoutHalfCharacter(text, std::min(characters, text.size()));
    clean.reserve(end);
    for (qsizetype i = 0; i < end; ++i) {
        const QChar character = text[i];
        if (character == u'\r' && i + 1 < end && text[i + 1] == u'\n')
            continue;
        if (isLineBreak(character))
            clean.append(keepsBreaks ? u'\n' : u' ');
        else if (character == QChar::ObjectReplacementCharacter)
            clean.append(QChar::ReplacementCharacter);
        else
            clean.append(character.category() == QChar::Other_Control ? QChar(u' ') : character);
    }
    return clean;
}

void prepare(QTextLayout &layout, bool isRightToLeft)
{
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    layout.setTextOption(option);
    layout.setCacheEnabled(true);
    layout.setFormats(emojiFormats(layout.text()));
}

} // namespace

TextLines::TextLines() = default;
TextLines::TextLines(TextLines &&) noexcept = default;
TextLines &TextLines::operator=(TextLines &&) noexcept = default;
TextLines::~TextLines() = default;

TextLines::TextLines(const QString &text, const QFont &font)
    : m_text(FontSearch::instance().shownFor(text, font)), m_font(font), m_waitsForFonts(m_text != text)
{
}

TextLines TextLines::wrapped(const QString &text, const QFont &font, qreal width)
{
    TextLines lines(sanitized(text, text.size(), true), font);
    lines.breakAll(width, std::numeric_limits<int>::max());
    return lines;
}

TextLines TextLines::elided(const QString &text, const QFont &font, qreal width, int maxLines)
{
    const qsizetype characters = charactersThatCouldFit(width, maxLines);
    TextLines lines(sanitized(text, characters, maxLines > 1), font);
    lines.breakAll(width, maxLines + 1);
    if (lines.lineCount() <= maxLines && characters >= text.size())
        return lines;
    while (lines.lineCount() > maxLines) {
        lines.m_height = lines.m_lines.back().top;
        lines.m_lines.pop_back();
    }
    const Line &last = lines.m_lines.back();
    const qsizetype paragraphEnd = lines.m_text.indexOf(u'\n', last.start);
    const QString rest = lines.m_text.mid(last.start, paragraphEnd < 0 ? -1 : paragraphEnd - last.start);
    lines.m_laidOutCharacters += rest.size();
    QString tail = QFontMetricsF(font).elidedText(rest + ellipsis, Qt::ElideRight, std::max<qreal>(width, 0));
    if (tail.isEmpty())
        tail = ellipsis;
    while (tail.size() > 1 && tail[tail.size() - 2].isSpace())
        tail.remove(tail.size() - 2, 1);
    lines.replaceLastLine(tail, width);
    return lines;
}

int TextLines::width() const
{
    qreal widest = 0;
    for (const Line &line : m_lines)
        widest = std::max(widest, line.width);
    return int(std::ceil(widest));
}

QStringList TextLines::shownLines() const
{
    QStringList lines;
    for (const Line &line : m_lines)
        lines += m_text.mid(line.start, line.length);
    return lines;
}

void TextLines::breakAll(qreal width, int maxLines)
{
    for (qsizetype start = 0; start <= m_text.size() && lineCount() < maxLines;) {
        const qsizetype newline = m_text.indexOf(u'\n', start);
        const qsizetype end = newline < 0 ? m_text.size() : newline;
        breakParagraph(start, end, width, maxLines);
        start = end + 1;
    }
}

void TextLines::breakParagraph(qsizetype start, qsizetype end, qreal width, int maxLines)
{
    const bool isRightToLeft = QStringView(m_text).mid(start, end - start).isRightToLeft();
    qsizetype wanted = pieceCharacters;
    do {
        const qsizetype pieceEnd = withoutHalfCharacter(m_text, std::min(end, start + wanted));
        QTextLayout layout(m_text.mid(start, pieceEnd - start), m_font);
        prepare(layout, isRightToLeft);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
            line.setLineWidth(std::max<qreal>(width, 1));
        layout.endLayout();
        m_laidOutCharacters += pieceEnd - start;

        const bool isWhole = pieceEnd == end;
        if (!isWhole && layout.lineCount() < 2 && wanted < maxPieceCharacters) {
            wanted *= 2;
            continue;
        }
        // The last line of a piece may go on in the next one.
        const int finished = isWhole ? layout.lineCount() : std::max(1, layout.lineCount() - 1);
        qsizetype next = start;
        for (int i = 0; i < finished && lineCount() < maxLines; ++i) {
            const QTextLine line = layout.lineAt(i);
            appendLine(start + line.textStart(), line.textLength(), line.ascent(), line.descent(),
                       line.naturalTextWidth(), isRightToLeft);
            next = start + line.textStart() + line.textLength();
        }
        start = next;
        wanted = std::max(pieceCharacters, wanted / 2);
    } while (start < end && lineCount() < maxLines);
}

void TextLines::appendLine(qsizetype start, qsizetype length, qreal ascent, qreal descent, qreal width,
                           bool isRightToLeft)
{
    const QFontMetricsF metrics(m_font);
    Line line;
    line.start = start;
    line.length = length;
    line.top = m_height;
    line.ascent = std::ceil(std::max(ascent, metrics.ascent()));
    line.height =
        int(line.ascent + std::ceil(std::max(descent, metrics.descent()) + std::max<qreal>(0, metrics.leading())));
    line.width = width;
    line.isRightToLeft = isRightToLeft;
    m_height += line.height;
    m_lines.push_back(std::move(line));
}

void TextLines::replaceLastLine(const QString &text, qreal width)
{
    const Line &last = m_lines.back();
    const qsizetype start = last.start;
    const bool isRightToLeft = last.isRightToLeft;
    m_height = last.top;
    m_lines.pop_back();
    m_text = m_text.left(start) + text;
    m_laidOutCharacters += text.size();

    QTextLayout layout(text, m_font);
    prepare(layout, isRightToLeft);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setNumColumns(int(text.size()));
    layout.endLayout();
    appendLine(start, text.size(), line.ascent(), line.descent(), std::min(line.naturalTextWidth(), width),
               isRightToLeft);
}

QTextLayout &TextLines::layoutOf(const Line &line) const
{
    if (!line.layout) {
        // The blanks at the end of a broken line have no place in its width.
        const QStringView shown = QStringView(m_text).mid(line.start, line.length);
        const qsizetype characters =
            line.length - (std::find_if_not(shown.crbegin(), shown.crend(), isBlank) - shown.crbegin());
        line.layout = std::make_unique<QTextLayout>(m_text.mid(line.start, characters), m_font);
        prepare(*line.layout, line.isRightToLeft);
        line.layout->beginLayout();
        line.layout->createLine().setNumColumns(int(characters));
        line.layout->endLayout();
    }
    return *line.layout;
}

void TextLines::draw(QPainter &painter, const QRect &area, Qt::Alignment alignment, const QRect &clip) const
{
    int y = area.top();
    if (alignment & Qt::AlignBottom)
        y += area.height() - m_height;
    else if (alignment & Qt::AlignVCenter)
        y += std::max(0, area.height() - m_height) / 2;
    for (const Line &line : m_lines) {
        if (y + line.top + line.height <= clip.top() || y + line.top > clip.bottom())
            continue;
        const bool leads = !(alignment & Qt::AlignRight);
        const bool isLeft = alignment & Qt::AlignAbsolute ? leads : leads != line.isRightToLeft;
        qreal x = area.left();
        if (alignment & Qt::AlignHCenter)
            x += std::floor((area.width() - line.width) / 2);
        else if (!isLeft)
            x += area.width() - line.width;
        QTextLayout &layout = layoutOf(line);
        layout.draw(&painter, {x, y + line.top + line.ascent - layout.lineAt(0).ascent()});
        if (m_lines.size() > keptLayouts)
            line.layout.reset();
    }
}

} // namespace ambrel
