#pragma once

#include <QPlainTextEdit>

namespace ambrel {

/// The multi-line editor for the user's bio. Tab leaves it. A text of a right-to-left script stands at the right, as it
/// does in a text field. Of a text that no person writes only the beginning is shown and edited, so that the window
/// never waits for its layout; the rest is kept and stays behind it, until everything shown is replaced at once.
class BioEditor : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit BioEditor(QWidget *parent = nullptr);

    /// The text with what is not shown of it.
    QString wholeText() const;
    void setWholeText(const QString &text);

protected:
    void insertFromMimeData(const QMimeData *source) override;

private:
    QString shownText() const;
    void followScript();
    void noteChange(int position, int removed, int added);
    void showMore();

    QString m_hidden; ///< what follows the characters that are shown
    int m_shownLength = 0;
    int m_refillBelow = 0; ///< at what shown length more of the hidden text follows
};

} // namespace ambrel
