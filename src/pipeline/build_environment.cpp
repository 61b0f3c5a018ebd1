#include "pipeline/build_environment.h"

#include "model/uuid.h"
#include "platform/folders.h"
#include "platform/mounts.h"

#include <utility>

namespace velmora
{

BuildEnvironment BuildEnvironment::system(const BuiltInArrowLibrary& arrows, OverlayImageCache& cache, StopToken stop)
{
    const auto uuid = [] { return Uuid::random().toString(); };
    BuildEnvironment environment;
    environment.shell = std::make_shared<Shell>(
        Shell::Settings{.findTool = systemToolPath, .temporaryFolder = Folders::temporary, .uuid = uuid});
    environment.uuid = uuid;
    environment.temporaryFolder = Folders::temporary();
    environment.homeFolder = Folders::home();
    environment.mountPath = Mounts::localPath;
    environment.diskSpace = velmora::diskSpace;
    environment.sleep = [stop](std::chrono::milliseconds duration) { stop.sleepFor(duration); };
    environment.stop = std::move(stop);
    environment.arrows = &arrows;
    environment.cache = &cache;
    return environment;
}

} // namespace velmora
