#include "pipeline/project_check.h"

#include "pipeline/appearance_check.h"
#include "pipeline/content_check.h"
#include "pipeline/credentials.h"
#include "pipeline/name_check.h"
#include "pipeline/space_check.h"
#include "pipeline/staging.h"
#include "pipeline/validation.h"
#include "platform/file_tree.h"

#include <set>
#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

/// What a build does as it was told and nobody is likely to have meant.
void checkSurprises(const DMGProject& project, const std::optional<fs::path>& output, Problems& problems)
{
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        const DMGItem& item = project.items[i];
        if (!isReal(item))
            continue;
        const std::string field = elementField("items", i, "sourcePath");
        std::error_code ignored;
        const fs::file_type type = fs::symlink_status(item.sourcePath, ignored).type();
        if (type == fs::file_type::symlink)
            problems.push_back(warningIn(field, "“" + item.sourcePath + "” is a link; the image would hold the link " +
                                                    "and not what it leads to."));
        if (output && type == fs::file_type::directory && liesIn(item.sourcePath, *output))
            problems.push_back(warningIn(field, "the image is written into the folder “" + item.sourcePath +
                                                    "”, whose content is put into it, older images included."));
    }
    if (project.licenseEnabled && !hasLicense(project))
        problems.push_back(
            warningIn("licenseText", "the licence agreement is enabled, but it is empty; the image gets none."));
}

/// A build asks the same before it writes anything.
Problems checkRoom(const DMGProject& project, const fs::path& output, const BuildEnvironment& environment)
{
    Problems problems;
    std::vector<std::string> warnings;
    const LogCallback log;
    const StepCallback step;
    BuildRun run(log, environment, step, warnings);
    try {
        checkSpace(run, project, output);
    } catch (const FileError& error) {
        problems.push_back({Severity::error, "output", error.what()});
    } catch (const BuildError& error) {
        run.checkStop();
        problems.push_back({Severity::error, "output", error.message});
    }
    for (const std::string& warning : warnings)
        problems.push_back({Severity::warning, "output", warning});
    return problems;
}

/// One field may fail two checks for one reason.
Problems withoutRepetitions(const Problems& problems)
{
    std::set<std::pair<std::string, std::string>> seen;
    Problems result;
    std::copy_if(problems.begin(), problems.end(), std::back_inserter(result),
                 [&](const Problem& problem) { return seen.emplace(problem.field, problem.message).second; });
    return result;
}

} // namespace

Problems checkProject(const DMGProject& project, const std::optional<fs::path>& output,
                      const BuildEnvironment& environment)
{
    Problems problems = buildObstacles(project, output, environment.temporaryFolder);
    append(problems, checkNames(project));
    append(problems, checkContent(project, environment.stop));
    checkSurprises(project, output, problems);
    if (output)
        append(problems, checkRoom(project, *output, environment));
    append(problems, checkAppearance(project, environment));
    for (const auto& missing : {missingPassword(project), missingIdentity(project), missingNotaryProfile(project)}) {
        if (missing)
            problems.push_back(*missing);
    }
    return withoutRepetitions(problems);
}

} // namespace velmora
