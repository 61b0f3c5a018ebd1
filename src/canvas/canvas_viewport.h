#pragma once

#include "model/geometry.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

namespace velmora
{

/// Where the drawn window lies in the canvas widget, in widget points, its corner on a device pixel.
struct CanvasPlacement {
    double scale = 1;
    QRectF titleBar{};
    QRectF content{};
    [[nodiscard]] QRectF window() const { return titleBar | content; }
    /// From widget points to view points: relative to the content area, still scaled.
    [[nodiscard]] Point toView(QPointF widgetPoint) const
    {
        return {widgetPoint.x() - content.x(), widgetPoint.y() - content.y()};
    }
    /// From widget points to content points.
    [[nodiscard]] Point toContent(QPointF widgetPoint) const
    {
        const Point view = toView(widgetPoint);
        return {view.x / scale, view.y / scale};
    }
    bool operator==(const CanvasPlacement&) const = default;
};

/// Which part of the drawn window the canvas shows: zoom and scrolling. A plain value.
class CanvasViewport
{
public:
    /// How far wheel and pinch zoom.
    static constexpr double smallestZoom = 0.1;
    static constexpr double largestZoom = 8;

    /// The widget's size and its device pixels a point.
    void setRegion(QSizeF region, double ratio);
    void setContentSize(Size contentSize);

    /// Nothing: the window fits the region.
    [[nodiscard]] const std::optional<double>& zoom() const { return m_zoom; }
    [[nodiscard]] double scale() const;
    /// Keeps the middle of the region where it is.
    void setZoom(std::optional<double> zoom);
    /// Zooms within the limits; what lies at the widget point stays there.
    void zoomAt(QPointF widgetPoint, double zoom);

    /// How far can be scrolled; nothing when the window lies in the region with room around it.
    [[nodiscard]] QSizeF scrollRange() const;
    [[nodiscard]] QPointF scrollPosition() const;
    void scrollTo(QPointF position);

    [[nodiscard]] CanvasPlacement placement() const;

private:
    QSizeF m_region{};
    double m_ratio = 1;
    Size m_content{};
    std::optional<double> m_zoom{};
    QPointF m_scroll{};
};

} // namespace velmora
