// The canvas widget: what it shows and how it follows the editor's state. What a hand does is in canvas_input.cpp.

#include "canvas/canvas_view.h"

#include "canvas/canvas_accessibility.h"
#include "canvas/file_drop.h"
#include "canvas/geometry/canvas_scale.h"
#include "canvas/hint_capsule.h"
#include "canvas/qt_rect.h"
#include "canvas/text_layer.h"
#include "canvas/zoom_control.h"
#include "l10n/labels.h"
#include "model/document.h"

#include <QPaintEvent>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace velmora
{
namespace
{

constexpr int scrollBarWidth = 12;
constexpr int zoomControlInset = 12;

/// Whether anything differs that is drawn below the items.
bool sameBackdrop(const DMGProject& a, const DMGProject& b)
{
    const auto fields = [](const DMGProject& p) {
        return std::tie(p.volumeName, p.windowWidth, p.windowHeight, p.backgroundKind, p.backgroundColor,
                        p.gradientStart, p.gradientEnd, p.gradientAngle, p.backgroundImagePath, p.backgroundImageFit,
                        p.backgroundImageScale, p.backgroundImageOffsetX, p.backgroundImageOffsetY, p.overlayImages,
                        p.textOverlays);
    };
    return fields(a) == fields(b);
}

bool onlyOffsetsDiffer(DMGProject a, const DMGProject& b)
{
    a.backgroundImageOffsetX = b.backgroundImageOffsetX;
    a.backgroundImageOffsetY = b.backgroundImageOffsetY;
    return sameBackdrop(a, b);
}

/// Whether the icons are drawn alike but for their items.
bool sameIconLook(const DMGProject& a, const DMGProject& b)
{
    return a.iconSize == b.iconSize && a.textSize == b.textSize && a.labelOnBottom == b.labelOnBottom &&
           a.items.size() == b.items.size();
}

} // namespace

CanvasView::CanvasView(AppState& state, ThemeManager& themes, const BuiltInArrowLibrary& arrows,
                       OverlayImageCache& cache, QWidget* parent)
    : QWidget(parent),
      m_state(state),
      m_themes(themes),
      m_scene(state, themes, arrows, cache),
      m_drop(new DropSurface(this)),
      m_hintDrop(new DropSurface(this)),
      m_zoomControl(new ZoomControl(themes, this)),
      m_across(new QScrollBar(Qt::Horizontal, this)),
      m_down(new QScrollBar(Qt::Vertical, this))
{
    installCanvasAccessibility(); // before the name, which asks for the interface: the first answer is kept
    setObjectName(QStringLiteral("canvas"));
    setAccessibleName(QString::fromUtf8(Labels::canvas));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    grabGesture(Qt::PinchGesture);

    for (QScrollBar* bar : {m_across, m_down}) {
        bar->setFocusPolicy(Qt::NoFocus);
        bar->setCursor(Qt::ArrowCursor);
        bar->hide();
        connect(bar, &QScrollBar::valueChanged, this, &CanvasView::scrollBarMoved);
    }
    connect(m_zoomControl, &ZoomControl::zoomChosen, this, &CanvasView::setZoom);
    m_hintDrop->leaveToOthers(Document::fileExtension);
    for (DropSurface* surface : {m_drop, m_hintDrop}) {
        connect(surface, &DropSurface::dropped, this, &CanvasView::dropFile);
        connect(surface, &DropSurface::targetedChanged, this, [this](bool targeted) {
            m_dropTarget = targeted;
            update();
        });
    }
    m_reading.setSingleShot(true);
    connect(&m_reading, &QTimer::timeout, this, [this] {
        m_scene.icons().icons().readSome();
        redrawAll();
    });
    connectState();
    m_viewport.setContentSize(state.project().contentSize());
    projectDidChange();
}

CanvasView::~CanvasView() = default;

void CanvasView::connectState()
{
    connect(&m_state, &AppState::projectChanged, this, &CanvasView::projectDidChange);
    for (auto changed :
         {&AppState::selectionChanged, &AppState::overlaySelectionChanged, &AppState::textSelectionChanged})
        connect(&m_state, changed, this, &CanvasView::selectionDidChange);
    connect(&m_state, &AppState::editorModeChanged, this, [this] {
        finish(Ending::done);
        redrawAll();
        selectionDidChange();
    });
    connect(&m_state, &AppState::objectChanged, this, &CanvasView::lookAtFilesAgain);
    connect(&m_state, &AppState::documentURLChanged, this, &CanvasView::lookAtFilesAgain);
    connect(&m_themes, &ThemeManager::themeChanged, this, &CanvasView::redrawAll);
}

SceneView CanvasView::sceneView() const
{
    SceneView view;
    view.region = size();
    view.ratio = devicePixelRatioF();
    view.place = m_viewport.placement();
    view.dropTarget = m_dropTarget;
    view.linkHovered = m_linkHovered;
    view.guides = m_guides;
    if (const auto* icon = std::get_if<IconPress>(&m_action); icon && icon->dragging)
        view.moving = CanvasElement{CanvasElement::Kind::item, icon->id};
    if (const auto* box = std::get_if<BoxPress>(&m_action)) {
        view.moving = CanvasElement{box->kind, box->drag.id};
        view.liveBounds = box->drag.liveBounds;
    }
    if (const auto* background = std::get_if<BackgroundPress>(&m_action))
        view.backgroundMoves = background->dragging;
    return view;
}

void CanvasView::paintEvent(QPaintEvent* event)
{
    m_viewport.setRegion(size(), devicePixelRatioF());
    QPainter painter(this);
    m_scene.paint(painter, event->rect(), sceneView());
    if (m_scene.icons().icons().hasUnread())
        m_reading.start(0);
}

void CanvasView::resizeEvent(QResizeEvent* /*event*/)
{
    layOut();
}

void CanvasView::showEvent(QShowEvent* /*event*/)
{
    layOut();
}

void CanvasView::hideEvent(QHideEvent* /*event*/)
{
    finish(Ending::done);
}

void CanvasView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange) {
        if (!isActiveWindow()) {
            finish(Ending::done);
            m_spaceHeld = false;
        } else {
            lookAtFilesAgain();
        }
    } else if (event->type() == QEvent::FontChange || event->type() == QEvent::LanguageChange) {
        m_zoomControl->showZoom(zoom());
        layOut();
        redrawAll();
    }
    QWidget::changeEvent(event);
}

