#include "model/project_paths.h"

namespace velmora
{

void changeSourcePaths(DMGProject& project, const std::function<std::string(const std::string&)>& change)
{
    const auto apply = [&](std::string& path) {
        if (!path.empty())
            path = change(path);
    };
    apply(project.backgroundImagePath);
    apply(project.volumeIconPath);
    for (DMGItem& item : project.items)
        apply(item.sourcePath);
    for (DMGOverlayImage& overlay : project.overlayImages)
        apply(overlay.sourcePath);
}

std::string pathFrom(const std::filesystem::path& folder, const std::string& path)
{
    return path.starts_with('/') ? path : (folder / path).lexically_normal().string();
}

} // namespace velmora
