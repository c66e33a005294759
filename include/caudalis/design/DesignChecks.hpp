#pragma once

#include <vector>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/Finding.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// Looks over a computed design the way a dealer checks a package before signing it, and
/// lists what it finds, errors first, then warnings, then notes. Codes:
/// - error `pipe-pressure-negative`: the pipe pressure falls below zero somewhere;
/// - error `too-many-outlets`: more outlets than the 16-bit outlet numbers can address;
/// - warning `regulator-starved`: regulators with less than their rating plus the margin at
///   their inlet (one finding per span);
/// - warning `nozzle-out-of-range`: nozzles acting outside their rated pressure range;
/// - warning `outlets-without-nozzle`: outlets left empty (besides the plugged ones);
/// - warning `discharge-off`: computed discharge off the design flow by more than the limit;
/// - warning `low-uniformity`: Heermann-Hein CU under the design's minimum, or undefined;
/// - note `outlets-plugged`: outlets that need less than the smallest rated nozzle gives;
/// - note `nearest-size`: outlets fitted with the nearest size outside the tolerance;
/// - warning `figures-at-pipe-pressure`: the figures `StarvedRegulators` gave at the pipe
///   pressure rather than at the regulators' ratings;
/// - the figures outside their typical ranges (`PlausibilityChecks`).
/// Messages give figures in `units`.
class DesignChecks {
public:
    static std::vector<Finding> check(const DesignResult& result, const Units& units);
};

}  // namespace caudalis::design
