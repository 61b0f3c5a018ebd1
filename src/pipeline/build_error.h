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
    /// A fault of one field of the project; the message is the field and the sentence.
    BuildError(std::string key, const std::string& sentence) : BuildError(key + ": " + sentence)
    {
        field = std::move(key);
    }
    std::string message;
    std::string field{}; ///< the document's key ("items[2].x"), or "output", when it is about one
};

} // namespace velmora
