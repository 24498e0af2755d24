#pragma once

#include "ui/look/AmbrelButton.h"

namespace ambrel {

/// The red button of the main action in its row.
class AmbrelPrimaryButton : public AmbrelButton
{
    Q_OBJECT

public:
    explicit AmbrelPrimaryButton(const QString &label, QWidget *parent = nullptr);
};

} // namespace ambrel
