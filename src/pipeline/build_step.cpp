#include "pipeline/build_step.h"

#include "model/project.h"
#include "pipeline/background_staging.h"

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
    {BuildStep::check, "Checking project", "check"},
    {BuildStep::staging, "Collecting files", "staging"},
    {BuildStep::background, "Drawing background", "background"},
    {BuildStep::create, "Creating image", "create"},
    {BuildStep::layout, "Laying out window", "layout"},
    {BuildStep::volumeIcon, "Setting volume icon", "volumeIcon"},
    {BuildStep::detach, "Detaching image", "detach"},
    {BuildStep::convert, "Converting image", "convert"},
    {BuildStep::sign, "Signing image", "sign"},
    {BuildStep::notarize, "Notarizing image", "notarize"},
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

std::vector<BuildStep> neededSteps(const DMGProject& project)
{
    std::vector<BuildStep> steps;
    const auto add = [&](BuildStep step, bool needed = true) {
        if (needed)
            steps.push_back(step);
    };
    add(BuildStep::check);
    add(BuildStep::staging);
    add(BuildStep::background, drawsBackground(project));
    add(BuildStep::create);
    add(BuildStep::layout);
    add(BuildStep::volumeIcon, !project.volumeIconPath.empty());
    add(BuildStep::detach);
    add(BuildStep::convert);
    add(BuildStep::sign, signs(project.signingMode));
    add(BuildStep::notarize, notarizes(project.signingMode));
    return steps;
}

} // namespace velmora
