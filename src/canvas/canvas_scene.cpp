#include "canvas/canvas_scene.h"

#include "canvas/background_layer.h"
#include "canvas/graph_paper.h"
#include "canvas/hint_capsule.h"
#include "canvas/overlay_layer.h"
#include "canvas/qt_rect.h"
#include "canvas/text_layer.h"
#include "l10n/l10n.h"
#include "render/overlay_images.h"

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

/// A picture of the whole widget.
QImage emptyLayer(const SceneView& view)
{
    const auto pixels = [&](double length) { return std::max(1, static_cast<int>(std::ceil(length * view.ratio))); };
    QImage image(pixels(view.region.width()), pixels(view.region.height()), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(view.ratio);
    image.fill(Qt::transparent);
    return image;
}

/// The painter in view points: its origin is the corner of the content area.
class InContent
{
public:
    InContent(QPainter& painter, const SceneView& view) : m_painter(painter)
    {
        painter.save();
        painter.translate(view.place.content.topLeft());
    }
    /// Draws within `clip` alone (widget points).
    InContent(QPainter& painter, const SceneView& view, const QRectF& clip) : m_painter(painter)
    {
        painter.save();
        painter.setClipRect(clip, Qt::IntersectClip);
        painter.translate(view.place.content.topLeft());
    }
    ~InContent() { m_painter.restore(); }
    InContent(const InContent&) = delete;
    InContent& operator=(const InContent&) = delete;

private:
    QPainter& m_painter;
};

} // namespace

CanvasScene::CanvasScene(const AppState& state, const ThemeManager& themes, const BuiltInArrowLibrary& arrows,
                         OverlayImageCache& cache)
    : m_state(state), m_themes(themes), m_arrows(arrows), m_cache(cache)
{
}

bool CanvasScene::refreshWarnings()
{
    std::vector<CanvasWarning> now = canvasWarnings(m_state.project(), m_icons.icons());
    if (now == m_warnings)
        return false;
    m_warnings = std::move(now);
    m_badged.clear();
    for (const CanvasWarning& warning : m_warnings) {
        if (warning.kind != CanvasWarning::Kind::outsideWindow)
            m_badged.insert(warning.item.bytes);
    }
    return true;
}

QString CanvasScene::warningText(const Uuid& item) const
{
    QStringList texts;
    for (const CanvasWarning& warning : m_warnings) {
        if (warning.item == item)
            texts.append(warning.text);
    }
    return texts.join(u'\n');
}

CanvasScene::Plan CanvasScene::plan(const SceneView& view) const
{
    const DMGProject& project = m_state.project();
    Plan plan;
    plan.stops = {{Part::surroundings, 0}, {Part::background, 0}};
    std::optional<std::size_t> moving;
    const auto add = [&](Part part, std::size_t index, CanvasElement::Kind kind, const Uuid& id) {
        if (view.moving && view.moving->kind == kind && view.moving->id == id)
            moving = plan.stops.size();
        plan.stops.push_back({part, index});
    };
    std::size_t firstText = plan.stops.size();
    if (inBackgroundMode()) {
        for (std::size_t i = 0; i < project.overlayImages.size(); ++i)
            add(Part::overlay, i, CanvasElement::Kind::overlay, project.overlayImages[i].id);
        firstText = plan.stops.size();
        for (std::size_t i = 0; i < project.textOverlays.size(); ++i)
            add(Part::text, i, CanvasElement::Kind::text, project.textOverlays[i].id);
    }
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        if (!project.items[i].hidden)
            add(Part::icon, i, CanvasElement::Kind::item, project.items[i].id);
    }
    constexpr std::size_t aboveBackground = 2;
    plan.baseEnd = aboveBackground;
    plan.moving = plan.stops.size();
    if (view.backgroundMoves) {
        plan.baseEnd = 1;
        plan.moving = 1;
    } else if (moving) {
        plan.moving = *moving;
        if (view.moving->kind == CanvasElement::Kind::text)
            plan.baseEnd = firstText;
        else if (view.moving->kind == CanvasElement::Kind::item)
            plan.baseEnd = *moving;
    }
    return plan;
}

