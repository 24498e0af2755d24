#pragma once

#include <QColor>
#include <QPushButton>

namespace ambrel {

/// What the primary and the secondary button have in common: the full width on offer, a label that shrinks before it
/// is cut, Enter as well as Space, a focus ring for the keyboard, and the same look whether enabled or not.
class AmbrelButton : public QPushButton
{
    Q_OBJECT

public:
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    struct Colors
    {
        QColor rest;
        QColor pressed;
        QColor label;
        QColor focusRing;
    };

    AmbrelButton(const QString &label, const Colors &colors, QWidget *parent);

    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void paintLabel(QPainter &painter) const;

    const Colors m_colors;
    bool m_showsFocusRing = true;
};

/// The red button of the main action in its row.
class AmbrelPrimaryButton : public AmbrelButton
{
    Q_OBJECT

public:
    explicit AmbrelPrimaryButton(const QString &label, QWidget *parent = nullptr);
};

/// The pale button of every other action.
class AmbrelSecondaryButton : public AmbrelButton
{
    Q_OBJECT

public:
    explicit AmbrelSecondaryButton(const QString &label, QWidget *parent = nullptr);
};

} // namespace ambrel
