#pragma once

#include "diskimage/finder/window_layout.h"

#include <string>
#include <string_view>

namespace velmora::diskimage::finder
{

/// A layout script taken apart.
struct LayoutScript {
    std::string diskName{}; ///< the last component of the mount point
    WindowLayout layout{};  ///< the last value of each setting
};

/// Reads a script of the Finder statements that lay out one disk's window: that grammar and no other. Throws
/// DiskImageError with the line and what is wrong; nothing is guessed. Whether named items exist is for the caller to
/// check.
LayoutScript parseLayoutScript(std::string_view script);

} // namespace velmora::diskimage::finder
