#pragma once

#include <functional>
#include <string>
#include <vector>

namespace velmora
{

/// Answers which languages the user prefers, best first, as codes such as "en-US"; may be empty.
using PreferredLanguages = std::function<std::vector<std::string>()>;

/// The running system's answer.
std::vector<std::string> systemPreferredLanguages();

} // namespace velmora
