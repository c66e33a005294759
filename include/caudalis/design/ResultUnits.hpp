#pragma once

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// The one place where a design result's figures leave SI: a copy of the result whose
/// pressures, flows, lengths, diameters, spacings, depths, rates and areas are in `units`
/// (records and summary alike; the nozzle objects stay as the catalogue has them, see
/// `nozzleFigure`). Only writers use such a copy; the library never computes with it.
class ResultUnits {
public:
    static DesignResult convert(const DesignResult& result, const Units& units);
};

}  // namespace caudalis::design
