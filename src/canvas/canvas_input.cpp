// What the pointer does on the canvas: presses and drags, wheel, gestures, dropped files.

#include "canvas/canvas_accessibility.h"
#include "canvas/canvas_view.h"
#include "canvas/geometry/icon_drag.h"
#include "canvas/geometry/overlay_snap.h"
#include "canvas/overlay_layer.h"
#include "canvas/text_layer.h"
#include "l10n/labels.h"

#include <QGestureEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPinchGesture>
#include <QTextDocument>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

using Kind = CanvasElement::Kind;

/// A shorter movement is a click by an unsteady hand.
constexpr double shortestDrag = 1;

bool isDrag(QPointF from, QPointF to)
{
    return std::hypot(to.x() - from.x(), to.y() - from.y()) >= shortestDrag;
}

std::vector<ShownGuide> shown(const auto& guides)
{
    std::vector<ShownGuide> result;
    for (const auto& guide : guides)
        result.push_back({guide.vertical, guide.position});
    return result;
}

/// What a guide runs through: an item's centre, else the window's, else the edge of an item's cell; empty when it is
/// none of them.
QString nameOf(const ShownGuide& guide, const DMGProject& project, const Uuid& moved)
{
    QString atCenter;
    QString atEdge;
    const double halfCell = OverlaySnap::halfCell(project.iconSize);
    for (const DMGItem& item : project.items) {
        if (item.hidden || item.id == moved)
            continue;
        if ((guide.vertical ? item.x : item.y) == guide.position)
            atCenter = QString::fromStdString(item.displayName);
        else if (guide.vertical && (item.x - halfCell == guide.position || item.x + halfCell == guide.position))
            atEdge = QString::fromStdString(item.displayName);
    }
    const Size content = project.contentSize();
    if (atCenter.isEmpty() && guide.position == (guide.vertical ? content.width : content.height) / 2)
        return QString::fromUtf8(Labels::windowCenter);
    return atCenter.isEmpty() ? atEdge : atCenter;
}

/// The names of what the guides run through.
QString alignmentOf(const std::vector<ShownGuide>& guides, const DMGProject& project, const Uuid& moved)
{
    QStringList names;
    for (const ShownGuide& guide : guides) {
        const QString name = nameOf(guide, project, moved);
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
    }
    return names.isEmpty() ? QString()
                           : QString::fromUtf8(Labels::canvasAlignedWith).arg(names.join(QStringLiteral(", ")));
}

} // namespace

// Pressing, dragging, releasing.

void CanvasView::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    const QPointF point = event->position();
    if (isActing())
        return; // a second button does not interfere
    if (event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && m_spaceHeld)) {
        m_action = Pan{point, m_viewport.scrollPosition()};
        showCursor(point);
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    QToolTip::hideText();
    m_before = {{m_state.selection(), m_state.overlaySelection(), m_state.textSelection()},
                m_state.inspectorTab(),
                m_state.editorMode()};
    const Hit hit = hitAt(point);
    if (hit.kind == Hit::Kind::link)
        m_action = LinkPress{};
    else if (hit.kind == Hit::Kind::badge)
        m_state.selectItem(hit.id);
    else if (m_state.editorMode() == EditorMode::background)
        pressBackground(hit, point);
    else
        pressContents(hit, point);
}

void CanvasView::pressContents(const Hit& hit, QPointF point)
{
    if (hit.kind == Hit::Kind::icon) {
        m_state.selectItem(hit.id);
        m_action = IconPress{hit.id, point};
    } else if (hit.kind == Hit::Kind::background) {
        selectNothing(m_state);
    }
}

void CanvasView::pressBackground(const Hit& hit, QPointF point)
{
    if (hit.kind == Hit::Kind::text)
        beginBox(Kind::text, point);
    else if (hit.kind == Hit::Kind::overlay)
        beginBox(Kind::overlay, point);
    else if (hit.kind == Hit::Kind::background) {
        m_state.selectOverlay({});
        if (m_state.hasBackgroundImage()) {
            const DMGProject& project = m_state.project();
            const Point offsets{project.backgroundImageOffsetX, project.backgroundImageOffsetY};
            m_action = BackgroundPress{{offsets, m_viewport.placement().toView(point)}, point};
        }
    }
}

void CanvasView::beginBox(CanvasElement::Kind kind, QPointF point)
{
    const bool text = kind == Kind::text;
    const CanvasPlacement place = m_viewport.placement();
    const auto boxes = text ? TextLayer::boxes(m_state.project()) : OverlayLayer::boxes(m_state.project());
    const auto selected = text ? m_state.textSelection() : m_state.overlaySelection();
    const auto drag = beginBoxDrag(place.toView(point), boxes, selected, place.scale);
    if (!drag)
        return;
    if (selected != drag->id)
        select(m_state, {kind, drag->id});
    m_action = BoxPress{*drag, kind};
    if (!drag->handle)
        setCursor(Qt::ClosedHandCursor);
    updateElement({kind, drag->id});
}

