#pragma once

#include <QGroupBox>

namespace ambrel {

class AmbrelPrimaryButton;
class AmbrelSecondaryButton;
class AmbrelAppState;
class AnnouncedLabel;
class Switch;

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
    Switch *m_discoverable = nullptr;
    AmbrelPrimaryButton *m_goLive = nullptr;
    AmbrelSecondaryButton *m_checkServer = nullptr;
    AnnouncedLabel *m_serverStatus = nullptr;
    AnnouncedLabel *m_betaStatus = nullptr;
};

} // namespace ambrel
