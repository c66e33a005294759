#pragma once

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/fieldtests/MeasuredDesignedComparison.hpp"

namespace caudalis {
class PivotWrapper;
}

namespace caudalis::design {

/// The designed machine as the measured-beside-designed comparison sees it: every outlet's
/// depth per revolution from `PivotWrapper::WaterDepthsSamples` (the computed flows, after
/// `calculate`), with its span, number, radius and ring width, and where each span lies.
class DesignedMachineProfile {
public:
    /// The profile of a wrapper computed with any strategy.
    static DesignedMachine of(PivotWrapper& wrapper);
    /// The profile of a design run (`DesignRunner`), whose outlets carry the same depths.
    static DesignedMachine of(const DesignResult& result);
};

}  // namespace caudalis::design
