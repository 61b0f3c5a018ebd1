#include "platform/program_folder.h"

#include <system_error>

#ifdef __APPLE__
#include <array>
#include <cstdint>
#include <limits.h>
#include <mach-o/dyld.h>
#endif

namespace velmora
{

std::filesystem::path programFolder()
{
    std::error_code failure;
#ifdef __APPLE__
    std::array<char, PATH_MAX> buffer{};
    auto size = static_cast<std::uint32_t>(buffer.size());
    if (::_NSGetExecutablePath(buffer.data(), &size) != 0)
        return {};
    const auto program = std::filesystem::canonical(buffer.data(), failure);
#else
    const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
#endif
    return failure ? std::filesystem::path{} : program.parent_path();
}

std::filesystem::path installationFolder()
{
    const std::filesystem::path folder = programFolder();
    const bool isTool = folder.filename() == "velmora" && folder.parent_path().filename() == "libexec";
    return isTool ? folder.parent_path().parent_path() : folder.parent_path();
}

} // namespace velmora
