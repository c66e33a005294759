#pragma once

#include <memory>

#include "caudalis/design/DesignDescription.hpp"
#include "caudalis/design/DesignOptions.hpp"
#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/NozzleSource.hpp"

namespace caudalis {
class PivotWrapper;
}

namespace caudalis::design {

class NozzlePackageStrategy;

/// Runs a design: builds the machine, wraps it with a `NozzlePackageStrategy` over the nozzles the
/// source allows, fits regulators, drop hose, indicators, pluviometry check and end-gun
/// booster, computes, and gathers outlets, spans and the summary figures.
class DesignRunner {
public:
    explicit DesignRunner(DesignOptions options = {}) : options_(options) {}

    /// Raises `DesignError` (`NotSettled`) when the march goes past the allowed passes, and
    /// (`InvalidInput`) when the nozzle source has none to offer; errors of the library
    /// (`caudalis::Error`) pass unchanged.
    DesignResult run(const DesignDescription& design, NozzleSource& nozzles) const;

private:
    static void fitAccessories(PivotWrapper& wrapper, const DesignDescription& design);
    /// The summary figures; also fills each outlet's depths.
    static DesignSummary summarise(PivotWrapper& wrapper, DesignResult& result,
                                   const NozzlePackageStrategy& strategy);

    DesignOptions options_;
};

}  // namespace caudalis::design
