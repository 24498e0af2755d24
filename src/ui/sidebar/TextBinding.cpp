#include "ui/sidebar/TextBinding.h"

#include "ui/sidebar/BioEditor.h"
#include "ui/window/ViewEnvironment.h"

#include <QSignalBlocker>
#include <limits>

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
        show(editor, m_known);
        connect(&environment(), &ViewEnvironment::stateDidChange, this, [this, &editor] {
            if (m_known == value())
                return;
            m_known = value();
            const QSignalBlocker blocker(editor);
            show(editor, m_known);
        });
    }

    void write(const QString &text)
    {
        m_known = text;
        environment().state().*m_field = text;
    }

private:
    ViewEnvironment &environment() const { return ViewEnvironment::of(*static_cast<QWidget *>(parent())); }
    const QString &value() const { return (environment().state().*m_field).value(); }

    static void show(QLineEdit &editor, const QString &text)
    {
        const int caret = editor.cursorPosition();
        editor.setText(text);
        editor.setCursorPosition(editor.hasFocus() ? caret : 0); // an unfocused field shows its beginning
    }
    static void show(BioEditor &editor, const QString &text) { editor.setWholeText(text); }

    TextField m_field;
    QString m_known;
};

} // namespace

void bindText(QLineEdit &editor, TextField field)
{
    editor.setMaxLength(std::numeric_limits<int>::max()); // stored as typed, however long
    auto *const binding = new TextBinding(editor, field); // owned by the editor
    // Not textEdited: a screen reader sets texts, too.
    QObject::connect(&editor, &QLineEdit::textChanged, binding, &TextBinding::write);
}

void bindText(BioEditor &editor, TextField field)
{
    auto *const binding = new TextBinding(editor, field); // owned by the editor
    QObject::connect(&editor, &BioEditor::textChanged, binding,
                     [binding, &editor] { binding->write(editor.wholeText()); });
}

} // namespace ambrel
