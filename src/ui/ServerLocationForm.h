#pragma once

#include <QGroupBox>

class QCheckBox;
class QLabel;

namespace ambrel {

class AmbrelPrimaryButton;
class AmbrelSecondaryButton;
class AmbrelAppState;

/// Server address, position and discoverability, going live and pausing, and the server check with its two lines.
class ServerLocationForm : public QGroupBox
{
    Q_OBJECT

public:
    /// `parent` must stand in a view environment.
    explicit ServerLocationForm(QWidget *parent);

    /// Shows the state's present flags and status lines.
    void refresh(const AmbrelAppState &state);

private:
    QCheckBox *const m_discoverable;
    AmbrelPrimaryButton *const m_goLive;
    AmbrelSecondaryButton *const m_checkServer;
    QLabel *const m_serverStatus;
    QLabel *const m_betaStatus;
};

} // namespace ambrel
