#include "pipeline/finder_layout.h"

#include "pipeline/layout_script.h"
#include "pipeline/sidebar_guard.h"
#include "pipeline/text.h"

namespace velmora
{

void applyFinderLayout(BuildRun& run, const DMGProject& project, const std::string& mountPoint,
                       const std::optional<std::string>& backgroundName)
{
    const BuildEnvironment& environment = run.environment();
    const std::string script = layoutScript(project, std::string(lastComponent(mountPoint)), backgroundName);
    run.checkStop();
    const FinderSidebarGuard::Places places{environment.homeFolder, environment.temporaryFolder, environment.uuid()};
    FinderSidebarGuard::preserveDuring(places, run.log(), [&] {
        const ShellResult result = environment.shell->runAppleScript(script, run.log(), environment.stop);
        run.checkStop();
        if (result.ok())
            return;
        run.say("⚠️ Finder layout step reported: " + trimmed(result.stdErr));
        run.say("(Files are included; grant Automation/Finder permission for full layout.)");
        run.warnUnlessOk(result, "The look of the window could not be set");
    });
}

} // namespace velmora
