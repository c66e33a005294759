#include "caudalis/core/Checked.hpp"

#include "caudalis/core/Error.hpp"

namespace caudalis::checked {

void raiseOverflow() {
    raiseError(RuntimeError::Overflow);
}

void raiseDivisionByZero() {
    raiseError(RuntimeError::DivisionByZero);
}

void raiseInvalidCall() {
    raiseError(RuntimeError::InvalidProcedureCall);
}

}  // namespace caudalis::checked
