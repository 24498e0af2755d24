#include "toolkit/WindowControls.h"

#include "toolkit/FocusRing.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <algorithm>
#include <cmath>

namespace ambrel {

namespace {

constexpr QSize faceSize(28, 24);
constexpr qreal faceRadius = 6;
constexpr qreal glyphSize = 9;
constexpr qreal glyphRadius = 1.5;
constexpr qreal glyphStroke = 1.2;
constexpr qreal slantedStroke = 1.6; // looks as heavy as the upright ones

/// The box with its corners where strokes along its sides fill whole pixels of the screen.
QRectF sharpened(const QRectF &box, qreal stroke, const QPainter &painter)
{
    const QTransform toScreen = painter.deviceTransform();
    const qreal half = stroke * toScreen.m11() / 2;
    const auto snap = [&](QPointF corner) {
        const QPointF pixel = toScreen.map(corner);
        return toScreen.inverted().map(
            QPointF(std::round(pixel.x() - half) + half, std::round(pixel.y() - half) + half));
    };
    return {snap(box.topLeft()), snap(box.bottomRight())};
}

/// Two sheets, `offset` apart, one behind the other.
void drawSheets(QPainter &painter, const QRectF &box, qreal offset)
{
    painter.drawRoundedRect(box.adjusted(0, offset, -offset, 0), glyphRadius, glyphRadius);
    QPainterPath behind(QPointF(box.left() + offset, box.top()));
    behind.lineTo(box.right() - glyphRadius, box.top());
    behind.quadTo(box.topRight(), QPointF(box.right(), box.top() + glyphRadius));
    behind.lineTo(box.right(), box.bottom() - offset);
    painter.drawPath(behind);
}

} // namespace

/// One of the three buttons.
class WindowControls::Button : public QPushButton
{
public:
    enum class Action { Minimize, Maximize, Restore, Close };

    Button(Action action, QWidget *parent) : QPushButton(parent)
    {
        setAttribute(Qt::WA_Hover);
        setFocusPolicy(Qt::TabFocus);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        setAction(action);
    }

    /// Changes the picture, the tool tip and the accessible name.
    void setAction(Action action)
    {
        static const QString names[] = {QStringLiteral("Minimize"), QStringLiteral("Maximize"),
                                        QStringLiteral("Restore"), QStringLiteral("Close")};
        m_action = action;
        setAccessibleName(names[int(action)]);
        setToolTip(names[int(action)]);
        update();
    }

    void setColors(const WindowControlColors &colors)
    {
        m_colors = colors;
        update();
    }

    QSize sizeHint() const override { return faceSize + QSize(2 * focusRingReach, 2 * focusRingReach); }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF face = QRectF(rect()).adjusted(focusRingReach, focusRingReach, -focusRingReach, -focusRingReach);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill());
        painter.drawRoundedRect(face, faceRadius, faceRadius);
        if (hasFocus())
            drawFocusRing(painter, face, faceRadius, m_colors.focusRing);

        const bool closes = m_action == Action::Close;
        const qreal stroke = std::max(1.0, std::round(glyphStroke * devicePixelRatio())) / devicePixelRatio();
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(closes && (isDown() || underMouse()) ? m_colors.closeGlyph : m_colors.glyph,
                            closes ? slantedStroke : stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        QRectF box(0, 0, glyphSize - 1, m_action == Action::Minimize ? 0 : glyphSize - 1);
        box.moveCenter(face.center());
        drawGlyph(painter, sharpened(box, stroke, painter));
    }

private:
    QColor fill() const
    {
        const bool closes = m_action == Action::Close;
        if (isDown())
            return closes ? m_colors.closePressedFill : m_colors.pressedFill;
        if (underMouse())
            return closes ? m_colors.closeHoverFill : m_colors.hoverFill;
        return Qt::transparent;
    }

    void drawGlyph(QPainter &painter, const QRectF &box) const
    {
        switch (m_action) {
        case Action::Minimize:
            return painter.drawLine(box.topLeft(), box.topRight());
        case Action::Maximize:
            return painter.drawRoundedRect(box, glyphRadius, glyphRadius);
        case Action::Restore: // whole pixels of the screen apart
            return drawSheets(painter, box, std::round(2 * devicePixelRatio()) / devicePixelRatio());
        case Action::Close:
            painter.drawLine(box.topLeft(), box.bottomRight());
            painter.drawLine(box.topRight(), box.bottomLeft());
        }
    }

    Action m_action = Action::Close;
    WindowControlColors m_colors;
};

WindowControls::WindowControls(QWidget *parent)
    : QWidget(parent), m_minimize(new Button(Button::Action::Minimize, this)),
      m_maximize(new Button(Button::Action::Maximize, this)), m_close(new Button(Button::Action::Close, this))
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (Button *button : {m_minimize, m_maximize, m_close})
        layout->addWidget(button);

    connect(m_minimize, &QPushButton::clicked, this, [this] { window()->showMinimized(); });
    connect(m_maximize, &QPushButton::clicked, this,
            [this] { window()->setWindowState(window()->windowState() ^ Qt::WindowMaximized); });
    connect(m_close, &QPushButton::clicked, this, [this] { window()->close(); });
}

void WindowControls::setColors(const WindowControlColors &colors)
{
    for (Button *button : {m_minimize, m_maximize, m_close})
        button->setColors(colors);
}

void WindowControls::showEvent(QShowEvent *event)
{
    window()->installEventFilter(this);
    followWindowState();
    QWidget::showEvent(event);
}

bool WindowControls::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowStateChange && watched == window())
        followWindowState();
    return QWidget::eventFilter(watched, event);
}

void WindowControls::followWindowState()
{
    m_maximize->setAction(window()->isMaximized() ? Button::Action::Restore : Button::Action::Maximize);
}

} // namespace ambrel
