#pragma once

#include <QLineEdit>

namespace ambrel {

/// A text field of one line, with its emoji in colour. Of a text that no person writes only the beginning is shown and
/// edited, so that the window never waits for its layout; the rest is kept and stays behind it, until everything shown
/// is replaced at once. Main thread only.
class LineEditor : public QLineEdit
{
    Q_OBJECT

public:
    explicit LineEditor(QWidget *parent);

    /// The text with what is not shown of it.
    QString wholeText() const { return text() + m_hidden; }
    void setWholeText(const QString &text);

protected:
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    class Limit;

    void showEmojiInColor();

    QString m_hidden; ///< what follows the characters that are shown
    bool m_isAllSelected = false;
    bool m_isComposing = false;
    bool m_hasEmoji = false;
};

} // namespace ambrel
