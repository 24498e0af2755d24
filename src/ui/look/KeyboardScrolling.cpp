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
    RingAbove(QAbstractScrollArea &area, int top) : QWidget(&area), m_top(top)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        area.installEventFilter(this);
        hide();
    }

protected:
    bool eventFilter(QObject *area, QEvent *event) override
    {
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::Resize)
            setGeometry(parentWidget()->rect().adjusted(0, m_top, 0, 0));
        if (event->type() == QEvent::FocusIn) {
            raise();
            show();
        } else if (event->type() == QEvent::FocusOut) {
            hide();
        }
        return QWidget::eventFilter(area, event);
    }
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        strokeFocusRing(painter, rect());
    }

private:
    const int m_top;
};

} // namespace

void enableKeyboardScrolling(QAbstractScrollArea &area, int ringTop)
{
    new RingAbove(area, ringTop); // owned by the area
    const auto updatePolicy = [&area] {
        const bool scrolls = area.verticalScrollBar()->maximum() > 0 || area.horizontalScrollBar()->maximum() > 0;
        area.setFocusPolicy(scrolls ? Qt::TabFocus : Qt::NoFocus);
    };
    for (const QScrollBar *const bar : {area.verticalScrollBar(), area.horizontalScrollBar()})
        QObject::connect(bar, &QScrollBar::rangeChanged, &area, updatePolicy);
    updatePolicy();
}

} // namespace ambrel
