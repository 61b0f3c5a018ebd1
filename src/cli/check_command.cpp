#include "cli/check_command.h"

#include "cli/output_place.h"
#include "cli/requested_project.h"
#include "cli/surroundings.h"
#include "cli/usage_error.h"
#include "pipeline/project_check.h"
#include "pipeline/tool_check.h"
#include "platform/file_tree.h"

#include <algorithm>
#include <iostream>

namespace velmora::cli
{
namespace fs = std::filesystem;

namespace
{

/// Whether an image can be put where it is wanted is seen by making the place for it.
void checkPlace(const std::string& output, Problems& problems)
{
    try {
        const OutputPlace place(output);
    } catch (const FileError& error) {
        problems.push_back({Severity::error, "output", error.what()});
    }
}

Problems findProblems(const BuildOptions& options, const StopToken& stop)
{
    Surroundings surroundings;
    Problems problems;
    RequestedProject requested;
    try {
        requested = loadRequestedProject(options, [&](std::string_view id) { return surroundings.arrowFile(id); });
    } catch (const UsageError&) {
        throw;
    } catch (const std::runtime_error& error) {
        return {{Severity::error, options.project, error.what()}}; // there is nothing more to look at
    }
    for (const std::string& warning : requested.warnings)
        problems.push_back({Severity::warning, {}, warning});

    const BuildEnvironment environment = surroundings.environment(stop);
    const auto output = options.output.empty() ? std::nullopt : std::optional(fs::absolute(options.output));
    Problems found = checkProject(requested.project, output, environment);
    const bool placeIsBad =
        std::any_of(found.begin(), found.end(), [](const Problem& problem) { return problem.field == "output"; });
    if (output && !placeIsBad)
        checkPlace(options.output, found);
    append(problems, found);
    append(problems, checkTools(requested.project, environment));
    return problems;
}

} // namespace

int runCheck(const BuildOptions& options, const StopToken& stop)
{
    const Problems problems = findProblems(options, stop);
    for (const Problem& problem : problems)
        std::cerr << describe(problem) << '\n';
    if (!options.quiet && !hasErrors(problems))
        std::cout << (problems.empty() ? "No problems found." : "No errors found.") << std::endl;
    return hasErrors(problems) || (options.strict && !problems.empty()) ? 1 : 0;
}

} // namespace velmora::cli
