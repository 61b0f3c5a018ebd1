#include "cli/path_mapping.h"

#include "model/project_paths.h"

namespace velmora::cli
{
namespace
{

std::string withoutTrailingSlash(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

bool isBelow(const std::string& path, const std::string& folder)
{
    return path.starts_with(folder) && (folder == "/" || path.size() == folder.size() || path[folder.size()] == '/');
}

} // namespace

std::string mappedPath(const std::string& path, const PathMaps& maps)
{
    std::string result = path;
    std::size_t longest = 0;
    for (const auto& [given, to] : maps) {
        const std::string from = withoutTrailingSlash(given);
        if (from.size() <= longest || !isBelow(path, from))
            continue;
        longest = from.size();
        const std::string rest = path.substr(from == "/" ? 0 : from.size());
        const std::string base = withoutTrailingSlash(to);
        result = rest.empty() ? base : (base == "/" ? rest : base + rest);
    }
    return result;
}

void mapProjectPaths(DMGProject& project, const std::filesystem::path& documentFolder, const PathMaps& maps)
{
    changeSourcePaths(project, [&](const std::string& path) {
        return path.starts_with('/') ? mappedPath(path, maps) : pathFrom(documentFolder, path);
    });
}

} // namespace velmora::cli
