#pragma once

#include "caudalis/design/MeasuredDesignedComparison.hpp"

namespace caudalis {
class PivotWrapper;
}

namespace caudalis::design {

/// The designed machine as the measured-beside-designed comparison sees it: every outlet's
/// depth per revolution from `PivotWrapper::WaterDepthsSamples` (the computed flows, after
/// `calculate`), with its span, number, radius and ring width, and where each span lies.
class DesignedMachineProfile {
public:
    static DesignedMachine of(PivotWrapper& wrapper);
};

}  // namespace caudalis::design
