#include "editor/build_session.h"

#include "pipeline/dmg_builder.h"

#include <exception>
#include <utility>

namespace velmora
{
namespace
{

BuildOutcome runBuild(const DMGProject& project, const std::filesystem::path& output, BuildEnvironment environment,
                      const BuildSession::Listener& listener)
{
    BuildOutcome outcome;
    try {
        DMGBuilder builder(listener.line, std::move(environment), listener.step);
        builder.build(project, output);
        outcome.warnings = builder.warnings();
    } catch (const BuildError& error) {
        outcome.error = error.message;
        outcome.field = problemField(project, error.field);
    } catch (const std::exception& error) {
        outcome.error = error.what();
    } catch (...) {
        outcome.error = "The build failed for an unknown reason.";
    }
    return outcome;
}

} // namespace

BuildSession::BuildSession(DMGProject project, std::filesystem::path output,
                           const std::function<BuildEnvironment(StopToken)>& environment, Listener listener)
{
    m_thread = std::thread(
        [project = std::move(project), output = std::move(output), surroundings = environment(m_stop.token()),
         listener = std::move(listener)] { listener.finished(runBuild(project, output, surroundings, listener)); });
}

BuildSession::~BuildSession()
{
    stop();
}

void BuildSession::stop()
{
    m_stop.requestStop();
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace velmora
