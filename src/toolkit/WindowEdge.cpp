#include "toolkit/WindowEdge.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

#ifdef AMBREL_HAS_XCB
#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>
#endif

namespace ambrel {

namespace {

#ifdef AMBREL_HAS_XCB
struct Free
{
    void operator()(void *reply) const { std::free(reply); } // NOLINT: allocated by a C library
};

/// A compositor owns a selection that is named for it.
bool hasCompositor(xcb_connection_t *connection)
{
    constexpr std::string_view name = "_NET_WM_CM_S0";
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, false, uint16_t(name.size()), name.data()), nullptr));
    if (!atom)
        return false;
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
    return owner && owner->owner != XCB_NONE;
}
#endif

bool isComposited()
{
#ifdef AMBREL_HAS_XCB
    if (const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        return hasCompositor(x11->connection());
#endif
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

/// Half of the screen, a quarter or all of it; Wayland tells no window where it is.
bool isTiled(const QWidget &window)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return false;
    const QRect place = window.geometry();
    const QRect screen = window.screen()->availableGeometry();
    return (place.left() == screen.left() || place.right() == screen.right()) &&
           (place.top() == screen.top() || place.bottom() == screen.bottom());
}

} // namespace

WindowEdge::WindowEdge(QWidget &window, int radius, const QColor &line)
    : QWidget(&window), m_radius(radius), m_line(line)
{
    hide();
    if (!isComposited())
        return;
    window.setAttribute(Qt::WA_TranslucentBackground);
    window.installEventFilter(this);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

bool WindowEdge::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        follow();
        return false;
    default:
        return false;
    }
}

void WindowEdge::follow()
{
    const QWidget &window = *parentWidget();
    setGeometry(window.rect());
    const QRect line = rect().adjusted(1, 1, -1, -1);
    QRegion painted = QRegion(rect()).subtracted(line);
    for (const QPoint corner : {rect().topLeft(), QPoint(width() - m_radius, 0), QPoint(0, height() - m_radius),
                                QPoint(width() - m_radius, height() - m_radius)})
        painted += QRect(corner, QSize(m_radius, m_radius));
    setMask(painted); // all else is painted without it
    setVisible(!window.isMaximized() && !window.isFullScreen() && !isTiled(window) && isComposited());
    raise();
}

void WindowEdge::paintEvent(QPaintEvent *)
{
    QPainterPath outside;
    outside.addRect(rect());
    QPainterPath inside;
    inside.addRoundedRect(rect(), m_radius, m_radius);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(outside.subtracted(inside), Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setPen(m_line);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), m_radius - 0.5, m_radius - 0.5);
}

} // namespace ambrel
