#pragma once

#include <QPlainTextEdit>

namespace ambrel {

/// The multi-line editor for the user's bio. Tab leaves it.
class BioEditor : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit BioEditor(QWidget *parent = nullptr);
};

} // namespace ambrel
