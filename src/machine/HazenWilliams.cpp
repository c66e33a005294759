#include "caudalis/machine/HazenWilliams.hpp"

#include "PipeFriction.hpp"

namespace caudalis {

double hazenWilliamsLoss(double q, double d, double c) {
    return PipeFriction(d).unitLoss(q, c);
}

}  // namespace caudalis
