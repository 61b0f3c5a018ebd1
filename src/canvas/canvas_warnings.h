#pragma once

#include "canvas/item_icons.h"
#include "model/project.h"

#include <QString>

#include <vector>

namespace velmora
{

/// Something about a visible item that would not be seen in the finished window as it is meant.
struct CanvasWarning {
    enum class Kind { missingSource, outsideWindow, sameName };
    Kind kind = Kind::missingSource;
    Uuid item{};
    QString text{}; ///< a sentence for a person; plain text
    Point place{};  ///< outsideWindow: where on the content area's edge its badge stands, content points
    bool operator==(const CanvasWarning&) const = default;
};

/// What is to be warned of, in project order. Names count as the same as on the image: without regard to case.
std::vector<CanvasWarning> canvasWarnings(const DMGProject& project, ItemIcons& icons);

/// Where the badge of an item outside the window is drawn and hit: at the edge nearest to the item. View points.
Rect edgeBadge(const CanvasWarning& warning, Size contentSize, double scale);

} // namespace velmora
