#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora
{

/// What the update feed announces. The feed is one JSON object with the texts "version" (required) and "url"; other
/// keys are passed over, and a value of another type counts as missing.
struct UpdateFeed {
    std::string version{};            ///< the newest published version
    std::optional<std::string> url{}; ///< where to get it, unchecked
    bool operator==(const UpdateFeed&) const = default;
};

/// Reads the feed's bytes; nothing when they are not valid JSON, not an object, or name no version.
std::optional<UpdateFeed> parseUpdateFeed(std::string_view body);

/// The address to open for a feed's "url": that address in encoded form when it is a well-formed absolute http or https
/// address, else `fallback`.
std::string addressToOpen(const std::optional<std::string>& url, const std::string& fallback);

} // namespace velmora
