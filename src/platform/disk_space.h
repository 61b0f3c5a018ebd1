#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

namespace velmora
{

/// What the file system behind a folder has left for this user.
struct DiskSpace {
    std::uint64_t device = 0; ///< equal for folders that share the room
    std::uint64_t freeBytes = 0;
    std::uint64_t freeEntries = 0; ///< files and folders that can still be made
    bool sharesBlocks = false;     ///< a copy within the file system takes no room
};

/// The room at `path`, or at the nearest folder above it that exists. Throws FileError.
DiskSpace diskSpace(const std::filesystem::path& path);

/// The room that a file or folder takes, with all that is in it.
struct DiskUsage {
    std::uint64_t bytes = 0; ///< allocated; holes are none
    std::uint64_t entries = 0;
};

/// Adds up what copying `path` takes, links not followed; hard-linked files count each time. What cannot be read counts
/// nothing: whoever reads it says why. `betweenEntries` may throw to end it.
DiskUsage diskUsage(const std::filesystem::path& path, const std::function<void()>& betweenEntries = {});

} // namespace velmora
