#pragma once

#include "diskimage/finder/layout_script.h"
#include "tools/support/session.h"

#include <optional>

namespace velmora::tools
{

/// Carries out a layout script on an attached image: writes ".DS_Store" into its mount folder, with a reference to the
/// background picture as it lies in the image. Returns the object whose absence ended the script; what was set until
/// then is written all the same. Throws an exception of std::runtime_error for everything else.
std::optional<diskimage::finder::ScriptObject> applyLayout(const diskimage::finder::LayoutScript& script,
                                                           const Session& session);

} // namespace velmora::tools
