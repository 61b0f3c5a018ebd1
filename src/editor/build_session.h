#pragma once

#include "model/project.h"
#include "pipeline/build_environment.h"
#include "pipeline/build_step.h"
#include "pipeline/problem_field.h"
#include "platform/stop_token.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace velmora
{

/// How a build ended.
struct BuildOutcome {
    std::optional<std::string> error{}; ///< nothing after a success
    ProblemField field{};               ///< what of the built project the error is about
    std::vector<std::string> warnings{};
};

/// One build on a thread of its own, working on its own copy of the project.
class BuildSession
{
public:
    /// What the build tells, on its thread and in order; `finished` comes last, exactly once.
    struct Listener {
        LogCallback line{};
        StepCallback step{};
        std::function<void(const BuildOutcome&)> finished{};
    };

    /// Starts at once. `environment` is called here, on the calling thread. Throws when the build cannot be started;
    /// the listener hears nothing then.
    BuildSession(DMGProject project, std::filesystem::path output,
                 const std::function<BuildEnvironment(StopToken)>& environment, Listener listener);
    /// stop().
    ~BuildSession();
    BuildSession(const BuildSession&) = delete;
    BuildSession& operator=(const BuildSession&) = delete;

    /// Asks the build to end and waits until it has cleared up. No effect when it is over.
    void stop();

private:
    StopSource m_stop{};
    std::thread m_thread{};
};

} // namespace velmora
