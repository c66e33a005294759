#pragma once

#include <memory>
#include <vector>

#include "caudalis/hydraulics/CalculosStrategy.hpp"

namespace caudalis::cli {

/// Chooses for every outlet the nozzle whose flow at the outlet's acting pressure comes
/// closest to the outlet's required flow (`AspersoresStatic::getBestMatch` within the
/// tolerance). Counts the passes of the march and stops it with `NotSettledError` once it
/// goes past `maxPasses`. Keeps the distances of the outlets that no nozzle fitted in the
/// latest pass. Owns the chart that holds the design's accessories.
class BestMatchStrategy : public CalculosStrategy {
public:
    BestMatchStrategy(CollectionRef nozzles, double tolerance, long maxPasses);

    void setAvaillableAspersores(const CollectionRef& all_aspersores) override;
    /// Learns how many outlets (and the end gun) one pass visits, and starts counting afresh.
    void beforeCompute(PivotWrapper& pivot_wrapper) override;
    void afterCompute(PivotWrapper& pivot_wrapper) override;
    std::shared_ptr<Aspersor> aspersorFor(const saida& aSaida) override;
    std::shared_ptr<CartaAspersores> carta() override { return chart_; }

    /// Passes of the latest computation (complete or started).
    long passes() const noexcept { return passes_; }
    /// Distances from the centre of the outlets left without a nozzle in the latest pass.
    const std::vector<double>& unfittedDistances() const noexcept { return unfitted_; }

private:
    void countCall();

    CollectionRef nozzles_;
    double tolerance_;
    long maxPasses_;
    long outletsPerPass_ = 0;
    long callsInPass_ = 0;
    long passes_ = 0;
    std::vector<double> unfitted_;
    std::shared_ptr<CartaAspersores> chart_;
};

}  // namespace caudalis::cli
