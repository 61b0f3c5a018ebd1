#pragma once

#include "pipeline/shell.h"
#include "platform/disk_space.h"
#include "platform/stop_token.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace velmora
{

class BuiltInArrowLibrary;
class OverlayImageCache;

/// What a build takes from the world, so that a test can hand in its own.
struct BuildEnvironment {
    std::shared_ptr<const Shell> shell{};
    std::function<std::string()> uuid{};     ///< a fresh UUID, upper-case canonical form
    std::filesystem::path temporaryFolder{}; ///< the scratch folder is made here
    std::filesystem::path homeFolder{};      ///< for the Finder's favourites file
    /// The local path behind a mount point's path.
    std::function<std::filesystem::path(const std::string&)> mountPath{};
    /// How much room there is at a path.
    std::function<DiskSpace(const std::filesystem::path&)> diskSpace{};
    /// Waits on the build's thread; returns early when a stop is requested.
    std::function<void(std::chrono::milliseconds)> sleep{};
    StopToken stop{};
    const BuiltInArrowLibrary* arrows = nullptr; ///< outlives the build
    OverlayImageCache* cache = nullptr;          ///< outlives the build

    /// The running system's: real tools, folders, clock and random UUIDs.
    static BuildEnvironment system(const BuiltInArrowLibrary& arrows, OverlayImageCache& cache, StopToken stop);
};

} // namespace velmora
