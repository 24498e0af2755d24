#pragma once

#include "toolkit/SingleInstance.h"
#include "ui/window/SystemAlertSound.h"

#include <QApplication>
#include <QWidget>
#include <memory>
#include <optional>

namespace ambrel {

class AmbrelAppState;

/// The application: its look, its one state and its one window.
class AmbrelMacApp : public QApplication
{
    Q_OBJECT

public:
    AmbrelMacApp(int &argc, char **argv);
    /// Ends the loops; requests in flight end with the HTTP session.
    ~AmbrelMacApp() override;

    /// A new window on the state, shown at a comfortable size that fits the screen. Null when the application runs
    /// already on the same settings; then its window comes to the front.
    std::unique_ptr<QWidget> openWindow();

private:
    std::optional<SingleInstance> m_instance;
    SystemAlertSound m_sound;
    std::shared_ptr<AmbrelAppState> m_state;
};

} // namespace ambrel
