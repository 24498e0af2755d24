#pragma once

#include <QColor>
#include <QWidget>

namespace ambrel {

/// The colours of WindowControls.
struct WindowControlColors
{
    QColor glyph;
    QColor hoverFill;
    QColor pressedFill;
    QColor closeGlyph; // on the two fills below
    QColor closeHoverFill;
    QColor closePressedFill;
    QColor focusRing;
};

/// Three small buttons that minimise, maximise or restore, and close the window they stand in. Main thread only.
class WindowControls : public QWidget
{
    Q_OBJECT

public:
    explicit WindowControls(QWidget *parent = nullptr);

    /// Gives them their colours; they have none at first.
    void setColors(const WindowControlColors &colors);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    class Button;

    void followWindowState();

    Button *const m_minimize;
    Button *const m_maximize;
    Button *const m_close;
};

} // namespace ambrel