void CanvasView::layOut()
{
    m_viewport.setRegion(size(), devicePixelRatioF());
    m_viewport.scrollTo(m_viewport.scrollPosition());
    placeDropSurfaces();

    const QSizeF range = m_viewport.scrollRange();
    const QPointF position = m_viewport.scrollPosition();
    const auto show = [](QScrollBar* bar, double extent, double value, int page) {
        constexpr double mostRange = 1e8;
        const QSignalBlocker blocker(bar);
        bar->setRange(0, static_cast<int>(std::ceil(std::min(extent, mostRange))));
        bar->setPageStep(page);
        bar->setSingleStep(20);
        bar->setValue(static_cast<int>(std::lround(std::min(value, mostRange))));
        bar->setVisible(extent >= 1);
    };
    show(m_across, range.width(), position.x(), width());
    show(m_down, range.height(), position.y(), height());
    const int corner = range.width() >= 1 && range.height() >= 1 ? scrollBarWidth : 0;
    m_across->setGeometry(0, height() - scrollBarWidth, width() - corner, scrollBarWidth);
    m_down->setGeometry(width() - scrollBarWidth, 0, scrollBarWidth, height() - corner);

    constexpr int inset = zoomControlInset - ZoomControl::margin;
    const int right = range.height() >= 1 ? scrollBarWidth : 0;
    const int bottom = range.width() >= 1 ? scrollBarWidth : 0;
    m_zoomControl->move(width() - m_zoomControl->width() - std::max(inset, right),
                        height() - m_zoomControl->height() - std::max(inset, bottom));
    m_zoomControl->raise();
    update();
}

void CanvasView::placeDropSurfaces()
{
    const QRectF window = m_viewport.placement().window();
    m_drop->setGeometry((window & QRectF(rect())).toAlignedRect());
    m_hintDrop->setVisible(CanvasScene::showsEmptyHint(m_state.project()));
    m_hintDrop->setGeometry(EmptyHint(window, size()).area().toAlignedRect());
}

void CanvasView::scrollBarMoved()
{
    const QPointF now = m_viewport.scrollPosition();
    const auto moved = [](const QScrollBar* bar, double value) {
        return std::lround(value) == bar->value() ? value : static_cast<double>(bar->value());
    };
    m_viewport.scrollTo({moved(m_across, now.x()), moved(m_down, now.y())});
    layOut();
}

void CanvasView::watchView()
{
    m_zoomControl->showZoom(zoom());
    layOut();
}

void CanvasView::setZoom(std::optional<double> zoom)
{
    m_viewport.setRegion(size(), devicePixelRatioF()); // a new widget has not been laid out yet
    m_viewport.setZoom(zoom);
    watchView();
}

void CanvasView::zoomIn()
{
    constexpr double hair = 1e-9;
    for (const double preset : CanvasScale::zoomPresets) {
        if (preset > m_viewport.scale() + hair)
            return setZoom(preset);
    }
}

void CanvasView::zoomOut()
{
    constexpr double hair = 1e-9;
    for (auto preset = CanvasScale::zoomPresets.rbegin(); preset != CanvasScale::zoomPresets.rend(); ++preset) {
        if (*preset < m_viewport.scale() - hair)
            return setZoom(*preset);
    }
}

