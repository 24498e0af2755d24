#pragma once

#include <QPixmap>
#include <QWidget>

namespace ambrel {

/// The gradient behind everything, to the edges of the window.
class AmbrelBackground : public QWidget
{
    Q_OBJECT

public:
    explicit AmbrelBackground(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap m_gradient; ///< rendered once per size, so that a repaint behind a card is a plain copy
};

} // namespace ambrel
