#include "app/kit/slider_scale.h"

#include <algorithm>
#include <cmath>

namespace velmora
{

double withoutDust(double value)
{
    return std::abs(value) < 1e6 ? std::round(value * 1e9) / 1e9 : value;
}

double SliderScale::fractionOf(double value) const
{
    if (!(maximum > minimum) || !(value > minimum)) // not a number lies at the left
        return 0;
    if (value >= maximum)
        return 1;
    if (kind == Kind::logarithmic)
        return std::log(value / minimum) / std::log(maximum / minimum);
    return (value - minimum) / (maximum - minimum);
}

double SliderScale::valueAt(double fraction) const
{
    const double part = std::clamp(fraction, 0.0, 1.0);
    const double exact =
        kind == Kind::logarithmic ? minimum * std::pow(maximum / minimum, part) : minimum + part * (maximum - minimum);
    const double stepped = step > 0 ? minimum + std::round((exact - minimum) / step) * step : exact;
    return withoutDust(std::clamp(stepped, minimum, maximum));
}

double SliderScale::stepped(double value, int steps) const
{
    const double next = withoutDust(std::clamp(value + steps * step, minimum, maximum));
    const bool wrongWay = (steps > 0 && next < value) || (steps < 0 && next > value);
    return wrongWay ? value : next;
}

} // namespace velmora
