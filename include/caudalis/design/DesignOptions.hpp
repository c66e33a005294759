#pragma once

namespace caudalis::design {

/// How a design is run, beyond what its description says.
struct DesignOptions {
    /// The march gives up (`DesignError`, `NotSettled`) after this many passes.
    long maxPasses = 1000;
};

}  // namespace caudalis::design
