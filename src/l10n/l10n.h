#pragma once

#include <string>
#include <string_view>

namespace velmora::L10n
{

/// The text for a key in the chosen language, else in English, else the key itself.
std::string t(std::string_view key);

} // namespace velmora::L10n
