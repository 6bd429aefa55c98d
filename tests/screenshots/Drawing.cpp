#include "screenshots/Drawing.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <algorithm>
#include <memory>

namespace {

/// Passes on to the picture what is painted, and keeps the texts back.
class TextCollector : public QPaintEngine
{
public:
    explicit TextCollector(Drawing& drawing) : QPaintEngine(AllFeatures), m_drawing(drawing) {}

    Type type() const override { return User; }

    bool begin(QPaintDevice*) override
    {
        m_ground = std::make_unique<QPainter>(&m_drawing.ground);
        setActive(true);
        return true;
    }
    bool end() override
    {
        m_ground.reset();
        setActive(false);
        return true;
    }

    void updateState(const QPaintEngineState& changed) override
    {
        const DirtyFlags dirty = changed.state();
        if (dirty & DirtyTransform)
            m_ground->setTransform(changed.transform());
        if (dirty & DirtyPen)
            m_ground->setPen(changed.pen());
        if (dirty & DirtyBrush)
            m_ground->setBrush(changed.brush());
        if (dirty & DirtyBrushOrigin)
            m_ground->setBrushOrigin(changed.brushOrigin());
        if (dirty & DirtyHints)
            m_ground->setRenderHints(changed.renderHints());
        if (dirty & DirtyOpacity)
            m_ground->setOpacity(changed.opacity());
        if (dirty & DirtyCompositionMode)
            m_ground->setCompositionMode(changed.compositionMode());
        if (dirty & (DirtyClipRegion | DirtyClipPath | DirtyClipEnabled))
            clip();
    }

    void drawPath(const QPainterPath& path) override { m_ground->drawPath(path); }
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override
    {
        if (mode == PolylineMode)
            m_ground->drawPolyline(points, count);
        else
            m_ground->drawPolygon(points, count, mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
    }
    void drawPixmap(const QRectF& place, const QPixmap& pixmap, const QRectF& source) override
    {
        m_ground->drawPixmap(place, pixmap, source);
    }

    void drawTextItem(const QPointF& origin, const QTextItem& item) override
    {
        const QString text = item.text();
        QRectF ink = QFontMetricsF(item.font()).tightBoundingRect(text).translated(origin);
        ink.setRight(std::min(ink.right(), origin.x() + item.width())); // without the rounding of each glyph
        if (text.trimmed().isEmpty() || ink.isEmpty())
            return;
        DrawnText drawn;
        drawn.widget = dynamic_cast<const QWidget*>(painter()->device());
        drawn.text = text;
        drawn.colour = painter()->pen().color();
        drawn.colour.setAlphaF(drawn.colour.alphaF() * painter()->opacity());
        drawn.place = state->transform().mapRect(ink);
        drawn.visible = drawn.place.toAlignedRect();
        if (!systemClip().isEmpty())
            drawn.visible &= systemClip();
        if (painter()->hasClipping())
            drawn.visible &= state->transform().map(painter()->clipRegion());
        m_drawing.texts.append(drawn);
    }

private:
    /// What is visible of the widget, and within that what its painter clips to.
    void clip()
    {
        m_ground->setTransform(QTransform());
        m_ground->setClipRegion(systemClip().isEmpty() ? m_drawing.ground.rect() : systemClip());
        m_ground->setTransform(state->transform());
        if (painter()->hasClipping())
            m_ground->setClipRegion(painter()->clipRegion(), Qt::IntersectClip);
    }

    Drawing& m_drawing;
    std::unique_ptr<QPainter> m_ground;
};

class Canvas : public QPaintDevice
{
public:
    explicit Canvas(Drawing& drawing) : m_ground(drawing.ground), m_engine(drawing) {}

    QPaintEngine* paintEngine() const override { return &m_engine; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        case PdmWidth:
            return m_ground.width();
        case PdmHeight:
            return m_ground.height();
        case PdmDpiX:
        case PdmPhysicalDpiX:
            return m_ground.logicalDpiX();
        case PdmDpiY:
        case PdmPhysicalDpiY:
            return m_ground.logicalDpiY();
        case PdmDepth:
            return m_ground.depth();
        default:
            return 0;
        }
    }

private:
    const QImage& m_ground;
    mutable TextCollector m_engine;
};

} // namespace

Drawing drawingOf(QWidget& window)
{
    Drawing drawing;
    drawing.ground = QImage(window.size(), QImage::Format_ARGB32_Premultiplied);
    drawing.ground.fill(window.palette().color(QPalette::Window));
    drawing.ground.setDotsPerMeterX(qRound(window.logicalDpiX() / 0.0254));
    drawing.ground.setDotsPerMeterY(qRound(window.logicalDpiY() / 0.0254));
    Canvas canvas(drawing);
    window.render(&canvas);
    return drawing;
}
