#pragma once

#include "model/geometry.h"
#include "model/uuid.h"

#include <string>
#include <string_view>

namespace velmora
{

/// One entry of the image's top-level folder, identified by `id`.
struct DMGItem {
    Uuid id = Uuid::random();
    std::string sourcePath{};    ///< absolute path of the file or folder to copy; empty for a link
    std::string displayName{};   ///< name of the entry inside the image
    double x = 0;                ///< horizontal centre of the icon, content points
    double y = 0;                ///< anchor of the icon, content points; see IconLayout::graphicCenter
    std::string symlinkTarget{}; ///< when not empty the entry is a symbolic link and `sourcePath` is ignored
    bool hidden = false;         ///< kept in the project, left out of the built image

    static constexpr std::string_view applicationsFolder = "/Applications";
    /// A new link to the applications folder at `point` (content points).
    static DMGItem applicationsLink(Point point);

    [[nodiscard]] bool isSymlink() const { return !symlinkTarget.empty(); }
    [[nodiscard]] Point position() const { return {x, y}; }
    void setPosition(Point point);

    bool operator==(const DMGItem&) const = default;
};

/// Whether an item is copied into the image: it is neither a link nor hidden.
inline bool isReal(const DMGItem& item)
{
    return !item.isSymlink() && !item.hidden;
}

} // namespace velmora
