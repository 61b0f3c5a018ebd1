#pragma once

#include <filesystem>

namespace velmora
{

/// The folder of the running program's file, links resolved; empty when the system does not tell.
std::filesystem::path programFolder();

/// The installation's folder above bin/ (or above libexec/velmora/) in which the running program lies; on macOS, for a
/// program in an application bundle, the bundle's Contents folder.
std::filesystem::path installationFolder();

} // namespace velmora
