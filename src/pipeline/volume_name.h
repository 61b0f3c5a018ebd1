#pragma once

#include "pipeline/application_bundle.h"

#include <functional>
#include <string>

namespace velmora
{

/// A volume name in which {name} and {version} stand for what an application says about itself; all other text stays.
/// `application` is asked for each of them. Throws BuildError naming an unknown or unclosed brace, a
/// version that is missing, and one with characters that no version has.
std::string expandVolumeName(const std::string& text, const std::function<ApplicationBundle()>& application);

} // namespace velmora