void CanvasScene::refreshLayers(const SceneView& view, const Plan& plan)
{
    const bool atRest = plan.moving == plan.stops.size();
    const LayerKey key{m_generation,           view.region, view.ratio, view.place, view.dropTarget, m_themes.theme(),
                       m_colors.palette.accent};
    std::optional<MovingKey> movingKey;
    if (!atRest)
        movingKey = MovingKey{view.moving,
                              view.backgroundMoves,
                              {m_state.selection(), m_state.overlaySelection(), m_state.textSelection()}};
    if (key == m_key && movingKey == m_movingKey)
        return;
    if (key != m_key) {
        m_surroundings = emptyLayer(view);
        QPainter painter(&m_surroundings);
        drawSurroundings(painter, view);
    }
    const bool onlyBackground = plan.baseEnd == 2;
    const bool keepBase = key == m_key && onlyBackground && m_baseIsBare;
    if (!keepBase)
        m_base = layer(view, plan, 0, plan.baseEnd);
    m_baseIsBare = onlyBackground;
    m_under = {};
    m_over = {};
    if (!atRest) {
        if (plan.moving > plan.baseEnd)
            m_under = layer(view, plan, plan.baseEnd, plan.moving);
        if (plan.moving + 1 < plan.stops.size())
            m_over = layer(view, plan, plan.moving + 1, plan.stops.size());
    }
    m_key = key;
    m_movingKey = movingKey;
}

QImage CanvasScene::layer(const SceneView& view, const Plan& plan, std::size_t begin, std::size_t end)
{
    QImage image = emptyLayer(view);
    QPainter painter(&image);
    drawStops(painter, QRectF(QPointF(0, 0), view.region), view, plan, begin, end);
    return image;
}

void CanvasScene::paint(QPainter& painter, const QRect& dirty, const SceneView& view)
{
    m_colors = canvasColors(m_themes);
    m_icons.icons().beginDrawing();
    const Plan plan = this->plan(view);
    refreshLayers(view, plan);

    const QRectF clip(dirty);
    const auto show = [&](const QImage& image) {
        if (!image.isNull())
            painter.drawImage(QPointF(0, 0), image);
    };
    const bool iconMoves = view.moving && view.moving->kind == CanvasElement::Kind::item;
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    show(m_base);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (!iconMoves)
        drawGuides(painter, view);
    if (plan.moving == plan.stops.size()) {
        drawStops(painter, clip, view, plan, plan.baseEnd, plan.stops.size());
    } else {
        show(m_under);
        drawStops(painter, clip, view, plan, plan.moving, plan.moving + 1);
        show(m_over);
    }
    if (iconMoves)
        drawGuides(painter, view);
    drawAbove(painter, view);
}

void CanvasScene::drawStops(QPainter& painter, const QRectF& clip, const SceneView& view, const Plan& plan,
                            std::size_t begin, std::size_t end)
{
    for (std::size_t i = begin; i < end; ++i)
        drawStop(painter, clip, view, plan.stops[i]);
}

void CanvasScene::drawStop(QPainter& painter, const QRectF& clip, const SceneView& view, const Stop& stop)
{
    const DMGProject& project = m_state.project();
    switch (stop.part) {
    case Part::surroundings:
        painter.drawImage(QPointF(0, 0), m_surroundings);
        break;
    case Part::background:
        drawBackground(painter, clip, view);
        break;
    case Part::overlay:
        drawOverlay(painter, clip, view, project.overlayImages[stop.index]);
        break;
    case Part::text:
        drawText(painter, clip, view, project.textOverlays[stop.index]);
        break;
    case Part::icon:
        drawIcon(painter, clip, view, project.items[stop.index]);
        break;
    }
}

void CanvasScene::drawSurroundings(QPainter& painter, const SceneView& view)
{
    drawGraphPaper(painter, view.region, view.ratio, m_colors.palette);
    if (view.dropTarget) {
        QColor dim = m_colors.roles.primary;
        dim.setAlphaF(0.04F);
        painter.fillRect(QRectF(QPointF(0, 0), view.region), dim);
    }
    m_shadow.draw(painter, view.place.window(), view.ratio, m_colors.dark);
    drawTitleBar(painter, view.place.titleBar, QString::fromStdString(m_state.project().volumeName));
}

void CanvasScene::drawBackground(QPainter& painter, const QRectF& clip, const SceneView& view)
{
    const DMGProject& project = m_state.project();
    const bool baked = !inBackgroundMode() && (!project.overlayImages.empty() || !project.textOverlays.empty());
    painter.save();
    painter.setClipRect(clip, Qt::IntersectClip);
    drawBackgroundLayer(painter, project, baked ? BackgroundShown::baked : BackgroundShown::bare, view.place.content,
                        view.place.scale, view.ratio, m_pictures, context());
    painter.restore();
    roundLowerCorners(painter, view.place.window(), m_surroundings);
}

