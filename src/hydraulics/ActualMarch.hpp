#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "DropLoss.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class CalculosStrategy;
class Pivots;
class PivotWrapper;

/// One pass of the actual march: pressure and sprinkler flow outlet by outlet from the pivot
/// outwards, with friction, elevation, drop-hose loss, regulators and the end gun.
///
/// One object serves all the passes of a computation: the drop is fixed for it, so each
/// outlet's drop-hose loss, which depends only on the outlet's required flow, is worked out in
/// the first pass and used again while that flow stays the same.
class ActualMarch {
public:
    ActualMarch(PivotWrapper& wrapper, pivot& machine, const Drop& drop);

    /// Marches with `inflow` entering the machine; leaves the total delivered flow in
    /// `caudaDaCartaAssociada` and returns it.
    Double alongPivot(Double inflow);

private:
    void alongTramo(tramo& aTramo, const ParPressaoCaudal& cond, Double start);
    /// Sets the outlet's pressures and sprinkler and returns the sprinkler's flow.
    double evaluateSaida(saida& outlet, Double pReal, Double pAct);
    void computeEndGun(Gun& gun, const ParPressaoCaudal& cond);
    /// The drop-hose loss of the next outlet of the pass, whose required flow is `required`.
    double nextDropLoss(double required);

    /// A drop-hose loss and the required flow (as bits) it was worked out for.
    struct KnownDropLoss {
        std::uint64_t requiredBits;
        double loss;
    };

    PivotWrapper& wrapper_;
    pivot& machine_;
    DropLoss dropLoss_;
    std::vector<KnownDropLoss> knownDropLosses_;
    std::size_t outletOfPass_ = 0;
    std::shared_ptr<CalculosStrategy> chooser_;
    std::shared_ptr<Pivots> pivots_;
    Doubles doubles_;
};

}  // namespace caudalis
