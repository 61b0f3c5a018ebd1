#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora
{

/// An application to be put into an image, as it describes itself. All texts are UTF-8.
struct ApplicationBundle {
    std::filesystem::path folder{};                  ///< absolute; the application itself, not a link to it
    std::string fileName{};                          ///< the name it was given by, "My App.app"
    std::string name{};                              ///< fit to name a volume; never empty
    std::string version{};                           ///< may be empty
    std::optional<std::filesystem::path> iconFile{}; ///< absolute; inside the folder
    std::vector<std::string> warnings{};             ///< what it names and lacks, in sentences for a person
};

/// Reads an application's Contents/Info.plist. A link to an application is followed. Throws FileError when the folder
/// is no application, when its property list is damaged, or when what it says leads out of it.
ApplicationBundle readApplicationBundle(const std::filesystem::path& path);

} // namespace velmora
