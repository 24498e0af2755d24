#pragma once

#include "toolkit/WindowControls.h"

#include <QPushButton>

namespace ambrel {

/// One of the three buttons of WindowControls. Main thread only.
class WindowControlButton : public QPushButton
{
    Q_OBJECT

public:
    /// What a button shows and is named for.
    enum class Action { Minimize, Maximize, Restore, Close };

    explicit WindowControlButton(Action action, QWidget *parent);

    /// Changes the picture, the tool tip and the accessible name.
    void setAction(Action action);
    void setColors(const WindowControlColors &colors);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor fill() const;
    void drawGlyph(QPainter &painter, const QRectF &box) const;

    Action m_action;
    WindowControlColors m_colors;
};

} // namespace ambrel
