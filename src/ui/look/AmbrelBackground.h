#pragma once

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
};

} // namespace ambrel
