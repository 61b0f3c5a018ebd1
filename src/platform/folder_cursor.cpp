#include "platform/folder_cursor.h"

#include "platform/file_error.h"

#include <algorithm>
#include <memory>

#include <dirent.h>
#include <fcntl.h>

namespace velmora
{
namespace
{

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

} // namespace

std::vector<std::string> namesIn(int folder, const std::string& path)
{
    // A descriptor of its own, because the listing closes it. Opening "." anew would need the right to search.
    FileDescriptor copy(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(copy ? ::fdopendir(copy.get()) : nullptr, ::closedir);
    if (!listing)
        throwFileError("list", path, errno);
    copy.release();
    ::rewinddir(listing.get()); // the position is shared with earlier listings
    std::vector<std::string> result;
    errno = 0;
    while (const dirent* const entry = ::readdir(listing.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..")
            result.push_back(name);
        errno = 0;
    }
    if (errno != 0)
        throwFileError("list", path, errno);
    std::sort(result.begin(), result.end());
    return result;
}

FolderCursor::FolderCursor(const std::string& top)
{
    m_current = FileDescriptor(retryInterrupted([&] { return ::open(top.c_str(), folderFlags | O_NOFOLLOW); }));
    if (!m_current)
        throwFileError("open", top, errno);
    push(top);
}

bool FolderCursor::isAt(const struct stat& folder) const
{
    return m_levels.back().device == folder.st_dev && m_levels.back().inode == folder.st_ino;
}

void FolderCursor::enter(const std::string& name)
{
    FileDescriptor child(
        retryInterrupted([&] { return ::openat(m_current.get(), name.c_str(), folderFlags | O_NOFOLLOW); }));
    if (!child)
        throwFileError("open", path(name), errno);
    m_parent = std::move(m_current);
    m_current = std::move(child);
    push(path(name));
}

void FolderCursor::holdParent()
{
    if (m_parent || m_levels.size() < 2)
        return;
    FileDescriptor parent(retryInterrupted([&] { return ::openat(m_current.get(), "..", folderFlags); }));
    if (!parent)
        throwFileError("go back from", path(), errno);
    struct stat status {
    };
    const Level& expected = m_levels[m_levels.size() - 2];
    if (::fstat(parent.get(), &status) != 0 || status.st_dev != expected.device || status.st_ino != expected.inode)
        throwFileError("go back from", path(), "the folder was moved meanwhile");
    m_parent = std::move(parent);
}

void FolderCursor::leave()
{
    holdParent();
    m_current = std::move(m_parent);
    m_levels.pop_back();
    m_path.resize(m_levels.back().pathLength);
}

void FolderCursor::push(std::string path)
{
    struct stat status {
    };
    if (::fstat(m_current.get(), &status) != 0)
        throwFileError("examine", path, errno);
    m_path = std::move(path);
    m_levels.push_back({m_path.size(), status.st_dev, status.st_ino});
}

} // namespace velmora
