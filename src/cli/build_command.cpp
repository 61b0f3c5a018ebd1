#include "cli/build_command.h"

#include "cli/build_report.h"
#include "cli/check_command.h"
#include "cli/file_digest.h"
#include "cli/image_check.h"
#include "cli/new_document.h"
#include "cli/output_place.h"
#include "cli/progress_line.h"
#include "cli/requested_project.h"
#include "cli/surroundings.h"
#include "cli/usage_error.h"
#include "model/document.h"
#include "pipeline/dmg_builder.h"
#include "pipeline/text.h"
#include "platform/file_tree.h"
#include "platform/signals.h"
#include "platform/terminal.h"

#include <fstream>
#include <functional>
#include <iostream>

namespace velmora::cli
{
namespace fs = std::filesystem;

namespace
{

/// The log's file, when one was asked for. A log that cannot be written fails the build before it begins.
std::ofstream openLog(const std::optional<std::string>& path)
{
    std::ofstream file;
    if (!path)
        return file;
    file.open(*path, std::ios::binary | std::ios::trunc);
    if (!file)
        throw BuildError("Cannot write the log file " + *path);
    return file;
}

/// A line for each sentence, which may hold names from strangers.
void print(const char* kind, const std::vector<std::string>& sentences)
{
    for (const std::string& sentence : sentences)
        std::cerr << kind << ": " << withoutControls(sentence, ' ') << '\n';
}

/// Reads the finished image back; a strict build fails of any difference and of any warning.
void checkStrictly(const fs::path& image, const DMGProject& project, BuildReport& report)
{
    report.times.begin("readBack");
    report.faults = checkBuiltImage(image, project);
    print("error", report.faults);
    if (!report.faults.empty() || !report.warnings.empty())
        throw BuildError("The image is not what the project asks for; nothing was written (--strict)");
}

void buildImage(const BuildOptions& options, const DMGProject& project, BuildEnvironment environment,
                BuildReport& report)
{
    std::ofstream logFile = openLog(options.logFile);
    OutputPlace place(options.output);
    ProgressLine progress(!options.quiet, !options.quiet && Terminal::isInteractive());
    const auto log = [&](const std::string& message) {
        const std::string line = place.inPublic(message);
        progress.log(line);
        if (logFile.is_open())
            logFile << line << std::endl;
    };
    DMGBuilder builder(log, std::move(environment), [&](BuildStep step, double fraction) {
        progress.step(step, fraction);
        report.times.begin(std::string(identifier(step)));
    });
    const auto takeAccount = [&] {
        progress.finish();
        report.times.end();
        for (const std::string& warning : builder.warnings())
            report.warnings.push_back(place.inPublic(warning));
        print("warning", report.warnings);
        const BuildFigures& figures = builder.figures();
        if (figures.contentBytes > 0)
            report.contentBytes = figures.contentBytes;
        if (figures.imageBytes > 0)
            report.imageBytes = figures.imageBytes;
    };
    try {
        builder.build(project, place.buildPath());
    } catch (const std::exception& error) {
        takeAccount();
        throw BuildError(place.inPublic(error.what()));
    }
    takeAccount();
    if (options.strict)
        checkStrictly(place.buildPath(), project, report);
    place.commit();
    report.times.end();
}

/// Measures the image in its place, for the report.
void measureOutput(const std::string& output, BuildReport& report)
{
    report.times.begin("digest");
    report.outputBytes = static_cast<std::int64_t>(fs::file_size(output));
    report.sha256 = sha256(output);
    report.times.end();
}

void build(const BuildOptions& options, const StopToken& stop, BuildReport& report)
{
    Surroundings surroundings;
    const RequestedProject requested =
        loadRequestedProject(options, [&](std::string_view id) { return surroundings.arrowFile(id); });
    const DMGProject& project = requested.project;
    report.volumeName = project.volumeName;
    report.format = std::string(rawValue(project.format));
    report.warnings = requested.warnings;
    if (options.initDocument)
        requireNewDocument(*options.initDocument);

    if (options.output.empty()) {
        print("warning", requested.warnings);
    } else {
        buildImage(options, project, surroundings.environment(stop), report);
        if (options.report)
            measureOutput(options.output, report);
        if (!options.quiet)
            std::cout << "Wrote " << options.output << " (" << fs::file_size(options.output) << " bytes)" << std::endl;
    }
    if (options.initDocument) {
        writeNewDocument(*options.initDocument, project);
        if (!options.quiet)
            std::cout << "Wrote " << *options.initDocument << std::endl;
    }
}

/// Runs what may throw, prints why it failed and returns the exit status.
int guarded(const BuildOptions& options, std::optional<std::string>& failure, const std::function<int()>& body)
{
    int status = 1;
    try {
        return body();
    } catch (const UsageError& error) {
        failure = error.what();
        status = 2;
    } catch (const DocumentError& error) {
        failure = options.project + ": " + error.what();
    } catch (const std::exception& error) {
        failure = error.what();
    }
    std::cerr << "velmora-build: " << withoutControls(*failure, ' ', "\n\t") << '\n';
    const int signal = lastStopSignal();
    return signal == 0 ? status : 128 + signal;
}

/// Builds with a report: one that says "running" from the start, so that nobody takes an older one for this build's.
int buildWithReport(const BuildOptions& options, const StopToken& stop)
{
    BuildReport report{.project = fs::absolute(options.project).string(),
                       .output = fs::absolute(options.output).string()};
    if (*options.report != "-" && !isStream(*options.report)) // to be read once, when it is complete
        writeReport(report, *options.report);
    report.exitStatus = guarded(options, report.error, [&] {
        build(options, stop, report);
        return 0;
    });
    report.times.end();
    writeReport(report, *options.report);
    return *report.exitStatus;
}

} // namespace

int runBuild(const BuildOptions& options, const StopToken& stop)
{
    std::optional<std::string> failure;
    return guarded(options, failure, [&] {
        if (options.check)
            return runCheck(options, stop);
        if (options.report)
            return buildWithReport(options, stop);
        BuildReport unread;
        build(options, stop, unread);
        return 0;
    });
}

} // namespace velmora::cli
