#pragma once

#include "model/ResponseRecords.h"

#include <QList>
#include <QPointer>
#include <QWidget>
#include <optional>

namespace ambrel {

class AmbrelBackground;
class SeeMeAlert;
class SeeMeFlashOverlay;
class WindowControls;

/// All that the window shows: sidebar and main panel on the background, the See Me flash above them, and the alert for
/// an incoming See Me above all. The controls of the frameless window stand in its top right corner, where the pointer
/// reaches them above the alert, too.
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
    void showFlash(bool isShown);
    void showAlert(const std::optional<SeeMeMessage> &message);
    void stackLayers();
    void moveFocus();
    void rememberFocus();
    void giveFocusBack();
    void keepFocusInLayers(const QWidget *focused);

    AmbrelBackground *const m_background;
    WindowControls *const m_controls;
    QPointer<SeeMeFlashOverlay> m_flash;
    QPointer<SeeMeAlert> m_alert;
    std::optional<SeeMeMessage> m_message;   ///< the one that the window has asked attention for
    QList<QPointer<QWidget>> m_focusBeneath; ///< what had the focus before a layer took it, then what that stands in
};

} // namespace ambrel
