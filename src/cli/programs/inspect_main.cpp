// velmora-inspect: looks into a disk image.

#include "cli/headless.h"
#include "cli/inspect_command.h"

#include <iostream>

int main(int argc, char** argv)
{
    const velmora::cli::HeadlessApplication application(argc, argv, "velmora-inspect");
    const auto parsed = velmora::cli::parseInspectOptions(application.arguments());
    if (!parsed.options) {
        (parsed.exitStatus == 0 ? std::cout : std::cerr) << parsed.text;
        return parsed.exitStatus;
    }
    return velmora::cli::runInspect(*parsed.options);
}
