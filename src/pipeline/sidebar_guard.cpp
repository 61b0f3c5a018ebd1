#include "pipeline/sidebar_guard.h"

#include "platform/file_tree.h"

#include <optional>
#include <system_error>

namespace velmora::FinderSidebarGuard
{
namespace
{

namespace fs = std::filesystem;

fs::path favoritesFile(const Places& places)
{
    return places.home / "Library/Application Support/com.apple.sharedfilelist" /
           "com.apple.LSSharedFileList.FavoriteItems.sfl2";
}

bool isThere(const fs::path& path)
{
    std::error_code ignored;
    return fs::exists(path, ignored);
}

void say(const LogCallback& log, const std::string& line)
{
    if (log)
        log(line);
}

void removeQuietly(const fs::path& path)
{
    try {
        removeTree(path);
    } catch (const FileError&) {
        // A copy that stays behind is all that happens.
    }
}

std::optional<fs::path> backupFavorites(const Places& places, const LogCallback& log)
{
    const fs::path favorites = favoritesFile(places);
    if (!isThere(favorites))
        return {};
    const fs::path backup = places.temporary / ("velmora-finder-favorites-" + places.uuid + ".sfl2");
    try {
        copyTree(favorites, backup);
    } catch (const FileError& error) {
        say(log, std::string("⚠️ Could not back up Finder sidebar favorites: ") + error.what());
        return {};
    }
    say(log, "Preserving Finder sidebar favorites…");
    return backup;
}

/// By a copy beside it and a rename: at every moment there is a whole file.
void replaceFavorites(const fs::path& favorites, const fs::path& backup, const std::string& uuid)
{
    const fs::path beside = favorites.string() + "." + uuid;
    try {
        copyTree(backup, beside);
    } catch (const FileError&) {
        removeQuietly(beside);
        throw;
    }
    std::error_code error;
    fs::rename(beside, favorites, error);
    if (error) {
        removeQuietly(beside);
        throw FileError(favorites.string() + ": " + error.message());
    }
}

void restoreFavorites(const Places& places, const std::optional<fs::path>& backup, const LogCallback& log)
{
    if (!backup || !isThere(*backup))
        return;
    try {
        replaceFavorites(favoritesFile(places), *backup, places.uuid);
    } catch (const FileError& error) {
        say(log, std::string("⚠️ Could not restore Finder sidebar favorites: ") + error.what());
        return;
    }
    removeQuietly(*backup);
    say(log, "Restored Finder sidebar favorites.");
}

} // namespace

void preserveDuring(const Places& places, const LogCallback& log, const std::function<void()>& body)
{
    const std::optional<fs::path> backup = backupFavorites(places, log);
    try {
        body();
    } catch (...) {
        restoreFavorites(places, backup, log);
        throw;
    }
    restoreFavorites(places, backup, log);
}

} // namespace velmora::FinderSidebarGuard
