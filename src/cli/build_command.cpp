#include "cli/build_command.h"

#include "cli/image_check.h"
#include "cli/output_place.h"
#include "cli/path_mapping.h"
#include "cli/progress_line.h"
#include "model/document.h"
#include "pipeline/dmg_builder.h"
#include "platform/file_tree.h"
#include "platform/folders.h"
#include "platform/terminal.h"
#include "render/built_in_arrows.h"
#include "render/overlay_images.h"

#include <fstream>
#include <iostream>
#include <iterator>

namespace velmora::cli
{
namespace fs = std::filesystem;

namespace
{

/// A password of any use is far shorter; what is longer is another file by mistake.
constexpr std::size_t passwordLimit = 4096;

std::string readPassword()
{
    std::string text;
    std::getline(std::cin, text);
    if (!text.empty() && text.back() == '\r')
        text.pop_back();
    if (text.empty())
        throw BuildError("--password-stdin was given, but standard input holds no password");
    if (text.size() > passwordLimit)
        throw BuildError("The password on standard input is longer than " + std::to_string(passwordLimit) + " bytes");
    return text;
}

DMGProject loadProject(const BuildOptions& options)
{
    const fs::path document = fs::absolute(options.project);
    DMGProject project = Document::decode(readFile(document, Document::maximumSize));
    mapProjectPaths(project, document.parent_path(), options.maps);
    if (options.volumeName)
        project.volumeName = *options.volumeName;
    if (options.passwordFromInput)
        project.encryptionPassword = readPassword();
    return project;
}

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

void printWarnings(const std::vector<std::string>& warnings)
{
    for (const std::string& warning : warnings)
        std::cerr << "warning: " << warning << '\n';
}

int build(const BuildOptions& options, const StopToken& stop)
{
    const DMGProject project = loadProject(options);
    std::ofstream logFile = openLog(options.logFile);
    OutputPlace place(options.output);

    OverlayImageCache cache;
    const BuiltInArrowLibrary arrows({.resources = Folders::resources(),
                                      .applicationSupport = Folders::applicationSupport(),
                                      .temporary = Folders::temporary()},
                                     cache);
    ProgressLine progress(!options.quiet, !options.quiet && Terminal::isInteractive());
    const auto log = [&](const std::string& line) {
        progress.log(line);
        if (logFile.is_open())
            logFile << line << std::endl;
    };
    DMGBuilder builder(log, BuildEnvironment::system(arrows, cache, stop),
                       [&](BuildStep step, double fraction) { progress.step(step, fraction); });
    try {
        builder.build(project, place.buildPath());
    } catch (...) {
        progress.finish();
        printWarnings(builder.warnings());
        throw;
    }

    std::vector<std::string> faults;
    if (options.strict)
        faults = checkBuiltImage(place.buildPath(), project);
    progress.finish();
    printWarnings(builder.warnings());
    for (const std::string& fault : faults)
        std::cerr << "error: " << fault << '\n';
    if (options.strict && (!faults.empty() || !builder.warnings().empty()))
        throw BuildError("The image is not what the project asks for; nothing was written (--strict)");
    place.commit();
    if (!options.quiet)
        std::cout << "Wrote " << options.output << " (" << fs::file_size(options.output) << " bytes)" << std::endl;
    return 0;
}

} // namespace

int runBuild(const BuildOptions& options, const StopToken& stop)
{
    try {
        return build(options, stop);
    } catch (const DocumentError& error) {
        std::cerr << "velmora-build: " << options.project << ": " << error.what() << '\n';
    } catch (const std::exception& error) {
        std::cerr << "velmora-build: " << error.what() << '\n';
    }
    return 1;
}

} // namespace velmora::cli
