#include "IdealMarch.hpp"

#include "OutletCount.hpp"
#include "SpanWalk.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Constants.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis {

using checked::add;
using checked::div;
using checked::mul;
using checked::sub;

IdealMarch::IdealMarch(pivot& machine, const Drop& drop, DropLossTable& dropLosses)
    : machine_(machine), dropLoss_(drop), dropLosses_(dropLosses), pivots_(Pivots::shared()) {}

void IdealMarch::alongPivot() {
    dropLosses_.startPass(dropLoss_);
    ParPressaoCaudal cond = pivots_->newParPressaoCaudal(machine_.presion, machine_.caudal);
    const Integer spans = pivots_->FixedSpansCount(machine_);
    for (Long i = 1; i <= spans; ++i) {
        tramo& span = machine_.Tramos(i);
        alongTramo(span, cond, pivots_->tramoAte(machine_, static_cast<Integer>(i - 1)));
        cond = span.ideal_exit_conditions;
    }
    if (pivots_->hasOverHang(machine_)) {
        alongTramo(machine_.tramoVOladizo, cond, pivots_->tramoAte(machine_, spans));
        cond = machine_.tramoVOladizo.ideal_exit_conditions;
    }
    if (pivots_->hasEndGun(machine_)) {
        endGun(machine_.endGun, cond);
    }
}

void IdealMarch::endGun(Gun& aGun, const ParPressaoCaudal& initial_conditions) const {
    const double spanLength = pivots_->AllSpanLenght(machine_);
    aGun.saida.distanciaAoPivot = spanLength;
    const double irrigated = pivots_->AllIrrigatedLenght(machine_);
    aGun.saida.caudal =
        div(mul(mul(add(spanLength, spanLength), aGun.rs), machine_.caudal), checked::pow(irrigated, 2.0));
    aGun.saida.pressao_ideal = initial_conditions.pressao;
}

void IdealMarch::alongTramo(tramo& aTramo, const ParPressaoCaudal& cond, Double start) {
    aTramo.ideal_entry_conditions = cond;
    SpanWalk walk(aTramo, cond, start);
    const double roughness = machine_.rugosidad;
    const double s = walk.spacing();
    double loss = 0.0;
    const Integer outlets = outletLoopCount(aTramo);
    for (Long j = 1; j <= outlets; ++j) {
        saida& outlet = aTramo.Saidas(j);
        outlet.distanciaAoPivot = walk.nextDistance();
        const double friction = mul(mul(walk.unitLoss(roughness), s), pressurePerMetre);
        const double ringDivisor = irrigatedSquared();
        outlet.caudal = div(mul(mul(mul(2.0, outlet.distanciaAoPivot), s), machine_.caudal), ringDivisor);
        const double dropLoss = dropLosses_.next(outlet.caudal);
        loss = add(loss, friction);
        const double pPipe = sub(sub(walk.pressure(), walk.risePressure()), friction);
        outlet.pressao_ideal = sub(pPipe, dropLoss);
        walk.passOutlet(outlet, pPipe, outlet.caudal);
    }
    const double friction = walk.endStretchFriction(roughness);
    aTramo.ideal_exit_conditions = walk.exitConditions(friction);
    aTramo.perdaDeCargaIdeal = add(loss, friction);
}

double IdealMarch::irrigatedSquared() {
    if (!irrigatedSquared_) {
        irrigatedSquared_ = checked::pow(pivots_->AllIrrigatedLenght(machine_), 2.0);
    }
    return *irrigatedSquared_;
}

}  // namespace caudalis
