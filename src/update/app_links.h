#pragma once

/// The product's addresses on the web. All absolute https addresses.
namespace velmora::AppLinks
{

inline constexpr const char* website = "https://velmora.app/";
inline constexpr const char* download = "https://velmora.app/download";
/// The update feed; update_feed.h says what is in it.
inline constexpr const char* appcast = "https://velmora.app/appcast.json";

} // namespace velmora::AppLinks
