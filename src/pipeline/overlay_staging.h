#pragma once

#include "model/project.h"
#include "pipeline/build_run.h"
#include "pipeline/stage_folder.h"

namespace velmora
{

/// The project with each overlay's picture written into `folder` and referred to there. Overlays that cannot be loaded
/// are left out. While this object lives their pictures may be cached; at its end they are forgotten, because the paths
/// mean nothing outside the build.
class PreparedOverlays
{
public:
    /// Throws BuildError or FileError.
    PreparedOverlays(BuildRun& run, const DMGProject& project, StageFolder& folder);
    ~PreparedOverlays();
    PreparedOverlays(const PreparedOverlays&) = delete;
    PreparedOverlays& operator=(const PreparedOverlays&) = delete;

    [[nodiscard]] const DMGProject& project() const { return m_project; }

private:
    DMGProject m_project;
    OverlayImageCache& m_cache;
};

} // namespace velmora
