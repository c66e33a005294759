#pragma once

#include <cmath>

#include "caudalis/core/Checked.hpp"

namespace caudalis {

/// The flows that lie within a relative tolerance of a wanted flow, both bounds included.
struct FlowRange {
    double low = 0;
    double high = 0;
};

/// (1 - variacao) * caudal up to (variacao + 1) * caudal, with checked arithmetic.
FlowRange flowRange(double caudal, double variacao);

/// True when `flow` lies within `range`; false for a NaN flow.
inline bool isWithin(double flow, const FlowRange& range) noexcept {
    return flow >= range.low && flow <= range.high;
}

/// |flow / caudal - 1| with checked arithmetic (a `caudal` of 0 raises). Only a deviation that
/// is not finite can come from a step that fails; that one is worked out again step by step, so
/// that the same error is raised.
inline double flowDeviation(double flow, double caudal) {
    const double deviation = std::abs(flow / caudal - 1.0);
    if (!std::isfinite(deviation)) [[unlikely]] {
        return std::abs(checked::sub(checked::div(flow, caudal), 1.0));
    }
    return deviation;
}

}  // namespace caudalis
