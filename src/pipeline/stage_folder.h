#pragma once

#include "pipeline/volume_order.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace velmora
{

/// A folder whose content becomes a folder of the volume. Names that the volume holds for one and the same ("Read Me"
/// and "read me") are one entry here too, whatever the local file system thinks of them.
class StageFolder
{
public:
    /// `path` is an existing folder; what is in it already is known by name afterwards. Throws FileError.
    explicit StageFolder(std::filesystem::path path);

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    /// The entry that the volume would hold for the same name, as it is spelled here.
    [[nodiscard]] std::optional<std::string> find(const std::string& name) const;
    /// Makes room for a new entry and returns its path: whatever was held for the same name is removed (a link itself,
    /// not what it points to), so that nothing is ever written through it. Throws FileError, or DiskImageError when the
    /// volume cannot hold the name.
    std::filesystem::path place(const std::string& name);
    /// Makes room as place() does and writes a file that everybody may read.
    void write(const std::string& name, std::string_view bytes);

private:
    std::filesystem::path m_path{};
    std::map<std::u16string, std::string, VolumeOrder> m_names{}; ///< stored form to local spelling
};

/// Permissions of a file that the build itself puts into the volume: the user's umask is no business of the image's.
inline constexpr std::filesystem::perms stagedFileMode{0644};
/// Likewise for a folder.
inline constexpr std::filesystem::perms stagedFolderMode{0755};

} // namespace velmora
