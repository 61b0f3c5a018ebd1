#pragma once

#include <map>
#include <string>

/// Extended attributes by their name on the volume: on Linux "X" is the attribute "user.X", and the system's own name
/// spaces stay out of sight.
namespace velmora::ExtendedAttributes
{

using Map = std::map<std::string, std::string>;

/// The attributes of an open file; false with errno set when they cannot be read. A file system without them has none.
bool read(int fd, Map& attributes);
/// The same for a path, a link not followed.
bool read(const char* path, Map& attributes);
/// Sets one attribute; false with errno set.
bool write(int fd, const std::string& name, const std::string& value);

} // namespace velmora::ExtendedAttributes
