#include "tools/support/owner_process.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

namespace velmora::tools
{

namespace
{

/// The fields of /proc/PID/stat (proc(5)) from the third on, which come after the program's name in parentheses: state,
/// parent, … Empty when there is no such process or no /proc.
std::vector<std::string> statusFields(const std::string& pid)
{
    std::ifstream file("/proc/" + pid + "/stat");
    const std::string line{std::istreambuf_iterator<char>(file), {}};
    const auto nameEnd = line.rfind(')');
    if (nameEnd == std::string::npos)
        return {};
    std::istringstream rest(line.substr(nameEnd + 1));
    return {std::istream_iterator<std::string>(rest), {}};
}

constexpr std::size_t stateField = 0;
constexpr std::size_t parentField = 1;
constexpr std::size_t startTimeField = 19;

} // namespace

std::string parentProcess()
{
    const auto own = statusFields("self");
    if (own.size() <= startTimeField)
        return {};
    const auto parent = statusFields(own[parentField]);
    return parent.size() > startTimeField ? own[parentField] + " " + parent[startTimeField] : std::string{};
}

bool isRunning(const std::string& process)
{
    const auto space = process.find(' ');
    if (space == std::string::npos || process.find('/') != std::string::npos || statusFields("self").empty())
        return true;
    const auto fields = statusFields(process.substr(0, space));
    return fields.size() > startTimeField && fields[startTimeField] == process.substr(space + 1) &&
           fields[stateField] != "Z";
}

} // namespace velmora::tools
