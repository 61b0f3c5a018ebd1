#include "cli/requested_project.h"

#include "cli/path_mapping.h"
#include "cli/usage_error.h"
#include "model/document.h"
#include "pipeline/build_error.h"
#include "pipeline/starter_project.h"
#include "pipeline/volume_name.h"
#include "platform/file_tree.h"

#include <algorithm>
#include <iostream>
#include <system_error>

namespace velmora::cli
{
namespace
{

namespace fs = std::filesystem;

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

RequestedProject projectForApplication(const BuildOptions& options, const ArrowFileFinder& arrowFile)
{
    if (!options.maps.empty())
        throw UsageError("--map changes a document's paths, and " + options.project + " is an application");
    if (options.passwordFromInput)
        throw UsageError(
            "--password-stdin is for a project that is encrypted; for an application make one with --init");
    const ApplicationBundle application = readApplicationBundle(options.project);
    RequestedProject result{starterProject(application, arrowFile), application.warnings};
    if (options.volumeName)
        result.project.volumeName = expandVolumeName(*options.volumeName, [&] { return application; });
    return result;
}

/// The application that a project is about: its first file.
ApplicationBundle firstApplication(const DMGProject& project)
{
    const auto first = std::find_if(project.items.begin(), project.items.end(), isReal);
    if (first == project.items.end())
        throw BuildError("The volume's name is to be taken from the project's application, but the project has none");
    return readApplicationBundle(first->sourcePath);
}

RequestedProject projectOfDocument(const BuildOptions& options)
{
    const fs::path document = fs::absolute(options.project);
    RequestedProject result{.project = Document::decode(readFile(document, Document::maximumSize))};
    DMGProject& project = result.project;
    mapProjectPaths(project, document.parent_path(), options.maps);
    if (options.volumeName)
        project.volumeName = expandVolumeName(*options.volumeName, [&] { return firstApplication(project); });
    if (options.passwordFromInput)
        project.encryptionPassword = readPassword();
    return result;
}

} // namespace

RequestedProject loadRequestedProject(const BuildOptions& options, const ArrowFileFinder& arrowFile)
{
    std::error_code error;
    if (fs::is_directory(options.project, error))
        return projectForApplication(options, arrowFile);
    if (options.initDocument && fs::exists(options.project, error))
        throw UsageError("--init makes a project for an application, and " + options.project + " is a document");
    return projectOfDocument(options);
}

} // namespace velmora::cli
