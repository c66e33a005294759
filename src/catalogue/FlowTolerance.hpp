#pragma once

namespace caudalis {

/// The flows that lie within a relative tolerance of a wanted flow, both bounds included.
struct FlowRange {
    double low = 0;
    double high = 0;
};

/// (1 - variacao) * caudal up to (variacao + 1) * caudal, with checked arithmetic.
FlowRange flowRange(double caudal, double variacao);

/// True when `flow` lies within `range`; false for a NaN flow.
bool isWithin(double flow, const FlowRange& range) noexcept;

/// |flow / caudal - 1| with checked arithmetic (a `caudal` of 0 raises).
double flowDeviation(double flow, double caudal);

}  // namespace caudalis
