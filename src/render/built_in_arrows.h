#pragma once

#include "render/overlay_images.h"
#include "render/picture.h"

#include <QImage>

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmora
{

/// One of the nine ready-made install arrows.
struct Arrow {
    std::string_view id;              ///< stored in documents and used in file names
    std::string_view nameKey;         ///< string-table key of its name
    std::string_view bundledFilename; ///< resource file that ships with the program; empty for drawn arrows
    [[nodiscard]] std::string displayName() const;
};

/// Where the library finds and keeps its files.
struct ArrowFolders {
    std::optional<std::filesystem::path> resources{}; ///< the installation's; its "Arrows" holds the shipped arrow
    std::filesystem::path applicationSupport{};       ///< the user's; drawn arrows are kept in Velmora/BuiltInArrows
    std::filesystem::path temporary{};                ///< the way out when that cannot be written
};

/// The built-in arrows: one ships as a picture, eight are drawn by the program and written once into a per-user folder,
/// so that an overlay refers to any of them by a path.
class BuiltInArrowLibrary
{
public:
    BuiltInArrowLibrary(ArrowFolders folders, OverlayImageCache& cache);

    /// The nine arrows in the picker's order.
    static std::span<const Arrow> all();
    /// The arrow of that id, or null.
    static const Arrow* find(std::string_view id);
    /// Path of a PNG file for the arrow, or nothing.
    [[nodiscard]] std::optional<std::string> filePath(std::string_view id) const;
    /// The arrow's picture for display, or null.
    [[nodiscard]] PicturePtr previewImage(std::string_view id) const;
    /// Writes every missing file of a drawn arrow.
    void warmCache() const;
    /// A drawn arrow: 440 × 172 pixels, transparent ground. Null for the shipped arrow and unknown ids.
    static QImage draw(std::string_view id);

private:
    [[nodiscard]] std::optional<std::string> bundledPath(std::string_view id) const;

    ArrowFolders m_folders{};
    OverlayImageCache* m_cache = nullptr;
};

} // namespace velmora
