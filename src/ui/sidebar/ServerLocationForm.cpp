#include "ui/sidebar/ServerLocationForm.h"

#include "toolkit/AnnouncedLabel.h"
#include "toolkit/Switch.h"
#include "ui/look/AmbrelButton.h"
#include "ui/look/Divider.h"
#include "ui/look/Theme.h"
#include "ui/sidebar/FormLayout.h"
#include "ui/window/ViewEnvironment.h"

namespace ambrel {

ServerLocationForm::ServerLocationForm(QWidget *parent) : QGroupBox(QStringLiteral("Server && Location"), parent)
{
    // Made in reading order, which is the order of Tab.
    auto *const form = makeFormLayout(*this);
    form->addWidget(makeTextField(QStringLiteral("Server"), &AmbrelAppState::serverBaseURL, *this));
    auto *const latitude = makeTextField(QStringLiteral("Latitude"), &AmbrelAppState::latitudeText, *this);
    auto *const longitude = makeTextField(QStringLiteral("Longitude"), &AmbrelAppState::longitudeText, *this);
    form->addLayout(makeRow({latitude, longitude}));
    m_discoverable = new Switch(QStringLiteral("Discoverable"), this);
    m_discoverable->setColors({theme::controlAccent, theme::switchOff, theme::switchKnob, theme::focusRing});
    form->addWidget(m_discoverable);
    form->addWidget(makeCaption(
        QStringLiteral("Mac build uses manual location until desktop location permissions are added."), *this));
    m_goLive = new AmbrelPrimaryButton(QStringLiteral("Go Live"), this);
    auto *const pause = new AmbrelSecondaryButton(QStringLiteral("Pause"), this);
    form->addLayout(makeRow({m_goLive, pause}));
    form->addWidget(new Divider(Qt::Horizontal, this));
    m_checkServer = new AmbrelSecondaryButton(QStringLiteral("Check Server"), this);
    form->addWidget(m_checkServer);
    m_serverStatus = makeStatusCaption(QStringLiteral("Server status"), *this);
    form->addWidget(m_serverStatus);
    m_betaStatus = makeStatusCaption(QStringLiteral("Android beta status"), *this);
    form->addWidget(m_betaStatus);

    auto &state = ViewEnvironment::of(*this).state();
    connect(m_discoverable, &Switch::toggled, this, [&state](bool isOn) {
        if (state.discoverable != isOn)
            state.discoverable = isOn;
    });
    connect(m_goLive, &QPushButton::clicked, this, [&state] { state.startLive(); });
    connect(pause, &QPushButton::clicked, this, [&state] { state.stopLive(); });
    connect(m_checkServer, &QPushButton::clicked, this, [&state] { runDetached(state.checkServerStatus()); });
}

void ServerLocationForm::refresh(const AmbrelAppState &state)
{
    m_discoverable->setChecked(state.discoverable);
    m_goLive->setText(state.isLive ? QStringLiteral("Refresh") : QStringLiteral("Go Live"));
    m_checkServer->setText(state.isBusy ? QStringLiteral("Checking...") : QStringLiteral("Check Server"));
    m_checkServer->setDisabled(state.isBusy);
    m_serverStatus->setText(state.serverStatusText);
    m_betaStatus->setText(state.betaStatusText);
}

} // namespace ambrel
