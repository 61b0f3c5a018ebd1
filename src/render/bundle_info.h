#pragma once

#include "diskimage/base/property_list.h"

#include <filesystem>
#include <optional>
#include <string>

namespace velmora
{

/// What a bundle says about itself: the property list in its Contents/Info.plist, of at most 16 MiB. Throws FileError
/// when there is none or it cannot be read.
diskimage::Plist readBundleInfo(const std::filesystem::path& bundle);

/// An entry of `info` as text; empty when it is missing or no text.
std::string bundleText(const diskimage::Plist& info, std::string_view key);

/// The path of the icon file that `info` names, in the bundle's Resources folder, with or without its extension;
/// nothing when none is named or the file is not there. Throws FileError when the name or a link leads out of the
/// bundle.
std::optional<std::filesystem::path> bundleIconFile(const std::filesystem::path& bundle, const diskimage::Plist& info);

} // namespace velmora
