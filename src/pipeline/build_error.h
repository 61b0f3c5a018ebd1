#pragma once

#include <stdexcept>
#include <string>

namespace velmora
{

/// Why a build failed; the message is shown to a person as it stands.
class BuildError : public std::runtime_error
{
public:
    explicit BuildError(const std::string& text) : std::runtime_error(text), message(text) {}
    std::string message;
};

} // namespace velmora
