#include "tools/support/owner_process.h"

#include "platform/process_status.h"

namespace velmora::tools
{

std::string parentProcess()
{
    const auto own = processStatus("self");
    const auto parent = own ? processStatus(own->parent) : std::nullopt;
    return parent ? own->parent + " " + std::to_string(parent->startTime) : std::string{};
}

bool isRunning(const std::string& process)
{
    const auto space = process.find(' ');
    if (space == std::string::npos || process.find('/') != std::string::npos || !processStatus("self"))
        return true;
    const auto status = processStatus(process.substr(0, space));
    return status && std::to_string(status->startTime) == process.substr(space + 1) && status->state != 'Z';
}

} // namespace velmora::tools
