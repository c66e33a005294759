#include "caudalis/core/Checked.hpp"

#include <cmath>

#include "caudalis/core/Error.hpp"

namespace caudalis::checked {
namespace {

double verified(double value, double a, double b) {
    if (!std::isfinite(value) && std::isfinite(a) && std::isfinite(b)) {
        raiseError(RuntimeError::Overflow);
    }
    return value;
}

}  // namespace

double add(double a, double b) {
    return verified(a + b, a, b);
}

double sub(double a, double b) {
    return verified(a - b, a, b);
}

double mul(double a, double b) {
    return verified(a * b, a, b);
}

double div(double a, double b) {
    if (b == 0.0 && std::isfinite(a) && a != 0.0) {
        raiseError(RuntimeError::DivisionByZero);
    }
    return verified(a / b, a, b);
}

double pow(double base, double exponent) {
    if (base < 0.0 && std::isfinite(exponent) && exponent != std::trunc(exponent)) {
        raiseError(RuntimeError::InvalidProcedureCall);
    }
    return verified(std::pow(base, exponent), base, exponent);
}

double result(double value, double operand) {
    return verified(value, operand, operand);
}

}  // namespace caudalis::checked
