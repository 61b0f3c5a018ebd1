#pragma once

#include "editor/app_state.h"

#include <QString>

#include <optional>
#include <vector>

namespace velmora
{

/// Something on the canvas that can be selected.
struct CanvasElement {
    enum class Kind { item, overlay, text };
    Kind kind = Kind::item;
    Uuid id{};
    bool operator==(const CanvasElement&) const = default;
};

/// What can be selected in the mode, in the order in which Tab walks: the visible items; in background mode the
/// overlays, then the captions.
std::vector<CanvasElement> canvasElements(const DMGProject& project, EditorMode mode);
/// What is selected: in background mode a caption before an overlay before an item, which can still be chosen in the
/// list of items there; elsewhere the item.
std::optional<CanvasElement> selectedElement(const AppState& state);
/// The element after the selected one, or before it; without a selection the first, or the last. Nothing at the end.
std::optional<CanvasElement> neighbour(const AppState& state, bool forward);
/// Selects without switching tabs where the editor does not do so itself.
void select(AppState& state, const CanvasElement& element);
/// Takes every selection away.
void selectNothing(AppState& state);

/// For a person who cannot see it: name, kind, place, and size where it has one: "Larkspur.app, application, at 169,
/// 166". Empty when there is no such element.
QString describe(const CanvasElement& element, const DMGProject& project);
/// The name alone.
QString nameOf(const CanvasElement& element, const DMGProject& project);

} // namespace velmora
