#pragma once

#include <QColor>
#include <QPainterPath>
#include <QWidget>
#include <array>

class QPainter;

namespace ambrel {

/// The brand mark: a round badge with a heart and a pin inside, drawn from vectors at any size.
class AmbrelLogo : public QWidget
{
    Q_OBJECT

public:
    /// A square of `size` pixels; `inverted` for a red surrounding.
    explicit AmbrelLogo(int size, bool inverted = false, QWidget *parent = nullptr);

    bool isInverted() const { return m_inverted; }
    void setInverted(bool inverted);

    /// A part of the mark in one colour.
    struct Area
    {
        QColor colour;
        QPainterPath path; ///< filled by the odd-even rule
    };
    /// What the mark is made of in a square of `size` pixels, from the back to the front.
    static std::array<Area, 5> areas(qreal size, bool inverted);
    /// Draws the mark into a square of `size` pixels at the painter's origin, without its shadow.
    static void paint(QPainter &painter, qreal size, bool inverted);
    /// The drop shadow falls outside the mark's own frame, so the view beneath draws it: call this from the paint
    /// event of the mark's parent.
    void paintShadow(QPainter &parentPainter) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_inverted;
};

} // namespace ambrel
