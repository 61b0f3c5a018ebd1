#pragma once

#include "pipeline/build_environment.h"
#include "pipeline/build_step.h"

#include <string>
#include <vector>

namespace velmora
{

/// Whether a tool's command line and output show in the build log.
enum class Echo { logged, silent };

/// What the steps of one build share: where they report to and how they run tools. Keeps references; its owner outlives
/// it. Build's thread only.
class BuildRun
{
public:
    BuildRun(const LogCallback& log, const BuildEnvironment& environment, const StepCallback& step,
             std::vector<std::string>& warnings);

    [[nodiscard]] const BuildEnvironment& environment() const { return m_environment; }
    [[nodiscard]] const LogCallback& log() const { return m_log; }

    /// Writes one line of the build log.
    void say(const std::string& line) const;
    /// Remembers what the image will lack, a sentence for a person. Not logged.
    void warn(const std::string& sentence);
    /// The same, with a line in the log.
    void warnAloud(const std::string& sentence);
    /// warn() with `sentence` and the tool's own reason when the tool failed.
    void warnUnlessOk(const ShellResult& result, const std::string& sentence);
    /// Passes progress on.
    void report(BuildStep step, double fraction) const;

    /// Runs a tool and returns how it went. Throws BuildError when a stop is requested before, meanwhile or after.
    [[nodiscard]] ShellResult tool(const std::string& executable, const std::vector<std::string>& arguments,
                                   Echo echo = Echo::logged, const std::optional<std::string>& input = {}) const;
    /// Waits. Throws BuildError when a stop is requested.
    void pause(std::chrono::milliseconds duration) const;
    /// Throws BuildError when a stop is requested.
    void checkStop() const;

private:
    const LogCallback& m_log;
    const BuildEnvironment& m_environment;
    const StepCallback& m_step;
    std::vector<std::string>& m_warnings;
};

} // namespace velmora
