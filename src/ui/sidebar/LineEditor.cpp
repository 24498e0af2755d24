#include "ui/sidebar/LineEditor.h"

#include "toolkit/ColorEmoji.h"
#include "ui/sidebar/ShownPart.h"

#include <QInputMethodEvent>
#include <QValidator>
#include <algorithm>
#include <limits>
#include <utility>

namespace ambrel {

/// Looks at every text before it is laid out, wherever it comes from.
class LineEditor::Limit : public QValidator
{
public:
    explicit Limit(LineEditor &editor) : QValidator(&editor), m_editor(editor) {}

    State validate(QString &text, int &caret) const override
    {
        QString &hidden = m_editor.m_hidden;
        if (std::exchange(m_editor.m_isAllSelected, false))
            hidden.clear();
        if (cutAt(text, 2 * maxShown) < text.size()) {
            const qsizetype cut = cutAt(text, maxShown);
            hidden.prepend(QStringView(text).mid(cut));
            text.truncate(cut);
            caret = std::min(caret, int(cut));
        } else if (!hidden.isEmpty() && cutAt(text, maxShown / 2) == text.size()) {
            const qsizetype cut = cutAt(hidden, maxShown / 2);
            text += QStringView(hidden).left(cut);
            hidden.remove(0, cut);
        }
        return Acceptable;
    }

private:
    LineEditor &m_editor;
};

LineEditor::LineEditor(QWidget *parent) : QLineEdit(parent)
{
    setMaxLength(std::numeric_limits<int>::max()); // stored as typed, however long
    setValidator(new Limit(*this));                // owned by the editor
    connect(this, &QLineEdit::selectionChanged, this,
            [this] { m_isAllSelected = hasSelectedText() && selectedText().size() == text().size(); });
    connect(this, &QLineEdit::textChanged, this, &LineEditor::showEmojiInColor);
}

void LineEditor::setWholeText(const QString &text)
{
    const int caret = cursorPosition();
    m_hidden.clear();
    setText(text);
    m_isAllSelected = false;
    setCursorPosition(hasFocus() ? caret : 0); // an unfocused field shows its beginning
    showEmojiInColor();
}

void LineEditor::inputMethodEvent(QInputMethodEvent *event)
{
    m_isComposing = !event->preeditString().isEmpty();
    QLineEdit::inputMethodEvent(event);
    showEmojiInColor();
}

/// A line edit takes formats from input methods alone, for the text around the caret.
void LineEditor::showEmojiInColor()
{
    QList<QInputMethodEvent::Attribute> formats;
    for (const auto &range : emojiFormats(text()))
        formats.append({QInputMethodEvent::TextFormat, range.start - cursorPosition(), range.length, range.format});
    const bool hadEmoji = std::exchange(m_hasEmoji, !formats.isEmpty());
    if (m_isComposing || !(m_hasEmoji || hadEmoji))
        return;
    QInputMethodEvent event(QString(), formats);
    QLineEdit::inputMethodEvent(&event);
}

} // namespace ambrel
