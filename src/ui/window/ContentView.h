#pragma once

#include "model/ResponseRecords.h"
#include "toolkit/KeyPause.h"

#include <QList>
#include <QPointer>
#include <QWidget>
#include <optional>

class QScrollArea;

namespace ambrel {

class AmbrelBackground;
class AnnouncedLabel;
class SeeMeAlert;
class SeeMeFlashOverlay;
class WindowControls;

/// All that the window shows: sidebar and main panel on the background, the See Me flash above them, and the alert for
/// an incoming See Me above all. The controls of the frameless window stand in its top corner beside the main panel,
/// and work while the alert is shown, too.
class ContentView : public QWidget
{
    Q_OBJECT

public:
    /// `parent` must stand in a view environment.
    explicit ContentView(QWidget *parent);
    ~ContentView() override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void refresh();
    bool showFlash(bool isShown);
    bool showAlert(const std::optional<SeeMeMessage> &message);
    void stackLayers();
    void giveFocusToLayers();
    void rememberFocus();
    void giveFocusBack();
    void keepFocusInLayers(const QWidget *before, const QWidget *focused);

    QScrollArea *const m_area; ///< scrolls everything on a screen that is smaller than the window is to be
    AmbrelBackground *const m_background;
    WindowControls *const m_controls;
    AnnouncedLabel *const m_unseen; ///< a message that came while somebody types, for screen readers
    KeyPause m_keyPause;
    QPointer<SeeMeFlashOverlay> m_flash;
    QPointer<SeeMeAlert> m_alert;
    std::optional<SeeMeMessage> m_message;   ///< that the alert shows
    bool m_isTyping = false;                 ///< when the layers came, so that they wait for a pause
    QList<QPointer<QWidget>> m_focusBeneath; ///< what had the focus before a layer took it, and its ancestors
};

} // namespace ambrel
