#pragma once

#include <QColor>
#include <QWidget>

namespace ambrel {

/// Gives a frameless window round corners and a hairline around it where the desktop lets what is behind show through:
/// under a compositor on X11, and on Wayland. Elsewhere the window stays square and plain, and so it does while it
/// fills the screen or is tiled. Main thread only.
class WindowEdge : public QWidget
{
    Q_OBJECT

public:
    /// `window`, which must not have been shown yet, owns it from then on. `radius` is that of the corners, in pixels.
    WindowEdge(QWidget &window, int radius, const QColor &line);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void follow();

    const int m_radius;
    const QColor m_line;
};

} // namespace ambrel
