#pragma once

namespace velmora
{

/// Sums of steps such as 0.05 without the dust of binary fractions.
double withoutDust(double value);

/// How a slider's track stands for numbers. Fractions of the track run from 0 at the left to 1.
struct SliderScale {
    enum class Kind {
        linear,
        logarithmic, ///< each doubling takes the same part of the track; the range is positive
    };

    double minimum = 0;
    double maximum = 1;
    double step = 0.01;
    Kind kind = Kind::linear;

    /// Where a value lies; values beyond the range lie at its end.
    [[nodiscard]] double fractionOf(double value) const;
    /// The value at a fraction, on a whole step from the minimum and within the range.
    [[nodiscard]] double valueAt(double fraction) const;
    /// `value` moved by so many steps and kept in the range; from beyond the range it never moves farther away.
    [[nodiscard]] double stepped(double value, int steps) const;
};

} // namespace velmora
