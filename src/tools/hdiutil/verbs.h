#pragma once

#include "platform/stop_token.h"

#include <filesystem>
#include <span>
#include <string>

/// The verbs of hdiutil. Each takes the arguments after its name and returns the exit status; UsageError for a wrong
/// command line, any other exception for a failure. A requested stop ends a verb with an exception, nothing left
/// behind.
namespace velmora::tools::hdiutil
{

int create(std::span<const std::string> arguments, const StopToken& stop);
int attach(std::span<const std::string> arguments, const StopToken& stop);
int detach(std::span<const std::string> arguments, const StopToken& stop);
int info(std::span<const std::string> arguments, const StopToken& stop);
int convert(std::span<const std::string> arguments, const StopToken& stop);
int internetEnable(std::span<const std::string> arguments, const StopToken& stop);
int imageinfo(std::span<const std::string> arguments, const StopToken& stop);
int verify(std::span<const std::string> arguments, const StopToken& stop);

/// The absolute path of an image to write: ".dmg" is appended to a name without an extension.
std::filesystem::path outputPath(const std::string& argument);

/// Throws std::runtime_error when the file is an image that is attached: it would be changed under the session, or
/// read before the session's content is in it.
void refuseAttached(const std::filesystem::path& image);

/// Throws std::runtime_error when a stop was requested.
void throwIfStopped(const StopToken& stop);

} // namespace velmora::tools::hdiutil
