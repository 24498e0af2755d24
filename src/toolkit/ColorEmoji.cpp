#include "toolkit/ColorEmoji.h"

#include <QFontDatabase>
#include <QRegularExpression>
#include <QSyntaxHighlighter>
#include <algorithm>

namespace ambrel {

namespace {

class EmojiHighlighter : public QSyntaxHighlighter
{
public:
    using QSyntaxHighlighter::QSyntaxHighlighter;

protected:
    void highlightBlock(const QString &text) override
    {
        for (const auto &range : emojiFormats(text))
            setFormat(range.start, range.length, range.format);
    }
};

bool asksForEmoji(QChar character)
{
    return character == QChar(0xfe0f) || character == QChar(0x20e3) || character == QChar(0x200d) ||
           character == QChar(0xd83c);
}

} // namespace

QString emojiFamily()
{
    return QStringLiteral("Noto Color Emoji");
}

QList<QTextLayout::FormatRange> emojiFormats(const QString &text)
{
    if (std::none_of(text.begin(), text.end(), asksForEmoji) || !QFontDatabase::hasFamily(emojiFamily()))
        return {};
    static const QRegularExpression sequence(
        QStringLiteral(R"([#*0-9]\x{FE0F}?\x{20E3}|\p{ExtPict}(?=[\x{FE0F}\x{200D}\x{1F3FB}-\x{1F3FF}]))"
                       R"([\x{FE0F}\x{1F3FB}-\x{1F3FF}]*(?:\x{200D}\p{ExtPict}[\x{FE0F}\x{1F3FB}-\x{1F3FF}]*)*)"));
    QTextCharFormat format;
    format.setFontFamilies({emojiFamily()});
    format.setFontStyleStrategy(QFont::NoFontMerging);
    QList<QTextLayout::FormatRange> formats;
    for (auto found = sequence.globalMatch(text); found.hasNext();) {
        const auto match = found.next();
        formats.append({int(match.capturedStart()), int(match.capturedLength()), format});
    }
    return formats;
}

void showEmojiInColor(QTextDocument &document)
{
    new EmojiHighlighter(&document); // owned by the document
}

} // namespace ambrel
