#include "ui/look/AmbrelPrimaryButton.h"

#include "ui/look/Theme.h"

namespace ambrel {

AmbrelPrimaryButton::AmbrelPrimaryButton(const QString &label, QWidget *parent)
    : AmbrelButton(
          label, {theme::primaryButton, theme::primaryButtonPressed, theme::primaryButtonLabel, theme::focusRingOnRed},
          parent)
{
}

} // namespace ambrel
