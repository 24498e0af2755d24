#include "ui/window/ContentView.h"

#include "toolkit/AnnouncedLabel.h"
#include "toolkit/ClearScrollArea.h"
#include "toolkit/ClientSideFrame.h"
#include "toolkit/WindowControls.h"
#include "ui/layers/SeeMeAlert.h"
#include "ui/layers/SeeMeFlashOverlay.h"
#include "ui/look/AmbrelBackground.h"
#include "ui/look/Divider.h"
#include "ui/look/KeyboardScrolling.h"
#include "ui/look/Theme.h"
#include "ui/look/TransientScrollBar.h"
#include "ui/people/MainPanelView.h"
#include "ui/sidebar/SidebarView.h"
#include "ui/window/ViewEnvironment.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QStyle>
#include <algorithm>
#include <utility>

namespace ambrel {

namespace {

bool isInLayer(const QWidget *widget)
{
    while (widget && !qobject_cast<const CoveringLayer *>(widget))
        widget = widget->parentWidget();
    return widget;
}

/// Lets the main panel scroll sideways where the window is narrower than the panel's own minimum.
QScrollArea *makeMainPanelArea(QWidget &parent)
{
    auto *const area = new QScrollArea(&parent);
    area->setAccessibleName(QStringLiteral("Nearby and profile"));
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidgetResizable(true);
    showThrough(*area, *new MainPanelView(area));
    setWindowBackground(*area->viewport());
    area->setHorizontalScrollBar(new TransientScrollBar(Qt::Horizontal, area));
    enableKeyboardScrolling(*area, theme::mainPanelPadding); // the ring stands below the controls of the window
    return area;
}

AmbrelBackground *makeColumns(QWidget &parent)
{
    auto *const background = new AmbrelBackground(&parent);
    setWindowBackground(*background);
    auto *const row = new QHBoxLayout(background);
    const int padding = theme::windowPadding;
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(0);
    row->addWidget(new SidebarView(background));
    row->addWidget(new Divider(Qt::Vertical, background));
    row->addWidget(makeMainPanelArea(*background), 1);
    return background;
}

} // namespace

// The controls are made after the columns, so that the first field has the focus at first and Tab comes to them last.
ContentView::ContentView(QWidget *parent)
    : QWidget(parent), m_area(new QScrollArea(this)), m_background(makeColumns(*m_area)),
      m_controls(new WindowControls(this)), m_unseen(new AnnouncedLabel(this)),
      m_keyPause(*window(), ViewEnvironment::of(*this).timings().keyQuiet)
{
    showThrough(*m_area, *m_background);
    setWindowBackground(*m_area->viewport());
    enableKeyboardScrolling(*m_area);
    m_area->setWidgetResizable(true);
    m_background->setMinimumSize(theme::windowMinimumSize);
    m_controls->setColors({.glyph = theme::windowControlGlyph,
                           .hoverFill = theme::windowControlHovered,
                           .pressedFill = theme::windowControlPressed,
                           .closeGlyph = theme::closeControlGlyph,
                           .closeHoverFill = theme::closeControlHovered,
                           .closePressedFill = theme::closeControlPressed,
                           .focusRing = theme::focusRing});
    m_controls->adjustSize();
    m_unseen->setFixedSize(0, 0); // to be heard, not seen

    connect(&ViewEnvironment::of(*this), &ViewEnvironment::stateDidChange, this, &ContentView::refresh);
    connect(&m_keyPause, &KeyPause::over, this, &ContentView::giveFocusToLayers);
    connect(qApp, &QApplication::focusChanged, this, &ContentView::keepFocusInLayers);
    refresh();
}

ContentView::~ContentView()
{
    disconnect(qApp, nullptr, this, nullptr); // the focus still moves while the views are destroyed
}

void ContentView::resizeEvent(QResizeEvent *)
{
    m_area->setGeometry(rect());
    const int margin = theme::windowControlsMargin;
    const QRect place(QPoint(width() - m_controls->width() - margin, margin), m_controls->size());
    m_controls->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
}

void ContentView::refresh()
{
    const auto &state = ViewEnvironment::of(*this).state();
    const bool wasCovered = m_flash || m_alert;
    const bool isFlashNew = showFlash(state.showSeeMeFlash);
    const bool isAlertNew = showAlert(state.incomingSeeMe);
    if (!isFlashNew && !isAlertNew)
        return;
    stackLayers();
    if (!m_flash && !m_alert) {
        m_keyPause.end();
        m_unseen->setText({});
        giveFocusBack();
        return;
    }
    if (!wasCovered)
        rememberFocus();
    m_keyPause.begin();
    // Somebody who is typing goes on until they pause. Of a message a screen reader hears at once.
    const QWidget *const focused = window()->focusWidget();
    m_isTyping = takesText(focused) && !isInLayer(focused);
    m_unseen->setText(m_isTyping && m_message ? m_message->body : QString());
    if (!m_isTyping)
        giveFocusToLayers();
}

/// True when it has come or gone.
bool ContentView::showFlash(bool isShown)
{
    if (isShown == !m_flash.isNull())
        return false;
    auto &environment = ViewEnvironment::of(*this);
    if (isShown) {
        m_flash = new SeeMeFlashOverlay([&environment] { environment.state().showSeeMeFlash = false; },
                                        environment.timings(), this);
    } else {
        m_flash->remove();
        m_flash.clear();
    }
    return true;
}

/// True when there is another message, or none any more.
bool ContentView::showAlert(const std::optional<SeeMeMessage> &message)
{
    if (message == m_message)
        return false;
    m_message = message;
    if (!message) {
        m_alert->hide();
        m_alert->deleteLater();
        m_alert.clear();
        return true;
    }
    QApplication::alert(window());
    auto &state = ViewEnvironment::of(*this).state();
    if (m_alert) {
        m_alert->setMessage(message->body);
    } else {
        m_alert = new SeeMeAlert(
            message->body, [&state] { state.incomingSeeMe = std::nullopt; }, this);
        // The alert does not keep the flash beneath it from being dismissed.
        connect(m_alert, &SeeMeAlert::clickedBeside, this, [this, &state] {
            if (m_flash)
                state.showSeeMeFlash = false;
        });
    }
    return true;
}

/// The window controls can be used above the alert; the flash covers them for its few seconds.
void ContentView::stackLayers()
{
    if (m_flash)
        m_flash->raise();
    if (m_alert)
        m_alert->raise();
    if (m_alert && !m_flash)
        m_controls->raise();
}

/// Beneath an alert everything is disabled, for assistive technology as well.
void ContentView::giveFocusToLayers()
{
    if (std::exchange(m_isTyping, false))
        rememberFocus(); // it may be in another field by now
    if (m_alert) {
        m_alert->takeFocus();
        m_background->setEnabled(false); // not earlier, or the focus would wander
    } else {
        m_background->setEnabled(true);
        m_flash->takeFocus();
    }
}

void ContentView::rememberFocus()
{
    // A key that is down now will be released into the layer.
    if (auto *const button = qobject_cast<QAbstractButton *>(window()->focusWidget()))
        button->setDown(false);
    m_focusBeneath.clear();
    for (QWidget *widget = window()->focusWidget(); widget && widget != this; widget = widget->parentWidget()) {
        if (widget->focusPolicy() != Qt::NoFocus)
            m_focusBeneath.append(widget);
    }
}

/// A list from which the focused row has gone meanwhile passes the focus on to another row by itself.
void ContentView::giveFocusBack()
{
    m_background->setEnabled(true);
    const auto next = std::find_if(m_focusBeneath.cbegin(), m_focusBeneath.cend(),
                                   [this](const auto &widget) { return widget && widget->isVisibleTo(this); });
    if (next != m_focusBeneath.cend())
        (*next)->setFocus(Qt::PopupFocusReason); // without scrolling to it, and with a ring only if it had one
}

/// When something beneath a layer is given the focus, as a screen reader can do, it gets it once the layer is gone.
void ContentView::keepFocusInLayers(const QWidget *, const QWidget *focused)
{
    if (!(m_alert || m_flash) || m_isTyping || !focused || !isAncestorOf(focused) || isInLayer(focused))
        return;
    rememberFocus();
    giveFocusToLayers();
}

} // namespace ambrel