void CanvasView::mouseMoveEvent(QMouseEvent* event)
{
    event->accept();
    const bool held = event->buttons() & (Qt::LeftButton | Qt::MiddleButton);
    if (isActing() && !held)
        finish(Ending::done); // the release went elsewhere
    if (isActing())
        drag(event->position());
    else
        showCursor(event->position());
}

void CanvasView::drag(QPointF point)
{
    if (auto* icon = std::get_if<IconPress>(&m_action))
        dragIconTo(*icon, point);
    else if (auto* box = std::get_if<BoxPress>(&m_action))
        dragBoxTo(*box, point);
    else if (auto* background = std::get_if<BackgroundPress>(&m_action))
        dragBackgroundTo(*background, point);
    else if (const auto* pan = std::get_if<Pan>(&m_action)) {
        m_viewport.scrollTo(pan->scroll - (point - pan->start));
        layOut();
    }
}

void CanvasView::dragIconTo(IconPress& press, QPointF point)
{
    if (!press.dragging && !isDrag(press.start, point))
        return;
    m_state.selectItem(press.id);
    const auto binding = m_state.binding(press.id);
    if (!binding)
        return finish(Ending::done);
    if (!press.dragging) {
        press.dragging = true;
        setCursor(Qt::ClosedHandCursor);
        m_state.beginGesture();
    }
    const CanvasPlacement place = m_viewport.placement();
    const DMGProject& project = m_state.project();
    const IconDrag moved = dragIcon(press.id, place.toView(point), place.scale, project.items, project.contentSize());
    updateGuides(shown(moved.guides));
    DMGItem item = binding->read();
    item.setPosition(moved.position);
    binding->write(item);
}

void CanvasView::dragBoxTo(BoxPress& press, QPointF point)
{
    const CanvasPlacement place = m_viewport.placement();
    const DMGProject& project = m_state.project();
    const Rect before = press.drag.liveBounds;
    continueBoxDrag(press.drag, place.toView(point), place.scale,
                    {project.contentSize(), project.items, project.iconSize});
    updateGuides(shown(press.drag.guides));
    if (press.drag.liveBounds == before)
        return;
    for (const Rect& bounds : {before, press.drag.liveBounds}) {
        updateInContent(boxSelectionArea(bounds, place.scale));
        if (const DMGTextOverlay* text = findElement(project.textOverlays, press.drag.id)) {
            DMGTextOverlay there = *text;
            there.setBounds(bounds);
            updateInContent(TextLayer::inkArea(there, place.scale));
        }
    }
    emit boxDragged(press.drag.id, press.drag.liveBounds);
}

void CanvasView::dragBackgroundTo(BackgroundPress& press, QPointF point)
{
    if (!press.dragging && !isDrag(press.start, point))
        return;
    m_state.setSelection({});
    if (!press.dragging) {
        press.dragging = true;
        setCursor(Qt::ClosedHandCursor);
        m_state.beginGesture();
    }
    const CanvasPlacement place = m_viewport.placement();
    const Point offsets = press.drag.offsets(place.toView(point), place.scale);
    m_state.edit({"backgroundOffset", {}}, [&](DMGProject& project) {
        project.backgroundImageOffsetX = offsets.x;
        project.backgroundImageOffsetY = offsets.y;
    });
}

void CanvasView::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    if (event->button() == Qt::LeftButton && std::holds_alternative<LinkPress>(m_action) &&
        hitAt(event->position()).kind == Hit::Kind::link) {
        m_action = {};
        m_state.addFilesViaPanel();
        return;
    }
    const bool pan = std::holds_alternative<Pan>(m_action);
    if (event->button() == Qt::LeftButton || (pan && event->button() == Qt::MiddleButton))
        finish(Ending::done);
    showCursor(event->position());
}

