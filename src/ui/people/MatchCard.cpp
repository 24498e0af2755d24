#include "ui/people/MatchCard.h"

#include "state/MatchProximity.h"
#include "state/RoundedInteger.h"
#include "toolkit/AccessibleRole.h"
#include "toolkit/ElidedLabel.h"
#include "toolkit/FocusRing.h"
#include "ui/look/AmbrelButton.h"
#include "ui/look/Painting.h"
#include "ui/look/TextStyling.h"
#include "ui/people/AccessibleMatchCard.h"
#include "ui/people/MatchTexts.h"
#include "ui/profile/MatchPhoto.h"
#include "ui/window/ViewEnvironment.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <initializer_list>

namespace ambrel {

namespace {

/// "Match: 72% / 64%"
QString scoreText(const MatchResult &match)
{
    return QStringLiteral("Match: ") + QString::number(roundedInteger(match.aToB)) + QStringLiteral("% / ") +
           QString::number(roundedInteger(match.bToA)) + QStringLiteral("%");
}

} // namespace

MatchCard::MatchCard(QWidget *parent)
    : QWidget(parent), m_photo(new MatchPhoto(this)), m_name(new ElidedLabel({}, this)),
      m_heat(new ElidedLabel({}, this)), m_bio(new ElidedLabel({}, this)), m_score(new ElidedLabel({}, this)),
      m_seeMe(new AmbrelPrimaryButton(QStringLiteral("See Me"), this))
{
    setAccessibleFactory(*this, [](QWidget &card) { return new AccessibleMatchCard(card); });
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    styleText(*m_name, theme::TextStyle::Headline);
    styleText(*m_heat, theme::TextStyle::Body, theme::secondaryText);
    styleText(*m_bio, theme::TextStyle::Caption);
    styleText(*m_score, theme::TextStyle::Caption2, theme::secondaryText);
    m_bio->setMaximumLines(theme::maxCardBioLines);

    auto *const column = new QVBoxLayout(this);
    const int padding = theme::cardPadding;
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(theme::cardSpacing);
    column->addLayout(makeSummary());
    column->addLayout(makeButtons());
    setFixedHeight(commonHeight());
}

int MatchCard::commonHeight() const
{
    const auto lines = [](const ElidedLabel *label, int count) { return count * label->fontMetrics().lineSpacing(); };
    const int texts = lines(m_name, 1) + lines(m_heat, 1) + lines(m_bio, theme::maxCardBioLines) + lines(m_score, 1) +
                      3 * theme::cardTextSpacing;
    return 2 * theme::cardPadding + std::max(texts, theme::cardPhotoSize.height()) + theme::cardSpacing +
           theme::scaled(theme::buttonMinimumHeight);
}

QLayout *MatchCard::makeSummary()
{
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(theme::cardTextSpacing);
    for (ElidedLabel *const label : {m_name, m_heat, m_bio, m_score}) {
        label->setAlignment(topLeftInEveryScript);
        texts->addWidget(label);
    }
    texts->addStretch();

    auto *const summary = new QHBoxLayout;
    summary->setSpacing(theme::cardPhotoSpacing);
    summary->addWidget(m_photo, 0, Qt::AlignTop);
    summary->addLayout(texts, 1);
    return summary;
}

QLayout *MatchCard::makeButtons()
{
    auto *const keep = new AmbrelSecondaryButton(QStringLiteral("Continue"), this);
    auto *const dismiss = new AmbrelSecondaryButton(QStringLiteral("Dismiss"), this);
    // The status text tells the outcome; the card may be gone by then.
    connect(m_seeMe, &QPushButton::clicked, this,
            [this] { runDetached(ViewEnvironment::of(*this).state().seeMe(m_match)); });
    connect(keep, &QPushButton::clicked, this, [this] { ViewEnvironment::of(*this).state().keep(m_match); });
    connect(dismiss, &QPushButton::clicked, this,
            [this] { runDetached(ViewEnvironment::of(*this).state().dismiss(m_match)); });

    auto *const buttons = new QHBoxLayout;
    buttons->setSpacing(theme::buttonRowSpacing);
    for (AmbrelButton *const button : std::initializer_list<AmbrelButton *>{m_seeMe, keep, dismiss})
        buttons->addWidget(button);
    return buttons;
}

void MatchCard::setMatch(const MatchResult &match)
{
    m_match = match;
    m_photo->setMatch(match);
    const bool hasOtherTexts = match.displayName != m_name->text() || bioText(match) != m_bio->text();
    m_name->setText(match.displayName);
    m_heat->setText(heatAndDistance(match));
    m_bio->setText(bioText(match));
    m_score->setText(scoreText(match));
    if (hasOtherTexts)
        fitBio();
    m_seeMe->setVisible(canSeeMe(match));
    describe();
}

/// What a screen reader says after the name.
void MatchCard::describe()
{
    if (m_match.displayName != accessibleName())
        setAccessibleName(m_match.displayName);
    const QString description = QStringList{m_heat->text(), m_bio->text(), m_score->text()}.join(QStringLiteral(". "));
    if (description != accessibleDescription())
        setAccessibleDescription(description);
}

void MatchCard::fitBio()
{
    int room = height() - 2 * theme::cardPadding - theme::cardSpacing - theme::scaled(theme::buttonMinimumHeight);
    for (const ElidedLabel *const label : {m_name, m_heat, m_score})
        room -= label->sizeHint().height() + theme::cardTextSpacing;
    const int width = this->width() - 2 * theme::cardPadding - m_photo->width() - theme::cardPhotoSpacing;
    if (width <= 0)
        return; // not laid out yet
    m_bio->setMaximumLines(theme::maxCardBioLines);
    if (m_bio->heightForWidth(width) > room)
        m_bio->setMaximumLines(1);
    m_bio->setVisible(m_bio->heightForWidth(width) <= room);
}

void MatchCard::resizeEvent(QResizeEvent *event)
{
    if (event->size().width() != event->oldSize().width())
        fitBio();
}

void MatchCard::setSelected(bool selected)
{
    if (selected == m_isSelected)
        return;
    m_isSelected = selected;
    update();
    QAccessibleEvent event(this, QAccessible::Selection);
    QAccessible::updateAccessibility(&event);
}

void MatchCard::select()
{
    ViewEnvironment::of(*this).state().selectedMatch = m_match;
}

void MatchCard::focusInEvent(QFocusEvent *event)
{
    m_showsFocusRing = showsFocusRing(event->reason(), m_showsFocusRing);
    update();
}

void MatchCard::focusOutEvent(QFocusEvent *)
{
    update();
}

void MatchCard::keyPressEvent(QKeyEvent *event)
{
    const bool selects =
        event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
    if (!selects)
        QWidget::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        select();
}

void MatchCard::mousePressEvent(QMouseEvent *event)
{
    event->setAccepted(event->button() == Qt::LeftButton);
}

void MatchCard::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        select();
}

void MatchCard::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    fillRounded(painter, rect(), underMouse() && isEnabled() ? theme::cardHovered : theme::regularMaterial);
    if (m_isSelected)
        strokeRounded(painter, rect(), theme::selectedCardOutline, theme::selectedCardOutlineWidth);
    if (hasFocus() && m_showsFocusRing)
        strokeFocusRing(painter, rect());
}

} // namespace ambrel
