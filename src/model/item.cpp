#include "model/item.h"

namespace velmora
{

DMGItem DMGItem::applicationsLink(Point point)
{
    return {
        .displayName = "Applications", .x = point.x, .y = point.y, .symlinkTarget = std::string(applicationsFolder)};
}

void DMGItem::setPosition(Point point)
{
    x = point.x;
    y = point.y;
}

} // namespace velmora
