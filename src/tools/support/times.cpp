#include "tools/support/times.h"

#include <charconv>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace velmora::tools
{

std::optional<std::int64_t> sourceDateEpoch()
{
    const char* const variable = std::getenv("SOURCE_DATE_EPOCH");
    if (!variable || !*variable)
        return std::nullopt;
    const std::string_view text = variable;
    std::int64_t seconds = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc{} || stop != text.data() + text.size() || seconds < 0)
        throw std::runtime_error("SOURCE_DATE_EPOCH is not a number of seconds: \"" + std::string(text) + "\"");
    return seconds;
}

std::int64_t currentTime()
{
    if (const auto epoch = sourceDateEpoch())
        return *epoch;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

} // namespace velmora::tools
