#pragma once

#include "platform/file_descriptor.h"

#include <string>
#include <vector>

#include <sys/stat.h>

namespace velmora
{

/// The names in an open folder, sorted by bytes; `path` is for messages. Throws FileError.
std::vector<std::string> namesIn(int folder, const std::string& path);

/// Walks a folder tree by open folders, not by paths: a name that somebody swaps for a link on the way is refused
/// instead of followed, and neither the depth nor the length of the paths is limited. At most two descriptors are open.
class FolderCursor
{
public:
    /// Opens the top folder, which may not be a link. Throws FileError, as all members do.
    explicit FolderCursor(const std::string& top);

    /// The current folder's descriptor, for the …at() functions.
    [[nodiscard]] int fd() const { return m_current.get(); }
    /// The path of the current folder or of an entry in it, for messages only.
    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] std::string path(const std::string& name) const { return m_path + "/" + name; }
    /// Whether this is the folder with that status.
    [[nodiscard]] bool isAt(const struct stat& folder) const;

    /// The names in the current folder, sorted by bytes.
    [[nodiscard]] std::vector<std::string> names() const { return namesIn(fd(), path()); }

    /// Goes into a folder of the current one.
    void enter(const std::string& name);
    /// Makes sure that leave() works even after the current folder's permissions have been taken away.
    void holdParent();
    /// Goes back to the folder above; not at the top.
    void leave();

private:
    struct Level {
        std::size_t pathLength = 0; ///< in bytes
        dev_t device = 0;
        ino_t inode = 0;
    };
    void push(std::string path);

    std::vector<Level> m_levels{};
    std::string m_path{};
    FileDescriptor m_current{};
    FileDescriptor m_parent{};
};

} // namespace velmora
