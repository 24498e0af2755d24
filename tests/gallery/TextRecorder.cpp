#include "gallery/TextRecorder.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

namespace ambrel {

namespace {

/// Passes everything on to a picture, except text, which it writes down.
class Engine : public QPaintEngine
{
public:
    explicit Engine(QImage &picture) : QPaintEngine(AllFeatures), m_picture(picture) {}

    const QList<DrawnText> &texts() const { return m_texts; }

    Type type() const override { return User; }
    bool begin(QPaintDevice *) override { return m_painter.begin(&m_picture); }
    bool end() override { return m_painter.end(); }

    void updateState(const QPaintEngineState &given) override
    {
        const DirtyFlags changed = given.state();
        if (changed & DirtyTransform)
            m_painter.setTransform(given.transform());
        if (changed & DirtyPen)
            m_painter.setPen(given.pen());
        if (changed & DirtyBrush)
            m_painter.setBrush(given.brush());
        if (changed & DirtyBrushOrigin)
            m_painter.setBrushOrigin(given.brushOrigin());
        if (changed & DirtyHints) {
            m_painter.setRenderHints(m_painter.renderHints(), false);
            m_painter.setRenderHints(given.renderHints());
        }
        if (changed & DirtyCompositionMode)
            m_painter.setCompositionMode(given.compositionMode());
        if (changed & DirtyOpacity)
            m_painter.setOpacity(given.opacity());
        if (changed & DirtyClipRegion)
            m_painter.setClipRegion(given.clipRegion(), given.clipOperation());
        if (changed & DirtyClipPath)
            m_painter.setClipPath(given.clipPath(), given.clipOperation());
        if (changed & DirtyClipEnabled)
            m_painter.setClipping(given.isClipEnabled());
    }

    void drawPath(const QPainterPath &path) override
    {
        within([&] {
            m_painter.drawPath(path);
            if (m_painter.brush().style() != Qt::NoBrush)
                cover(m_painter.transform().map(path));
        });
    }
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode mode) override
    {
        within([&] {
            if (mode == PolylineMode) {
                m_painter.drawPolyline(points, count);
                return;
            }
            QPainterPath path;
            path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
            path.setFillRule(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
            path.closeSubpath();
            m_painter.drawPath(path);
            if (m_painter.brush().style() != Qt::NoBrush)
                cover(m_painter.transform().map(path));
        });
    }
    void drawPixmap(const QRectF &target, const QPixmap &pixmap, const QRectF &source) override
    {
        within([&] {
            m_painter.drawPixmap(target, pixmap, source);
            QPainterPath path;
            path.addRect(target);
            cover(m_painter.transform().map(path));
        });
    }
    void drawTextItem(const QPointF &position, const QTextItem &item) override
    {
        const QRectF box(position.x(), position.y() - item.ascent(), item.width(), item.ascent() + item.descent());
        const QRect shown =
            (QRegion(m_painter.transform().mapRect(box).toAlignedRect()) & systemClip() & userClip()).boundingRect();
        QColor color = m_painter.pen().color();
        color.setAlphaF(color.alphaF() * float(m_painter.opacity()));
        if (!shown.isEmpty() && !item.text().trimmed().isEmpty())
            m_texts.append({item.text(), item.font(), color, shown});
    }

private:
    /// Where the widgets that paint now may paint is not part of the state.
    template <typename Draw>
    void within(Draw draw)
    {
        m_painter.paintEngine()->setSystemClip(systemClip());
        m_painter.setClipping(m_painter.hasClipping()); // makes the picture look at it
        draw();
    }
    QRegion userClip() const
    {
        return m_painter.hasClipping() ? m_painter.transform().map(m_painter.clipRegion()) : QRegion(m_picture.rect());
    }
    void cover(const QPainterPath &path)
    {
        const QRegion reach = systemClip() & userClip();
        m_texts.removeIf([&](const DrawnText &drawn) {
            return path.contains(QRectF(drawn.box)) && (QRegion(drawn.box) - reach).isEmpty();
        });
    }

    QImage &m_picture;
    QPainter m_painter;
    QList<DrawnText> m_texts;
};

class Device : public QPaintDevice
{
public:
    explicit Device(const QSize &size) : m_picture(size, QImage::Format_RGB32), m_engine(m_picture)
    {
        m_picture.fill(Qt::black);
    }
    QPaintEngine *paintEngine() const override { return &m_engine; }
    TakenApart result() const { return {m_picture, m_engine.texts()}; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        constexpr int dotsPerInch = 96;
        switch (metric) {
        case PdmWidth:
            return m_picture.width();
        case PdmHeight:
            return m_picture.height();
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return dotsPerInch;
        case PdmDepth:
            return m_picture.depth();
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        default:
            return QPaintDevice::metric(metric);
        }
    }

private:
    QImage m_picture;
    mutable Engine m_engine;
};

} // namespace

TakenApart takeTextOff(QWidget &window)
{
    Device device(window.size());
    window.render(&device);
    return device.result();
}

} // namespace ambrel
