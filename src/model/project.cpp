#include "model/project.h"

#include "model/icon_layout.h"
#include "model/project_defaults.h"

namespace velmora
{

DMGProject DMGProject::fromTemplate(std::string volumeName, std::vector<DMGItem> items,
                                    const ArrowFileFinder& arrowFile)
{
    namespace Defaults = DMGProjectDefaults;
    DMGProject project{
        .volumeName = std::move(volumeName),
        .windowWidth = Defaults::windowWidth,
        .windowHeight = Defaults::windowHeight,
        .windowLeft = Defaults::windowLeft,
        .windowTop = Defaults::windowTop,
        .iconSize = Defaults::iconSize,
        .textSize = Defaults::textSize,
        .gradientStart = Defaults::gradientStart,
        .gradientEnd = Defaults::gradientEnd,
        .gradientAngle = Defaults::gradientAngle,
    };
    project.overlayImages = Defaults::defaultOverlays(arrowFile);
    project.textOverlays = Defaults::defaultTextOverlays(project.contentSize());
    project.items = Defaults::repositionItems(std::move(items), project);
    return project;
}

DMGProject DMGProject::starter(const ArrowFileFinder& arrowFile)
{
    return fromTemplate("My App", {}, arrowFile);
}

void DMGProject::migrateLegacyIconCoordinatesIfNeeded()
{
    if (!iconUsesTopLeftCoords)
        return;
    const double halfSlotWidth = IconLayout::slotSize(*this).width * 0.5;
    for (DMGItem& item : items) {
        if (item.hidden)
            continue;
        item.x += halfSlotWidth;
        item.y += iconSize * 0.5;
    }
    iconUsesTopLeftCoords = false;
}

void DMGProject::applyDefaultSettingsPreservingContent(const ArrowFileFinder& arrowFile)
{
    *this = fromTemplate(std::move(volumeName), std::move(items), arrowFile);
}

} // namespace velmora