void CanvasView::finish(Ending ending)
{
    const Action action = std::exchange(m_action, Action{});
    if (std::holds_alternative<std::monostate>(action))
        return;
    if (const auto* icon = std::get_if<IconPress>(&action))
        finishIcon(*icon, ending);
    else if (const auto* box = std::get_if<BoxPress>(&action))
        finishBox(*box, ending);
    else if (const auto* background = std::get_if<BackgroundPress>(&action); background && background->dragging) {
        if (ending == Ending::done)
            m_state.endGesture();
        else
            m_state.cancelGesture();
        redrawAll();
    }
    updateGuides({});
    if (const auto* pan = std::get_if<Pan>(&action); pan && ending == Ending::givenUp) {
        m_viewport.scrollTo(pan->scroll);
        layOut();
    } else if (ending == Ending::givenUp) {
        restoreSelections();
    }
    setCursor(m_spaceHeld ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

void CanvasView::finishIcon(const IconPress& press, Ending ending)
{
    if (!press.dragging) {
        if (ending == Ending::done)
            m_state.setInspectorTab(InspectorTab::arrange);
        return;
    }
    if (ending == Ending::givenUp) {
        m_state.cancelGesture();
    } else {
        m_state.endGesture();
        const CanvasElement element{Kind::item, press.id};
        m_aligned = {element, alignmentOf(m_guides, m_state.project(), press.id)};
        announceMoved(*this, element);
    }
    updateElement({Kind::item, press.id});
}

void CanvasView::finishBox(const BoxPress& press, Ending ending)
{
    const CanvasElement element{press.kind, press.drag.id};
    if (ending == Ending::done) {
        if (press.kind == Kind::text)
            m_state.commitTextOverlayBounds(element.id, press.drag.liveBounds);
        else
            m_state.commitOverlayBounds(element.id, press.drag.liveBounds);
        m_aligned = {element, alignmentOf(m_guides, m_state.project(), element.id)};
        announceMoved(*this, element);
    } else {
        emit boxDragged(element.id, press.drag.startBounds);
    }
    update();
}

void CanvasView::restoreSelections()
{
    if (m_state.selection() != m_before.selections.item)
        m_state.selectItem(m_before.selections.item);
    if (m_state.overlaySelection() != m_before.selections.overlay)
        m_state.selectOverlay(m_before.selections.overlay);
    if (m_state.textSelection() != m_before.selections.text)
        m_state.selectTextOverlay(m_before.selections.text);
    m_state.setEditorMode(m_before.mode);
    m_state.setInspectorTab(m_before.tab);
}

void CanvasView::enterEvent(QEnterEvent* /*event*/)
{
    // Another program may have saved a picture while the pointer was there.
    if (!isActing())
        lookAtFilesAgain();
}

void CanvasView::leaveEvent(QEvent* /*event*/)
{
    if (std::exchange(m_linkHovered, false))
        update();
}

// Scrolling and zooming.

void CanvasView::wheelEvent(QWheelEvent* event)
{
    event->accept();
    if (isActing())
        return;
    if (event->modifiers() & Qt::ControlModifier) {
        constexpr double perEighthOfADegree = 1.0015;
        m_viewport.zoomAt(event->position(),
                          m_viewport.scale() * std::pow(perEighthOfADegree, event->angleDelta().y()));
        watchView();
        return;
    }
    constexpr double pointsPerEighthOfADegree = 0.5;
    QPointF distance = event->pixelDelta().isNull() ? QPointF(event->angleDelta()) * pointsPerEighthOfADegree
                                                    : QPointF(event->pixelDelta());
    if (event->modifiers() & Qt::ShiftModifier && distance.x() == 0)
        distance = distance.transposed();
    panBy(distance);
}

void CanvasView::panBy(QPointF distance)
{
    m_viewport.scrollTo(m_viewport.scrollPosition() - distance);
    layOut();
}

bool CanvasView::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::NativeGesture: {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() != Qt::ZoomNativeGesture || isActing())
            break;
        m_viewport.zoomAt(gesture->position(), m_viewport.scale() * (1 + gesture->value()));
        watchView();
        return true;
    }
    case QEvent::Gesture: {
        auto* gestures = static_cast<QGestureEvent*>(event);
        const auto* pinch = static_cast<QPinchGesture*>(gestures->gesture(Qt::PinchGesture));
        if (!pinch)
            break;
        finish(Ending::givenUp);
        m_viewport.zoomAt(mapFromGlobal(pinch->hotSpot()), m_viewport.scale() * pinch->scaleFactor());
        watchView();
        return true;
    }
    case QEvent::ToolTip: {
        const auto* help = static_cast<QHelpEvent*>(event);
        if (showToolTip(help->pos(), help->globalPos()))
            return true;
        QToolTip::hideText();
        event->ignore();
        return true;
    }
    case QEvent::UngrabMouse:
        finish(Ending::done);
        break;
    case QEvent::ShortcutOverride: {
        // The commands of menus would get the keys first, and during a drag none of them may come between.
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool own = key->modifiers() == Qt::NoModifier || key->modifiers() == Qt::KeypadModifier;
        const bool canvasKey = key->key() == Qt::Key_Delete || key->key() == Qt::Key_Backspace ||
                               key->key() == Qt::Key_Escape || key->key() == Qt::Key_Space;
        if (isActing() || (own && canvasKey)) {
            event->accept();
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QWidget::event(event);
}

bool CanvasView::showToolTip(QPointF point, const QPoint& globalPoint)
{
    const Hit hit = hitAt(point);
    QString text;
    if (hit.kind == Hit::Kind::icon || hit.kind == Hit::Kind::badge) {
        text = m_scene.warningText(hit.id);
    } else if (hit.kind == Hit::Kind::overlay) {
        const DMGOverlayImage* overlay = findElement(m_state.project().overlayImages, hit.id);
        if (overlay && m_scene.isMissing(*overlay))
            text = QString::fromUtf8(Labels::canvasMissingPicture).arg(QString::fromStdString(overlay->sourcePath));
    }
    if (text.isEmpty())
        return false;
    // Names are anybody's text and must not be read as markup.
    QToolTip::showText(globalPoint, Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal), this);
    return true;
}

// Dropped files.

void CanvasView::dropFile(const std::filesystem::path& file, QPointF point)
{
    if (m_state.editorMode() == EditorMode::background && AppState::isImageURL(file)) {
        m_state.addOverlayImage(file, m_viewport.placement().toContent(point));
        return;
    }
    m_state.addFiles({file});
    m_state.setEditorMode(EditorMode::contents);
}

} // namespace velmora
