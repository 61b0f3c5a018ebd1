#include "platform/disk_space.h"

#include "platform/file_error.h"

#include <limits>
#include <system_error>

#include <sys/stat.h>
#include <sys/statvfs.h>

#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#else
#include <string_view>
#include <sys/mount.h>
#include <sys/param.h>
#endif

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

constexpr std::uint64_t statusBlock = 512; ///< the unit of st_blocks

bool sharesBlocks(const std::string& path)
{
    struct statfs status {
    };
    if (::statfs(path.c_str(), &status) != 0)
        return false;
#ifdef __linux__
    return status.f_type == BTRFS_SUPER_MAGIC || status.f_type == XFS_SUPER_MAGIC;
#else
    return std::string_view(status.f_fstypename) == "apfs";
#endif
}

void add(DiskUsage& usage, const fs::path& path)
{
    struct stat status {
    };
    if (::lstat(path.c_str(), &status) != 0)
        return;
    ++usage.entries;
    usage.bytes += static_cast<std::uint64_t>(status.st_blocks) * statusBlock;
}

} // namespace

DiskSpace diskSpace(const fs::path& path)
{
    fs::path place = fs::absolute(path);
    std::error_code ignored;
    while (!fs::exists(place, ignored) && place.has_relative_path())
        place = place.parent_path();
    struct statvfs room {
    };
    struct stat status {
    };
    if (::statvfs(place.c_str(), &room) != 0 || ::stat(place.c_str(), &status) != 0)
        throwFileError("examine", place.string(), errno);
    DiskSpace space;
    space.device = static_cast<std::uint64_t>(status.st_dev);
    space.freeBytes = static_cast<std::uint64_t>(room.f_bavail) * room.f_frsize;
    // Some file systems make room for entries as they come, and say 0 of 0.
    space.freeEntries = room.f_files == 0 ? std::numeric_limits<std::uint64_t>::max() : room.f_favail;
    space.sharesBlocks = sharesBlocks(place.string());
    return space;
}

DiskUsage diskUsage(const fs::path& path, const std::function<void()>& betweenEntries)
{
    DiskUsage usage;
    add(usage, path);
    std::error_code error;
    if (!fs::is_directory(fs::symlink_status(path, error)))
        return usage;
    fs::recursive_directory_iterator entry(path, fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::end(entry); entry.increment(error)) {
        if (betweenEntries)
            betweenEntries();
        add(usage, entry->path());
    }
    return usage;
}

} // namespace velmora
