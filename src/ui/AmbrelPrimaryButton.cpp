#include "ui/AmbrelPrimaryButton.h"

#include "ui/Theme.h"

namespace ambrel {

AmbrelPrimaryButton::AmbrelPrimaryButton(const QString &label, QWidget *parent)
    : AmbrelButton(
          label, {theme::primaryButton, theme::primaryButtonPressed, theme::primaryButtonLabel, theme::focusRingOnRed},
          parent)
{
}

} // namespace ambrel
