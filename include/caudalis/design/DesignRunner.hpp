#pragma once

#include <map>
#include <memory>
#include <vector>

#include "caudalis/design/DesignDescription.hpp"
#include "caudalis/design/DesignOptions.hpp"
#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/NozzleSet.hpp"
#include "caudalis/design/NozzleSource.hpp"

namespace caudalis {
class CartaAspersores;
class PivotWrapper;
}  // namespace caudalis

namespace caudalis::design {

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

    /// Readies a wrapped machine for the march: chooses the regulators when the design asks for
    /// automatic ones (writing them into `design.regulators`), fits the design's regulators, drop
    /// hose, indicators, pluviometry check, end-gun booster and revolution time (the wrapper
    /// hands them to its strategy's chart) and computes the ideal operation mode.
    static void prepare(PivotWrapper& wrapper, DesignDescription& design);
    /// The result of a wrapper computed (`calculate`) in `passes` passes: outlets (with
    /// `reasons`, in march order), spans, summary, findings and analysis, with `chart` as the
    /// result's chart.
    DesignResult gather(PivotWrapper& wrapper, const DesignDescription& design, long passes,
                        const std::vector<ChoiceReason>& reasons, std::shared_ptr<CartaAspersores> chart,
                        const std::map<Long, double>& wettedDiameters) const;

private:
    static void fitAccessories(PivotWrapper& wrapper, const DesignDescription& design);
    /// The summary figures; also fills each outlet's depths.
    static DesignSummary summarise(PivotWrapper& wrapper, DesignResult& result, long passes);

    DesignOptions options_;
};

}  // namespace caudalis::design
