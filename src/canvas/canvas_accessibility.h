#pragma once

#include "canvas/canvas_elements.h"

#include <optional>

namespace velmora
{

class CanvasView;

/// Lets assistive technology see every canvas as a list of its objects. Once is enough, more do no harm.
void installCanvasAccessibility();
/// Tells it that another element is selected, or none.
void announceSelection(CanvasView& canvas, const std::optional<CanvasElement>& element);
/// Tells it that an element has come to rest somewhere else.
void announceMoved(CanvasView& canvas, const CanvasElement& element);

} // namespace velmora
