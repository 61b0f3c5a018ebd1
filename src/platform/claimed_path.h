#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

/// Temporary files and folders that a crash must not leave behind for good. Whoever makes one holds a lock on it for as
/// long as it is in use; the system gives the lock up even when the process is killed. What nobody holds any more was
/// left by a crash, and the next one to come along removes it.
namespace velmora
{

/// A file or folder that this process has made and holds. Removing it is up to the owner.
struct ClaimedPath {
    std::filesystem::path path{};
    /// Let go with the last copy. Null on a file system without locks: nothing there counts as abandoned.
    std::shared_ptr<const void> claim{};
};

/// Makes an empty file that does not exist yet, 0644 less the user's umask; no link is followed. Throws FileError,
/// which names `goal`: what the file will become.
ClaimedPath makeClaimedFile(const std::filesystem::path& path, const std::filesystem::path& goal);
/// Makes a folder that does not exist yet, for the user alone (0700). Throws FileError.
ClaimedPath makeClaimedFolder(const std::filesystem::path& path);

/// A fresh name for a hidden temporary file: `temporaryPrefix` and twelve letters and digits.
std::string temporaryFileName();
inline constexpr std::string_view temporaryPrefix = ".velmora-";

/// Removes from `folder` the user's own files and folders that are named `prefix`, an upper-case UUID and `suffix`, and
/// that nobody holds; with `temporaryPrefix` also those of temporaryFileName(). Twelve letters after any other prefix
/// may be anybody's word. What cannot be examined or removed stays.
void removeAbandoned(const std::filesystem::path& folder, std::string_view prefix, std::string_view suffix = {});

} // namespace velmora
