// What lies under a point of the canvas, and the cursor that tells what a press there will do.

#include "canvas/canvas_view.h"
#include "canvas/hint_capsule.h"
#include "canvas/overlay_layer.h"
#include "canvas/text_layer.h"

namespace velmora
{
namespace
{

using Kind = CanvasElement::Kind;

Qt::CursorShape cursorOf(OverlayResizeHandle handle)
{
    switch (handle) {
    case OverlayResizeHandle::topLeft:
    case OverlayResizeHandle::bottomRight:
        return Qt::SizeFDiagCursor;
    case OverlayResizeHandle::topRight:
    case OverlayResizeHandle::bottomLeft:
        return Qt::SizeBDiagCursor;
    case OverlayResizeHandle::top:
    case OverlayResizeHandle::bottom:
        return Qt::SizeVerCursor;
    case OverlayResizeHandle::left:
    case OverlayResizeHandle::right:
        return Qt::SizeHorCursor;
    }
    return Qt::ArrowCursor;
}

} // namespace

CanvasView::Hit CanvasView::hitAt(QPointF point)
{
    if (CanvasScene::showsEmptyHint(m_state.project()) &&
        EmptyHint(m_viewport.placement().window(), size()).link().contains(point))
        return {Hit::Kind::link, {}, {}};
    const CanvasPlacement place = m_viewport.placement();
    for (const CanvasWarning& warning : warnings()) {
        if (warning.kind == CanvasWarning::Kind::outsideWindow &&
            BoxGeometry::contains(edgeBadge(warning, m_state.project().contentSize(), place.scale),
                                  place.toView(point)))
            return {Hit::Kind::badge, warning.item, {}};
    }
    return m_state.editorMode() == EditorMode::background ? hitInBackground(point) : hitInContents(point);
}

CanvasView::Hit CanvasView::hitInContents(QPointF point)
{
    const CanvasPlacement place = m_viewport.placement();
    if (!place.content.contains(point))
        return {};
    const DMGProject& project = m_state.project();
    for (auto item = project.items.rbegin(); item != project.items.rend(); ++item) {
        if (item->hidden)
            continue;
        const IconAreas areas = m_scene.icons().areas(*item, project, place.scale, item->id == m_state.selection());
        if (iconTakes(areas, place.toView(point)))
            return {Hit::Kind::icon, item->id, {}};
    }
    return {Hit::Kind::background, {}, {}};
}

CanvasView::Hit CanvasView::hitInBackground(QPointF point) const
{
    const CanvasPlacement place = m_viewport.placement();
    const Point view = place.toView(point);
    const DMGProject& project = m_state.project();
    const auto texts = TextLayer::boxes(project);
    const auto overlays = OverlayLayer::boxes(project);
    if (!place.content.contains(point)) {
        // A box may stand out of the window; its handles are drawn there and are meant to be used.
        if (const auto text = BoxGeometry::handleHitTest(view, texts, m_state.textSelection(), place.scale))
            return {Hit::Kind::text, text->id, text->handle};
        if (const auto overlay = BoxGeometry::handleHitTest(view, overlays, m_state.overlaySelection(), place.scale))
            return {Hit::Kind::overlay, overlay->id, overlay->handle};
        return {};
    }
    if (const auto text = BoxGeometry::hitTest(view, texts, m_state.textSelection(), place.scale))
        return {Hit::Kind::text, text->id, text->handle};
    if (const auto overlay = BoxGeometry::hitTest(view, overlays, m_state.overlaySelection(), place.scale))
        return {Hit::Kind::overlay, overlay->id, overlay->handle};
    return {Hit::Kind::background, {}, {}};
}

void CanvasView::showCursor(QPointF point)
{
    if (m_spaceHeld || std::holds_alternative<Pan>(m_action)) {
        setCursor(std::holds_alternative<Pan>(m_action) ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
        return;
    }
    if (isActing())
        return;
    const Hit hit = hitAt(point);
    const bool onLink = hit.kind == Hit::Kind::link;
    if (onLink != m_linkHovered) {
        m_linkHovered = onLink;
        update((EmptyHint(m_viewport.placement().window(), size()).area().adjusted(-1, -1, 1, 1) & QRectF(rect()))
                   .toAlignedRect());
    }
    switch (hit.kind) {
    case Hit::Kind::link:
    case Hit::Kind::badge:
        setCursor(Qt::PointingHandCursor);
        break;
    case Hit::Kind::icon:
        setCursor(Qt::OpenHandCursor);
        break;
    case Hit::Kind::text:
    case Hit::Kind::overlay:
        setCursor(hit.handle ? cursorOf(*hit.handle) : Qt::OpenHandCursor);
        break;
    case Hit::Kind::background:
        setCursor(m_state.editorMode() == EditorMode::background && m_state.hasBackgroundImage() ? Qt::OpenHandCursor
                                                                                                 : Qt::ArrowCursor);
        break;
    case Hit::Kind::nothing:
        setCursor(Qt::ArrowCursor);
        break;
    }
}

} // namespace velmora
