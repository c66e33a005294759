#include "FlowTolerance.hpp"

namespace caudalis {

FlowRange flowRange(double caudal, double variacao) {
    const double low = checked::mul(checked::sub(1.0, variacao), caudal);
    const double high = checked::mul(checked::add(variacao, 1.0), caudal);
    return FlowRange{low, high};
}

}  // namespace caudalis
