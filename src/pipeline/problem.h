#pragma once

#include "pipeline/build_error.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmora
{

/// An error fails the build or loses something that the project asks for; a warning does neither.
enum class Severity { warning, error };

/// Something about a project that a person should know before it is built.
struct Problem {
    Severity severity = Severity::error;
    std::string field{};   ///< the document's key ("items[2].sourcePath"); "output" for the image's place
    std::string message{}; ///< for a person, as it stands; may begin with the field and may have several lines

    bool operator==(const Problem&) const = default;
};
using Problems = std::vector<Problem>;

/// The field of a list's element: "items[2].x".
std::string elementField(const char* list, std::size_t index, const std::string& key);

/// An error whose message is the field and the sentence.
Problem errorIn(const std::string& field, const std::string& sentence);
/// The same as a warning.
Problem warningIn(const std::string& field, const std::string& sentence);

/// Runs a check that throws BuildError for what it finds, and adds that.
void collect(Problems& problems, const std::function<void()>& check);

/// Adds further ones at the end.
void append(Problems& problems, const Problems& more);

/// Whether there is an error among them.
bool hasErrors(const Problems& problems);

/// Throws BuildError with the problem's field and message, if there is one.
void throwIf(const std::optional<Problem>& problem);

/// One line for a person: severity, field and message.
std::string describe(const Problem& problem);

} // namespace velmora
