#include "ui/profile/NoProfile.h"

#include "toolkit/WrappedLabel.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/look/TextStyling.h"

#include <QPainter>
#include <QVBoxLayout>

namespace ambrel {

NoProfile::NoProfile(QWidget *parent) : QWidget(parent), m_logo(new AmbrelLogo(theme::noSelectionLogoSize, false, this))
{
    auto *const headline = new WrappedLabel(QStringLiteral("No profile selected"), this);
    auto *const hint = new WrappedLabel(QStringLiteral("Nearby matches will appear here when Ambrel is live."), this);
    styleText(*headline, theme::TextStyle::Headline);
    styleText(*hint, theme::TextStyle::Body, theme::secondaryText);

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(theme::noSelectionSpacing);
    column->addStretch();
    column->addWidget(m_logo, 0, Qt::AlignHCenter);
    for (WrappedLabel *const label : {headline, hint}) {
        label->setAlignment(Qt::AlignCenter);
        column->addWidget(label);
    }
    column->addStretch();
}

void NoProfile::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_logo->paintShadow(painter);
}

} // namespace ambrel
