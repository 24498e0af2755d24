#include "ui/AmbrelSecondaryButton.h"

#include "ui/Theme.h"

namespace ambrel {

AmbrelSecondaryButton::AmbrelSecondaryButton(const QString &label, QWidget *parent)
    : AmbrelButton(
          label, {theme::secondaryButton, theme::secondaryButtonPressed, theme::secondaryButtonLabel, theme::focusRing},
          parent)
{
}

} // namespace ambrel
