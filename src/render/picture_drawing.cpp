#include "render/picture_drawing.h"

#include <cmath>

namespace velmora
{
namespace
{

// Larger coordinates overflow the fixed-point numbers of the raster engine.
constexpr double farthest = 1e6;

bool drawable(const QRectF& rect)
{
    const double values[] = {rect.x(), rect.y(), rect.width(), rect.height()};
    for (const double value : values) {
        if (!std::isfinite(value) || std::abs(value) > farthest)
            return false;
    }
    return true;
}

/// A part of an image that shares its pixels; the image must outlive it.
QImage viewOf(const QImage& image, const QRect& part)
{
    const uchar* corner = image.constScanLine(part.y()) + qsizetype{part.x()} * (image.depth() / 8);
    return QImage(corner, part.width(), part.height(), image.bytesPerLine(), image.format());
}

/// One direction of a place on the device.
struct Span {
    double begin;
    double length;
};

/// How many pixels a picture is reduced to for a place on the device.
int reducedPixels(const Span& span)
{
    constexpr double hair = 1e-6; // rounding errors of a whole number
    const auto whole = [](double value) { return std::abs(value - std::round(value)) < hair; };
    const int covered = std::max(1, static_cast<int>(std::ceil(span.length - hair)));
    // The painter moves unscaled pictures to whole pixels. Between them, one of twice the size is left for it to halve:
    // two by two pixels are what its own interpolation averages well.
    return whole(span.begin) && whole(span.length) ? covered : 2 * covered;
}

} // namespace

QRectF visiblePart(const QPainter& painter, const QRectF& rect)
{
    return painter.hasClipping() ? rect & painter.clipBoundingRect() : rect;
}

bool drawPicture(QPainter& painter, const QImage& image, const QRectF& rect, const QRectF& visible)
{
    if (!drawable(rect))
        return false;
    constexpr double invisible = 1e-3; // less than that divides by next to nothing
    const QRectF shown = rect & visiblePart(painter, visible);
    if (image.isNull() || image.depth() % 8 != 0 || rect.width() < invisible || rect.height() < invisible ||
        shown.isEmpty())
        return true;

    const double toPixelsX = image.width() / rect.width();
    const double toPixelsY = image.height() / rect.height();
    const QRectF exactPart((shown.x() - rect.x()) * toPixelsX, (shown.y() - rect.y()) * toPixelsY,
                           shown.width() * toPixelsX, shown.height() * toPixelsY);
    // One pixel more on every side gives interpolation at the cut its neighbours.
    const QRect part = exactPart.toAlignedRect().adjusted(-1, -1, 1, 1) & image.rect();
    if (part.isEmpty())
        return true;
    const QRectF place(rect.x() + part.x() / toPixelsX, rect.y() + part.y() / toPixelsY, part.width() / toPixelsX,
                       part.height() / toPixelsY);

    const QRectF onDevice = painter.deviceTransform().mapRect(place);
    const int width = std::min(part.width(), reducedPixels({onDevice.x(), onDevice.width()}));
    const int height = std::min(part.height(), reducedPixels({onDevice.y(), onDevice.height()}));
    QImage source = viewOf(image, part);
    // The painter's interpolation alone looks at too few pixels for strong reductions.
    if (width < part.width() || height < part.height())
        source = source.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);

    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setClipRect(visible, Qt::IntersectClip);
    painter.drawImage(place, source);
    painter.restore();
    return true;
}

} // namespace velmora
