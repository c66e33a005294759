#pragma once

#include "caudalis/core/Comparator.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

/// Orders water-depth samples (Variants holding `WaterDepthSample` records) by depth, ties
/// broken by distance from the centre, or by distance alone. Any other key compares every pair
/// as neither greater, less nor equal.
class WaterDepthsComparator : public Comparator {
public:
    /// Selects the key; the parameter's spelling is part of the public interface.
    void init(compareWhat compareWath = compareWhat::depth);

    bool GT(const Variant& First, const Variant& second) override;
    /// GT or EQ, both asked of this object through its Comparator face.
    bool GTE(const Variant& First, const Variant& second) override;
    bool LT(const Variant& First, const Variant& second) override;
    /// LT or EQ, both asked of this object through its Comparator face.
    bool LTE(const Variant& First, const Variant& second) override;
    bool EQ(const Variant& First, const Variant& second) override;

private:
    Comparator& asComparator() noexcept { return *this; }

    compareWhat key_ = compareWhat::depth;
};

}  // namespace caudalis
