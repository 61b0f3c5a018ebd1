#pragma once

#include "render/picture.h"

#include <filesystem>

namespace velmora
{

/// The icon of an application bundle: the largest picture of the icon file that its Contents/Info.plist names. Null
/// when the folder is no bundle, names none, or names one that cannot be read; nothing outside the bundle is looked at.
PicturePtr bundleIcon(const std::filesystem::path& bundle);

} // namespace velmora
