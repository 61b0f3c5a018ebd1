#pragma once

#include "model/project.h"

#include <optional>
#include <string>

namespace velmora
{

/// What of a project a problem is about.
struct ProblemField {
    std::string key{};             ///< the document's key ("items[2].x"); empty when it is about no one field
    std::optional<Uuid> element{}; ///< the item, overlay or caption that the key leads into

    bool operator==(const ProblemField&) const = default;
};

/// The field of that key, with the element that has this place in `project` now.
ProblemField problemField(const DMGProject& project, const std::string& key);

} // namespace velmora
