#include "toolkit/ScreenFit.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace ambrel {

ScreenFit::ScreenFit(QWidget &window, const QSize &minimum) : QObject(&window), m_window(window), m_minimum(minimum)
{
    m_window.installEventFilter(this);
    fit();
}

/// There is a platform window, which tells of its screens, once the widget is shown.
bool ScreenFit::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        connect(m_window.windowHandle(), &QWindow::screenChanged, this, &ScreenFit::fit, Qt::UniqueConnection);
        fit();
    }
    return false;
}

void ScreenFit::fit()
{
    const QScreen *const screen = m_window.screen();
    connect(screen, &QScreen::availableGeometryChanged, this, &ScreenFit::fit, Qt::UniqueConnection);
    const QSize available = screen->availableSize();
    m_window.setMinimumSize(m_minimum.boundedTo(available));
    if (!m_window.isMaximized() && !m_window.isFullScreen())
        m_window.resize(m_window.size().boundedTo(available));
}

} // namespace ambrel
