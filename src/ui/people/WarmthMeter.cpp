#include "ui/people/WarmthMeter.h"

#include "state/MatchProximity.h"
#include "toolkit/BidiIsolation.h"
#include "toolkit/ElidedLabel.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/look/Painting.h"
#include "ui/look/TextStyling.h"

#include <QVBoxLayout>

namespace ambrel {

WarmthMeter::WarmthMeter(QWidget *parent)
    : QWidget(parent), m_logo(new AmbrelLogo(theme::meterLogoSize, false, this)), m_headline(new ElidedLabel({}, this)),
      m_line(new ElidedLabel({}, this))
{
    styleText(*m_headline, theme::TextStyle::Title2);
    m_headline->setAlignment(Qt::AlignCenter);
    styleText(*m_line, theme::TextStyle::Body, theme::secondaryText);
    m_line->setAlignment(Qt::AlignCenter);
    m_line->setMaximumLines(theme::maxMeterLines); // the list beneath keeps room for a card

    auto *const column = new QVBoxLayout(this);
    const int padding = theme::panelPadding;
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(theme::meterSpacing);
    column->addWidget(m_logo, 0, Qt::AlignHCenter);
    column->addWidget(m_headline);
    column->addWidget(m_line);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum); // as high as its texts wrap to
    setMatch({});
}

void WarmthMeter::setMatch(const std::optional<MatchResult> &match)
{
    m_headline->setText(match ? heatLabel(*match) : QStringLiteral("Searching"));
    m_line->setText(match ? isolated(match->displayName) + QStringLiteral(" is ") + friendlyDistance(*match) +
                                QStringLiteral(" away")
                          : QStringLiteral("Go live to look for a match."));
}

void WarmthMeter::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    fillRounded(painter, rect(), theme::ultraThinMaterial);
    m_logo->paintShadow(painter);
}

} // namespace ambrel
