#pragma once

#include "toolkit/CoveringLayer.h"
#include "ui/window/ViewTimings.h"

#include <QPixmap>
#include <QTimer>
#include <QVariantAnimation>
#include <functional>

class QLabel;

namespace ambrel {

class AmbrelLogo;

/// Covers the window with the brand mark and "SEE ME", swapping white and red until it is removed.
class SeeMeFlashOverlay : public CoveringLayer
{
    Q_OBJECT

public:
    /// Shown at once, white, over all of `parent`. `onDismiss` is called for a click and for Escape, Space or Enter.
    SeeMeFlashOverlay(std::function<void()> onDismiss, const ViewTimings &timings, QWidget *parent);

    void takeFocus() override { setFocus(Qt::PopupFocusReason); }
    /// Stops flashing, fades out and deletes itself.
    void remove();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void showColoring();
    void flip();
    void fade(qreal from, qreal to);

    const std::function<void()> m_onDismiss;
    const ViewTimings m_timings;
    AmbrelLogo *const m_logo;
    QLabel *const m_title;
    bool m_alternate = false;
    QVariantAnimation m_fade{this};
    QPixmap m_picture; ///< what is seen while it fades; null when it does not
    QTimer m_flips;
};

} // namespace ambrel
