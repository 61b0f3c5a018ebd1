#include "pipeline/build_step.h"

namespace velmora
{

std::string_view displayName(BuildStep step)
{
    switch (step) {
    case BuildStep::staging:
        return "Collecting files";
    case BuildStep::background:
        return "Drawing background";
    case BuildStep::create:
        return "Creating image";
    case BuildStep::layout:
        return "Laying out window";
    case BuildStep::detach:
        return "Detaching image";
    case BuildStep::convert:
        return "Converting image";
    case BuildStep::sign:
        return "Signing image";
    }
    return {};
}

} // namespace velmora
