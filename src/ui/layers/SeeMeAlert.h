#pragma once

#include "toolkit/CoveringLayer.h"

#include <functional>
#include <optional>

class QLabel;
class QScrollArea;

namespace ambrel {

class AmbrelPrimaryButton;
class WrappedLabel;

/// The sheet that shows an incoming See Me message above the dimmed window until the user dismisses it. For assistive
/// technology a modal dialog that the message describes.
class SeeMeAlert : public CoveringLayer
{
    Q_OBJECT

public:
    /// Shown at once over all of `parent`. `onDismiss` is called for the button, Escape and Enter.
    SeeMeAlert(const QString &message, std::function<void()> onDismiss, QWidget *parent);

    /// Shows a newer message in place. Plain text; may be empty.
    void setMessage(const QString &message);
    void takeFocus() override;

Q_SIGNALS:
    /// A click beside the sheet, where a drag moves the window. The alert itself stays.
    void clickedBeside();

protected:
    bool isBackgroundAt(QPoint place) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitMessage();

    const std::function<void()> m_onDismiss;
    QWidget *m_sheet = nullptr;
    QLabel *m_heading = nullptr;
    QScrollArea *m_messageArea = nullptr; ///< scrolls when the window is too low for the message
    WrappedLabel *m_message = nullptr;
    AmbrelPrimaryButton *m_dismiss = nullptr;
    std::optional<QPoint> m_pressedBeside; ///< on the screen, until the release
};

} // namespace ambrel
