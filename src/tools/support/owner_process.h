#pragma once

#include <string>

/// Which process a piece of state belongs to, so that what a dead one left can be told from what is in use.
namespace velmora::tools
{

/// Names the process that started this program, for as long as the machine runs: its number and the time it started,
/// as numbers are used again. Empty where the system does not tell.
std::string parentProcess();

/// Whether the process of such a name is still there. An empty name counts as there.
bool isRunning(const std::string& process);

} // namespace velmora::tools
