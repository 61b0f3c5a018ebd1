#include "pipeline/build_step.h"

namespace velmora
{
namespace
{

struct StepNames {
    BuildStep step;
    std::string_view display;
    std::string_view identifier;
};
constexpr StepNames names[] = {
    {BuildStep::staging, "Collecting files", "staging"}, {BuildStep::background, "Drawing background", "background"},
    {BuildStep::create, "Creating image", "create"},     {BuildStep::layout, "Laying out window", "layout"},
    {BuildStep::detach, "Detaching image", "detach"},    {BuildStep::convert, "Converting image", "convert"},
    {BuildStep::sign, "Signing image", "sign"},
};

StepNames namesOf(BuildStep step)
{
    for (const StepNames& row : names) {
        if (row.step == step)
            return row;
    }
    return {};
}

} // namespace

std::string_view displayName(BuildStep step)
{
    return namesOf(step).display;
}

std::string_view identifier(BuildStep step)
{
    return namesOf(step).identifier;
}

} // namespace velmora
