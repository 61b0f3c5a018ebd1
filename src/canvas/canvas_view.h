#pragma once

#include "canvas/background_drag.h"
#include "canvas/canvas_elements.h"
#include "canvas/canvas_scene.h"
#include "canvas/canvas_viewport.h"
#include "canvas/geometry/box_drag.h"
#include "editor/app_state.h"

#include <QTimer>
#include <QWidget>

#include <optional>
#include <variant>

class QScrollBar;

namespace velmora
{

class DropSurface;
class ZoomControl;

/// The canvas: the Finder window as the image will open it, drawn at a zoom on graph paper, and everything that a hand
/// does there. One widget; what lies on it are plain objects, asked from the topmost downward.
/// The references outlive it. Colours are read at every drawing.
class CanvasView : public QWidget
{
    Q_OBJECT

public:
    CanvasView(AppState& state, ThemeManager& themes, const BuiltInArrowLibrary& arrows, OverlayImageCache& cache,
               QWidget* parent = nullptr);
    ~CanvasView() override;

    [[nodiscard]] AppState& state() const { return m_state; }
    [[nodiscard]] const std::optional<double>& zoom() const { return m_viewport.zoom(); }
    /// Nothing: fit.
    void setZoom(std::optional<double> zoom);
    /// Where the drawn window lies, widget points.
    [[nodiscard]] CanvasPlacement placement() const { return m_viewport.placement(); }
    /// The drawn area of an element, widget points; empty when there is none.
    [[nodiscard]] QRectF areaOf(const CanvasElement& element);
    /// What is the matter with things on the canvas.
    [[nodiscard]] const std::vector<CanvasWarning>& warnings() const { return m_scene.warnings(); }
    /// Where the element was just brought to rest: "aligned with" and the names; empty when it is not the last one that
    /// was moved, or not aligned.
    [[nodiscard]] QString alignment(const CanvasElement& element) const;

public slots:
    /// The next larger preset, the next smaller one, or as large as the region allows.
    void zoomIn();
    void zoomOut();
    void zoomToFit();

signals:
    /// Return was pressed: the selection is to be edited in figures.
    void editSelectionRequested();
    /// An overlay's or caption's box while it is dragged, content points; the project learns of it at the end.
    void boxDragged(const Uuid& id, const Rect& bounds);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    // What the pressed button does.
    struct IconPress {
        Uuid id{};
        QPointF start{};
        bool dragging = false;
    };
    struct BoxPress {
        BoxDrag drag{};
        CanvasElement::Kind kind = CanvasElement::Kind::overlay;
    };
    struct BackgroundPress {
        BackgroundDrag drag{};
        QPointF start{};
        bool dragging = false;
    };
    struct Pan {
        QPointF start{};
        QPointF scroll{};
    };
    struct LinkPress {
    };
    using Action = std::variant<std::monostate, IconPress, BoxPress, BackgroundPress, Pan, LinkPress>;
    /// What a drag that is given up goes back to.
    struct Before {
        Selections selections{};
        int tab = 0;
        EditorMode mode = EditorMode::contents;
    };
    /// What lies under a point, the topmost.
    struct Hit {
        enum class Kind { nothing, link, badge, icon, text, overlay, background };
        Kind kind = Kind::nothing;
        Uuid id{};
        std::optional<OverlayResizeHandle> handle{};
    };
    /// Whether an action is carried through or given up.
    enum class Ending { done, givenUp };

    void connectState();
    void layOut();
    void placeDropSurfaces();
    void watchView();
    [[nodiscard]] SceneView sceneView() const;
    void updateContent();
    void updateInContent(const QRectF& viewArea);
    void updateElement(const CanvasElement& element);
    void updateGuides(const std::vector<ShownGuide>& guides);
    void redrawAll();
    void projectDidChange();
    void selectionDidChange();
    void lookAtFilesAgain();
    void scrollBarMoved();

    [[nodiscard]] Hit hitAt(QPointF point);
    [[nodiscard]] Hit hitInContents(QPointF point);
    [[nodiscard]] Hit hitInBackground(QPointF point) const;
    void showCursor(QPointF point);
    void pressContents(const Hit& hit, QPointF point);
    void pressBackground(const Hit& hit, QPointF point);
    void beginBox(CanvasElement::Kind kind, QPointF point);
    void drag(QPointF point);
    void dragIconTo(IconPress& press, QPointF point);
    void dragBoxTo(BoxPress& press, QPointF point);
    void dragBackgroundTo(BackgroundPress& press, QPointF point);
    void finish(Ending ending);
    void finishIcon(const IconPress& press, Ending ending);
    void finishBox(const BoxPress& press, Ending ending);
    void restoreSelections();
    [[nodiscard]] bool isActing() const { return !std::holds_alternative<std::monostate>(m_action); }
    void panBy(QPointF distance);
    bool zoomKey(const QKeyEvent& event);
    void nudge(double dx, double dy);
    bool walk(bool forward);
    void removeSelection();
    void dropFile(const std::filesystem::path& file, QPointF point);
    bool showToolTip(QPointF point, const QPoint& globalPoint);

    AppState& m_state;
    ThemeManager& m_themes;
    CanvasScene m_scene;
    CanvasViewport m_viewport{};
    DMGProject m_shown{}; ///< as last drawn, to redraw only what differs
    std::optional<CanvasElement> m_shownSelection{};
    Action m_action{};
    Before m_before{};
    std::vector<ShownGuide> m_guides{};
    /// The element that was moved last, and what it is aligned with.
    std::optional<std::pair<CanvasElement, QString>> m_aligned{};
    QTimer m_reading{};
    bool m_dropTarget = false;
    bool m_linkHovered = false;
    bool m_spaceHeld = false;
    DropSurface* m_drop = nullptr;
    DropSurface* m_hintDrop = nullptr; ///< over the hint that asks for files
    ZoomControl* m_zoomControl = nullptr;
    QScrollBar* m_across = nullptr;
    QScrollBar* m_down = nullptr;
};

} // namespace velmora
