#include "ui/profile/ProfilePanel.h"

#include "state/MatchProximity.h"
#include "toolkit/ClearScrollArea.h"
#include "toolkit/WrappedLabel.h"
#include "ui/look/KeyboardScrolling.h"
#include "ui/look/Painting.h"
#include "ui/look/TextStyling.h"
#include "ui/people/MatchTexts.h"
#include "ui/profile/BioText.h"
#include "ui/profile/LargeProfilePhoto.h"
#include "ui/profile/NoProfile.h"
#include "ui/profile/PhotoStrip.h"

#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

namespace ambrel {

namespace {

WrappedLabel *makeLabel(QWidget *parent, theme::TextStyle style, const QColor &color = theme::primaryText)
{
    auto *const label = new WrappedLabel({}, parent);
    styleText(*label, style, color);
    label->setAlignment(topLeftInEveryScript);
    return label;
}

} // namespace

ProfilePanel::ProfilePanel(QWidget *parent) : QWidget(parent), m_scrollArea(new QScrollArea(this))
{
    setFixedWidth(theme::scaled(theme::profilePanelWidth));
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setWidgetResizable(true);
    showThrough(*m_scrollArea, *makeContent());
    m_scrollArea->setAccessibleName(QStringLiteral("Profile"));
    enableKeyboardScrolling(*m_scrollArea);

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_scrollArea);
    setMatch({});
}

QWidget *ProfilePanel::makeContent()
{
    auto *const content = new QWidget(this);
    auto *const title = makeLabel(content, theme::TextStyle::Title);
    title->setText(QStringLiteral("Profile"));
    m_details = makeDetails();
    m_noProfile = new NoProfile(content);

    // The scroll bar comes and goes within the padding, so that the column keeps its width.
    const int padding = theme::panelPadding;
    content->setFixedWidth(theme::scaled(theme::profilePanelWidth) - theme::scrollBarThickness);
    auto *const column = new QVBoxLayout(content);
    column->setContentsMargins(padding, padding, padding - theme::scrollBarThickness, padding);
    column->setSpacing(theme::profileSpacing);
    column->addWidget(title);
    column->addWidget(m_details, 1);
    column->addWidget(m_noProfile, 1);
    return content;
}

QWidget *ProfilePanel::makeDetails()
{
    auto *const details = new QWidget(this);
    m_photo = new LargeProfilePhoto(details);
    m_name = makeLabel(details, theme::TextStyle::Title2);
    m_heat = makeLabel(details, theme::TextStyle::Body, theme::secondaryText);
    m_bio = new BioText(details);
    m_strip = new PhotoStrip(details);
    m_note = makeLabel(details, theme::TextStyle::Caption, theme::secondaryText);

    auto *const column = new QVBoxLayout(details);
    column->setContentsMargins({});
    column->setSpacing(theme::profileSpacing);
    for (QWidget *const widget : std::initializer_list<QWidget *>{m_photo, m_name, m_heat, m_bio, m_strip})
        column->addWidget(widget);
    column->addStretch();
    column->addWidget(m_note);
    return details;
}

void ProfilePanel::setMatch(const std::optional<MatchResult> &match)
{
    m_details->setVisible(match.has_value());
    m_noProfile->setVisible(!match.has_value());
    static const MatchResult nobody;
    const MatchResult &shown = match ? *match : nobody;
    if (std::exchange(m_userId, shown.userId) != shown.userId)
        m_scrollArea->verticalScrollBar()->setValue(0);

    const QList<PhotoText> photos = visiblePhotos(shown);
    const bool hasStrip = photos.size() >= 2;
    m_photo->setMatch(shown);
    m_name->setText(shown.displayName);
    m_heat->setText(heatAndDistance(shown));
    m_bio->setText(bioText(shown));
    m_strip->setPhotos(shown.userId, shown.displayName, hasStrip ? photos : QList<PhotoText>());
    m_strip->setVisible(hasStrip);
    m_note->setText(unlockNote(shown));
}

void ProfilePanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    fillRounded(painter, rect(), theme::regularMaterial);
}

} // namespace ambrel
