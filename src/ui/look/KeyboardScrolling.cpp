#include "ui/look/KeyboardScrolling.h"

#include "ui/look/Painting.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QPainter>
#include <QScrollBar>

namespace ambrel {

namespace {

/// Lies over the content, which would cover a ring that the area itself draws.
class RingAbove : public QWidget
{
public:
    explicit RingAbove(QAbstractScrollArea &area) : QWidget(&area)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        area.installEventFilter(this);
        hide();
    }

protected:
    bool eventFilter(QObject *area, QEvent *event) override
    {
        if (event->type() == QEvent::FocusIn) {
            setGeometry(parentWidget()->rect());
            raise();
            show();
        } else if (event->type() == QEvent::FocusOut) {
            hide();
        } else if (event->type() == QEvent::Resize) {
            setGeometry(parentWidget()->rect());
        }
        return QWidget::eventFilter(area, event);
    }
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        strokeFocusRing(painter, rect());
    }
};

} // namespace

void enableKeyboardScrolling(QAbstractScrollArea &area)
{
    new RingAbove(area); // owned by the area
    const auto updatePolicy = [&area] {
        const bool scrolls = area.verticalScrollBar()->maximum() > 0 || area.horizontalScrollBar()->maximum() > 0;
        area.setFocusPolicy(scrolls ? Qt::TabFocus : Qt::NoFocus);
    };
    for (const QScrollBar *const bar : {area.verticalScrollBar(), area.horizontalScrollBar()})
        QObject::connect(bar, &QScrollBar::rangeChanged, &area, updatePolicy);
    updatePolicy();
}

} // namespace ambrel
