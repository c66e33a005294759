#include "ActualMarch.hpp"

#include <algorithm>

#include "OutletCount.hpp"
#include "SpanWalk.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Constants.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/hydraulics/CalculosStrategy.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis {

namespace {

/// How many of the outlets 1, 2, ... `wanted` the array holds, one after the other from 1.
Long presentOutlets(const BoundedArray<saida>& outlets, Long wanted) {
    if (!outlets.isAllocated() || outlets.lbound() > 1) {
        return 0;
    }
    return std::min(wanted, outlets.ubound());
}

}  // namespace

using checked::add;
using checked::mul;
using checked::sub;

ActualMarch::ActualMarch(PivotWrapper& wrapper, pivot& machine, const Drop& drop, DropLossTable& dropLosses)
    : wrapper_(wrapper),
      machine_(machine),
      dropLoss_(drop),
      dropLosses_(dropLosses),
      chooser_(wrapper.strategy()),
      pivots_(Pivots::shared()) {}

Double ActualMarch::alongPivot(Double inflow) {
    dropLosses_.startPass(dropLoss_);
    ParPressaoCaudal cond = pivots_->newParPressaoCaudal(machine_.presion, inflow);
    double total = 0.0;
    const Integer spans = pivots_->FixedSpansCount(machine_);
    for (Long i = 1; i <= spans; ++i) {
        tramo& span = machine_.Tramos(i);
        alongTramo(span, cond, pivots_->tramoAte(machine_, static_cast<Integer>(i - 1)));
        cond = span.exit_condition;
        total = add(total, sub(span.entry_conditions.caudal, span.exit_condition.caudal));
    }
    if (pivots_->hasOverHang(machine_)) {
        tramo& overhang = machine_.tramoVOladizo;
        alongTramo(overhang, cond, pivots_->tramoAte(machine_, spans));
        cond = overhang.exit_condition;
        total = add(total, sub(overhang.entry_conditions.caudal, overhang.exit_condition.caudal));
    }
    if (pivots_->hasEndGun(machine_)) {
        computeEndGun(machine_.endGun, cond);
        total = add(total, machine_.endGun.saida.caudal_do_aspersor);
    }
    machine_.caudaDaCartaAssociada = total;
    return total;
}

void ActualMarch::alongTramo(tramo& aTramo, const ParPressaoCaudal& cond, Double start) {
    aTramo.entry_conditions = cond;
    SpanWalk walk(aTramo, cond, start);
    const double roughness = machine_.rugosidad;
    const Integer outlets = outletLoopCount(aTramo);
    // The subscripts are checked once, before the loop: outlets missing from the array raise
    // at the first of them, after the march over those before it, as an access to it does.
    const Long present = presentOutlets(aTramo.Saidas, outlets);
    saida* const first = present > 0 ? &aTramo.Saidas(1) : nullptr;
    for (Long j = 1; j <= present; ++j) {
        saida& outlet = first[j - 1];
        outlet.distanciaAoPivot = walk.nextDistance();
        const double friction = mul(mul(walk.spacing(), pressurePerMetre), walk.unitLoss(roughness));
        const double dropLoss = dropLosses_.next(outlet.caudal);
        const double pPipe = sub(sub(walk.pressure(), walk.risePressure()), friction);
        const double pReal = doubles_.Max(0.0, sub(pPipe, dropLoss));
        const double pAct = aTramo.temRegulador ? aTramo.regulador.Preg : pReal;
        walk.passOutlet(outlet, pPipe, evaluateSaida(outlet, pReal, pAct));
    }
    if (present < outlets) {
        (void)aTramo.Saidas(present + 1);
    }
    aTramo.exit_condition = walk.exitConditions(walk.endStretchFriction(roughness));
}

inline double ActualMarch::evaluateSaida(saida& outlet, Double pReal, Double pAct) {
    outlet.pressao_real = pReal;
    outlet.pressao_actuante = pAct;
    if (!chooser_) {
        raiseError(RuntimeError::ObjectNotSet);
    }
    auto chosen = chooser_->aspersorFor(outlet);
    if (!chosen) {
        outlet.obj_aspersor = nullptr;
        outlet.caudal_do_aspersor = 0.0;
        outlet.over_pressure = false;
        return 0.0;
    }
    const double flow = chosen->calculate(pAct);
    outlet.caudal_do_aspersor = flow;
    outlet.over_pressure = chosen->isHighPressure(pAct);
    outlet.obj_aspersor = std::move(chosen);
    return flow;
}

void ActualMarch::computeEndGun(Gun& gun, const ParPressaoCaudal& cond) {
    const double boost = wrapper_.getEndGunBoost();
    evaluateSaida(gun.saida, cond.pressao, add(cond.pressao, boost));
}

}  // namespace caudalis
