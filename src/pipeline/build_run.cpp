#include "pipeline/build_run.h"

#include "pipeline/build_error.h"
#include "pipeline/text.h"

namespace velmora
{

BuildRun::BuildRun(const LogCallback& log, const BuildEnvironment& environment, const StepCallback& step,
                   std::vector<std::string>& warnings)
    : m_log(log), m_environment(environment), m_step(step), m_warnings(warnings)
{
}

void BuildRun::say(const std::string& line) const
{
    if (m_log)
        m_log(line);
}

void BuildRun::warn(const std::string& sentence)
{
    m_warnings.push_back(sentence);
}

void BuildRun::warnAloud(const std::string& sentence)
{
    say("⚠️ " + sentence);
    warn(sentence);
}

void BuildRun::warnUnlessOk(const ShellResult& result, const std::string& sentence)
{
    if (result.ok())
        return;
    const std::string reason = trimmed(result.stdErr);
    warn(sentence + ": " + (reason.empty() ? "exit status " + std::to_string(result.exitCode) : reason));
}

void BuildRun::report(BuildStep step, double fraction) const
{
    if (m_step)
        m_step(step, fraction);
}

ShellResult BuildRun::tool(const std::string& executable, const std::vector<std::string>& arguments, Echo echo,
                           const std::optional<std::string>& input) const
{
    checkStop();
    ShellResult result = m_environment.shell->run(executable, arguments, input,
                                                  echo == Echo::logged ? m_log : LogCallback{}, m_environment.stop);
    checkStop();
    return result;
}

void BuildRun::pause(std::chrono::milliseconds duration) const
{
    m_environment.sleep(duration);
    checkStop();
}

void BuildRun::checkStop() const
{
    if (m_environment.stop.stopRequested())
        throw BuildError("Build stopped.");
}

} // namespace velmora
