#pragma once

#include <memory>

#include "DesignDescription.hpp"
#include "DesignResult.hpp"
#include "NozzleSource.hpp"

namespace caudalis {
class PivotWrapper;
}

namespace caudalis::cli {

class BestMatchStrategy;

/// Runs a design: builds the machine, wraps it with a `BestMatchStrategy` over the nozzles the
/// source allows, fits regulators, drop hose, indicators, pluviometry check and end-gun
/// booster, computes, and gathers outlets, spans and the summary figures.
class DesignRunner {
public:
    explicit DesignRunner(long maxPasses) : maxPasses_(maxPasses) {}

    /// Raises `NotSettledError` when the march goes past the allowed passes; errors of the
    /// library (`caudalis::Error`) pass unchanged.
    DesignResult run(const DesignDescription& design, NozzleSource& nozzles) const;

private:
    static void fitAccessories(PivotWrapper& wrapper, const DesignDescription& design);
    /// The summary figures; also fills each outlet's depths.
    static DesignSummary summarise(PivotWrapper& wrapper, DesignResult& result,
                                   const BestMatchStrategy& strategy);

    long maxPasses_;
};

}  // namespace caudalis::cli
