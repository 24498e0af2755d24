#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>

class QMouseEvent;
class QWidget;
class QWindow;

namespace ambrel {

/// Lets the window move and maximise by what is empty of `widget`, too: where no child of it stands. Main thread.
void setWindowBackground(QWidget &widget);

/// Takes the system's frame off a window and gives it what the frame did: it moves by dragging any empty background,
/// maximises and restores by a double click there, and resizes at its edges and corners. The window manager does the
/// moving and resizing, so that snapping works; where there is none, the window follows the pointer by itself.
/// Empty background is the window itself and what `setWindowBackground` names. Main thread only.
class ClientSideFrame : public QObject
{
    Q_OBJECT

public:
    /// How far the grips of the edges reach into the window, in pixels.
    static constexpr int gripThickness = 6;
    /// How far the grips of the corners reach along the edges, in pixels.
    static constexpr int cornerLength = 16;

    /// Frames `window`, which must not have been shown yet and owns the frame from then on.
    explicit ClientSideFrame(QWidget &window);
    ~ClientSideFrame() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Drag {
        None,
        Background, // pressed on empty background, not moved yet
        Grip,       // pressed at an edge or corner, not moved yet
        Moving,     // without a window manager
        Resizing,   // without a window manager
    };

    void followHandle();
    bool handleWidgetEvent(QEvent *event);
    bool handleWindowEvent(QEvent *event);
    bool isBackground(const QMouseEvent &event) const;
    bool press(const QMouseEvent &event);
    bool move(const QMouseEvent &event);
    bool release(const QMouseEvent &event);
    void start(const QMouseEvent &event);
    void endPress(const QMouseEvent &event);
    Qt::Edges edgesAt(QPointF position) const;
    QRect resizedBy(QPoint distance) const;
    void showCursorFor(Qt::Edges edges);

    QWidget &m_window;
    QPointer<QWindow> m_handle;
    Drag m_drag = Drag::None;
    QPoint m_pressedAt; // on the screen
    QRect m_geometryAtPress;
    Qt::Edges m_edges;
    bool m_hasOverrideCursor = false;
};

} // namespace ambrel
