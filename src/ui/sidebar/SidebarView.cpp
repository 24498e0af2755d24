#include "ui/sidebar/SidebarView.h"

#include "toolkit/AnnouncedLabel.h"
#include "toolkit/ClearScrollArea.h"
#include "toolkit/ClientSideFrame.h"
#include "toolkit/EdgeFade.h"
#include "toolkit/FocusInSight.h"
#include "toolkit/KeyPause.h"
#include "toolkit/MirroredMargins.h"
#include "ui/look/AmbrelLogo.h"
#include "ui/look/Painting.h"
#include "ui/look/TextStyling.h"
#include "ui/sidebar/AccountForm.h"
#include "ui/sidebar/ServerLocationForm.h"
#include "ui/sidebar/StatusLine.h"
#include "ui/window/ViewEnvironment.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>

namespace ambrel {

namespace {

/// What scrolls: the brand and the forms. It draws the shadow that the mark casts on it.
class SidebarColumn : public QWidget
{
public:
    explicit SidebarColumn(QWidget *parent)
        : QWidget(parent), m_logo(new AmbrelLogo(theme::sidebarLogoSize, false, this))
    {
    }

    QHBoxLayout *makeHeader()
    {
        auto *const name = new QLabel(QStringLiteral("Ambrel"), this);
        styleText(*name, theme::TextStyle::Wordmark);
        auto *const tagline = new QLabel(QStringLiteral("Dating IRL"), this);
        styleText(*tagline, theme::TextStyle::Body, theme::secondaryText);

        auto *const lines = new QVBoxLayout; // owned by the header
        lines->setSpacing(theme::sidebarTitleSpacing);
        lines->addWidget(name);
        lines->addWidget(tagline);
        auto *const header = new QHBoxLayout; // owned by the column
        header->setSpacing(theme::sidebarHeaderSpacing);
        header->addWidget(m_logo);
        header->addLayout(lines);
        header->addStretch();
        return header;
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        m_logo->paintShadow(painter);
    }

private:
    AmbrelLogo *const m_logo;
};

/// Keeps the column as wide as it is while a scroll bar takes some of its right padding.
void keepPadding(QVBoxLayout &column, QScrollArea &area)
{
    const auto *const bar = area.verticalScrollBar();
    const auto setPadding = [&column, &area](int barThickness) {
        const int padding = theme::sidebarPadding;
        const QMargins margins(padding, padding, padding - barThickness, 0);
        column.setContentsMargins(mirroredMargins(margins, area.layoutDirection()));
    };
    setPadding(0);
    QObject::connect(bar, &QScrollBar::rangeChanged, &area, [setPadding](int minimum, int maximum) {
        setPadding(maximum > minimum ? theme::scrollBarThickness : 0);
    });
}

} // namespace

SidebarView::SidebarView(QWidget *parent) : QWidget(parent)
{
    auto *const area = new QScrollArea(this);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);

    // Made in reading order, which screen readers follow.
    auto *const content = new SidebarColumn(area);
    auto *const header = content->makeHeader();
    m_account = new AccountForm(content);
    m_serverLocation = new ServerLocationForm(content);

    auto *const column = new QVBoxLayout(content);
    column->setSpacing(theme::sidebarSpacing);
    column->addLayout(header);
    column->addWidget(m_account);
    column->addWidget(m_serverLocation);
    column->addStretch();
    keepPadding(*column, *area);
    showThrough(*area, *content);
    fadeEdges(*area, theme::edgeFadeHeight);
    for (QWidget *const empty : {static_cast<QWidget *>(this), area->viewport(), static_cast<QWidget *>(content)})
        setWindowBackground(*empty);

    m_status = new StatusLine(this);
    auto *const foot = new QHBoxLayout; // owned by the sidebar
    foot->setContentsMargins(theme::sidebarPadding, theme::sidebarSpacing, theme::sidebarPadding,
                             theme::sidebarPadding);
    foot->addWidget(m_status);
    auto *const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(0);
    whole->addWidget(area);
    whole->addLayout(foot);
    setFixedWidth(theme::scaled(theme::sidebarWidth));

    for (const auto *const button : content->findChildren<QAbstractButton *>())
        connect(button, &QAbstractButton::clicked, this, [this] { m_awaitsAnswer = true; });
    connect(&ViewEnvironment::of(*this), &ViewEnvironment::stateDidChange, this, &SidebarView::refresh);
    refresh();
}

void SidebarView::refresh()
{
    const auto &state = ViewEnvironment::of(*this).state();
    const auto lines = m_awaitsAnswer ? findChildren<AnnouncedLabel *>() : QList<AnnouncedLabel *>();
    QStringList before;
    for (const auto *const line : lines)
        before << line->label().text();
    showBusy(state);
    m_status->setText(state.statusText);
    if (!lines.isEmpty() && !takesText(window()->focusWidget())) // else the user has gone on to type
        showWritten(lines, before);
    m_awaitsAnswer = m_awaitsAnswer && state.isBusy;
}

void SidebarView::showWritten(const QList<AnnouncedLabel *> &lines, const QStringList &before)
{
    // The lines get their height: each pass reaches the layouts one level further out.
    for (const QWidget *around = lines.first(); around; around = around->parentWidget())
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    for (qsizetype i = lines.size() - 1; i >= 0; --i) { // the first is seen if there is no room for all
        if (lines[i]->label().text() != before[i])
            scrollIntoSight(*lines[i]);
    }
}

void SidebarView::showBusy(const AmbrelAppState &state)
{
    // A button that is disabled loses the focus; it gets it back unless the user has gone elsewhere meanwhile.
    const QPointer<QWidget> before = window()->focusWidget();
    m_account->setBusy(state.isBusy);
    m_serverLocation->refresh(state);
    QWidget *const after = window()->focusWidget();
    if (state.isBusy && before && before != after) {
        m_focusBeforeBusy = before;
        m_focusWhileBusy = after;
    } else if (!state.isBusy && m_focusBeforeBusy) {
        if (after == m_focusWhileBusy)
            m_focusBeforeBusy->setFocus(Qt::PopupFocusReason); // with a ring only if it had one
        m_focusBeforeBusy.clear();
    }
}

void SidebarView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    fillRounded(painter, rect(), theme::regularMaterial);
}

} // namespace ambrel
