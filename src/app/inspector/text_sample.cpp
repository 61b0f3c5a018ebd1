#include "app/inspector/text_sample.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "render/background_renderer.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr QSize sampleSize(268, 136); // points
constexpr double largestIcon = 80;    // so that the label keeps its true size and still fits

/// A file of the image is what people look for; a link stands in for it.
DMGItem sampleItem(const DMGProject& project)
{
    for (const bool links : {false, true}) {
        for (const DMGItem& item : project.items) {
            if (!item.hidden && item.isSymlink() == links)
                return item;
        }
    }
    return DMGItem::applicationsLink({});
}

} // namespace

TextSample::TextSample(const BuiltInArrowLibrary& arrows, OverlayImageCache& overlays, QWidget* parent)
    : QWidget(parent), m_arrows(arrows), m_overlays(overlays)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TextSample::showProject(const DMGProject& project)
{
    const DMGItem item = sampleItem(project);
    m_project = project;
    m_project.items = {item};
    m_project.overlayImages.clear();
    m_project.textOverlays.clear();
    m_project.iconSize = std::min(project.iconSize, largestIcon);
    m_pictures.expire();
    update();
}

QSize TextSample::sizeHint() const
{
    return {lookOf(this).length(sampleSize.width()), lookOf(this).length(sampleSize.height())};
}

void TextSample::drawBackground(QPainter& painter)
{
    RenderContext context{m_arrows, m_overlays, {}, nullptr};
    DMGProject shown = m_project;
    if (shown.backgroundKind == BackgroundKind::image) {
        const SmallPicture& picture = m_background.read(shown.backgroundImagePath);
        if (picture.isReadable())
            context.background = std::make_shared<const Picture>(Picture{picture.image, picture.pointSize});
        else
            shown.backgroundImagePath.clear();
        const double part = width() / std::max(shown.windowWidth, 1.0);
        shown.backgroundImageOffsetX *= part;
        shown.backgroundImageOffsetY *= part;
    }
    BackgroundRenderer::draw(painter, shown, QSizeF(size()), false, 0, context);
}

void TextSample::paintEvent(QPaintEvent*)
{
    if (m_project.items.empty())
        return;
    const Look& look = lookOf(this);
    QPainter painter(this);
    QPainterPath shape;
    const double radius = look.length(6);
    shape.addRoundedRect(rect(), radius, radius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.save();
    painter.setClipPath(shape);
    drawBackground(painter);

    // Picture and label together stand in the middle.
    DMGItem& item = m_project.items.front();
    item.x = 0;
    item.y = 0;
    const IconAreas areas = m_icons.areas(item, m_project, look.scale, false);
    const double left = std::min(areas.picture.x, areas.label.x);
    const double right = std::max(areas.picture.x + areas.picture.width, areas.label.x + areas.label.width);
    const double top = std::min(areas.picture.y, areas.label.y);
    const double bottom = std::max(areas.picture.y + areas.picture.height, areas.label.y + areas.label.height);
    painter.translate(qRound((width() - left - right) / 2), qRound((height() - top - bottom) / 2));
    m_icons.icons().beginDrawing();
    m_icons.draw(painter, item, m_project, look.scale, devicePixelRatioF(), {});
    painter.restore();
    drawBox(painter, rect(), radius, {}, look.roles.border);
}

} // namespace velmora
