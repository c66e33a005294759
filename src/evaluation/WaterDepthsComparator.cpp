#include "caudalis/evaluation/WaterDepthsComparator.hpp"

namespace caudalis {
namespace {

const WaterDepthSample& sampleOf(const Variant& value) {
    return value.toRecord<WaterDepthSample>();
}

}  // namespace

void WaterDepthsComparator::init(compareWhat compareWath) {
    key_ = compareWath;
}

bool WaterDepthsComparator::GT(const Variant& First, const Variant& second) {
    const WaterDepthSample& a = sampleOf(First);
    const WaterDepthSample& b = sampleOf(second);
    switch (key_) {
        case compareWhat::depth:
            return a.depth > b.depth || (a.depth == b.depth && a.distanceFromCenter > b.distanceFromCenter);
        case compareWhat::distance:
            return a.distanceFromCenter > b.distanceFromCenter;
    }
    return false;
}

bool WaterDepthsComparator::LT(const Variant& First, const Variant& second) {
    const WaterDepthSample& a = sampleOf(First);
    const WaterDepthSample& b = sampleOf(second);
    switch (key_) {
        case compareWhat::depth:
            return a.depth < b.depth || (a.depth == b.depth && a.distanceFromCenter < b.distanceFromCenter);
        case compareWhat::distance:
            return a.distanceFromCenter < b.distanceFromCenter;
    }
    return false;
}

bool WaterDepthsComparator::EQ(const Variant& First, const Variant& second) {
    const WaterDepthSample& a = sampleOf(First);
    const WaterDepthSample& b = sampleOf(second);
    switch (key_) {
        case compareWhat::depth:
            return a.depth == b.depth && a.distanceFromCenter == b.distanceFromCenter;
        case compareWhat::distance:
            return a.distanceFromCenter == b.distanceFromCenter;
    }
    return false;
}

bool WaterDepthsComparator::GTE(const Variant& First, const Variant& second) {
    Comparator& self = asComparator();
    return self.GT(First, second) || self.EQ(First, second);
}

bool WaterDepthsComparator::LTE(const Variant& First, const Variant& second) {
    Comparator& self = asComparator();
    return self.LT(First, second) || self.EQ(First, second);
}

}  // namespace caudalis
