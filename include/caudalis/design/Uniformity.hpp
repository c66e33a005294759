#pragma once

#include <optional>
#include <vector>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis::design {

/// Uniformity figures of water-depth samples, each sample weighted by its distance from the
/// centre. Each figure is empty when it is not defined for the samples (no samples, no water,
/// too few samples for a low quarter).
class Uniformity {
public:
    /// The samples (depths, field samples) as the 1-based array the figures and the evaluation
    /// tables take (unallocated when there are none).
    template <typename Sample>
    static BoundedArray<Sample> samples(const std::vector<Sample>& items) {
        BoundedArray<Sample> array;
        if (!items.empty()) {
            array.redim(1, static_cast<Long>(items.size()));
            for (Long i = 1; i <= array.count(); ++i) {
                array(i) = items[static_cast<std::size_t>(i - 1)];
            }
        }
        return array;
    }
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
