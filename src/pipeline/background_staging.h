#pragma once

#include "model/project.h"
#include "pipeline/build_run.h"
#include "pipeline/stage_folder.h"

#include <optional>
#include <string>

namespace velmora
{

/// The folder of the volume that holds the window's background.
inline constexpr const char* backgroundFolderName = ".background";

/// Whether the window gets a picture behind its icons: always, but for a picture background whose file is missing.
bool drawsBackground(const DMGProject& project);

/// Draws the window's background with its overlays at one and two pixels a point into the stage's background folder
/// and returns the file name to show: "background.tiff", or "background.png" when the two cannot be combined. Nothing
/// when there is no background. Throws BuildError or FileError.
std::optional<std::string> stageBackground(BuildRun& run, const DMGProject& project, StageFolder& stage);

} // namespace velmora
