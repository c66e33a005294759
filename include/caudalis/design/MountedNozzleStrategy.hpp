#pragma once

#include <memory>

#include "caudalis/hydraulics/CalculosStrategy.hpp"

namespace caudalis::design {

/// Computes a machine with the nozzles already mounted on its outlets (a stored chart's, put on
/// with `CartaAspersores::mountAsperoresOn`) instead of choosing them: every outlet keeps its
/// nozzle, and an outlet without one stays without. The chart holds the accessories. Counts
/// the passes of the march.
class MountedNozzleStrategy : public CalculosStrategy {
public:
    explicit MountedNozzleStrategy(std::shared_ptr<CartaAspersores> chart);

    /// Learns how many outlets (and the end gun) one pass visits, and starts counting afresh.
    void beforeCompute(PivotWrapper& pivot_wrapper) override;
    std::shared_ptr<Aspersor> aspersorFor(const saida& aSaida) override;
    std::shared_ptr<CartaAspersores> carta() override { return chart_; }

    /// Passes of the latest computation (complete or started).
    long passes() const noexcept;
    /// Outlets (and the end gun) one pass visits.
    long outletsPerPass() const noexcept { return outletsPerPass_; }

private:
    std::shared_ptr<CartaAspersores> chart_;
    long outletsPerPass_ = 0;
    long calls_ = 0;
};

}  // namespace caudalis::design
