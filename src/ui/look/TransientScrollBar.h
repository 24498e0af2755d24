#pragma once

#include "ui/look/Theme.h"

#include <QScrollBar>
#include <QTimer>

namespace ambrel {

/// A thin scroll bar that is drawn only while its area scrolls, for a moment after that, and under the pointer.
class TransientScrollBar : public QScrollBar
{
    Q_OBJECT

public:
    explicit TransientScrollBar(Qt::Orientation orientation, QWidget *parent,
                                std::chrono::milliseconds linger = theme::scrollBarLinger);

    QSize sizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void sliderChange(SliderChange change) override;

private:
    QTimer m_linger; ///< runs as long as the bar is to be seen
};

} // namespace ambrel
