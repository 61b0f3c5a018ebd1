#pragma once

#include <QStringList>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmora::cli
{

/// What velmora-build was asked to do.
struct BuildOptions {
    std::string project{};                                   ///< path of the document or the application
    std::string output{};                                    ///< path of the image; may be empty
    std::vector<std::pair<std::string, std::string>> maps{}; ///< FROM, TO in the order given
    std::optional<std::string> volumeName{};                 ///< {name} and {version} stand for the application's
    std::optional<std::string> initDocument{};               ///< path of a document to make
    std::optional<std::string> logFile{};
    std::optional<std::string> report{}; ///< path, or "-" for standard output, where nothing else goes then
    bool check = false;
    bool passwordFromInput = false;
    bool quiet = false;
    bool strict = false;
};

/// What the command line amounts to: options, or a text to print and the exit status to end with.
struct ParsedCommandLine {
    std::optional<BuildOptions> options{};
    std::string text{};
    int exitStatus = 0; ///< 0 for help and version (standard output), 2 for wrong usage (standard error)
};

/// Reads velmora-build's arguments, the program's name first.
ParsedCommandLine parseBuildOptions(const QStringList& arguments);

} // namespace velmora::cli
