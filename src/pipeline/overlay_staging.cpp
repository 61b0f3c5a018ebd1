#include "pipeline/overlay_staging.h"

#include "pipeline/build_error.h"
#include "render/overlay_images.h"

#include <cmath>

namespace velmora
{
namespace
{

/// Keeps the point size: the resolution at which the pixels take up as many points as before.
int resolution(const Picture& picture)
{
    constexpr double pointsPerInch = 72;
    const double dpi = picture.pixels.width() / picture.pointSize.width() * pointsPerInch;
    return dpi >= 1 && dpi <= 100'000 ? static_cast<int>(std::lround(dpi)) : static_cast<int>(pointsPerInch);
}

} // namespace

PreparedOverlays::PreparedOverlays(BuildRun& run, const DMGProject& project, StageFolder& folder)
    : m_project(project), m_cache(*run.environment().cache)
{
    m_project.overlayImages.clear();
    for (std::size_t n = 0; n < project.overlayImages.size(); ++n) {
        const DMGOverlayImage& overlay = project.overlayImages[n];
        run.checkStop();
        const PicturePtr picture = OverlayImageResolver::load(overlay, *run.environment().arrows, m_cache);
        if (!picture) {
            run.say("⚠️ Could not load overlay image — skipping.");
            run.warn("The overlay picture “" + overlay.sourcePath + "” could not be loaded and is left out.");
            continue;
        }
        const QByteArray png =
            picture->pixels.isNull() ? QByteArray() : encodePng(picture->pixels, resolution(*picture));
        if (png.isEmpty())
            throw BuildError("Could not encode overlay PNG.");
        const std::string name = "overlay-" + std::to_string(n) + ".png";
        folder.write(name, {png.constData(), static_cast<std::size_t>(png.size())});
        m_project.overlayImages.push_back(overlay);
        m_project.overlayImages.back().sourcePath = (folder.path() / name).string();
    }
}

PreparedOverlays::~PreparedOverlays()
{
    for (const DMGOverlayImage& overlay : m_project.overlayImages)
        m_cache.remove(overlay.sourcePath);
}

} // namespace velmora
