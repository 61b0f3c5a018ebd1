#include "platform/tools.h"

#include "platform/program_folder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace velmora
{
namespace
{

#ifdef __APPLE__
constexpr std::array<std::string_view, 0> replacedTools{};
#else
constexpr std::array<std::string_view, 9> replacedTools{"/usr/bin/SetFile", "/usr/bin/codesign", "/usr/bin/du",
                                                        "/usr/bin/hdiutil", "/usr/bin/iconutil", "/usr/bin/osascript",
                                                        "/usr/bin/sips",    "/usr/bin/tiffutil", "/usr/bin/xcrun"};
#endif

} // namespace

std::string systemToolPath(const std::string& path)
{
    if (std::find(replacedTools.begin(), replacedTools.end(), path) == replacedTools.end())
        return path;
    // No look whether it is there: the error of starting it then names the place where it should be.
    return (installationFolder() / "libexec" / "velmora" / std::filesystem::path(path).filename()).string();
}

} // namespace velmora
