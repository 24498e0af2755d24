#include "ui/people/MainPanelView.h"

#include "toolkit/AccessibleRole.h"
#include "toolkit/AnnouncedLabel.h"
#include "toolkit/BidiIsolation.h"
#include "toolkit/ClientSideFrame.h"
#include "toolkit/EdgeFade.h"
#include "toolkit/ElidedLabel.h"
#include "toolkit/MirroredMargins.h"
#include "ui/look/TextStyling.h"
#include "ui/people/LivePill.h"
#include "ui/people/MatchCard.h"
#include "ui/people/WarmthMeter.h"
#include "ui/profile/ProfilePanel.h"
#include "ui/window/Arrivals.h"
#include "ui/window/ViewEnvironment.h"

#include <QVBoxLayout>
#include <utility>

namespace ambrel {

namespace {

QString subtitleFor(const AmbrelAppState &state)
{
    if (!state.isSignedIn())
        return QStringLiteral("Sign up or log in to look nearby.");
    const QString &name = state.displayName->isEmpty() ? state.userId : state.displayName;
    return QStringLiteral("Signed in as ") + isolated(name);
}

/// The match that the warmth meter describes.
std::optional<MatchResult> warmestOf(const AmbrelAppState &state)
{
    if (state.selectedMatch.value() || state.matches->isEmpty())
        return state.selectedMatch;
    return state.matches->first();
}

} // namespace

MainPanelView::MainPanelView(QWidget *parent)
    : QWidget(parent), m_nearby(new QWidget(this)), m_title(new ElidedLabel({}, m_nearby)),
      m_subtitle(new ElidedLabel({}, m_nearby)), m_pill(new LivePill(false, m_nearby)),
      m_meter(new WarmthMeter(m_nearby)), m_cards(new LazyColumn(*this, m_nearby)), m_profile(new ProfilePanel(this)),
      m_arrivals(new AnnouncedLabel(this))
{
    m_arrivals->setFixedSize(0, 0); // to be heard, not seen

    styleText(*m_title, theme::TextStyle::LargeTitle, theme::ambrelRed);
    styleText(*m_subtitle, theme::TextStyle::Body, theme::secondaryText);
    m_cards->setSpacing(theme::cardListSpacing);
    m_cards->setPadding(theme::cardListPadding);
    setAccessibleRole(*m_cards->viewport(), QAccessible::List);
    m_cards->viewport()->setAccessibleName(QStringLiteral("Nearby"));
    for (QWidget *const empty : {static_cast<QWidget *>(this), m_nearby, m_cards->viewport()})
        setWindowBackground(*empty);
    m_cards->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    fadeEdges(*m_cards, theme::edgeFadeHeight);

    // The scroll bar stands in the gap between the columns, so that the cards are as wide as what is above them.
    const int gutter = theme::scrollBarThickness;
    auto *const top = new QVBoxLayout;
    top->setContentsMargins(mirroredMargins({0, 0, gutter, 0}, layoutDirection()));
    top->setSpacing(theme::matchColumnSpacing);
    top->addLayout(makeHeader());
    top->addWidget(m_meter);

    m_nearby->setMinimumWidth(theme::scaled(theme::matchColumnMinimumWidth) + gutter);
    auto *const column = new QVBoxLayout(m_nearby);
    column->setContentsMargins({});
    column->setSpacing(theme::matchColumnSpacing);
    column->addLayout(top);
    column->addWidget(m_cards, 1);

    auto *const row = new QHBoxLayout(this);
    const int padding = theme::mainPanelPadding;
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(theme::mainPanelSpacing - gutter);
    row->addWidget(m_nearby, 1);
    row->addWidget(m_profile);

    connect(&ViewEnvironment::of(*this), &ViewEnvironment::stateDidChange, this, &MainPanelView::refresh);
    refresh();
}

QLayout *MainPanelView::makeHeader()
{
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(theme::headerTextSpacing);
    texts->addWidget(m_title);
    texts->addWidget(m_subtitle);

    auto *const header = new QHBoxLayout;
    header->setSpacing(theme::headerSpacing);
    header->addLayout(texts, 1);
    header->addWidget(m_pill, 0, Qt::AlignVCenter);
    return header;
}

void MainPanelView::refresh()
{
    const AmbrelAppState &state = ViewEnvironment::of(*this).state();
    m_title->setText(state.isLive ? QStringLiteral("Live Nearby") : QStringLiteral("Ready"));
    m_subtitle->setText(subtitleFor(state));
    m_pill->setLive(state.isLive);
    m_meter->setMatch(warmestOf(state));
    m_profile->setMatch(state.selectedMatch);
    refreshCards();
}

void MainPanelView::refreshCards()
{
    const AmbrelAppState &state = ViewEnvironment::of(*this).state();
    const auto &selected = state.selectedMatch.value();
    const std::optional<QString> selectedUserId = selected ? std::optional(selected->userId) : std::nullopt;
    // Typing in the sidebar changes the state as well; the cards then have nothing to do.
    if (m_matches.isSharedWith(state.matches) && m_selectedUserId == selectedUserId)
        return;
    m_selectedUserId = selectedUserId;
    const QList<MatchResult> before = std::exchange(m_matches, state.matches);
    m_cards->refresh();
    announceArrivals(before);
}

void MainPanelView::announceArrivals(const QList<MatchResult> &before)
{
    if (!QAccessible::isActive())
        return; // nobody listens, and comparing long lists takes time
    const QString text = arrivalsText(before, m_matches);
    if (!text.isEmpty())
        m_cards->viewport()->setAccessibleDescription(text);
    m_arrivals->setText(text);
}

int MainPanelView::count() const
{
    return static_cast<int>(m_matches.size());
}

QString MainPanelView::idAt(int index) const
{
    return m_matches.at(index).userId;
}

QWidget *MainPanelView::makeRow(QWidget *parent)
{
    return new MatchCard(parent);
}

void MainPanelView::bindRow(QWidget *row, int index)
{
    auto *const card = static_cast<MatchCard *>(row);
    const MatchResult &match = m_matches.at(index);
    card->setMatch(match);
    card->setSelected(match.userId == m_selectedUserId);
}

} // namespace ambrel
