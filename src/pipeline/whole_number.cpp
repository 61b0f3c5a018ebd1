#include "pipeline/whole_number.h"

#include "pipeline/build_error.h"

#include <cmath>
#include <limits>

namespace velmora
{

void requireFinite(double value, const std::string& field)
{
    if (!std::isfinite(value))
        throw BuildError(field, "the value is not a finite number.");
}

std::int32_t wholeNumber(double value, const std::string& field)
{
    requireFinite(value, field);
    const double whole = std::trunc(value);
    if (whole < std::numeric_limits<std::int32_t>::min() || whole > std::numeric_limits<std::int32_t>::max())
        throw BuildError(field, "the value is too large.");
    return static_cast<std::int32_t>(whole);
}

} // namespace velmora
