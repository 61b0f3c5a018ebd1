#include "pipeline/problem.h"

#include "pipeline/text.h"

#include <algorithm>

namespace velmora
{

std::string elementField(const char* list, std::size_t index, const std::string& key)
{
    return std::string(list) + "[" + std::to_string(index) + "]." + key;
}

Problem errorIn(const std::string& field, const std::string& sentence)
{
    return {Severity::error, field, field + ": " + sentence};
}

Problem warningIn(const std::string& field, const std::string& sentence)
{
    return {Severity::warning, field, field + ": " + sentence};
}

void collect(Problems& problems, const std::function<void()>& check)
{
    try {
        check();
    } catch (const BuildError& error) {
        problems.push_back({Severity::error, error.field, error.message});
    }
}

void append(Problems& problems, const Problems& more)
{
    problems.insert(problems.end(), more.begin(), more.end());
}

bool hasErrors(const Problems& problems)
{
    return std::any_of(problems.begin(), problems.end(),
                       [](const Problem& problem) { return problem.severity == Severity::error; });
}

void throwIf(const std::optional<Problem>& problem)
{
    if (!problem)
        return;
    BuildError error(problem->message);
    error.field = problem->field;
    throw error;
}

std::string describe(const Problem& problem)
{
    std::string line = problem.severity == Severity::error ? "error: " : "warning: ";
    if (!problem.field.empty() && !problem.message.starts_with(problem.field))
        line += problem.field + ": ";
    line += problem.message;
    return withoutControls(line, ' ');
}

} // namespace velmora
