#include "platform/file_error.h"
#include "platform/folder_cursor.h"

#include <fcntl.h>
#include <unistd.h>

namespace velmora
{
namespace
{

/// Removes a file, link or empty folder; `flags` is AT_REMOVEDIR for a folder. Gone already is as good.
void removeEntry(int folder, const std::string& name, int flags, const std::string& path)
{
    if (::unlinkat(folder, name.c_str(), flags) != 0 && errno != ENOENT)
        throwFileError("remove", path, errno);
}

enum class Entry { missing, folder, other };

Entry examine(int folder, const std::string& name, const std::string& path)
{
    struct stat status {
    };
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno == ENOENT)
            return Entry::missing;
        throwFileError("remove", path, errno);
    }
    if (!S_ISDIR(status.st_mode))
        return Entry::other;
    // Its entries can be listed and removed only with all rights; where that fails, the removal itself says why.
    if ((status.st_mode & S_IRWXU) != S_IRWXU)
        static_cast<void>(::fchmodat(folder, name.c_str(), S_IRWXU, AT_SYMLINK_NOFOLLOW));
    return Entry::folder;
}

/// Removes everything below the cursor's top folder.
void removeContents(FolderCursor& cursor)
{
    std::vector<std::vector<std::string>> open{cursor.names()};
    std::vector<std::string> entered;
    while (true) {
        if (!open.back().empty()) {
            const std::string name = std::move(open.back().back());
            open.back().pop_back();
            const Entry entry = examine(cursor.fd(), name, cursor.path(name));
            if (entry == Entry::folder) {
                cursor.enter(name);
                open.push_back(cursor.names());
                entered.push_back(name);
            } else if (entry == Entry::other) {
                removeEntry(cursor.fd(), name, 0, cursor.path(name));
            }
            continue;
        }
        open.pop_back();
        if (open.empty())
            return;
        cursor.leave();
        removeEntry(cursor.fd(), entered.back(), AT_REMOVEDIR, cursor.path(entered.back()));
        entered.pop_back();
    }
}

} // namespace

void removeTree(const std::filesystem::path& path)
{
    requireUsable("remove", path);
    // "link/" would mean the folder behind the link.
    std::string plain = path.string();
    while (plain.size() > 1 && plain.back() == '/')
        plain.pop_back();
    const std::filesystem::path name = std::filesystem::path(plain).filename();
    if (name.empty() || name == "." || name == "..")
        throwFileError("remove", path, "this is no entry of a folder");
    switch (examine(AT_FDCWD, plain, path)) {
    case Entry::missing:
        return;
    case Entry::other:
        removeEntry(AT_FDCWD, plain, 0, path);
        return;
    case Entry::folder: {
        FolderCursor cursor(plain);
        removeContents(cursor);
        removeEntry(AT_FDCWD, plain, AT_REMOVEDIR, path);
    }
    }
}

} // namespace velmora
