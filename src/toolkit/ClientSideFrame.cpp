#include "toolkit/ClientSideFrame.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace ambrel {

namespace {

constexpr char backgroundProperty[] = "ambrelWindowBackground";

Qt::CursorShape cursorFor(Qt::Edges edges)
{
    if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge))
        return Qt::SizeBDiagCursor;
    return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

} // namespace

void setWindowBackground(QWidget &widget)
{
    widget.setProperty(backgroundProperty, true);
}

ClientSideFrame::ClientSideFrame(QWidget &window) : QObject(&window), m_window(window)
{
    m_window.setWindowFlag(Qt::FramelessWindowHint);
    m_window.installEventFilter(this);
    followHandle();
}

ClientSideFrame::~ClientSideFrame()
{
    showCursorFor({});
}

bool ClientSideFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &m_window)
        return handleWidgetEvent(event);
    return watched == m_handle && handleWindowEvent(event);
}

/// The platform window comes into being late and may be replaced.
void ClientSideFrame::followHandle()
{
    if (m_handle == m_window.windowHandle())
        return;
    m_handle = m_window.windowHandle();
    m_drag = Drag::None;
    if (m_handle)
        m_handle->installEventFilter(this);
}

/// Presses arrive at the widget of the window only if no child has accepted them.
bool ClientSideFrame::handleWidgetEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::WinIdChange:
    case QEvent::Show:
        followHandle();
        return false;
    case QEvent::MouseButtonPress: {
        const auto &press = *static_cast<QMouseEvent *>(event);
        if (isBackground(press)) {
            m_drag = Drag::Background;
            m_pressedAt = press.globalPosition().toPoint();
            m_geometryAtPress = m_window.geometry();
        }
        return false;
    }
    case QEvent::MouseButtonDblClick:
        if (!isBackground(*static_cast<QMouseEvent *>(event)))
            return false;
        m_window.setWindowState(m_window.windowState() ^ Qt::WindowMaximized);
        return true;
    default:
        return false;
    }
}

bool ClientSideFrame::handleWindowEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return press(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove:
        return move(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonRelease:
        return release(*static_cast<QMouseEvent *>(event));
    case QEvent::Leave:
    case QEvent::Hide:
        showCursorFor({});
        return false;
    default:
        return false;
    }
}

/// A press also comes here through children that let it through: texts, pictures, disabled controls.
bool ClientSideFrame::isBackground(const QMouseEvent &event) const
{
    const QWidget *child = m_window.childAt(event.position().toPoint());
    return event.button() == Qt::LeftButton && (!child || child->property(backgroundProperty).toBool());
}

bool ClientSideFrame::press(const QMouseEvent &event)
{
    const Qt::Edges edges = edgesAt(event.position());
    if (event.button() != Qt::LeftButton || !edges)
        return false;
    m_edges = edges;
    m_pressedAt = event.globalPosition().toPoint();
    m_geometryAtPress = m_window.geometry();
    m_drag = Drag::Grip;
    return true;
}

bool ClientSideFrame::move(const QMouseEvent &event)
{
    if (!(event.buttons() & Qt::LeftButton)) {
        m_drag = Drag::None; // the window manager has kept the release for itself
        showCursorFor(event.buttons() == Qt::NoButton ? edgesAt(event.position()) : Qt::Edges());
        return false;
    }
    const QPoint distance = event.globalPosition().toPoint() - m_pressedAt;
    const bool isStill = distance.manhattanLength() < (m_drag == Drag::Grip ? 1 : QApplication::startDragDistance());
    switch (m_drag) {
    case Drag::None:
        return false;
    case Drag::Background:
    case Drag::Grip:
        if (!isStill)
            start(event);
        break;
    case Drag::Moving:
        m_window.move(m_geometryAtPress.topLeft() + distance);
        break;
    case Drag::Resizing:
        m_window.setGeometry(resizedBy(distance));
        break;
    }
    return true;
}

bool ClientSideFrame::release(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return false;
    const Drag ended = std::exchange(m_drag, Drag::None);
    return ended == Drag::Grip || ended == Drag::Resizing;
}

/// Asks the window manager only once the pointer moves: told at the press, it could miss the release of a quick click
/// and hold on to the window, and a double click would never come about.
void ClientSideFrame::start(const QMouseEvent &event)
{
    const bool moves = m_drag == Drag::Background;
    m_pressedAt = event.globalPosition().toPoint(); // as a window manager counts, too
    if (moves ? m_handle->startSystemMove() : m_handle->startSystemResize(m_edges))
        endPress(event);
    else
        m_drag = moves ? Drag::Moving : Drag::Resizing;
}

/// The window manager keeps the release for itself, but the widgets wait for it.
void ClientSideFrame::endPress(const QMouseEvent &event)
{
    QMouseEvent release(QEvent::MouseButtonRelease, event.position(), event.globalPosition(), Qt::LeftButton,
                        Qt::NoButton, event.modifiers());
    QCoreApplication::sendEvent(m_handle, &release);
}

Qt::Edges ClientSideFrame::edgesAt(QPointF position) const
{
    // Without a window manager a window that calls itself maximised stays as it is.
    const QSize screen = m_handle->screen()->availableSize();
    const bool isMaximized = m_window.isMaximized() && m_handle->width() >= screen.width();
    if (isMaximized || m_window.isFullScreen())
        return {};
    const qreal left = position.x();
    const qreal top = position.y();
    const qreal right = m_handle->width() - left;
    const qreal bottom = m_handle->height() - top;
    if (std::min({left, top, right, bottom}) > gripThickness)
        return {};
    // At an edge: near a corner both edges move.
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, left <= cornerLength);
    edges.setFlag(Qt::TopEdge, top <= cornerLength);
    edges.setFlag(Qt::RightEdge, right <= cornerLength);
    edges.setFlag(Qt::BottomEdge, bottom <= cornerLength);
    return edges;
}

/// The geometry with the pressed edges moved by `distance`, within the window's smallest and largest size. The other
/// edges stay.
QRect ClientSideFrame::resizedBy(QPoint distance) const
{
    const QSize smallest = m_window.minimumSize();
    const QSize largest = m_window.maximumSize();
    QRect rect = m_geometryAtPress;
    if (m_edges & Qt::LeftEdge)
        rect.setLeft(rect.right() + 1 - std::clamp(rect.width() - distance.x(), smallest.width(), largest.width()));
    if (m_edges & Qt::RightEdge)
        rect.setWidth(std::clamp(rect.width() + distance.x(), smallest.width(), largest.width()));
    if (m_edges & Qt::TopEdge)
        rect.setTop(rect.bottom() + 1 - std::clamp(rect.height() - distance.y(), smallest.height(), largest.height()));
    if (m_edges & Qt::BottomEdge)
        rect.setHeight(std::clamp(rect.height() + distance.y(), smallest.height(), largest.height()));
    return rect;
}

/// An override cursor, because the widgets' own cursors come back by themselves when it ends.
void ClientSideFrame::showCursorFor(Qt::Edges edges)
{
    if (edges && m_hasOverrideCursor)
        QGuiApplication::changeOverrideCursor(cursorFor(edges));
    else if (edges)
        QGuiApplication::setOverrideCursor(cursorFor(edges));
    else if (m_hasOverrideCursor)
        QGuiApplication::restoreOverrideCursor();
    m_hasOverrideCursor = bool(edges);
}

} // namespace ambrel
