#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>

namespace caudalis {

/// NaN, the infinities and the extreme values, and tests for them.
class Doubles {
public:
    static std::shared_ptr<Doubles> shared();

    /// The library's NaN: the negative quiet NaN, bits 0xFFF8000000000000.
    double NaN() const noexcept { return std::bit_cast<double>(0xFFF8000000000000ULL); }
    double PositiveInfinity() const noexcept;
    double NegativeInfinity() const noexcept;
    /// 1.79769313486231E+308, a little below the largest finite double.
    double MaxValue() const noexcept;
    /// -1.79769313486231E+308.
    double MinValue() const noexcept;

    /// True for a value that prints like the library's NaN: a NaN with the sign bit set. (The text
    /// form of a NaN depends on its sign only, so no formatting is needed to tell.)
    bool isNaN(double value) const noexcept { return std::isnan(value) && std::signbit(value); }
    /// True when the value equals positive infinity or is unordered with it (so every NaN).
    bool isPositiveInfinity(double value) const noexcept;
    /// True when the value equals negative infinity or is unordered with it (so every NaN).
    bool isNegativeInfinity(double value) const noexcept;
    /// NaN when either is NaN; otherwise `First` when it is greater, else `Last`.
    double Max(double First, double Last) const noexcept {
        if (isNaN(First) || isNaN(Last)) {
            return NaN();
        }
        return First > Last ? First : Last;
    }
    /// NaN when either is NaN; otherwise `First` when it is smaller, else `Last`.
    double Min(double First, double Last) const noexcept {
        if (isNaN(First) || isNaN(Last)) {
            return NaN();
        }
        return First < Last ? First : Last;
    }
};

/// `value` / 100.
double percentToFraction(double value);

/// Arc sine in radians as the arc tangent of x / sqrt(1 - x*x); NaN when |x| >= 1 or x is NaN.
double arcSin(double x) noexcept;

}  // namespace caudalis
