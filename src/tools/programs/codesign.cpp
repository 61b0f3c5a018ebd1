#include "tools/support/arguments.h"
#include "tools/support/tool_main.h"

#include <stdexcept>

int main(int argc, char** argv)
{
    using namespace velmora;
    using namespace velmora::tools;
    constexpr const char* usage = "usage: codesign ARGUMENT…\n"
                                  "Signing is not available on this system; every call fails.\n";
    return runTool(argc, argv, "codesign", usage,
                   [](const std::vector<std::string>& arguments, const StopToken&) -> int {
                       if (arguments.empty())
                           throw UsageError("no arguments given");
                       throw std::runtime_error(
                           "images cannot be signed on this system. Turn signing off in the project, copy the "
                           "finished image to a Mac and run codesign on it there");
                   });
}
