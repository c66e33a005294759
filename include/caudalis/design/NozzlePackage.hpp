#pragma once

#include <optional>

#include "caudalis/design/NozzleSet.hpp"

namespace caudalis::design {

/// A machine's nozzle package as a dealer puts it together: one set for the span outlets,
/// optionally a second set for the outlets up to `innerToDistanceM` from the centre, and one
/// for the end gun; how closely a nozzle must match, and what happens when none does.
struct NozzlePackage {
    NozzleSet spans;
    std::optional<NozzleSet> inner;
    double innerToDistanceM = 0;
    NozzleSet endGun;
    double tolerance = 0.1;
    NoFitPolicy whenNoneFits = NoFitPolicy::LeaveEmpty;

    /// Every outlet and the end gun choose among the same nozzles.
    static NozzlePackage uniform(const CollectionRef& nozzles, double tolerance);
};

}  // namespace caudalis::design
