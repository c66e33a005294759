#include "caudalis/machine/HazenWilliams.hpp"

#include "caudalis/core/Checked.hpp"

namespace caudalis {

double hazenWilliamsLoss(double q, double d, double c) {
    const double ratio = checked::div(q, c);
    const double powered = checked::pow(ratio, 1.852);
    const double factor = checked::mul(checked::mul(checked::pow(10, 10), 1.21), powered);
    return checked::mul(checked::pow(d, -4.87), factor);
}

}  // namespace caudalis