void CanvasView::zoomToFit()
{
    setZoom({});
}

void CanvasView::redrawAll()
{
    m_scene.invalidate();
    update();
}

void CanvasView::updateInContent(const QRectF& viewArea)
{
    // What is seen of it first: an absurd window has edges beyond whole numbers.
    const QRectF area = viewArea.translated(m_viewport.placement().content.topLeft()).adjusted(-1, -1, 1, 1);
    update((area & QRectF(rect())).toAlignedRect());
}

void CanvasView::updateContent()
{
    update((m_viewport.placement().content & QRectF(rect())).toAlignedRect());
}

QRectF CanvasView::areaOf(const CanvasElement& element)
{
    const CanvasPlacement place = m_viewport.placement();
    const DMGProject& project = m_state.project();
    const QPointF corner = place.content.topLeft();
    switch (element.kind) {
    case CanvasElement::Kind::item:
        if (const DMGItem* item = findElement(project.items, element.id))
            return toQRectF(m_scene.icons().areas(*item, project, place.scale, false).block, corner);
        break;
    case CanvasElement::Kind::overlay:
        if (const DMGOverlayImage* overlay = findElement(project.overlayImages, element.id))
            return toQRectF(BoxGeometry::viewRect(overlay->bounds(), place.scale), corner);
        break;
    case CanvasElement::Kind::text:
        if (const DMGTextOverlay* text = findElement(project.textOverlays, element.id))
            return toQRectF(BoxGeometry::viewRect(text->bounds(), place.scale), corner);
        break;
    }
    return {};
}

void CanvasView::updateElement(const CanvasElement& element)
{
    const double scale = m_viewport.scale();
    const DMGProject& project = m_state.project();
    if (element.kind == CanvasElement::Kind::item) {
        if (const DMGItem* item = findElement(project.items, element.id))
            updateInContent(toQRectF(m_scene.icons().inkArea(*item, project, scale)));
    } else if (element.kind == CanvasElement::Kind::overlay) {
        if (const DMGOverlayImage* overlay = findElement(project.overlayImages, element.id))
            updateInContent(boxSelectionArea(overlay->bounds(), scale));
    } else if (const DMGTextOverlay* text = findElement(project.textOverlays, element.id)) {
        updateInContent(boxSelectionArea(text->bounds(), scale) | TextLayer::inkArea(*text, scale));
    }
}

void CanvasView::updateGuides(const std::vector<ShownGuide>& guides)
{
    if (guides == m_guides)
        return;
    const CanvasPlacement place = m_viewport.placement();
    for (const std::vector<ShownGuide>* list : {&std::as_const(m_guides), &guides}) {
        for (const ShownGuide& guide : *list)
            updateInContent(guideArea(guide, place.content.size(), place.scale));
    }
    m_guides = guides;
}

QString CanvasView::alignment(const CanvasElement& element) const
{
    return m_aligned && m_aligned->first == element ? m_aligned->second : QString();
}

void CanvasView::projectDidChange()
{
    const DMGProject& now = m_state.project();
    m_aligned.reset();
    const double scale = m_viewport.scale();
    if (now.windowWidth != m_shown.windowWidth || now.windowHeight != m_shown.windowHeight) {
        m_viewport.setContentSize(now.contentSize());
        layOut();
    }
    const auto* background = std::get_if<BackgroundPress>(&m_action);
    if (background && background->dragging && onlyOffsetsDiffer(m_shown, now))
        updateContent(); // what is kept does not hold the background while it moves
    else if (!sameBackdrop(m_shown, now))
        redrawAll();

    if (!sameIconLook(m_shown, now)) {
        redrawAll();
    } else {
        const auto* icon = std::get_if<IconPress>(&m_action);
        for (std::size_t i = 0; i < now.items.size(); ++i) {
            const DMGItem& before = m_shown.items[i];
            const DMGItem& after = now.items[i];
            if (before == after)
                continue;
            updateInContent(toQRectF(m_scene.icons().inkArea(before, m_shown, scale)));
            updateInContent(toQRectF(m_scene.icons().inkArea(after, now, scale)));
            if (!icon || icon->id != after.id)
                m_scene.invalidate();
        }
    }
    m_shown = now;
    placeDropSurfaces();
    if (m_scene.refreshWarnings())
        redrawAll();
}

void CanvasView::selectionDidChange()
{
    const std::optional<CanvasElement> now = selectedElement(m_state);
    if (now == m_shownSelection)
        return;
    m_aligned.reset();
    for (const auto& element : {m_shownSelection, now}) {
        if (element)
            updateElement(*element);
    }
    m_shownSelection = now;
    announceSelection(*this, now);
}

void CanvasView::lookAtFilesAgain()
{
    m_scene.expirePictures();
    m_scene.refreshWarnings();
    redrawAll();
}

} // namespace velmora