void CanvasScene::drawOverlay(QPainter& painter, const QRectF& clip, const SceneView& view, DMGOverlayImage overlay)
{
    if (view.moving == CanvasElement{CanvasElement::Kind::overlay, overlay.id} && view.liveBounds)
        overlay.setBounds(*view.liveBounds);
    const double scale = view.place.scale;
    const QRectF area = toQRectF(BoxGeometry::viewRect(overlay.bounds(), scale), view.place.content.topLeft());
    if (area.intersects(clip)) {
        {
            const InContent inContent(painter, view, view.place.content & clip);
            OverlayLayer::draw(painter, overlay, scale, view.ratio, m_pictures, context());
        }
        if (touchesLowerCorner(area, view.place.window()))
            roundLowerCorners(painter, view.place.window(), m_surroundings);
    }
    if (m_state.overlaySelection() == overlay.id) {
        const InContent inContent(painter, view);
        drawBoxSelection(painter, overlay.bounds(), scale, m_colors.palette.accent);
    }
}

void CanvasScene::drawText(QPainter& painter, const QRectF& clip, const SceneView& view, DMGTextOverlay text)
{
    if (view.moving == CanvasElement{CanvasElement::Kind::text, text.id} && view.liveBounds)
        text.setBounds(*view.liveBounds);
    const double scale = view.place.scale;
    const QRectF area = TextLayer::inkArea(text, scale).translated(view.place.content.topLeft());
    if (area.intersects(clip)) {
        const InContent inContent(painter, view, view.place.content & clip);
        TextLayer::draw(painter, text, m_state.project(), scale, context());
    }
    if (m_state.textSelection() == text.id) {
        const InContent inContent(painter, view);
        drawBoxSelection(painter, text.bounds(), scale, m_colors.palette.accent);
    }
}

void CanvasScene::drawIcon(QPainter& painter, const QRectF& clip, const SceneView& view, const DMGItem& item)
{
    const DMGProject& project = m_state.project();
    const double scale = view.place.scale;
    const QRectF area = toQRectF(m_icons.inkArea(item, project, scale), view.place.content.topLeft());
    if (!area.intersects(clip))
        return;
    const bool faded = inBackgroundMode();
    const bool badged = m_badged.contains(item.id.bytes);
    const InContent inContent(painter, view, view.place.content);
    m_icons.draw(painter, item, project, scale, view.ratio,
                 {m_state.selection() == item.id, faded, badged, m_colors.palette.accent});
}

void CanvasScene::drawGuides(QPainter& painter, const SceneView& view) const
{
    const InContent inContent(painter, view, view.place.content);
    for (const ShownGuide& guide : view.guides)
        drawGuide(painter, guide, view.place.content.size(), view.place.scale, view.ratio);
}

void CanvasScene::drawAbove(QPainter& painter, const SceneView& view)
{
    const DMGProject& project = m_state.project();
    if (inBackgroundMode()) {
        const bool nothingBurntIn = project.overlayImages.empty() && project.textOverlays.empty();
        const char* key = m_state.hasBackgroundImage() ? "bg_drag_hint" : (nothingBurntIn ? "bg_mode_hint" : nullptr);
        if (key)
            drawHintCapsule(painter, view.place.content, QString::fromStdString(L10n::t(key)), view.place.scale);
    }
    drawWindowOutline(painter, view.place.window(), view.ratio, view.dropTarget, m_colors.palette.accent);
    {
        const InContent inContent(painter, view);
        for (const CanvasWarning& warning : m_warnings) {
            if (warning.kind == CanvasWarning::Kind::outsideWindow)
                m_icons.drawBadge(painter, edgeBadge(warning, project.contentSize(), view.place.scale), view.ratio);
        }
    }
    if (showsEmptyHint(project))
        EmptyHint(view.place.window(), view.region)
            .draw(painter, m_colors.palette.canvasBackground, m_colors.roles, view.linkHovered);
}

void CanvasScene::expirePictures()
{
    m_pictures.expire();
    m_cache.forgetChanged();
}

bool CanvasScene::isMissing(const DMGOverlayImage& overlay)
{
    return !m_pictures.overlay(overlay, context());
}

bool CanvasScene::showsEmptyHint(const DMGProject& project)
{
    return std::all_of(project.items.begin(), project.items.end(),
                       [](const DMGItem& item) { return item.isSymlink(); });
}

} // namespace velmora
