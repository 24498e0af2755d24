#include "ui/BioEditor.h"

#include "ui/Theme.h"

namespace ambrel {

BioEditor::BioEditor(QWidget *parent) : QPlainTextEdit(parent)
{
    setAccessibleName(QStringLiteral("Bio"));
    setFixedHeight(theme::bioEditorHeight);
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAttribute(Qt::WA_Hover);
    document()->setDocumentMargin(theme::bioEditorTextMargin);
    viewport()->setAutoFillBackground(false); // the style draws the field with its round corners
}

} // namespace ambrel
