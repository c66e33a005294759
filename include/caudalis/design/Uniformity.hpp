#pragma once

#include <optional>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis::design {

/// Uniformity figures of water-depth samples, each sample weighted by its distance from the
/// centre. Each figure is empty when it is not defined for the samples (no samples, no water,
/// too few samples for a low quarter).
class Uniformity {
public:
    /// Weighted mean depth (`WaterDepths::Average`).
    static std::optional<double> meanDepth(const BoundedArray<WaterDepthSample>& samples);
    /// Heermann-Hein coefficient: 100 * (1 - sum |d_i - mean| r_i / sum d_i r_i), in %; empty
    /// when the formula falls below 0, which is no uniformity.
    static std::optional<double> heermannHein(const BoundedArray<WaterDepthSample>& samples);
    /// The Heermann-Hein formula as it comes, which very uneven depths take below 0.
    static std::optional<double> heermannHeinFormula(const BoundedArray<WaterDepthSample>& samples);
    /// Weighted mean depth of the driest quarter (`WaterDepths::LowQuarter`).
    static std::optional<double> lowQuarterMean(const BoundedArray<WaterDepthSample>& samples);
    /// Low-quarter distribution uniformity: 100 * mean(low quarter) / mean(all), in %.
    static std::optional<double> lowQuarter(const BoundedArray<WaterDepthSample>& samples);
};

}  // namespace caudalis::design
