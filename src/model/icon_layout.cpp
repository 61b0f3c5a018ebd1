#include "model/icon_layout.h"

#include "model/project.h"

#include <algorithm>

namespace velmora::IconLayout
{

Size slotSize(double iconSize, double textSize, bool labelOnBottom)
{
    return {std::max(64.0, 1.7 * iconSize), iconSize + (labelOnBottom ? textSize + 8 + 2 : 0)};
}

Size slotSize(const DMGProject& project)
{
    return slotSize(project.iconSize, project.textSize, project.labelOnBottom);
}

Point graphicCenter(const DMGItem& item, const DMGProject& project)
{
    return {item.x, item.y - (project.labelOnBottom ? (project.textSize + 2) * 0.5 : 0)};
}

} // namespace velmora::IconLayout
