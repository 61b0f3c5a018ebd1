#pragma once

#include "model/project.h"
#include "pipeline/build_run.h"
#include "pipeline/stage_folder.h"

namespace velmora
{

/// Copies or links every visible entry of the project into the stage, in order; of entries with one name the last one
/// stays. Throws FileError naming the file.
void stageItems(BuildRun& run, const DMGProject& project, StageFolder& stage);

/// The name of the licence agreement in the volume.
inline constexpr const char* licenseFileName = "LICENSE.txt";

/// Whether the project has a licence agreement to put into the volume: one that is enabled and not blank.
bool hasLicense(const DMGProject& project);

/// Writes the licence agreement, when the project has one, as `licenseFileName`. Throws FileError.
void stageLicense(BuildRun& run, const DMGProject& project, StageFolder& stage);

} // namespace velmora
