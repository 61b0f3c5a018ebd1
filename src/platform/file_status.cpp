#include "platform/extended_attributes.h"
#include "platform/file_error.h"
#include "platform/file_system_calls.h"
#include "platform/folder_cursor.h"

#include <algorithm>

#include <fcntl.h>

namespace velmora
{
namespace
{

FileKind kindOf(mode_t mode)
{
    if (S_ISREG(mode))
        return FileKind::regular;
    if (S_ISDIR(mode))
        return FileKind::folder;
    return S_ISLNK(mode) ? FileKind::symlink : FileKind::other;
}

} // namespace

void throwFileError(const char* action, const std::string& path, const std::string& reason)
{
    std::string shown = path;
    std::replace(shown.begin(), shown.end(), '\0', '?'); // it would end the message
    throw FileError(std::string("Could not ") + action + " \"" + shown + "\": " + reason + ".");
}

void throwFileError(const char* action, const std::string& path, int error)
{
    throwFileError(action, path, systemErrorText(error));
}

void requireUsable(const char* action, const std::string& path)
{
    if (path.find('\0') != std::string::npos)
        throwFileError(action, path, "the path contains a NUL byte");
}

FileStatus describe(const std::filesystem::path& path)
{
    requireUsable("examine", path);
    struct stat status {
    };
    if (::lstat(path.c_str(), &status) != 0)
        throwFileError("examine", path, errno);
    FileStatus result;
    result.kind = kindOf(status.st_mode);
    result.mode = status.st_mode & 07777;
    result.size = static_cast<std::uint64_t>(status.st_size);
    result.device = static_cast<std::uint64_t>(status.st_dev);
    result.inode = static_cast<std::uint64_t>(status.st_ino);
    result.modifiedSeconds = modificationTime(status).tv_sec;
    result.modifiedNanoseconds = modificationTime(status).tv_nsec;
    if (result.kind == FileKind::symlink)
        result.linkTarget = readLink(AT_FDCWD, path.string(), path.string());
    if (!ExtendedAttributes::read(path.c_str(), result.extendedAttributes))
        throwFileError("read the extended attributes of", path, errno);
    return result;
}

std::vector<std::string> listFolder(const std::filesystem::path& folder)
{
    requireUsable("list", folder);
    const FileDescriptor opened(
        retryInterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!opened)
        throwFileError("list", folder, errno);
    return namesIn(opened.get(), folder.string());
}

bool liesIn(const std::filesystem::path& folder, const std::filesystem::path& path)
{
    std::error_code ignored;
    const std::filesystem::path outer = std::filesystem::canonical(folder, ignored);
    const std::filesystem::path inner = std::filesystem::weakly_canonical(path, ignored);
    return !outer.empty() && std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

} // namespace velmora
