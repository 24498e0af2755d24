#include "ui/window/ContentView.h"

#include "toolkit/ClearScrollArea.h"
#include "toolkit/WindowControls.h"
#include "ui/layers/SeeMeAlert.h"
#include "ui/layers/SeeMeFlashOverlay.h"
#include "ui/look/AmbrelBackground.h"
#include "ui/look/Divider.h"
#include "ui/look/KeyboardScrolling.h"
#include "ui/look/Theme.h"
#include "ui/people/MainPanelView.h"
#include "ui/sidebar/SidebarView.h"
#include "ui/window/ViewEnvironment.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHBoxLayout>
#include <QScrollArea>
#include <algorithm>

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
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidgetResizable(true);
    showThrough(*area, *new MainPanelView(area));
    enableKeyboardScrolling(*area);
    QObject::connect(qApp, &QApplication::focusChanged, area, [area](QWidget *before, QWidget *focused) {
        // What gets the focus back from a layer stays where the user has left it.
        if (focused && area->widget()->isAncestorOf(focused) && !isInLayer(before))
            area->ensureWidgetVisible(focused);
    });
    return area;
}

/// Lets what is disabled look as it does otherwise.
void keepLookWhenDisabled(QWidget &widget)
{
    QPalette palette = widget.palette();
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, palette.color(QPalette::Active, role));
    widget.setPalette(palette);
}

AmbrelBackground *makeColumns(QWidget &parent)
{
    auto *const background = new AmbrelBackground(&parent);
    auto *const row = new QHBoxLayout(background);
    const int padding = theme::windowPadding;
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(0);
    row->addWidget(new SidebarView(background));
    row->addWidget(new Divider(Qt::Vertical, background));
    row->addWidget(makeMainPanelArea(*background), 1);
    keepLookWhenDisabled(*background);
    return background;
}

} // namespace

// The controls are made after the columns, so that the first field has the focus at first and Tab comes to them last.
ContentView::ContentView(QWidget *parent)
    : QWidget(parent), m_background(makeColumns(*this)), m_controls(new WindowControls(this))
{
    m_controls->setColors({.glyph = theme::windowControlGlyph,
                           .hoverFill = theme::windowControlHovered,
                           .pressedFill = theme::windowControlPressed,
                           .closeGlyph = theme::closeControlGlyph,
                           .closeHoverFill = theme::closeControlHovered,
                           .closePressedFill = theme::closeControlPressed,
                           .focusRing = theme::focusRing});
    m_controls->adjustSize();

    connect(&ViewEnvironment::of(*this), &ViewEnvironment::stateDidChange, this, &ContentView::refresh);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *focused) { keepFocusInLayers(focused); });
    refresh();
}

ContentView::~ContentView()
{
    disconnect(qApp, nullptr, this, nullptr); // the focus still moves while the views go
}

void ContentView::resizeEvent(QResizeEvent *)
{
    m_background->setGeometry(rect());
    m_controls->move(width() - m_controls->width() - theme::windowControlsMargin, theme::windowControlsMargin);
}

void ContentView::refresh()
{
    const auto &state = ViewEnvironment::of(*this).state();
    const bool hadFlash = m_flash;
    const bool hadAlert = m_alert;
    showFlash(state.showSeeMeFlash);
    showAlert(state.incomingSeeMe);
    if (!hadFlash && !hadAlert && (m_flash || m_alert))
        rememberFocus();
    if (hadFlash != !m_flash.isNull() || hadAlert != !m_alert.isNull()) {
        stackLayers();
        moveFocus();
    }
}

void ContentView::showFlash(bool isShown)
{
    if (isShown && !m_flash) {
        m_flash = new SeeMeFlashOverlay([this] { ViewEnvironment::of(*this).state().showSeeMeFlash = false; }, this);
    } else if (!isShown && m_flash) {
        m_flash->remove();
        m_flash.clear();
    }
}

void ContentView::showAlert(const std::optional<SeeMeMessage> &message)
{
    const bool isNew = message && message != m_message;
    m_message = message;
    if (isNew)
        QApplication::alert(window());
    if (!message) {
        if (m_alert) {
            m_alert->hide();
            m_alert->deleteLater();
            m_alert.clear();
        }
        return;
    }
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
}

/// The alert leaves the controls of the window to the user; the flash covers them for its few seconds.
void ContentView::stackLayers()
{
    if (m_flash)
        m_flash->raise();
    if (m_alert)
        m_alert->raise();
    if (m_alert && !m_flash)
        m_controls->raise();
}

/// Beneath an alert everything is disabled, so that no assistive technology works it either.
void ContentView::moveFocus()
{
    if (m_alert) {
        m_alert->takeFocus();
        m_background->setEnabled(false); // not earlier, or the focus would wander
        return;
    }
    m_background->setEnabled(true);
    if (m_flash)
        m_flash->takeFocus();
    else
        giveFocusBack();
}

void ContentView::rememberFocus()
{
    // A key that is down is released into the layer.
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
    const auto heir = std::find_if(m_focusBeneath.cbegin(), m_focusBeneath.cend(),
                                   [this](const auto &widget) { return widget && widget->isVisibleTo(this); });
    if (heir != m_focusBeneath.cend())
        (*heir)->setFocus(Qt::PopupFocusReason); // without scrolling to it, and with a ring only if it had one
}

/// What asks for the focus beneath a layer, as a screen reader can, gets it when the layer goes.
void ContentView::keepFocusInLayers(const QWidget *focused)
{
    if (!(m_alert || m_flash) || !focused || !isAncestorOf(focused) || isInLayer(focused))
        return;
    rememberFocus();
    moveFocus();
}

} // namespace ambrel
