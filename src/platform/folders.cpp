#include "platform/folders.h"

#include "platform/program_folder.h"

#include <array>
#include <cstdlib>
#include <string_view>
#include <system_error>

#include <pwd.h>
#include <unistd.h>

namespace velmora::Folders
{
namespace
{

/// The absolute path in an environment variable; empty when it is unset or, which the conventions forbid, relative.
std::filesystem::path fromEnvironment(const char* name)
{
    const char* const value = std::getenv(name);
    const std::filesystem::path path = value == nullptr ? "" : value;
    return path.is_absolute() ? path : std::filesystem::path{};
}

std::filesystem::path systemTemporary()
{
#ifdef __APPLE__
    std::array<char, 1024> buffer{};
    const std::size_t length = ::confstr(_CS_DARWIN_USER_TEMP_DIR, buffer.data(), buffer.size());
    if (length > 0 && length <= buffer.size())
        return buffer.data();
#endif
    return "/tmp";
}

} // namespace

std::filesystem::path temporary()
{
    const std::filesystem::path wanted = fromEnvironment("TMPDIR");
    if (wanted.empty())
        return systemTemporary();
    // A failure shows at the first use, with the name of the folder that the user asked for.
    std::error_code ignored;
    if (std::filesystem::create_directories(wanted, ignored))
        std::filesystem::permissions(wanted, std::filesystem::perms::owner_all, ignored);
    return wanted;
}

std::filesystem::path home()
{
    std::filesystem::path folder = fromEnvironment("HOME");
    if (folder.empty()) {
        std::array<char, 16384> buffer{};
        passwd entry{};
        passwd* found = nullptr;
        if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
            folder = entry.pw_dir;
    }
    return folder.empty() ? "/" : folder;
}

std::filesystem::path applicationSupport()
{
#ifdef __APPLE__
    return home() / "Library" / "Application Support";
#else
    const std::filesystem::path folder = fromEnvironment("XDG_DATA_HOME");
    return folder.empty() ? home() / ".local" / "share" : folder;
#endif
}

std::optional<std::filesystem::path> resources()
{
    const std::filesystem::path installation = installationFolder();
    // The second place is where an application bundle keeps them.
    for (const auto* const place : {"share/velmora", "Resources"}) {
        std::error_code ignored;
        const std::filesystem::path folder = installation / place;
        if (std::filesystem::is_directory(folder, ignored))
            return folder;
    }
    return std::nullopt;
}

} // namespace velmora::Folders
