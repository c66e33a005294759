#pragma once

namespace caudalis::checked {

/// Floating-point arithmetic that raises instead of producing an infinity or a NaN from
/// finite operands: a division of a non-zero number by zero raises 11, every other such fault
/// (0/0, overflow, an invalid operation) raises 6. Operands that already are NaN or infinite
/// flow through unchecked.
double add(double a, double b);
double sub(double a, double b);
double mul(double a, double b);
double div(double a, double b);
/// Power; a negative base with a fractional exponent raises 5, as the runtime does.
double pow(double base, double exponent);
/// Checks the result of any other computation from finite operands (raises 6 when not finite).
double result(double value, double operand);

}  // namespace caudalis::checked
