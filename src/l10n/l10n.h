#pragma once

#include <string>
#include <string_view>

namespace velmora
{
class LanguageManager;
}

namespace velmora::L10n
{

/// The text for a key in the chosen language, else in English, else the key itself.
std::string t(std::string_view key);

/// Has t() ask `manager`, which outlives that, in the place of the program's own; null takes that back.
void setSource(const LanguageManager* manager);

} // namespace velmora::L10n
