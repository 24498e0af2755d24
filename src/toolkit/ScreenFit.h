#pragma once

#include <QObject>
#include <QSize>

class QWidget;

namespace ambrel {

/// Keeps a window, and the smallest size that it accepts, within the free area of its screen, on whichever screen it
/// stands. Main thread only.
class ScreenFit : public QObject
{
    Q_OBJECT

public:
    /// `window` owns it from then on and accepts `minimum`, in pixels, and nothing smaller where the screen has room.
    ScreenFit(QWidget &window, const QSize &minimum);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fit();

    QWidget &m_window;
    const QSize m_minimum;
};

} // namespace ambrel
