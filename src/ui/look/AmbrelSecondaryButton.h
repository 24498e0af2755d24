#pragma once

#include "ui/look/AmbrelButton.h"

namespace ambrel {

/// The pale button of every other action.
class AmbrelSecondaryButton : public AmbrelButton
{
    Q_OBJECT

public:
    explicit AmbrelSecondaryButton(const QString &label, QWidget *parent = nullptr);
};

} // namespace ambrel
