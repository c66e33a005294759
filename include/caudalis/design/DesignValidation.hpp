#pragma once

#include <optional>
#include <string>

#include "caudalis/design/DesignDescription.hpp"

namespace caudalis::design {

/// Checks that every number of a design description is finite and lies in the range a real
/// machine can have, so that a value typed in the wrong unit (a flow in gpm given as l/s, a
/// spacing in metres given as centimetres) or a NaN from a host program is refused with one
/// message naming the field as the design file spells it ("spans[1].outlet_spacing_cm must be
/// between 30 and 1000 cm, not 2.9"), in the description's own units. Raises `DesignError`
/// (`InvalidInput`).
class DesignValidation {
public:
    static void validate(const DesignDescription& design);

    /// The most water a machine may be designed for per hectare it irrigates (l/s per ha);
    /// about 43 mm a day, several times what any crop uses.
    static constexpr double maximumFlowPerHectare = 5.0;
    /// The closest outlet spacing (cm) and the longest span (m) a machine can have.
    static constexpr double minimumOutletSpacingCm = 30;
    static constexpr double maximumSpanLengthM = 100;
};

}  // namespace caudalis::design
