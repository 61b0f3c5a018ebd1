#pragma once

#include "diskimage/base/bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmora::diskimage::finder
{

/// Where an item's icon centre lies, points of the content area, y downward.
struct ItemPosition {
    std::string name{}; ///< POSIX name, UTF-8
    std::int32_t x = 0;
    std::int32_t y = 0;
    bool operator==(const ItemPosition&) const = default;
};

/// The look of a volume's window, as a script sets it and as .DS_Store keeps it.
struct WindowLayout {
    std::int32_t left = 0; ///< frame in screen points from the top left of the screen, title bar included
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
    bool showToolbar = false;
    bool showStatusBar = false;
    std::int32_t sidebarWidth = 0;
    std::string arrangeBy = "none";
    double iconSize = 48;
    double textSize = 12;
    bool labelOnBottom = true;
    bool showIconPreview = false;
    bool showItemInfo = false;
    /// Path of the background picture below the root, POSIX names ("/.background/background.tiff"), or nothing.
    std::optional<std::string> backgroundPath{};
    std::vector<ItemPosition> positions{}; ///< at most one for a name
    bool operator==(const WindowLayout&) const = default;
};

/// The height of the main screen that stored window frames count from: they are kept from the bottom left, and the
/// screen on which an image will be opened is unknown.
inline constexpr std::int32_t referenceScreenHeight = 900;

} // namespace velmora::diskimage::finder
