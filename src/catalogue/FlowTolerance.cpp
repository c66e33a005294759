#include "FlowTolerance.hpp"

#include <cmath>

#include "caudalis/core/Checked.hpp"

namespace caudalis {

FlowRange flowRange(double caudal, double variacao) {
    const double low = checked::mul(checked::sub(1.0, variacao), caudal);
    const double high = checked::mul(checked::add(variacao, 1.0), caudal);
    return FlowRange{low, high};
}

bool isWithin(double flow, const FlowRange& range) noexcept {
    return flow >= range.low && flow <= range.high;
}

double flowDeviation(double flow, double caudal) {
    return std::abs(checked::sub(checked::div(flow, caudal), 1.0));
}

}  // namespace caudalis
