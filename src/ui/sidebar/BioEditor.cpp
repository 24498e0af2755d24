#include "ui/sidebar/BioEditor.h"

#include "toolkit/ColorEmoji.h"
#include "ui/look/Theme.h"
#include "ui/sidebar/ShownPart.h"

#include <QMimeData>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextOption>
#include <algorithm>

namespace ambrel {

BioEditor::BioEditor(QWidget *parent) : QPlainTextEdit(parent)
{
    setAccessibleName(QStringLiteral("Bio"));
    setFixedHeight(theme::scaled(theme::bioEditorHeight));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed); // or the box around it would take free space
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAttribute(Qt::WA_Hover);
    document()->setDocumentMargin(theme::bioEditorTextMargin);
    showEmojiInColor(*document());
    viewport()->setAutoFillBackground(false); // the style draws the field with its round corners
    connect(document(), &QTextDocument::contentsChange, this, &BioEditor::noteChange);
    connect(document(), &QTextDocument::contentsChanged, this, &BioEditor::followScript);
    connect(document(), &QTextDocument::contentsChanged, this, &BioEditor::showMore);
    followScript();
}

QString BioEditor::shownText() const
{
    // toPlainText() would turn hard blanks into plain ones.
    return document()->toRawText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

QString BioEditor::wholeText() const
{
    return shownText() + m_hidden;
}

void BioEditor::setWholeText(const QString &text)
{
    const qsizetype cut = cutAt(text, maxShown);
    m_hidden.clear();
    setPlainText(text.left(cut));
    m_hidden = text.mid(cut);
    m_refillBelow = m_shownLength / 2;
}

void BioEditor::insertFromMimeData(const QMimeData *source)
{
    const QString pasted = source->text();
    const QTextCursor cursor = textCursor();
    const QString shown = shownText() + pasted;
    if (cutAt(shown, maxShown) == shown.size()) {
        QPlainTextEdit::insertFromMimeData(source);
        return;
    }
    QString whole = wholeText();
    const bool isAllReplaced = cursor.selectionEnd() - cursor.selectionStart() >= m_shownLength;
    if (isAllReplaced)
        whole = pasted;
    else
        whole.replace(cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart(), pasted);
    const qsizetype caret = cursor.selectionStart() + pasted.size();
    setWholeText(whole);
    QTextCursor after = textCursor();
    after.setPosition(int(std::min<qsizetype>(caret, m_shownLength)));
    setTextCursor(after);
    Q_EMIT textChanged(); // of what is not shown, too
}

void BioEditor::noteChange(int position, int removed, int added)
{
    const bool isOnlyRestyled = added == removed;
    if (position == 0 && removed >= m_shownLength && !isOnlyRestyled)
        m_hidden.clear();
    m_shownLength = document()->characterCount() - 1; // without the end of the last paragraph
}

void BioEditor::showMore()
{
    if (m_hidden.isEmpty() || m_shownLength > m_refillBelow)
        return;
    const qsizetype cut = cutAt(m_hidden, maxShown / 2);
    const QString next = m_hidden.left(cut);
    m_hidden.remove(0, cut);
    setUndoRedoEnabled(false); // undoing would take away what was never typed
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(next);
    setUndoRedoEnabled(true);
    m_refillBelow = m_shownLength / 2;
}

void BioEditor::followScript()
{
    const auto alignment = document()->firstBlock().text().isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    QTextOption option = document()->defaultTextOption();
    if (option.alignment() == alignment && option.textDirection() == Qt::LayoutDirectionAuto)
        return;
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setAlignment(alignment);
    document()->setDefaultTextOption(option);
}

} // namespace ambrel
