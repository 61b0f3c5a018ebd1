#include "platform/data_copy.h"
#include "platform/extended_attributes.h"
#include "platform/file_error.h"
#include "platform/file_system_calls.h"
#include "platform/folder_cursor.h"

#include <algorithm>
#include <array>
#include <unistd.h>

namespace velmora
{
namespace
{

/// A folder of the source whose copy is being filled.
struct OpenFolder {
    struct stat status {
    };
    std::vector<std::string> names{}; ///< still to be copied, the last one first
};

/// Copies one tree. The entry functions take the folders that hold the two entries as descriptors.
class TreeCopy
{
public:
    explicit TreeCopy(const std::function<bool()>& stopped) : m_stopped(stopped) {}

    CopyReport run(const std::string& source, const std::string& target)
    {
        struct stat status {
        };
        if (::lstat(source.c_str(), &status) != 0)
            throwFileError("copy", source, errno);
        if (S_ISDIR(status.st_mode))
            copyFolders(source, target);
        else
            copyEntry({AT_FDCWD, source, source}, {AT_FDCWD, target, target}, status);
        return std::move(m_report);
    }

private:
    struct Place {
        int folder;
        std::string name; ///< in that folder
        std::string path; ///< for messages
    };

    void askStopped(const std::string& path) const
    {
        if (m_stopped && m_stopped())
            throwFileError("copy", path, "it was stopped");
    }

    void copyFolders(const std::string& source, const std::string& target)
    {
        if (::mkdir(target.c_str(), 0700) != 0)
            throwFileError("create", target, errno);
        FolderCursor from(source);
        FolderCursor to(target);
        struct stat targetTop {
        };
        if (::fstat(to.fd(), &targetTop) != 0)
            throwFileError("examine", target, errno);
        std::vector<OpenFolder> open;
        beginFolder(from, targetTop, open);
        while (true) {
            OpenFolder& folder = open.back();
            if (!folder.names.empty()) {
                const std::string name = std::move(folder.names.back());
                folder.names.pop_back();
                if (copyChild(from, to, name))
                    beginFolder(from, targetTop, open);
                continue;
            }
            to.holdParent();
            finishFolder(from, to, folder.status);
            open.pop_back();
            if (open.empty())
                break;
            from.leave();
            to.leave();
        }
    }

    static void beginFolder(const FolderCursor& from, const struct stat& targetTop, std::vector<OpenFolder>& open)
    {
        if (from.isAt(targetTop))
            throwFileError("copy", from.path(), "a folder cannot be copied into itself");
        OpenFolder folder{.names = from.names()};
        if (::fstat(from.fd(), &folder.status) != 0)
            throwFileError("examine", from.path(), errno);
        std::reverse(folder.names.begin(), folder.names.end());
        open.push_back(std::move(folder));
    }

    /// Copies an entry of the current folders; true when it is a folder, which was created and entered.
    bool copyChild(FolderCursor& from, FolderCursor& to, const std::string& name)
    {
        const std::string path = from.path(name);
        askStopped(path);
        struct stat status {
        };
        if (::fstatat(from.fd(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
            throwFileError("copy", path, errno);
        if (!S_ISDIR(status.st_mode)) {
            copyEntry({from.fd(), name, path}, {to.fd(), name, to.path(name)}, status);
            return false;
        }
        if (::mkdirat(to.fd(), name.c_str(), 0700) != 0)
            throwFileError("create", to.path(name), errno);
        from.enter(name);
        to.enter(name);
        return true;
    }

    void copyEntry(const Place& from, const Place& to, const struct stat& status)
    {
        if (S_ISREG(status.st_mode))
            copyFile(from, to);
        else if (S_ISLNK(status.st_mode))
            copyLink(from, to, status);
        else
            throwFileError("copy", from.path,
                           "it is neither a file nor a folder nor a link (a pipe, socket or device)");
    }

    void copyFile(const Place& from, const Place& to)
    {
        // Not blocking, should a pipe have taken the file's place meanwhile.
        const FileDescriptor source(retryInterrupted(
            [&] { return ::openat(from.folder, from.name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
        struct stat status {
        };
        if (!source || ::fstat(source.get(), &status) != 0)
            throwFileError("read", from.path, errno);
        if (!S_ISREG(status.st_mode))
            throwFileError("copy", from.path, "it was replaced meanwhile");
        FileDescriptor target(retryInterrupted([&] {
            return ::openat(to.folder, to.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        }));
        if (!target)
            throwFileError("create", to.path, errno);
        copyData({source.get(), target.get(), status.st_size, from.path, to.path}, [&] { askStopped(from.path); });
        copyMetadata(source.get(), target.get(), from.path, to.path, status);
        if (!target.close())
            throwFileError("write", to.path, errno);
    }

    static void copyLink(const Place& from, const Place& to, const struct stat& status)
    {
        const std::string text = readLink(from.folder, from.name, from.path);
        if (::symlinkat(text.c_str(), to.folder, to.name.c_str()) != 0)
            throwFileError("create", to.path, errno);
        const std::array<timespec, 2> times{accessTime(status), modificationTime(status)};
        if (::utimensat(to.folder, to.name.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) != 0)
            throwFileError("set the times of", to.path, errno);
    }

    void finishFolder(const FolderCursor& from, const FolderCursor& to, const struct stat& status)
    {
        copyMetadata(from.fd(), to.fd(), from.path(), to.path(), status);
    }

    /// Attributes first, because they need a writable file; times last, because all else changes them.
    void copyMetadata(int from, int to, const std::string& source, const std::string& target, const struct stat& status)
    {
        copyAttributes(from, to, source);
        if (::fchmod(to, status.st_mode & 07777) != 0)
            throwFileError("set the permissions of", target, errno);
        const std::array<timespec, 2> times{accessTime(status), modificationTime(status)};
        if (::futimens(to, times.data()) != 0)
            throwFileError("set the times of", target, errno);
    }

    void copyAttributes(int from, int to, const std::string& source)
    {
        ExtendedAttributes::Map attributes;
        if (!ExtendedAttributes::read(from, attributes))
            throwFileError("read the extended attributes of", source, errno);
        for (const auto& [name, value] : attributes) {
            if (ExtendedAttributes::write(to, name, value))
                continue;
            m_report.warnings.push_back("The extended attribute \"" + name + "\" of \"" + source +
                                        "\" could not be copied: " + systemErrorText(errno) + ".");
        }
    }

    const std::function<bool()>& m_stopped;
    CopyReport m_report{};
};

} // namespace

std::string readLink(int folder, const std::string& name, const std::string& path)
{
    std::string target(256, '\0');
    while (true) {
        const ssize_t length = ::readlinkat(folder, name.c_str(), target.data(), target.size());
        if (length < 0)
            throwFileError("read the link", path, errno);
        if (static_cast<std::size_t>(length) < target.size()) {
            target.resize(static_cast<std::size_t>(length));
            return target;
        }
        target.resize(target.size() * 2); // it may have been cut
    }
}

CopyReport copyTree(const std::filesystem::path& source, const std::filesystem::path& target,
                    const std::function<bool()>& stopped)
{
    requireUsable("copy", source.string());
    requireUsable("create", target.string());
    return TreeCopy(stopped).run(source.string(), target.string());
}

} // namespace velmora
