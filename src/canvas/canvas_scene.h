#pragma once

#include "canvas/box_drawing.h"
#include "canvas/canvas_colors.h"
#include "canvas/canvas_elements.h"
#include "canvas/canvas_viewport.h"
#include "canvas/canvas_warnings.h"
#include "canvas/icon_drawing.h"
#include "canvas/window_drawing.h"
#include "editor/app_state.h"
#include "render/background_renderer.h"

#include <QImage>
#include <QPainter>
#include <QRectF>

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

namespace velmora
{

/// What a drawing of the canvas shows beside the editor's state.
struct SceneView {
    QSizeF region{};  ///< of the widget
    double ratio = 1; ///< device pixels a point
    CanvasPlacement place{};
    bool dropTarget = false;
    bool linkHovered = false;
    bool backgroundMoves = false;
    std::optional<CanvasElement> moving{};
    std::optional<Rect> liveBounds{}; ///< the moving box's, content points
    std::vector<ShownGuide> guides{};
};

/// Draws the canvas: the drawn window on graph paper, from back to front. What lies behind and before a moving thing is
/// kept as pictures of the visible part, so that a drag draws only what moves.
class CanvasScene
{
public:
    CanvasScene(const AppState& state, const ThemeManager& themes, const BuiltInArrowLibrary& arrows,
                OverlayImageCache& cache);

    /// Draws what lies in `dirty` (widget points).
    void paint(QPainter& painter, const QRect& dirty, const SceneView& view);
    /// What is kept no longer shows the state.
    void invalidate() { ++m_generation; }

    /// What is to be warned of; kept until the next call of refreshWarnings().
    [[nodiscard]] const std::vector<CanvasWarning>& warnings() const { return m_warnings; }
    /// Returns whether anything changed.
    bool refreshWarnings();
    /// What the canvas says about an item; empty when all is well.
    [[nodiscard]] QString warningText(const Uuid& item) const;

    /// Whether an overlay has no picture to draw.
    [[nodiscard]] bool isMissing(const DMGOverlayImage& overlay);
    /// Whether the hint is shown that files may be dropped: there is none yet.
    static bool showsEmptyHint(const DMGProject& project);

    IconDrawing& icons() { return m_icons; }
    /// From now on files may have changed.
    void expirePictures();

private:
    enum class Part { surroundings, background, overlay, text, icon };
    struct Stop {
        Part part = Part::surroundings;
        std::size_t index = 0; ///< in the project's list
    };
    /// Half-open ranges of the stops while something moves; everything is at rest when `moving` is the end.
    struct Plan {
        std::vector<Stop> stops{};
        std::size_t baseEnd = 0; ///< guides of boxes lie right above
        std::size_t moving = 0;
    };
    struct LayerKey {
        int generation = -1;
        QSizeF region{};
        double ratio = 0;
        CanvasPlacement place{};
        bool dropTarget = false;
        AppTheme theme = AppTheme::system;
        QColor accent{};
        bool operator==(const LayerKey&) const = default;
    };
    struct MovingKey {
        std::optional<CanvasElement> element{};
        bool background = false;
        std::optional<Uuid> selections[3]{};
        bool operator==(const MovingKey&) const = default;
    };

    [[nodiscard]] Plan plan(const SceneView& view) const;
    void refreshLayers(const SceneView& view, const Plan& plan);
    QImage layer(const SceneView& view, const Plan& plan, std::size_t begin, std::size_t end);
    void drawStops(QPainter& painter, const QRectF& clip, const SceneView& view, const Plan& plan, std::size_t begin,
                   std::size_t end);
    void drawStop(QPainter& painter, const QRectF& clip, const SceneView& view, const Stop& stop);
    void drawSurroundings(QPainter& painter, const SceneView& view);
    void drawBackground(QPainter& painter, const QRectF& clip, const SceneView& view);
    void drawOverlay(QPainter& painter, const QRectF& clip, const SceneView& view, DMGOverlayImage overlay);
    void drawText(QPainter& painter, const QRectF& clip, const SceneView& view, DMGTextOverlay text);
    void drawIcon(QPainter& painter, const QRectF& clip, const SceneView& view, const DMGItem& item);
    void drawGuides(QPainter& painter, const SceneView& view) const;
    void drawAbove(QPainter& painter, const SceneView& view);
    [[nodiscard]] RenderContext context() const { return {m_arrows, m_cache, {}, nullptr}; }
    [[nodiscard]] bool inBackgroundMode() const { return m_state.editorMode() == EditorMode::background; }

    const AppState& m_state;
    const ThemeManager& m_themes;
    const BuiltInArrowLibrary& m_arrows;
    OverlayImageCache& m_cache;
    CanvasPictures m_pictures{};
    IconDrawing m_icons{m_pictures};
    WindowShadow m_shadow{};
    std::vector<CanvasWarning> m_warnings{};
    std::set<decltype(Uuid::bytes)> m_badged{}; ///< the items with a badge on their icon
    CanvasColors m_colors{};                    ///< of the present drawing
    int m_generation = 0;
    LayerKey m_key{};
    std::optional<MovingKey> m_movingKey{}; ///< nothing while all is at rest
    bool m_baseIsBare = false;              ///< the base ends above the background
    QImage m_surroundings{};
    QImage m_base{};
    QImage m_under{};
    QImage m_over{};
};

} // namespace velmora
