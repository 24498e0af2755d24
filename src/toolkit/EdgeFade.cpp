#include "toolkit/EdgeFade.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <utility>

namespace ambrel {

namespace {

/// Lies over one edge of an area and shows there, the more the nearer to the edge, what is behind the area.
class EdgeFade : public QWidget
{
public:
    EdgeFade(QAbstractScrollArea &area, Qt::Edge edge, int pixels)
        : QWidget(&area), m_area(area), m_edge(edge), m_pixels(pixels)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        area.viewport()->installEventFilter(this);
        const QScrollBar *const bar = area.verticalScrollBar();
        connect(bar, &QScrollBar::valueChanged, this, &EdgeFade::follow);
        connect(bar, &QScrollBar::rangeChanged, this, &EdgeFade::follow);
        follow();
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
            follow();
        return false;
    }

    void paintEvent(QPaintEvent *) override
    {
        const QRect place(mapTo(window(), QPoint()), window()->size());
        if (m_picture.isNull() || std::exchange(m_pictured, place) != place)
            picture();
        QPainter(this).drawImage(0, 0, m_picture);
    }

    void resizeEvent(QResizeEvent *) override { m_picture = {}; }

private:
    void follow()
    {
        const QScrollBar *const bar = m_area.verticalScrollBar();
        QRect place = m_area.viewport()->geometry();
        if (m_edge == Qt::TopEdge)
            place.setHeight(m_pixels);
        else
            place.setTop(place.bottom() + 1 - m_pixels);
        setGeometry(place);
        setVisible(m_edge == Qt::TopEdge ? bar->value() > bar->minimum() : bar->value() < bar->maximum());
    }

    /// Draws what the ancestors of the area draw themselves here, and fades it.
    void picture()
    {
        m_picture = QImage(size() * devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
        m_picture.setDevicePixelRatio(devicePixelRatioF());
        m_picture.fill(Qt::transparent);
        QPainter painter(&m_picture);
        QList<QWidget *> behind;
        for (QWidget *ancestor = m_area.parentWidget(); ancestor; ancestor = ancestor->parentWidget())
            behind.prepend(ancestor);
        for (QWidget *const ancestor : behind)
            ancestor->render(&painter, {}, QRect(mapTo(ancestor, QPoint()), size()), RenderFlags());
        QLinearGradient fade(0, 0, 0, height());
        fade.setColorAt(m_edge == Qt::TopEdge ? 0 : 1, Qt::black);
        fade.setColorAt(m_edge == Qt::TopEdge ? 1 : 0, Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(rect(), fade);
    }

    QAbstractScrollArea &m_area;
    const Qt::Edge m_edge;
    const int m_pixels;
    QImage m_picture;
    QRect m_pictured; ///< the place in the window, and the size of the window, that the picture is of
};

} // namespace

void fadeEdges(QAbstractScrollArea &area, int pixels)
{
    new EdgeFade(area, Qt::TopEdge, pixels);    // owned by the area
    new EdgeFade(area, Qt::BottomEdge, pixels); // the same
}

} // namespace ambrel
