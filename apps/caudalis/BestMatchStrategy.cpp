#include "BestMatchStrategy.hpp"

#include <string>

#include "CliErrors.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis::cli {

BestMatchStrategy::BestMatchStrategy(CollectionRef nozzles, double tolerance, long maxPasses)
    : nozzles_(std::move(nozzles)),
      tolerance_(tolerance),
      maxPasses_(maxPasses),
      chart_(makeCartaAspersores()) {}

void BestMatchStrategy::setAvaillableAspersores(const CollectionRef& all_aspersores) {
    nozzles_ = all_aspersores;
}

void BestMatchStrategy::beforeCompute(PivotWrapper& pivot_wrapper) {
    pivot machine;
    pivot_wrapper.update(machine);
    outletsPerPass_ = Pivots::shared()->AllOutletCount(machine);
    callsInPass_ = 0;
    passes_ = 0;
    unfitted_.clear();
}

void BestMatchStrategy::afterCompute(PivotWrapper& /*pivot_wrapper*/) {}

void BestMatchStrategy::countCall() {
    if (callsInPass_ == 0 || callsInPass_ == outletsPerPass_) {
        callsInPass_ = 0;
        ++passes_;
        unfitted_.clear();
        if (passes_ > maxPasses_) {
            throw NotSettledError("the computation did not settle within " + std::to_string(maxPasses_) +
                                  (maxPasses_ == 1 ? " pass" : " passes") + " (--max-passes)");
        }
    }
    ++callsInPass_;
}

std::shared_ptr<Aspersor> BestMatchStrategy::aspersorFor(const saida& aSaida) {
    countCall();
    auto nozzle = Statics::application()->Aspersores()->getBestMatch(nozzles_, aSaida.pressao_actuante,
                                                                     aSaida.caudal, tolerance_);
    if (!nozzle) {
        unfitted_.push_back(aSaida.distanciaAoPivot);
    }
    return nozzle;
}

}  // namespace caudalis::cli
