#include "pipeline/starter_project.h"

namespace velmora
{

DMGProject starterProject(const ApplicationBundle& application, const ArrowFileFinder& arrowFile)
{
    DMGProject project = DMGProject::fromTemplate(
        application.name, {{.sourcePath = application.folder.string(), .displayName = application.fileName}},
        arrowFile);
    if (application.iconFile)
        project.volumeIconPath = application.iconFile->string();
    return project;
}

} // namespace velmora
