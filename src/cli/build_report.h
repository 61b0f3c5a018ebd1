#pragma once

#include "cli/step_times.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmora::cli
{

/// What a build did, for a program to read: docs/report.md describes the text. Holds no password.
struct BuildReport {
    std::string project{};                      ///< absolute path
    std::string output{};                       ///< absolute path
    std::optional<std::string> volumeName{};    ///< known once the project was read
    std::optional<std::string> format{};        ///< format code, known likewise
    StepTimes times{};                          ///< runs from the report's making
    std::optional<std::int64_t> contentBytes{}; ///< staged
    std::optional<std::int64_t> imageBytes{};   ///< of the writable image
    std::optional<std::int64_t> outputBytes{};  ///< of the finished image in its place
    std::optional<std::string> sha256{};        ///< likewise
    std::vector<std::string> warnings{};
    std::vector<std::string> faults{}; ///< what reading the image back found
    std::optional<std::string> error{};
    std::optional<int> exitStatus{}; ///< nothing while the build runs
};

/// The report as JSON: every key always there, null where nothing is known.
std::string toJson(const BuildReport& report);

/// Writes the report to a file, a pipe or a device, or to standard output when `path` is "-". Throws FileError.
void writeReport(const BuildReport& report, const std::string& path);

} // namespace velmora::cli
