#pragma once

#include "model/project.h"
#include "pipeline/problem_field.h"

#include <optional>
#include <string>

namespace velmora
{

/// What a person can do about a failed build.
enum class BuildRemedy { none, addFiles, showItem, showOverlay, showCaption, layoutTab, volumeTab, textTab };

/// Why a build failed, as its sheet explains it.
struct BuildFailure {
    std::string reason{}; ///< one line
    std::string detail{}; ///< what there is to do, or the rest of the message; may be empty or have several lines
    BuildRemedy remedy = BuildRemedy::none;
    std::optional<Uuid> element{}; ///< for showItem, showOverlay and showCaption
    bool operator==(const BuildFailure&) const = default;
};

/// Explains a build's error message, which is about `field`. `project` is the open one, in which the element is looked
/// up; it may have changed since the build began.
BuildFailure explainFailure(const std::string& message, const ProblemField& field, const DMGProject& project);

} // namespace velmora
