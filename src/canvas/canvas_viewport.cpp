#include "canvas/canvas_viewport.h"

#include "canvas/geometry/canvas_scale.h"

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

/// A window with so much room around it is not scrolled: at the fitting scale the title bar alone takes away from the
/// margin, and shifting that about would help nobody.
constexpr double roomEnough = 24;

/// One direction of the area that can be scrolled.
struct Axis {
    double start = 0; ///< of the region in the area while nothing is scrolled
    double range = 0;
};

Axis axis(double region, double area, double window)
{
    const double beyond = std::max(area - region, 0.0);
    if (window <= region - 2 * roomEnough)
        return {beyond / 2, 0};
    return {0, beyond};
}

} // namespace

void CanvasViewport::setRegion(QSizeF region, double ratio)
{
    m_region = region;
    m_ratio = ratio;
}

void CanvasViewport::setContentSize(Size contentSize)
{
    m_content = contentSize;
}

double CanvasViewport::scale() const
{
    return CanvasScale::inForce(m_zoom, m_content, {m_region.width(), m_region.height()});
}

void CanvasViewport::setZoom(std::optional<double> zoom)
{
    if (zoom)
        zoomAt(QPointF(m_region.width() / 2, m_region.height() / 2), *zoom);
    else
        m_zoom.reset();
}

void CanvasViewport::zoomAt(QPointF widgetPoint, double zoom)
{
    const Point held = placement().toContent(widgetPoint);
    // A large window fits only at a smaller zoom than that.
    const double fitted = CanvasScale::inForce({}, m_content, {m_region.width(), m_region.height()});
    m_zoom = std::clamp(zoom, std::min(smallestZoom, fitted), largestZoom);
    m_scroll = {};
    const QPointF corner = placement().content.topLeft();
    m_scroll = corner + QPointF(held.x, held.y) * *m_zoom - widgetPoint;
    scrollTo(m_scroll);
}

QSizeF CanvasViewport::scrollRange() const
{
    const auto drawing = CanvasScale::windowDrawing(m_content, scale(), {m_region.width(), m_region.height()});
    return {axis(m_region.width(), drawing.area.width, drawing.titleBar.width).range,
            axis(m_region.height(), drawing.area.height, drawing.titleBar.height + drawing.content.height).range};
}

QPointF CanvasViewport::scrollPosition() const
{
    const QSizeF range = scrollRange();
    return {std::clamp(m_scroll.x(), 0.0, range.width()), std::clamp(m_scroll.y(), 0.0, range.height())};
}

void CanvasViewport::scrollTo(QPointF position)
{
    m_scroll = position;
    m_scroll = scrollPosition();
}

CanvasPlacement CanvasViewport::placement() const
{
    const Size region{m_region.width(), m_region.height()};
    const double s = scale();
    const auto drawing = CanvasScale::windowDrawing(m_content, s, region);
    const Axis across = axis(region.width, drawing.area.width, drawing.titleBar.width);
    const Axis down = axis(region.height, drawing.area.height, drawing.titleBar.height + drawing.content.height);
    const QPointF scrolled = scrollPosition() + QPointF(across.start, down.start);
    const auto onPixel = [this](double value) { return std::round(value * m_ratio) / m_ratio; };
    const double x = onPixel(drawing.titleBar.x - scrolled.x());
    const double y = onPixel(drawing.titleBar.y - scrolled.y());
    const QRectF bar(x, y, drawing.titleBar.width, drawing.titleBar.height);
    return {s, bar, QRectF(x, bar.bottom(), drawing.content.width, drawing.content.height)};
}

} // namespace velmora
