#include "tools/support/tool_main.h"

#include "platform/signals.h"
#include "tools/support/arguments.h"

#include <iostream>

namespace velmora::tools
{

int runTool(int argc, char** argv, std::string_view name, std::string_view usage, const ToolBody& body)
{
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    if (arguments.size() == 1 && arguments.front() == "--help") {
        std::cout << usage;
        return 0;
    }
    try {
        StopSource stop;
        stopOnSignals(stop);
        const int status = body(arguments, stop.token());
        if (!std::cout.flush())
            throw std::runtime_error("standard output cannot be written");
        return status;
    } catch (const UsageError& error) {
        std::cerr << name << ": " << error.what() << '\n' << usage;
        return 2;
    } catch (const std::exception& error) {
        std::cerr << name << ": " << error.what() << '\n';
        return lastStopSignal() != 0 ? 128 + lastStopSignal() : 1;
    }
}

} // namespace velmora::tools
