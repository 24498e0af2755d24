#pragma once

#include <QCheckBox>
#include <QColor>

namespace ambrel {

/// The colours of a Switch.
struct SwitchColors
{
    QColor trackOn;
    QColor trackOff;
    QColor knob;
    QColor focusRing;
};

/// A check box drawn as a switch, after its label; at the right edge where it is given more room than it asks for.
/// A click anywhere in it or the space bar turns it. Main thread only.
class Switch : public QCheckBox
{
    Q_OBJECT

public:
    explicit Switch(const QString &text, QWidget *parent = nullptr);

    /// Replaces the colours, which come from the palette at first.
    void setColors(const SwitchColors &colors);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void focusInEvent(QFocusEvent *event) override;
    bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRect trackRect() const;

    SwitchColors m_colors;
    bool m_showsFocusRing = true;
};

} // namespace ambrel
