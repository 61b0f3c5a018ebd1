#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

/// Temporary files and folders that a crash must not leave behind for good. Whoever makes one holds a lock on it for as
/// long as it is in use; the system gives the lock up even when the process is killed. What nobody holds any more was
/// left by a crash, and is removed before another one of its kind is made in the same folder: what is the user's own
/// and has the same prefix, an upper-case UUID and the same suffix. What cannot be examined or removed stays.
namespace velmora
{

/// A file or folder that this process has made and holds. Removing it is up to the owner.
struct ClaimedPath {
    std::filesystem::path path{};
    /// Let go with the last copy. Null on a file system without locks: nothing there counts as abandoned.
    std::shared_ptr<const void> claim{};
};

/// What temporary files or folders of one kind are named: `prefix`, then `uuid`, then `suffix`.
struct ClaimedName {
    std::string_view prefix{};
    std::string_view uuid{}; ///< upper-case canonical form; of this one only
    std::string_view suffix{};
};

/// Makes an empty file in `folder`, 0644 less the user's umask; no link is followed. Throws FileError, also when the
/// name is taken.
ClaimedPath claimFile(const std::filesystem::path& folder, const ClaimedName& name);
/// Makes a folder for the user alone (0700) in `folder`. Throws FileError, also when the name is taken.
ClaimedPath claimFolder(const std::filesystem::path& folder, const ClaimedName& name);

/// Makes an empty file as claimFile() does, hidden and with a random name, in the folder of `goal`, for what will be
/// renamed to that. Throws FileError, which names `goal`.
ClaimedPath claimFileBeside(const std::filesystem::path& goal);
/// The same for a folder, in which `goal` can be made ready.
ClaimedPath claimFolderBeside(const std::filesystem::path& goal);

} // namespace velmora
