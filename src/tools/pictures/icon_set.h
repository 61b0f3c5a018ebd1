#pragma once

#include "diskimage/base/bytes.h"

#include <filesystem>

/// Icon sets: folders with the ten standard pictures as PNG files, and icon files (ICNS) made of them.
namespace velmora::tools
{

/// The icon file of an icon set. Pictures that the set lacks are left out. Throws std::runtime_error when it has none,
/// when a picture has another size than its name says, and for PNG files and names that do not belong there.
diskimage::Bytes iconFileFromSet(const std::filesystem::path& iconSet);

/// Writes the pictures of an icon file as PNG into an existing folder: those that the standard elements, or the older
/// ones of the same size, hold in a form that can be decoded. Throws std::runtime_error when there is none, and
/// DiskImageError for a damaged file.
void iconSetFromFile(diskimage::ByteView iconFile, const std::filesystem::path& folder);

} // namespace velmora::tools
