#include "tools/support/arguments.h"
#include "tools/support/tool_main.h"

#include <stdexcept>

int main(int argc, char** argv)
{
    using namespace velmora;
    using namespace velmora::tools;
    constexpr const char* usage = "usage: xcrun notarytool|stapler ARGUMENT…\n"
                                  "Notarization is not available on this system; every call fails.\n";
    return runTool(argc, argv, "xcrun", usage, [](const std::vector<std::string>& arguments, const StopToken&) -> int {
        if (arguments.empty())
            throw UsageError("no tool given");
        if (arguments.front() != "notarytool" && arguments.front() != "stapler")
            throw UsageError("unknown tool \"" + arguments.front() + "\"");
        throw std::runtime_error(arguments.front() + ": images cannot be notarized on this system. Turn notarization " +
                                 "off in the project, copy the signed image to a Mac and notarize it there");
    });
}
