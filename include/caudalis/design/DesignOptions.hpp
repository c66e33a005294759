#pragma once

#include <optional>

#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// How a design is run, beyond what its description says.
struct DesignOptions {
    /// The march gives up (`DesignError`, `NotSettled`) after this many passes.
    long maxPasses = 1000;
    /// The units of the findings' messages; the description's own units when empty.
    std::optional<UnitSystem> units;
};

}  // namespace caudalis::design
