#include "canvas/geometry/overlay_snap.h"

#include <algorithm>
#include <cmath>

namespace velmora::OverlaySnap
{
namespace
{

/// The nearest-candidate rule: what is offered later wins a tie, and exactly the threshold is still near.
class Nearest
{
public:
    explicit Nearest(double threshold) : m_best(threshold) {}

    bool offer(double distance)
    {
        if (!(distance <= m_best))
            return false;
        m_best = distance;
        return true;
    }

private:
    double m_best;
};

/// A line that a box may be brought to with the point `anchor` of its width: 0 its left edge, 1 its right edge.
struct XSnap {
    double anchor = 0.5;
    double target = 0;

    [[nodiscard]] double distance(const Rect& box) const { return std::abs(box.x + box.width * anchor - target); }
    [[nodiscard]] double placed(const Rect& box) const { return target - box.width * anchor; }
};

std::vector<XSnap> xSnaps(std::span<const DMGItem> items, double iconSize, double centerX)
{
    const double half = halfCell(iconSize);
    std::vector<XSnap> snaps;
    snaps.reserve(items.size() * 3 + 1);
    for (const auto& item : items) {
        if (item.hidden)
            continue;
        snaps.push_back({0.5, item.x});
        snaps.push_back({1, item.x - half});
        snaps.push_back({0, item.x + half});
    }
    snaps.push_back({0.5, centerX});
    return snaps;
}

void snapVertically(SnapResult& result, std::span<const DMGItem> items, double centerY, double threshold)
{
    std::vector<double> lines;
    lines.reserve(items.size() + 1);
    for (const auto& item : items) {
        if (!item.hidden)
            lines.push_back(item.y);
    }
    lines.push_back(centerY);

    auto& box = result.bounds;
    const auto snapped = snapValue(box.y + box.height / 2, lines, threshold);
    if (!snapped.guide)
        return;
    box.y = *snapped.guide - box.height / 2;
    result.guides.push_back({false, *snapped.guide});
}

void snapHorizontally(SnapResult& result, std::span<const XSnap> snaps, double threshold)
{
    Nearest nearest(threshold);
    const XSnap* chosen = nullptr;
    for (const auto& snap : snaps) {
        if (nearest.offer(snap.distance(result.bounds)))
            chosen = &snap;
    }
    if (chosen == nullptr)
        return;
    result.bounds.x = chosen->placed(result.bounds);
    result.guides.push_back({true, chosen->target});
}

} // namespace

SnapValue snapValue(double value, std::span<const double> candidates, double threshold)
{
    SnapValue result{value, std::nullopt};
    Nearest nearest(threshold);
    for (const double candidate : candidates) {
        if (nearest.offer(std::abs(candidate - value)))
            result = {candidate, candidate};
    }
    return result;
}

double halfCell(double iconSize)
{
    return std::max(64.0, iconSize * 1.7) / 2;
}

SnapResult snapMove(const Rect& bounds, Size contentSize, std::span<const DMGItem> items, double iconSize,
                    double threshold)
{
    SnapResult result{bounds, {}};
    snapVertically(result, items, contentSize.height / 2, threshold);
    snapHorizontally(result, xSnaps(items, iconSize, contentSize.width / 2), threshold);

    // The far edge has the last word here: a box larger than the window ends flush with it, at a negative origin.
    auto& box = result.bounds;
    box.x = std::min(std::max(box.x, 0.0), contentSize.width - box.width);
    box.y = std::min(std::max(box.y, 0.0), contentSize.height - box.height);
    return result;
}

Rect centeredBounds(const Rect& bounds, Size contentSize, bool horizontal, bool vertical)
{
    Rect box = bounds;
    if (horizontal)
        box.x = (contentSize.width - box.width) / 2;
    if (vertical)
        box.y = (contentSize.height - box.height) / 2;
    // The near edge has the last word here, other than in snapMove.
    box.x = std::min(std::max(contentSize.width - box.width, 0.0), std::max(box.x, 0.0));
    box.y = std::min(std::max(contentSize.height - box.height, 0.0), std::max(box.y, 0.0));
    return box;
}

} // namespace velmora::OverlaySnap
