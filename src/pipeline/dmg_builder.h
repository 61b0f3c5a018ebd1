#pragma once

#include "model/project.h"
#include "pipeline/build_environment.h"
#include "pipeline/build_error.h"
#include "pipeline/build_step.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmora
{

/// How much a build had to do; bytes, 0 for what it did not come to.
struct BuildFigures {
    std::int64_t contentBytes = 0; ///< what the staged content takes up on the volume, catalog included
    std::int64_t imageBytes = 0;   ///< size of the writable image from which the finished one is made
};

/// Turns a project into a finished disk image, synchronously, on the calling thread. One object serves one build.
class DMGBuilder
{
public:
    DMGBuilder(LogCallback log, BuildEnvironment environment, StepCallback step = {});

    /// Builds `project` (with migrated icon coordinates) into `output`; an existing file there is replaced. Throws
    /// BuildError, or a file error with its own text. Whatever happens, the scratch folder is removed and no image
    /// stays attached. A stop request ends in BuildError "Build stopped."
    void build(const DMGProject& project, const std::filesystem::path& output);

    /// What the project asked for and the image lacks, in sentences for a person, collected by build().
    [[nodiscard]] const std::vector<std::string>& warnings() const { return m_warnings; }
    /// Collected by build(), also by one that failed.
    [[nodiscard]] const BuildFigures& figures() const { return m_figures; }

private:
    LogCallback m_log;
    BuildEnvironment m_environment;
    StepCallback m_step;
    std::vector<std::string> m_warnings{};
    BuildFigures m_figures{};
};

} // namespace velmora
