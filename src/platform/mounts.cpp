#include "platform/mounts.h"

#include "platform/file_descriptor.h"
#include "platform/folders.h"

#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

namespace velmora::Mounts
{
namespace
{

/// The user's runtime directory; empty when there is none that is ours (a program run for another user by the
/// super-user still sees that user's variable).
std::filesystem::path runtimeFolder()
{
    const char* const value = std::getenv("XDG_RUNTIME_DIR");
    if (value == nullptr || value[0] != '/')
        return {};
    struct stat status {
    };
    const bool ours = ::stat(value, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
                      ::access(value, W_OK | X_OK) == 0;
    return ours ? value : "";
}

/// Makes the folder or finds it as we would have made it.
void ensurePrivate(const std::filesystem::path& folder)
{
    const auto refuse = [&](const std::string& reason) {
        throw std::runtime_error("The folder for mounted images, \"" + folder.string() + "\", " + reason + ".");
    };
    const bool made = ::mkdir(folder.c_str(), 0700) == 0;
    if (!made && errno != EEXIST)
        refuse("could not be created: " + systemErrorText(errno));
    struct stat status {
    };
    if (::lstat(folder.c_str(), &status) != 0)
        refuse("could not be examined: " + systemErrorText(errno));
    if (!S_ISDIR(status.st_mode))
        refuse("is a link or a file");
    if (status.st_uid != ::geteuid())
        refuse("belongs to another user");
    if ((status.st_mode & 077) != 0)
        refuse("is open to other users; its permissions must be 0700");
}

} // namespace

std::filesystem::path stateFolder()
{
    std::filesystem::path folder = runtimeFolder();
    if (folder.empty())
        folder = Folders::temporary() / ("velmora-" + std::to_string(::geteuid()));
    else
        folder /= "velmora";
    ensurePrivate(folder);
    return folder;
}

std::filesystem::path localPath(const std::string& path)
{
#ifndef __APPLE__
    constexpr std::string_view prefix = "/Volumes/";
    if (path.compare(0, prefix.size(), prefix) == 0 &&
        path.find_first_not_of('/', prefix.size()) != std::string::npos) {
        if (path.find('\0') != std::string::npos)
            throw std::runtime_error("The path of a mounted volume contains a NUL byte.");
        // Resolved by text alone, and never above the volume's own folder.
        std::filesystem::path inside;
        for (const auto& part : std::filesystem::path(path.substr(prefix.size())).relative_path()) {
            if (part == "..") {
                if (inside.has_parent_path())
                    inside = inside.parent_path();
            } else if (!part.empty() && part != ".") {
                inside /= part;
            }
        }
        return stateFolder() / "Volumes" / inside;
    }
#endif
    return path;
}

} // namespace velmora::Mounts
