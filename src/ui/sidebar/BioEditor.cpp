#include "ui/sidebar/BioEditor.h"

#include "ui/look/Theme.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextOption>

namespace ambrel {

BioEditor::BioEditor(QWidget *parent) : QPlainTextEdit(parent)
{
    setAccessibleName(QStringLiteral("Bio"));
    setFixedHeight(theme::bioEditorHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed); // or the box around it would take free space
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAttribute(Qt::WA_Hover);
    document()->setDocumentMargin(theme::bioEditorTextMargin);
    viewport()->setAutoFillBackground(false); // the style draws the field with its round corners
    connect(document(), &QTextDocument::contentsChanged, this, &BioEditor::followScript);
    followScript();
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
