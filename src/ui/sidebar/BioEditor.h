#pragma once

#include <QPlainTextEdit>

namespace ambrel {

/// The multi-line editor for the user's bio. Tab leaves it. A text of a right-to-left script stands at the right, as it
/// does in a text field.
class BioEditor : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit BioEditor(QWidget *parent = nullptr);

private:
    void followScript();
};

} // namespace ambrel
