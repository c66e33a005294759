#include "caudalis/evaluation/WaterDepths.hpp"

#include <cmath>
#include <limits>

#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Exceptions.hpp"
#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/evaluation/WaterDepthsComparator.hpp"
#include "caudalis/machine/IntegerArithmetic.hpp"

namespace caudalis {
namespace {

constexpr Double quarter = 0.25;

}  // namespace

std::shared_ptr<WaterDepths> WaterDepths::shared() {
    static LazyInstance<WaterDepths> instance;
    return instance.get();
}

WaterDepthSample WaterDepths::newWaterDepthSample(Double depth, Double distanceFromCenter) const {
    return WaterDepthSample{depth, distanceFromCenter, false};
}

WaterDepthSample WaterDepths::NullWaterDepth() const {
    return WaterDepthSample{0, 0, true};
}

bool WaterDepths::Valid(const WaterDepthSample& self) const {
    return self.depth >= 0 && self.distanceFromCenter > 0 && !self.p_null;
}

Double WaterDepths::PonderatedDepths(const WaterDepthSample& self) const {
    return checked::mul(self.distanceFromCenter, self.depth);
}

Double WaterDepths::PonderatedDeviation(const WaterDepthSample& self, Double averageDepth) const {
    return checked::mul(std::abs(checked::sub(self.depth, averageDepth)), self.distanceFromCenter);
}

BoundedArray<WaterDepthSample> WaterDepths::Sort(const BoundedArray<WaterDepthSample>& list,
                                                 compareWhat by) const {
    const auto comparator = comparatorFor(by);
    return Arrays::shared()->Sort(list, *comparator);
}

BoundedArray<WaterDepthSample> WaterDepths::LowQuarter(const BoundedArray<WaterDepthSample>& list) const {
    const BoundedArray<WaterDepthSample> sorted = Sort(list, compareWhat::depth);
    const Integer count = lowQuarterCount(sorted);
    if (count == 0) {
        Exceptions::shared()->throw_(
            Variant(errorNumber(WaterDepthSampleException::NotEnoughSamplesToComputeLowQuarter)));
    }
    return Arrays::shared()->Slice(sorted, 1, count);
}

Double WaterDepths::Average(const BoundedArray<WaterDepthSample>& list, Long& limit) const {
    const Integer length = Arrays::shared()->Length(list);
    limit = Variant(Doubles::shared()->Min(length, limit)).toLong();
    Double weights = 0;
    Double weightedDepths = 0;
    for (Long i = 1; i <= limit; ++i) {
        weights = checked::add(weights, list(i).distanceFromCenter);
        weightedDepths = checked::add(weightedDepths, PonderatedDepths(list(i)));
    }
    return checked::div(weightedDepths, weights);
}

Double WaterDepths::Average(const BoundedArray<WaterDepthSample>& list) const {
    Long limit = std::numeric_limits<Long>::max();
    return Average(list, limit);
}

std::shared_ptr<WaterDepthsComparator> WaterDepths::comparatorFor(compareWhat by) const {
    auto comparator = std::make_shared<WaterDepthsComparator>();
    comparator->init(by);
    return comparator;
}

// The quarter is compared against the running total, and the next sample's weight is read
// before its existence is known: when every remaining sample fits, this runs past the end.
Integer WaterDepths::lowQuarterCount(const BoundedArray<WaterDepthSample>& sorted) const {
    const Integer length = Arrays::shared()->Length(sorted);
    Double total = 0;
    Double cumulative = 0;
    Integer count = 0;
    for (Long i = 1; i <= length; ++i) {
        total = checked::add(total, sorted(i).distanceFromCenter);
        while (checked::add(cumulative, sorted(integer::add(count, 1)).distanceFromCenter) <=
               checked::mul(quarter, total)) {
            count = integer::add(count, 1);
            cumulative = checked::add(cumulative, sorted(count).distanceFromCenter);
        }
    }
    return count;
}

}  // namespace caudalis
