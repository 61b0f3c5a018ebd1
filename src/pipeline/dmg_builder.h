#pragma once

#include "model/project.h"
#include "pipeline/build_environment.h"

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora
{

/// Why a build failed; the message is shown to a person as it stands.
class BuildError : public std::runtime_error
{
public:
    explicit BuildError(const std::string& text) : std::runtime_error(text), message(text) {}
    std::string message;
};

/// The stages that a person sees while a build runs, in order.
enum class BuildStep { staging, background, create, layout, detach, convert, sign };

/// Reports that a step has begun or advanced; `fraction` of the whole build is done (0..1).
using StepCallback = std::function<void(BuildStep step, double fraction)>;

/// The name of a step for a person ("Creating image").
std::string_view displayName(BuildStep step);

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

private:
    LogCallback m_log;
    BuildEnvironment m_environment;
    StepCallback m_step;
    std::vector<std::string> m_warnings{};
};

} // namespace velmora
