#include "model/project_defaults.h"

#include <algorithm>

namespace velmora::DMGProjectDefaults
{
namespace
{

Point linkSlot(const DMGProject& project)
{
    return {applicationsX, project.contentSize().height * 0.5};
}

} // namespace

Point appSlot(int index, const DMGProject& project)
{
    const Size content = project.contentSize();
    const double middle = content.height * 0.5;
    if (index == 0)
        return {appIconX, middle};
    constexpr double columnWidth = 150;
    constexpr double rowHeight = 120;
    constexpr double firstRowAboveMiddle = 46;
    const double column = index % 2;
    const double row = index / 2;
    return {std::min(content.width - 80, column * columnWidth + appIconX),
            std::min(content.height - 60, row * rowHeight + middle - firstRowAboveMiddle)};
}

DMGItem applicationsItem(const DMGProject& project)
{
    return DMGItem::applicationsLink(linkSlot(project));
}

std::vector<DMGItem> repositionItems(std::vector<DMGItem> items, const DMGProject& project)
{
    int files = 0;
    for (DMGItem& item : items) {
        if (!item.hidden)
            item.setPosition(item.isSymlink() ? linkSlot(project) : appSlot(files++, project));
    }
    const bool hasApplications = std::any_of(items.begin(), items.end(), [](const DMGItem& item) {
        return item.symlinkTarget == DMGItem::applicationsFolder && !item.hidden;
    });
    if (!hasApplications)
        items.push_back(applicationsItem(project));
    return items;
}

std::optional<DMGOverlayImage> makeDefaultArrowOverlay(const ArrowFileFinder& arrowFile)
{
    const std::optional<std::string> file = arrowFile ? arrowFile(defaultArrowID) : std::nullopt;
    if (!file)
        return std::nullopt;
    return DMGOverlayImage{.sourcePath = *file,
                           .builtInArrowID = std::string(defaultArrowID),
                           .x = defaultArrowX,
                           .y = defaultArrowY,
                           .width = defaultArrowWidth,
                           .height = defaultArrowHeight,
                           .originalWidth = defaultArrowWidth,
                           .originalHeight = defaultArrowHeight};
}

std::vector<DMGOverlayImage> defaultOverlays(const ArrowFileFinder& arrowFile)
{
    std::vector<DMGOverlayImage> overlays;
    if (auto arrow = makeDefaultArrowOverlay(arrowFile))
        overlays.push_back(std::move(*arrow));
    return overlays;
}

DMGTextOverlay makeDefaultInstallText(Size contentSize, int index)
{
    constexpr double height = 36;
    constexpr double aboveBottom = 24;
    const double width = std::min(std::max(contentSize.width * 0.65, 200.0), 360.0);
    return {.identifier = "textObject" + std::to_string(index),
            .text = "Drag and Drop to install",
            .x = (contentSize.width - width) * 0.5,
            .y = contentSize.height - height - aboveBottom,
            .width = width,
            .height = height};
}

std::vector<DMGTextOverlay> defaultTextOverlays(Size contentSize)
{
    return {makeDefaultInstallText(contentSize, 1)};
}

} // namespace velmora::DMGProjectDefaults
