#pragma once

#include <QFont>
#include <QRect>
#include <QStringList>
#include <memory>
#include <vector>

class QPainter;
class QTextLayout;

namespace ambrel {

/// Plain text broken into lines, ready to be measured and drawn. Lines break between words, and anywhere in a word
/// that is wider than a line. Control characters show as blanks. The work grows with what can be seen, or linearly
/// with the text where all of it is wanted. Main thread only.
class TextLines
{
public:
    /// The whole of `text` at most `width` pixels wide; line breaks in the text are kept.
    static TextLines wrapped(const QString &text, const QFont &font, qreal width);
    /// At most `maxLines` lines of `text`, the last one ending in "…" if there would be more. Looks only at as much
    /// of the text as could fit. Line breaks in the text are kept if there can be several lines.
    static TextLines elided(const QString &text, const QFont &font, qreal width, int maxLines);

    TextLines();
    TextLines(TextLines &&) noexcept;
    TextLines &operator=(TextLines &&) noexcept;
    ~TextLines();

    /// Height of all lines, in pixels.
    int height() const { return m_height; }
    /// Width of the widest line, in pixels, rounded up.
    int width() const;
    /// The text as it is drawn, without the line breaks that wrapping adds.
    QString shownText() const { return m_text; }
    /// The same, line by line.
    QStringList shownLines() const;
    int lineCount() const { return int(m_lines.size()); }
    /// Whether characters are missing until FontSearch has gone on.
    bool waitsForFonts() const { return m_waitsForFonts; }
    /// How many characters were laid out to find the lines: the work done.
    qsizetype laidOutCharacters() const { return m_laidOutCharacters; }

    /// Draws the lines that meet `clip`, in the painter's pen. Leading alignment follows the direction of each
    /// paragraph, unless Qt::AlignAbsolute is set.
    void draw(QPainter &painter, const QRect &area, Qt::Alignment alignment, const QRect &clip) const;

private:
    struct Line
    {
        qsizetype start = 0;
        qsizetype length = 0;
        int top = 0;
        int height = 0;
        qreal ascent = 0;
        qreal width = 0;
        bool isRightToLeft = false;
        mutable std::unique_ptr<QTextLayout> layout; // made when first drawn
    };

    TextLines(const QString &text, const QFont &font);
    void breakAll(qreal width, int maxLines);
    void breakParagraph(qsizetype start, qsizetype end, qreal width, int maxLines);
    void appendLine(qsizetype start, qsizetype length, qreal ascent, qreal descent, qreal width, bool isRightToLeft);
    void replaceLastLine(const QString &text, qreal width);
    QTextLayout &layoutOf(const Line &line) const;

    QString m_text;
    QFont m_font;
    std::vector<Line> m_lines;
    int m_height = 0;
    bool m_waitsForFonts = false;
    qsizetype m_laidOutCharacters = 0;
};

} // namespace ambrel
