#include "caudalis/design/NozzlePackageStrategy.hpp"

#include <string>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis::design {

NozzlePackage NozzlePackage::uniform(const CollectionRef& nozzles, double tolerance) {
    NozzlePackage package;
    package.spans = NozzleSet::of(nozzles, "the nozzles");
    package.endGun = package.spans;
    package.tolerance = tolerance;
    return package;
}

NozzlePackageStrategy::NozzlePackageStrategy(NozzlePackage package, long maxPasses)
    : package_(std::move(package)), maxPasses_(maxPasses), chart_(makeCartaAspersores()) {}

NozzlePackageStrategy::NozzlePackageStrategy(const CollectionRef& nozzles, double tolerance, long maxPasses)
    : NozzlePackageStrategy(NozzlePackage::uniform(nozzles, tolerance), maxPasses) {}

void NozzlePackageStrategy::setAvaillableAspersores(const CollectionRef& all_aspersores) {
    auto uniform = NozzlePackage::uniform(all_aspersores, package_.tolerance);
    uniform.whenNoneFits = package_.whenNoneFits;
    package_ = std::move(uniform);
}

void NozzlePackageStrategy::beforeCompute(PivotWrapper& pivot_wrapper) {
    pivot machine;
    pivot_wrapper.update(machine);
    const auto pivots = Pivots::shared();
    outletsPerPass_ = pivots->AllOutletCount(machine);
    hasEndGun_ = pivots->hasEndGun(machine);
    callsInPass_ = 0;
    passes_ = 0;
    unfitted_.clear();
    reasons_.assign(static_cast<std::size_t>(outletsPerPass_), ChoiceReason::NoPackage);
}

void NozzlePackageStrategy::afterCompute(PivotWrapper& /*pivot_wrapper*/) {}

void NozzlePackageStrategy::countCall() {
    if (callsInPass_ == 0 || callsInPass_ == outletsPerPass_) {
        callsInPass_ = 0;
        ++passes_;
        unfitted_.clear();
        if (passes_ > maxPasses_) {
            throw DesignError(DesignError::Kind::NotSettled, "the computation did not settle within " +
                                                                 std::to_string(maxPasses_) +
                                                                 (maxPasses_ == 1 ? " pass" : " passes"));
        }
    }
    ++callsInPass_;
}

const NozzleSet& NozzlePackageStrategy::setFor(const saida& outlet) const {
    if (hasEndGun_ && callsInPass_ == outletsPerPass_) {
        return package_.endGun;
    }
    if (package_.inner && outlet.distanciaAoPivot <= package_.innerToDistanceM) {
        return *package_.inner;
    }
    return package_.spans;
}

std::shared_ptr<Aspersor> NozzlePackageStrategy::aspersorFor(const saida& aSaida) {
    countCall();
    const auto choice = setFor(aSaida).choose(aSaida.pressao_actuante, aSaida.caudal, package_.tolerance,
                                              package_.whenNoneFits);
    const auto index = static_cast<std::size_t>(callsInPass_ - 1);
    if (index < reasons_.size()) {
        reasons_[index] = choice.reason;
    }
    if (!choice.nozzle) {
        unfitted_.push_back(aSaida.distanciaAoPivot);
    }
    return choice.nozzle;
}

}  // namespace caudalis::design
