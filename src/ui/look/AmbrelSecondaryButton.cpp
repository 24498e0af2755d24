#include "ui/look/AmbrelSecondaryButton.h"

#include "ui/look/Theme.h"

namespace ambrel {

AmbrelSecondaryButton::AmbrelSecondaryButton(const QString &label, QWidget *parent)
    : AmbrelButton(
          label, {theme::secondaryButton, theme::secondaryButtonPressed, theme::secondaryButtonLabel, theme::focusRing},
          parent)
{
}

} // namespace ambrel
