#include "ui/sidebar/FormLayout.h"

#include "toolkit/AnnouncedLabel.h"
#include "ui/look/TextStyling.h"
#include "ui/sidebar/LineEditor.h"

namespace ambrel {

QVBoxLayout *makeFormLayout(QWidget &box)
{
    auto *const layout = new QVBoxLayout(&box);
    layout->setContentsMargins(0, theme::formTopPadding, 0, 0);
    layout->setSpacing(theme::formSpacing);
    return layout;
}

QHBoxLayout *makeRow(std::initializer_list<QWidget *> widgets)
{
    auto *const row = new QHBoxLayout; // owned by the layout it is added to
    row->setSpacing(theme::buttonRowSpacing);
    for (auto *const widget : widgets)
        row->addWidget(widget);
    return row;
}

QWidget *makeTextField(const QString &placeholder, TextField field, QWidget &parent)
{
    auto *const editor = new LineEditor(&parent);
    editor->setPlaceholderText(placeholder);
    editor->setAccessibleName(placeholder);
    bindText(*editor, field);
    return editor;
}

QWidget *makeCaption(const QString &text, QWidget &parent)
{
    auto *const label = new WrappedLabel(text, &parent);
    label->setAlignment(topLeftInEveryScript);
    styleText(*label, theme::TextStyle::Caption, theme::secondaryText);
    return label;
}

AnnouncedLabel *makeStatusCaption(const QString &description, QWidget &parent)
{
    auto *const status = new AnnouncedLabel(&parent);
    status->label().setAlignment(topLeftInEveryScript);
    styleText(status->label(), theme::TextStyle::Caption, theme::secondaryText);
    status->label().setAccessibleDescription(description);
    return status;
}

} // namespace ambrel
