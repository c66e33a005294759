#pragma once

#include <memory>
#include <vector>

#include "caudalis/design/NozzlePackage.hpp"
#include "caudalis/hydraulics/CalculosStrategy.hpp"

namespace caudalis::design {

/// Chooses the nozzle of every outlet from its section of a `NozzlePackage` (the end gun from
/// the end-gun set, outlets near the centre from the inner set, the others from the span set):
/// among the nozzles rated for the outlet's acting pressure, the closest flow within the
/// tolerance. Counts the passes of the march and stops it with `DesignError` (`NotSettled`)
/// once it goes past `maxPasses`. Keeps, for the latest pass, why each outlet got its nozzle
/// and where the outlets without one are. Owns the chart that holds the design's accessories.
/// Every pass chooses afresh.
class NozzlePackageStrategy : public CalculosStrategy {
public:
    NozzlePackageStrategy(NozzlePackage package, long maxPasses);
    /// Every outlet chooses among `nozzles`.
    NozzlePackageStrategy(const CollectionRef& nozzles, double tolerance, long maxPasses);

    /// From now on every outlet chooses among `all_aspersores`.
    void setAvaillableAspersores(const CollectionRef& all_aspersores) override;
    /// Learns how many outlets (and the end gun) one pass visits, and starts counting afresh.
    void beforeCompute(PivotWrapper& pivot_wrapper) override;
    void afterCompute(PivotWrapper& pivot_wrapper) override;
    std::shared_ptr<Aspersor> aspersorFor(const saida& aSaida) override;
    std::shared_ptr<CartaAspersores> carta() override { return chart_; }

    /// From now on the outlets choose from `package`.
    void usePackage(NozzlePackage package) { package_ = std::move(package); }
    const NozzlePackage& package() const noexcept { return package_; }
    /// Passes of the latest computation (complete or started).
    long passes() const noexcept { return passes_; }
    /// Distances from the centre of the outlets left without a nozzle in the latest pass.
    const std::vector<double>& unfittedDistances() const noexcept { return unfitted_; }
    /// Why each outlet of the latest pass, in march order (spans outwards, overhang, end gun),
    /// got its nozzle or none.
    const std::vector<ChoiceReason>& reasons() const noexcept { return reasons_; }

private:
    void countCall();
    const NozzleSet& setFor(const saida& outlet) const;

    NozzlePackage package_;
    long maxPasses_;
    long outletsPerPass_ = 0;
    long callsInPass_ = 0;
    long passes_ = 0;
    bool hasEndGun_ = false;
    std::vector<double> unfitted_;
    std::vector<ChoiceReason> reasons_;
    std::shared_ptr<CartaAspersores> chart_;
};

}  // namespace caudalis::design
