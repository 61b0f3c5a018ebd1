#pragma once

#include "model/uuid.h"

#include <optional>

namespace velmora
{

/// The ids of what is selected. An id may belong to an element that no longer exists.
struct Selections {
    std::optional<Uuid> item{};
    std::optional<Uuid> overlay{};
    std::optional<Uuid> text{};
    bool operator==(const Selections&) const = default;
};

} // namespace velmora
