#pragma once

#include <QString>

namespace velmora
{

/// A control with a number that assistive technology may read and change as it does a slider.
class Adjustable
{
public:
    Adjustable() = default;
    Adjustable(const Adjustable&) = delete;
    Adjustable& operator=(const Adjustable&) = delete;
    virtual ~Adjustable() = default;

    [[nodiscard]] virtual double adjustableValue() const = 0;
    [[nodiscard]] virtual double adjustableMinimum() const = 0;
    [[nodiscard]] virtual double adjustableMaximum() const = 0;
    [[nodiscard]] virtual double adjustableStep() const = 0;
    /// Changes the value as a person would: within the range, with signals.
    virtual void adjust(double value) = 0;
    /// The value in words, for example "45 degrees".
    [[nodiscard]] virtual QString spokenValue() const = 0;
};

} // namespace velmora
