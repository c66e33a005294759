#pragma once

#include <cmath>

namespace caudalis::checked {

/// Raise the runtime's errors 6 (overflow), 11 (division by zero) and 5 (invalid procedure
/// call); kept out of line so that the checks below stay small enough to inline.
[[noreturn]] void raiseOverflow();
[[noreturn]] void raiseDivisionByZero();
[[noreturn]] void raiseInvalidCall();

/// `value` when it is finite or when an operand already was not; raises 6 otherwise.
inline double verified(double value, double a, double b) {
    if (!std::isfinite(value) && std::isfinite(a) && std::isfinite(b)) [[unlikely]] {
        raiseOverflow();
    }
    return value;
}

/// Floating-point arithmetic that raises instead of producing an infinity or a NaN from
/// finite operands: a division of a non-zero number by zero raises 11, every other such fault
/// (0/0, overflow, an invalid operation) raises 6. Operands that already are NaN or infinite
/// flow through unchecked.
inline double add(double a, double b) {
    return verified(a + b, a, b);
}

inline double sub(double a, double b) {
    return verified(a - b, a, b);
}

inline double mul(double a, double b) {
    return verified(a * b, a, b);
}

inline double div(double a, double b) {
    if (b == 0.0 && std::isfinite(a) && a != 0.0) [[unlikely]] {
        raiseDivisionByZero();
    }
    return verified(a / b, a, b);
}

/// True when `base` ^ `exponent` is a negative base with a fractional exponent, which the
/// runtime refuses (error 5).
inline bool isInvalidPower(double base, double exponent) {
    return base < 0.0 && std::isfinite(exponent) && exponent != std::trunc(exponent);
}

/// Power; a negative base with a fractional exponent raises 5, as the runtime does.
inline double pow(double base, double exponent) {
    if (isInvalidPower(base, exponent)) [[unlikely]] {
        raiseInvalidCall();
    }
    return verified(std::pow(base, exponent), base, exponent);
}

/// Checks the result of any other computation from finite operands (raises 6 when not finite).
inline double result(double value, double operand) {
    return verified(value, operand, operand);
}

}  // namespace caudalis::checked
