#pragma once

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// A copy of a design result for writers: the figures of its span and outlet records, its
/// summary, the package's inner distance and the design's pressures and flows in `units`.
/// The design's span descriptions and drop, the machine, the analysis and the nozzle objects
/// stay in SI; the writers convert what they print of those themselves. The library never
/// computes with such a copy.
class ResultUnits {
public:
    static DesignResult convert(const DesignResult& result, const Units& units);
};

}  // namespace caudalis::design
