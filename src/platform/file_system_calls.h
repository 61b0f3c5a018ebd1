#pragma once

#include <string>

#include <fcntl.h>
#include <sys/stat.h>

/// Where the systems name the same thing differently, for this folder's own files.
namespace velmora
{

#ifdef __APPLE__
inline timespec modificationTime(const struct stat& status)
{
    return status.st_mtimespec;
}
inline timespec accessTime(const struct stat& status)
{
    return status.st_atimespec;
}
#else
inline timespec modificationTime(const struct stat& status)
{
    return status.st_mtim;
}
inline timespec accessTime(const struct stat& status)
{
    return status.st_atim;
}
#endif

/// The target of the link `name` in an open folder. Throws FileError with `path`.
std::string readLink(int folder, const std::string& name, const std::string& path);

} // namespace velmora
