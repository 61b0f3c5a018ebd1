#pragma once

#include "pipeline/shell.h"

#include <filesystem>
#include <functional>
#include <string>

/// Keeps the user's Finder sidebar favourites as they are while the Finder opens and closes volume windows.
namespace velmora::FinderSidebarGuard
{

/// Where the guard works.
struct Places {
    std::filesystem::path home{};      ///< holds the favourites file
    std::filesystem::path temporary{}; ///< holds the copy in between
    std::string uuid{};                ///< makes the copy's name unique
};

/// Copies the favourites file aside, runs `body`, and puts the copy back, also when `body` throws; that error passes on
/// afterwards. Without a favourites file only `body` runs. The guard's own failures are log lines; when putting back
/// fails, the copy stays in the temporary folder.
void preserveDuring(const Places& places, const LogCallback& log, const std::function<void()>& body);

} // namespace velmora::FinderSidebarGuard
