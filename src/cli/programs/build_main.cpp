// velmora-build: builds disk images without a window, for build servers and scripts.

#include "cli/build_command.h"
#include "cli/headless.h"
#include "platform/signals.h"

#include <iostream>

int main(int argc, char** argv)
{
    velmora::StopSource stop;
    velmora::stopOnSignals(stop);
    const velmora::cli::HeadlessApplication application(argc, argv, "velmora-build");

    const auto parsed = velmora::cli::parseBuildOptions(application.arguments());
    if (!parsed.options) {
        (parsed.exitStatus == 0 ? std::cout : std::cerr) << parsed.text;
        return parsed.exitStatus;
    }
    return velmora::cli::runBuild(*parsed.options, stop.token());
}
