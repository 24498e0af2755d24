#include "ui/sidebar/TextBinding.h"

#include "ui/sidebar/BioEditor.h"
#include "ui/sidebar/LineEditor.h"
#include "ui/window/ViewEnvironment.h"

#include <QSignalBlocker>

namespace ambrel {

namespace {

/// One bound field. It compares with the text last exchanged, not with the editor's: editors turn some characters
/// (line ends, hard blanks) into others, and such a text would be set again at every refresh.
class TextBinding : public QObject
{
public:
    template <typename Editor>
    TextBinding(Editor &editor, TextField field) : QObject(&editor), m_field(field), m_known(value())
    {
        editor.setWholeText(m_known);
        connect(&environment(), &ViewEnvironment::stateDidChange, this, [this, &editor] {
            if (m_known == value())
                return;
            m_known = value();
            const QSignalBlocker blocker(editor);
            editor.setWholeText(m_known);
        });
        // Not textEdited: a screen reader sets texts, too.
        connect(&editor, &Editor::textChanged, this, [this, &editor] {
            m_known = editor.wholeText();
            environment().state().*m_field = m_known;
        });
    }

private:
    ViewEnvironment &environment() const { return ViewEnvironment::of(*static_cast<QWidget *>(parent())); }
    const QString &value() const { return (environment().state().*m_field).value(); }

    TextField m_field;
    QString m_known;
};

} // namespace

void bindText(LineEditor &editor, TextField field)
{
    new TextBinding(editor, field); // owned by the editor
}

void bindText(BioEditor &editor, TextField field)
{
    new TextBinding(editor, field); // the same
}

} // namespace ambrel
