#pragma once

#include "model/geometry.h"

namespace velmora
{

struct DMGItem;
struct DMGProject;

/// Where an icon and its label lie. Content points.
namespace IconLayout
{

/// The cell that an icon with its label takes up.
Size slotSize(double iconSize, double textSize, bool labelOnBottom);
Size slotSize(const DMGProject& project);
/// The centre of an item's icon graphic, derived from the item's anchor.
Point graphicCenter(const DMGItem& item, const DMGProject& project);

} // namespace IconLayout
} // namespace velmora
