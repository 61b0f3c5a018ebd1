#include "platform/process_status.h"

#include <fstream>
#include <iterator>
#include <sstream>

namespace velmora
{

std::optional<ProcessStatus> processStatus(const std::string& pid)
{
    std::ifstream file("/proc/" + pid + "/stat");
    const std::string line{std::istreambuf_iterator<char>(file), {}};
    const auto nameEnd = line.rfind(')'); // the name itself may hold blanks and brackets
    if (nameEnd == std::string::npos)
        return std::nullopt;
    std::istringstream fields(line.substr(nameEnd + 1));
    ProcessStatus status;
    fields >> status.state >> status.parent; // fields 3 and 4
    std::string skipped;
    for (int field = 5; field < 22; ++field)
        fields >> skipped;
    return fields >> status.startTime ? std::optional(status) : std::nullopt;
}

} // namespace velmora
