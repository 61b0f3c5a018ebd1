#pragma once

#include "model/project.h"
#include "pipeline/application_bundle.h"

namespace velmora
{

/// The project for one application: the factory window with the application and the Applications link on their slots,
/// arrow and caption. The volume is named after the application and shows its icon.
DMGProject starterProject(const ApplicationBundle& application, const ArrowFileFinder& arrowFile);

} // namespace velmora
