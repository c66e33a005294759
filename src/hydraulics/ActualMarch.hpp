#pragma once

#include <memory>

#include "DropLoss.hpp"
#include "DropLossTable.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class CalculosStrategy;
class Pivots;
class PivotWrapper;

/// One pass of the actual march: pressure and sprinkler flow outlet by outlet from the pivot
/// outwards, with friction, elevation, drop-hose loss, regulators and the end gun.
///
/// One object serves all the passes of a computation. Each outlet's drop-hose loss depends only
/// on the drop and the outlet's required flow, so it comes from `dropLosses`, which the ideal
/// march and earlier computations with the same drop filled.
class ActualMarch {
public:
    ActualMarch(PivotWrapper& wrapper, pivot& machine, const Drop& drop, DropLossTable& dropLosses);

    /// Marches with `inflow` entering the machine; leaves the total delivered flow in
    /// `caudaDaCartaAssociada` and returns it.
    Double alongPivot(Double inflow);

private:
    void alongTramo(tramo& aTramo, const ParPressaoCaudal& cond, Double start);
    /// Sets the outlet's pressures and sprinkler and returns the sprinkler's flow.
    double evaluateSaida(saida& outlet, Double pReal, Double pAct);
    void computeEndGun(Gun& gun, const ParPressaoCaudal& cond);
    PivotWrapper& wrapper_;
    pivot& machine_;
    DropLoss dropLoss_;
    DropLossTable& dropLosses_;
    std::shared_ptr<CalculosStrategy> chooser_;
    std::shared_ptr<Pivots> pivots_;
    Doubles doubles_;
};

}  // namespace caudalis
