#pragma once

#include <memory>

#include "caudalis/core/Records.hpp"

namespace caudalis {

class CalculosStrategy;
class Doubles;
class Drops;
class Pivots;
class PivotWrapper;

/// One pass of the actual march: pressure and sprinkler flow outlet by outlet from the pivot
/// outwards, with friction, elevation, drop-hose loss, regulators and the end gun.
class ActualMarch {
public:
    ActualMarch(PivotWrapper& wrapper, pivot& machine, const Drop& drop);

    /// Marches with `inflow` entering the machine; leaves the total delivered flow in
    /// `caudaDaCartaAssociada` and returns it.
    Double alongPivot(Double inflow);

private:
    void alongTramo(tramo& aTramo, const ParPressaoCaudal& cond, Double start);
    void evaluateSaida(saida& outlet, Double pReal, Double pAct);
    void computeEndGun(Gun& gun, const ParPressaoCaudal& cond);

    PivotWrapper& wrapper_;
    pivot& machine_;
    const Drop& drop_;
    std::shared_ptr<CalculosStrategy> chooser_;
    std::shared_ptr<Pivots> pivots_;
    std::shared_ptr<Doubles> doubles_;
    std::shared_ptr<Drops> drops_;
};

}  // namespace caudalis
