#pragma once

#include "model/project.h"

#include <optional>
#include <string>

namespace velmora
{

/// What a person can do about a failed build.
enum class BuildRemedy { none, showItem, addFiles, volumeTab };

/// Why a build failed, as its sheet explains it.
struct BuildFailure {
    std::string reason{}; ///< one line
    std::string detail{}; ///< what there is to do, or the rest of the message; may be empty or have several lines
    BuildRemedy remedy = BuildRemedy::none;
    std::optional<Uuid> item{}; ///< for showItem: the item it is about
    bool operator==(const BuildFailure&) const = default;
};

/// Explains a build's error message. `project` is the open one, in which the item is looked up; it may have changed
/// since the build began.
BuildFailure explainFailure(const std::string& message, const DMGProject& project);

/// "41.8 MB": decimal, as file managers count.
std::string sizeText(std::uintmax_t bytes);

} // namespace velmora
