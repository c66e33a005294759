#pragma once

#include <memory>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class WaterDepthsComparator;

/// Water-depth samples and their distance-weighted statistics. Every figure weights a sample by
/// its distance from the pivot centre. Lists are 1-based arrays; null and invalid samples are
/// not skipped (callers filter them first).
class WaterDepths {
public:
    /// The library-wide instance.
    static std::shared_ptr<WaterDepths> shared();

    /// A sample with the two values as given and `p_null` false.
    WaterDepthSample newWaterDepthSample(Double depth, Double distanceFromCenter) const;
    /// Depth 0, distance 0, `p_null` true.
    WaterDepthSample NullWaterDepth() const;
    /// depth >= 0, distance > 0 and not null (NaN in either field is invalid).
    bool Valid(const WaterDepthSample& self) const;
    /// distance x depth.
    Double PonderatedDepths(const WaterDepthSample& self) const;
    /// |depth - averageDepth| x distance.
    Double PonderatedDeviation(const WaterDepthSample& self, Double averageDepth) const;
    /// A sorted copy of `list`; the caller's list is left as it was.
    BoundedArray<WaterDepthSample> Sort(const BoundedArray<WaterDepthSample>& list, compareWhat by) const;
    /// The driest samples (equal depths nearer the centre first) that together weigh at most a
    /// quarter of the total weight. Raises NotEnoughSamplesToComputeLowQuarter when there is
    /// none, and 9 when every sample fits in the quarter (all weights zero, for instance).
    BoundedArray<WaterDepthSample> LowQuarter(const BoundedArray<WaterDepthSample>& list) const;
    /// Weighted mean depth of the first `limit` samples. `limit` becomes min(length, limit),
    /// which is written back. An empty list or a zero weight sum raises (6 for 0/0, else 11).
    Double Average(const BoundedArray<WaterDepthSample>& list, Long& limit) const;
    /// Weighted mean depth of the whole list.
    Double Average(const BoundedArray<WaterDepthSample>& list) const;

private:
    std::shared_ptr<WaterDepthsComparator> comparatorFor(compareWhat by) const;
    Integer lowQuarterCount(const BoundedArray<WaterDepthSample>& sorted) const;
};

}  // namespace caudalis
