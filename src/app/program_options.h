#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora
{

/// What the command line asks the editor for.
struct ProgramOptions {
    std::vector<std::filesystem::path> documents{}; ///< absolute
    std::string error{};                            ///< for a person, with a line end; empty when there is none
};

/// The text that answers --help and --version; nothing when a window is wanted.
std::optional<std::string> answerWithoutWindow(const std::vector<std::string>& arguments);

/// The arguments (without the program's name) that are left once Qt has taken its own.
ProgramOptions parseProgramOptions(const std::vector<std::string>& arguments);

} // namespace velmora
